// avhost: the host controller's side of the daemon's serial line, for people
// and tests. Only wiring; the commands live in avhost_commands.cpp.
#include <signal.h>

#include <iostream>
#include <string>
#include <vector>

#include "tools/avhost_commands.h"

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);  // a closed reader of our output or a dropped upload is an error, not a kill
    std::vector<std::string> words(argv + 1, argv + argc);
    return avhost::RunAvhost(words, std::cin, std::cout, std::cerr);
}
