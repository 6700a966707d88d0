// ChildLauncher: the words a test puts before a child program it starts (the
// daemon, avhost, helper binaries). Empty in a native build. In a cross build
// the test itself runs under an emulator (qemu-user, called explicitly), and so
// must its children: the build defines STBAV_CHILD_LAUNCHER as the emulator's
// command line, e.g. "/usr/bin/qemu-aarch64 -L /usr/aarch64-linux-gnu".
// Header only; safe on any thread.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace stbav_test {

inline std::vector<std::string> ChildLauncher() {
    std::vector<std::string> words;
#ifdef STBAV_CHILD_LAUNCHER
    std::istringstream in(STBAV_CHILD_LAUNCHER);
    for (std::string w; in >> w;) words.push_back(w);
#endif
    return words;
}

}  // namespace stbav_test
