// Choosing a stream source for a file, and the scenario file source.
#include "sim/stream_source.h"

#include <fstream>
#include <sstream>

#include "sim/scenario_parser.h"

namespace stbsim {

namespace {

class CScenarioSource : public IStreamSource {
public:
    bool Recognises(const std::string&, const std::string&) const override { return true; }
    bool Load(const std::string& path, StreamInput* out, std::string* error) const override {
        std::ifstream f(path);
        std::ostringstream text;
        text << f.rdbuf();
        if (!f.good() && !f.eof()) {
            *error = "cannot read";
            return false;
        }
        if (!ParseScenario(text.str(), out, error)) return false;
        out->source = path;
        return true;
    }
};

// A transport stream starts with sync bytes 188 bytes apart.
bool LooksLikeTransportStream(const std::string& head) {
    return head.size() >= 189 && head[0] == 0x47 && head[188] == 0x47;
}

}  // namespace

bool LoadStreamInput(const std::string& path, StreamInput* out, std::string* error) {
    std::ifstream f(path, std::ios::binary);
    if (!f) {
        *error = path + ": cannot open";
        return false;
    }
    std::string head(189, '\0');
    f.read(&head[0], static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<size_t>(f.gcount()));
    const CScenarioSource scenario;
    const IStreamSource* source = &scenario;
    const IStreamSource* ts = TransportStreamSource();
    if (ts && ts->Recognises(path, head)) {
        source = ts;
    } else if (LooksLikeTransportStream(head)) {
        *error = path + ": an MPEG-TS file, but this build has no MPEG-TS prober";
        return false;
    }
    std::string why;
    if (!source->Load(path, out, &why)) {
        *error = path + ": " + why;
        return false;
    }
    return true;
}

}  // namespace stbsim
