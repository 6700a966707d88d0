// The usage text and the debug-log set-up. Main thread only, at start.
#include "control/process_entry.h"

#include <cstdio>

#include <log4cpp/SimpleConfigurator.hh>

void PrintUsage() {
    static const char* const kLines[] = {
        "morlin usage:",
        "  -h     show usage",
        "  -v n   logging level",
        "            0: error (default)",
        "            1: warning",
        "            2: notice",
        "            3: info",
        "            4: debug",
    };
    for (const char* line : kLines) std::fprintf(stderr, "%s\n", line);
    std::fputs("\n", stderr);
}

void InitDebugLog(const std::string& configFile) {
    try {
        log4cpp::SimpleConfigurator::configure(configFile);
        std::printf("Found debug-log configuration file: %s\n\n", configFile.c_str());
    } catch (...) {
        // Logging is a convenience: the process runs on without it.
        std::printf("ERROR: Failed to initialize the debug logger with config file, %s\n", configFile.c_str());
    }
}
