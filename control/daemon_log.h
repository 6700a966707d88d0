// The daemon's side of the debug-log set-up, after InitDebugLog: the level
// chosen with -v, and a stderr fallback so that errors are seen even without a
// log configuration. Main thread, before any other thread starts.
#pragma once

#include <string>

// Sets the root category's priority: 0 error, 1 warning, 2 notice, 3 info,
// 4 debug (values outside 0..4 are clamped).
void SetDaemonLogLevel(int level);

// When the root category has no appender (no or a failed configuration), adds
// one on standard error with time, priority and category. True when it added one.
bool EnsureDaemonLogOutput();

// The log configuration file to load: the -c value, or the fixed path under the root.
std::string DaemonLogConfigFile(const std::string& option);

// SIGHUP: drops every appender and category level the last configuration gave,
// reads configFile again (InitDebugLog), then applies level and the stderr
// fallback as at start. Main thread; other threads may log meanwhile (a line
// logged in that instant may be lost).
void ReloadDaemonLog(const std::string& configFile, int level);
