// The avhost commands over the tool's units: each takes the parsed command line
// and returns the exit status (0 success, 1 runtime failure, 2 usage error),
// writing results to out and messages to err. Main thread; monitor and session
// also run a LineSession receive thread. Monitor, session and their waits end
// early once the stop flag (set by SIGINT/SIGTERM) is raised.
#pragma once

#include <atomic>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "tools/command_line.h"

namespace avhost {

// Parses words (the arguments after the program name) and runs the command.
int RunAvhost(const std::vector<std::string>& words, std::istream& in, std::ostream& out, std::ostream& err);

// Raised by the signal handlers that RunAvhost installs for monitor and session.
std::atomic<bool>& StopFlag();

}  // namespace avhost
