// The upgrade file receiver's accept and read loop. Everything below except the
// constructor and destructor runs on the "ReceiveFile" thread.
#include "control/stb_receive_upgrade_file.h"

#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "toolkit/fixed_paths.h"
#include "toolkit/kt_functor.h"
#include "toolkit/log.h"

namespace {

const int kListenBacklog = 128;
const size_t kReceiveBufferSize = 1536;
const size_t kPathBufferSize = 1024;
// accept and read wait at most this long before looking for a cancel.
const int kPollTimeoutMs = 200;

#define RECEIVER_LOG_PREFIX "StbReceiveUpgradeFile::ReceiveUpgradeFileProcess() - "
const char* const kEintrText = RECEIVER_LOG_PREFIX "Error: call accept failed by EINTR!\n";

// A short write is continued; a failed one is not reported (the peer's close
// decides what the file holds).
void WriteAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        ssize_t n = write(fd, data, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;
        data += n;
        size -= static_cast<size_t>(n);
    }
}

}  // namespace

StbReceiveUpgradeFile::StbReceiveUpgradeFile(uint16_t port) : StbReceiveUpgradeFile(INADDR_ANY, port) {}

StbReceiveUpgradeFile::StbReceiveUpgradeFile(uint32_t address, uint16_t port)
    : m_Logger(stbav::Logger("stbav.StbReceiveUpgradeFile")),
      m_Port(port),
      m_Address(address),
      m_Thread(KT::MakeFunctor(this, &StbReceiveUpgradeFile::ReceiveUpgradeFileProcess), "ReceiveFile",
               KT::CThread::GetPriority()) {
    m_Thread.Run();
}

StbReceiveUpgradeFile::~StbReceiveUpgradeFile() {
    m_Thread.Cancel();
    // The body leaves its sockets open when it gives up on the target file.
    CloseFd(m_ConnFd);
    CloseFd(m_ListenFd);
}

void StbReceiveUpgradeFile::CloseFd(std::atomic<int>& fd) {
    int old = fd.exchange(-1);
    if (old >= 1) close(old);
}

bool StbReceiveUpgradeFile::ReceiveUpgradeFileProcess() {
    int s = socket(AF_INET, SOCK_STREAM, 0);
    if (s < 0) {
        stbav::LogError(m_Logger, RECEIVER_LOG_PREFIX "Error: call socket %s!\n", strerror(errno));
        return false;
    }
    m_ListenFd = s;
    // Lets a restarted daemon rebind the port at once while old connections
    // linger in TIME_WAIT.
    int one = 1;
    setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in addr;
    memset(&addr, 0, sizeof addr);
    addr.sin_family = AF_INET;
    addr.sin_port = htons(m_Port);
    addr.sin_addr.s_addr = htonl(m_Address);
    // A port already in use is reported but does not stop the thread: listen
    // then binds an arbitrary port on Linux and nobody ever connects.
    if (bind(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
        stbav::LogWarn(m_Logger, RECEIVER_LOG_PREFIX "Warning: call bind port %u: %s!\n", unsigned(m_Port),
                        strerror(errno));
    }
    (void)listen(s, kListenBacklog);

    while (!KT::CThread::IsCancelRequested()) {
        if (!AcceptOne()) return false;
    }
    CloseFd(m_ListenFd);
    stbav::LogInfo(m_Logger, RECEIVER_LOG_PREFIX "recv file successfule!\n");
    return true;
}

// True when fd has something to read (or an error to report) within one poll
// period; false on a time-out or an interrupted poll.
bool StbReceiveUpgradeFile::WaitReadable(int fd) {
    pollfd p;
    p.fd = fd;
    p.events = POLLIN;
    p.revents = 0;
    return poll(&p, 1, kPollTimeoutMs) > 0;
}

// One accept and, if it gives a connection, one whole file. False only when the
// target file cannot be opened.
bool StbReceiveUpgradeFile::AcceptOne() {
    if (!WaitReadable(m_ListenFd)) return true;
    int conn = accept(m_ListenFd, nullptr, nullptr);
    if (conn < 0) {
        if (errno == EINTR) {
            stbav::LogError(m_Logger, "%s", kEintrText);
        } else {
            stbav::LogError(m_Logger, RECEIVER_LOG_PREFIX "Error: call accept %s!\n", strerror(errno));
            // A socket that cannot listen fails every accept at once: do not spin.
            KT::CThread::Sleep(kPollTimeoutMs);
        }
        return true;
    }
    m_ConnFd = conn;
    fcntl(conn, F_SETFL, fcntl(conn, F_GETFL) | O_NONBLOCK);

    char path[kPathBufferSize];
    snprintf(path, sizeof path, "%s", stbav::paths::Resolve(stbav::paths::kUpgradePackage).c_str());
    int file = open(path, O_RDWR | O_CREAT | O_TRUNC, 0777);
    if (file < 0) {
        stbav::LogError(m_Logger, RECEIVER_LOG_PREFIX "Error: call open faild: %s!\n", strerror(errno));
        return false;
    }
    switch (CopyToFile(conn, file)) {
        case ReadEnd::kEndOfStream:
            stbav::LogInfo(m_Logger, RECEIVER_LOG_PREFIX "close connect!\n");
            stbav::LogInfo(m_Logger, RECEIVER_LOG_PREFIX "recv file successfule!\n");
            fsync(file);
            break;
        case ReadEnd::kError:
            stbav::LogError(m_Logger, RECEIVER_LOG_PREFIX "recv file failed!\n");
            break;
        case ReadEnd::kCancelled:
            break;
    }
    if (file > 0) close(file);
    CloseFd(m_ConnFd);
    return true;
}

// Copies the connection into the file until the peer closes, a read fails, or
// the thread is cancelled. The connection is non-blocking: read first, wait
// only when nothing is there.
StbReceiveUpgradeFile::ReadEnd StbReceiveUpgradeFile::CopyToFile(int conn, int file) {
    char buffer[kReceiveBufferSize];
    while (!KT::CThread::IsCancelRequested()) {
        ssize_t n = read(conn, buffer, sizeof buffer);
        if (n > 0) {
            WriteAll(file, buffer, static_cast<size_t>(n));
        } else if (n == 0) {
            return ReadEnd::kEndOfStream;
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            WaitReadable(conn);
        } else if (errno == EINTR) {
            stbav::LogError(m_Logger, "%s", kEintrText);
        } else {
            stbav::LogError(m_Logger, RECEIVER_LOG_PREFIX "Error: call read: %s!\n", strerror(errno));
            return ReadEnd::kError;
        }
    }
    return ReadEnd::kCancelled;
}
