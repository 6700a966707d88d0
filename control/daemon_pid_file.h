// DaemonPidFile: the daemon's pid file ("/data/var/run/tevrin.pid" under the
// fixed-path root). Written once at start by the main thread, removed by the
// destructor; the object owns the file for the life of the process.
#pragma once

#include <string>

#include "toolkit/kt_uncopyable.h"

class DaemonPidFile : private KT::CUncopyable {
public:
    DaemonPidFile() = default;
    // Removes the file if Write created it.
    ~DaemonPidFile();

    // Creates the missing folders of path and writes this process's id and a
    // line end. False (errno set) when a folder or the file cannot be written.
    bool Write(const std::string& path);
    const std::string& Path() const { return m_Path; }

private:
    std::string m_Path;  // empty until Write succeeded
};

// Creates every missing folder of dir, like "mkdir -p". True when dir exists afterwards.
bool MakeFolders(const std::string& dir);
// The same for the folder that holds the file at path.
bool MakeParentFolders(const std::string& path);
