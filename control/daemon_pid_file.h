// DaemonPidFile: the daemon's pid file ("/data/var/run/tevrin.pid" under the
// fixed-path root). Locked and written once at start by the main thread, removed
// by the destructor; the object owns the file for the life of the process. The
// lock (flock on the open file) makes it one daemon per root: a second one finds
// the file locked, reads the first one's pid from it and leaves it alone.
#pragma once

#include <sys/types.h>

#include <string>

#include "toolkit/kt_uncopyable.h"

class DaemonPidFile : private KT::CUncopyable {
public:
    DaemonPidFile() = default;
    // Removes the file if Write created it.
    ~DaemonPidFile();

    enum class Result { kWritten, kHeld, kError };
    // Creates the missing folders of path, locks the file and writes this
    // process's id and a line end. kHeld when another process holds the lock:
    // holder is then its pid as the file gives it (0 if unreadable), and the file
    // is left as it is. kError (errno set) when a folder or the file cannot be
    // written.
    Result Write(const std::string& path, pid_t& holder);
    const std::string& Path() const { return m_Path; }

private:
    std::string m_Path;  // empty until Write succeeded
    int m_Fd = -1;       // open and locked while m_Path is set
};

// Creates every missing folder of dir, like "mkdir -p". True when dir exists afterwards.
bool MakeFolders(const std::string& dir);
// The same for the folder that holds the file at path.
bool MakeParentFolders(const std::string& path);
