// The command line of avhost: the command, its options and its arguments, with
// the checks that make a usage error (exit status 2). GNU style through
// getopt_long: --opt=value, --opt value, -dVALUE, bundled short options, options
// before or after the arguments, "--" ends them. Pure parsing; main thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace avhost {

struct CommandLine {
    std::string command;  // list, send, monitor, decode, raw, session, replay, top, upload, dissector; empty with help
    bool help = false;
    bool version = false;
    bool verbose = false;
    std::string device;
    bool pty = false;
    bool json = false;
    bool csv = false;
    bool utc = false;           // absolute UTC time stamps with microseconds
    bool apply = false;
    bool singleStart = false;   // one start marker per frame instead of two
    bool fast = false;          // replay: no original spacing
    bool update = false;        // replay: rewrite the expected file
    double duration = -1;       // below 0: until interrupted
    std::string capture;
    std::string pcap;           // --pcap (live commands) or --pcap-out (decode)
    std::string expected;       // replay: the expected file
    std::string values;         // list --values NAME
    std::string history;        // session: history file
    std::vector<std::string> only;  // operation names to show (empty: all)
    std::vector<std::string> skip;  // operation names to leave out
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
// The line that --version prints ("avhost stbav-1.0.0 (0f6fd5a)").
std::string VersionText();

}  // namespace avhost
