// Builds with FFmpeg: the MPEG-TS prober lives in a module of its own beside
// libstb_module.so and is loaded at the first MPEG-TS file, so a process that
// never reads one never loads libavformat (and tools such as valgrind, which
// cannot run libavcodec here, still work on the board). Any thread.
#include <dlfcn.h>

#include <mutex>
#include <string>

#include "sim/stream_source.h"

#ifndef STBSIM_TS_MODULE
#define STBSIM_TS_MODULE "libstbsim_ts.so"
#endif

namespace stbsim {

namespace {

using EntryFn = const IStreamSource* (*)();

// The directory this library was loaded from, with a trailing slash; empty
// when unknown (the dynamic loader's search path is used then).
std::string OwnDirectory() {
    Dl_info info;
    if (!dladdr(reinterpret_cast<void*>(&TransportStreamSource), &info) || !info.dli_fname) return "";
    const std::string self = info.dli_fname;
    const size_t slash = self.rfind('/');
    return slash == std::string::npos ? "" : self.substr(0, slash + 1);
}

// Loads the module once per process; it stays loaded until the process ends.
const IStreamSource* LoadModule(std::string* error) {
    static std::once_flag once;
    static const IStreamSource* source = nullptr;
    static std::string failure;
    std::call_once(once, [] {
        const std::string path = OwnDirectory() + STBSIM_TS_MODULE;
        void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module) {
            failure = std::string("cannot load the MPEG-TS prober: ") + dlerror();
            return;
        }
        auto entry = reinterpret_cast<EntryFn>(dlsym(module, "stbsim_ts_source"));
        if (!entry) {
            failure = "cannot load the MPEG-TS prober: " + path + " has no entry";
            return;
        }
        source = entry();
    });
    if (!source) *error = failure;
    return source;
}

class CTsSourceOnDemand : public IStreamSource {
public:
    // A transport stream starts with sync bytes 188 bytes apart.
    bool Recognises(const std::string&, const std::string& head) const override {
        return head.size() >= 189 && head[0] == 0x47 && head[188] == 0x47;
    }
    bool Load(const std::string& path, StreamInput* out, std::string* error) const override {
        const IStreamSource* prober = LoadModule(error);
        return prober && prober->Load(path, out, error);
    }
};

}  // namespace

const IStreamSource* TransportStreamSource() {
    static const CTsSourceOnDemand source;
    return &source;
}

}  // namespace stbsim
