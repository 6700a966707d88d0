// The command line of avhost: the command, its options and its arguments, with
// the checks that make a usage error (exit status 2). Pure parsing; main thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace avhost {

struct CommandLine {
    std::string command;  // list, send, monitor, decode, raw, session, upload; empty with help
    bool help = false;
    bool verbose = false;
    std::string device;
    bool pty = false;
    bool json = false;
    bool apply = false;
    double duration = -1;  // below 0: until interrupted
    std::string capture;
    std::string host = "127.0.0.1";
    uint16_t port = 8888;
    char dir = '<';
    std::vector<std::string> args;
};

// Parses the words after the program name. False with a one-line message for a
// usage error (unknown command or option, a missing or bad option value, an
// option the command does not take, a wrong number of arguments).
bool ParseCommandLine(const std::vector<std::string>& words, CommandLine& cl, std::string& error);

// The text that -h prints.
std::string UsageText();

}  // namespace avhost
