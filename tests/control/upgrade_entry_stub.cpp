// A stand-in for the media library's upgrade call that always fails and says
// which package it was given, linked into a copy of the upgrade entry so the
// entry test can check the hand-off and the exit status.
#include <cstdio>

extern "C" int system_upgrade(const char* packagePath) {
    std::printf("system_upgrade(%s)\n", packagePath);
    return -1;
}
