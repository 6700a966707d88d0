// The daemon's pid file. Main thread only.
#include "control/daemon_pid_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

bool MakeFolders(const std::string& dir) {
    for (size_t pos = 1; pos <= dir.size(); ++pos) {
        if (pos != dir.size() && dir[pos] != '/') continue;
        const std::string part = dir.substr(0, pos);
        if (mkdir(part.c_str(), 0755) != 0 && errno != EEXIST) return false;
    }
    struct stat st;
    return stat(dir.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool MakeParentFolders(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos || slash == 0 || MakeFolders(path.substr(0, slash));
}

DaemonPidFile::~DaemonPidFile() {
    if (!m_Path.empty()) unlink(m_Path.c_str());
}

bool DaemonPidFile::Write(const std::string& path) {
    if (!MakeParentFolders(path)) return false;
    FILE* f = std::fopen(path.c_str(), "w");
    if (f == nullptr) return false;
    const bool written = std::fprintf(f, "%d\n", static_cast<int>(getpid())) > 0;
    const bool closed = std::fclose(f) == 0;
    if (!written || !closed) {
        unlink(path.c_str());
        return false;
    }
    m_Path = path;
    return true;
}
