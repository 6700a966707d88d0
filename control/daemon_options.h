// The command line of stbavd: the board's options (-h, -v n) and the ones a PC
// run needs (serial device, root prefix, upgrade receiver, log configuration,
// real-time scheduling),
// read with getopt_long: long forms (--device=DEV or --device DEV), bundled short
// options (-Uv4), --help and --version. Parsing with no side effect but
// getopt's own globals; main thread, before anything starts.
#pragma once

#include <cstdint>
#include <string>

struct DaemonOptions {
    int logLevel = 0;                     // -v: 0 error .. 4 debug
    std::string serialDevice = "/dev/ttyS2";  // -d
    std::string root;                     // -R: prefix of every fixed path; empty: none
    bool uploadReceiver = false;          // -U
    uint32_t uploadAddress = 0;           // -U ADDR: IPv4, host byte order; 0: every address
    uint16_t uploadPort = 8888;           // -P
    std::string logConfigFile;            // -c; empty: the fixed path under the root
    uint32_t audioDecoderCount = 1;       // -a
    int realtimePriority = 0;             // -r: FIFO priority; 0: normal scheduling
};

enum class DaemonCommand {
    kRun,         // options parsed: start the daemon
    kHelp,        // -h: print the usage text, exit 0
    kVersion,     // --version: print the version, exit 0
    kUsageError,  // unknown option, missing or bad value: usage text, exit 2
};

// Parses argv into options. On kUsageError, error holds one line naming the
// offending option or value. Options given twice keep the last value.
DaemonCommand ParseDaemonOptions(int argc, char** argv, DaemonOptions& options, std::string& error);

// The lines that follow the board's usage text: the PC options and their defaults.
void PrintDaemonOptionsUsage();
