// Helpers that stand beside the process entry points: the daemon's command-line
// usage text and the set-up of the debug log from its configuration file. Called
// once by an entry point's main thread before any other thread starts. Global
// namespace, like the other control classes.
#pragma once

#include <string>

// Writes the usage text ("morlin usage:", the -h and -v n options and the five
// logging levels) to standard error, each line ended, then one empty line.
void PrintUsage();

// Configures log4cpp from configFile (SimpleConfigurator format). On success
// prints "Found debug-log configuration file: <name>" and an empty line to
// standard output. Never throws: on any failure it prints
// "ERROR: Failed to initialize the debug logger with config file, <name>" to
// standard output and the program goes on with log4cpp unconfigured.
void InitDebugLog(const std::string& configFile);
