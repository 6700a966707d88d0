// The fixed paths under the process-wide root prefix.
#include "toolkit/fixed_paths.h"

namespace stbav {
namespace paths {

const char* const kLogConfigFile = "/vendor/etc/tevrin-log4cpp.init";
const char* const kPidFile = "/data/var/run/tevrin.pid";
const char* const kUpgradePackage = "/sdcard/update.zip";
const char* const kVersionFile = "/vendor/etc/version";
const char* const kSambaFlagFile = "/data/smbdstartflag";

namespace {
std::string& RootStorage() {
    static std::string root;  // written once at start, before threads read it
    return root;
}
}  // namespace

void SetRoot(const std::string& root) {
    std::string r = root;
    while (r.size() > 1 && r.back() == '/') r.pop_back();
    if (r == "/") r.clear();
    RootStorage() = r;
}

const std::string& Root() { return RootStorage(); }

std::string Resolve(const std::string& fixedPath) { return RootStorage() + fixedPath; }

}  // namespace paths
}  // namespace stbav
