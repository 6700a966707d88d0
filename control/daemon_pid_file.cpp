// The daemon's pid file. Main thread only.
#include "control/daemon_pid_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

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
    if (m_Path.empty()) return;
    unlink(m_Path.c_str());  // before the lock goes: a newcomer then finds no file or a new one
    close(m_Fd);
}

namespace {

pid_t ReadPid(int fd) {
    char text[32] = {};
    const ssize_t n = pread(fd, text, sizeof text - 1, 0);
    if (n <= 0) return 0;
    const long pid = std::strtol(text, nullptr, 10);
    return pid > 0 ? static_cast<pid_t>(pid) : 0;
}

bool SameFile(int fd, const std::string& path) {
    struct stat byFd;
    struct stat byPath;
    return fstat(fd, &byFd) == 0 && stat(path.c_str(), &byPath) == 0 && byFd.st_dev == byPath.st_dev &&
           byFd.st_ino == byPath.st_ino;
}

}  // namespace

DaemonPidFile::Result DaemonPidFile::Write(const std::string& path, pid_t& holder) {
    holder = 0;
    if (!MakeParentFolders(path)) return Result::kError;
    for (;;) {
        const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0) return Result::kError;
        if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            holder = ReadPid(fd);
            close(fd);
            if (error == EWOULDBLOCK) return Result::kHeld;
            errno = error;
            return Result::kError;
        }
        // The holder may have removed the file between our open and our lock.
        if (!SameFile(fd, path)) {
            close(fd);
            continue;
        }
        char text[32];
        const int len = std::snprintf(text, sizeof text, "%d\n", static_cast<int>(getpid()));
        if (ftruncate(fd, 0) != 0 || pwrite(fd, text, static_cast<size_t>(len), 0) != len) {
            const int error = errno;
            unlink(path.c_str());
            close(fd);
            errno = error;
            return Result::kError;
        }
        m_Path = path;
        m_Fd = fd;
        return Result::kWritten;
    }
}
