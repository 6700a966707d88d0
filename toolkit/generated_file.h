// The command line of the generators that write a committed file from the
// daemon's own tables (host_dictionary, python_dictionary):
//   TOOL                 the text on standard output
//   TOOL --check FILE    exit 1 if FILE differs, saying how to rewrite it
//   TOOL --update FILE   rewrite FILE
// Single-threaded command-line programs.
#pragma once

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace stbav {

// Runs the command line for `text`; `tool` names the program in messages and
// `makeTarget` is the make target that rewrites the file.
inline int GeneratedFileMain(const char* tool, const char* makeTarget, int argc, char** argv,
                             const std::string& text) {
    if (argc == 1) {
        std::fputs(text.c_str(), stdout);
        return 0;
    }
    const bool check = argc == 3 && std::strcmp(argv[1], "--check") == 0;
    if (!check && !(argc == 3 && std::strcmp(argv[1], "--update") == 0)) {
        std::fprintf(stderr, "usage: %s [--check FILE | --update FILE]\n", tool);
        return 2;
    }
    const char* path = argv[2];
    std::ifstream in(path, std::ios::binary);
    std::ostringstream current;
    current << in.rdbuf();
    const bool readable = static_cast<bool>(in);
    if (readable && current.str() == text) return 0;
    if (check) {
        std::fprintf(stderr,
                     "%s: %s %s the daemon's tables; rewrite it with\n"
                     "  make %s      (or: %s --update %s)\n"
                     "and commit the result\n",
                     tool, path, readable ? "differs from" : "cannot be read, so it does not match", makeTarget,
                     argv[0], path);
        return 1;
    }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    return out.good() ? 0 : 2;
}

}  // namespace stbav
