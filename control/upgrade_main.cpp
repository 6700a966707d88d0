// stbav-upgrade: the upgrade hand-off. Asks the media library's system-upgrade
// service to install the package at its fixed path and exits; its result is the
// platform's business (it logs to logcat), so the exit status is always 0.
#include <cstdio>

#include "platform/stb_module.h"
#include "toolkit/fixed_paths.h"

int main(int /*argc*/, char** /*argv*/) {
    std::printf("### Enter system upgrade ..., please 'logcat |grep pdate' to see more infos ### \n");
    std::fflush(stdout);
    (void)system_upgrade(stbav::paths::kUpgradePackage);
    return 0;
}
