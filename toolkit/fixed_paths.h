// The process's fixed paths ("/vendor/etc/version", "/sdcard/update.zip", ...)
// resolved under one process-wide root prefix, empty by default, so that a PC run
// or a test never writes to /vendor, /data or /sdcard. Set the root once at start
// (before any thread reads it); Resolve() is then safe from any thread.
#pragma once

#include <string>

namespace stbav {
namespace paths {

extern const char* const kLogConfigFile;   // "/vendor/etc/tevrin-log4cpp.init"
extern const char* const kPidFile;         // "/data/var/run/tevrin.pid"
extern const char* const kUpgradePackage;  // "/sdcard/update.zip"
extern const char* const kVersionFile;     // "/vendor/etc/version"
extern const char* const kSambaFlagFile;   // "/data/smbdstartflag"

// "" (no prefix) or a folder such as "/tmp/stbav-root"; a trailing '/' is dropped.
void SetRoot(const std::string& root);
const std::string& Root();
// root + fixedPath
std::string Resolve(const std::string& fixedPath);

}  // namespace paths
}  // namespace stbav
