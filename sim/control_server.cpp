// Control socket server: poll-driven accept loop with short time-outs so that
// Stop() is noticed promptly.
#include "sim/control_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace stbsim {

namespace {

constexpr int kPollMs = 100;
constexpr int kReadTimeoutMs = 2000;
constexpr size_t kMaxLine = 4096;

bool MakeAddress(const std::string& path, sockaddr_un* addr, std::string* error) {
    memset(addr, 0, sizeof *addr);
    addr->sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof addr->sun_path) {
        *error = "bad socket path '" + path + "'";
        return false;
    }
    memcpy(addr->sun_path, path.c_str(), path.size());
    return true;
}

// Removes a socket file left by an earlier run; anything else is kept.
bool ClearStale(const std::string& path, std::string* error) {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) return true;
    if (!S_ISSOCK(st.st_mode)) {
        *error = path + " exists and is not a socket";
        return false;
    }
    unlink(path.c_str());
    return true;
}

void WriteAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = send(fd, text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;
        done += static_cast<size_t>(n);
    }
}

}  // namespace

CControlServer::CControlServer(Handler handler) : m_handler(std::move(handler)) {}

CControlServer::~CControlServer() { Stop(); }

bool CControlServer::Start(const std::string& path, std::string* error) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_thread.joinable()) {
        if (path == m_path) return true;
        *error = "already serving " + m_path;
        return false;
    }
    sockaddr_un addr;
    if (!MakeAddress(path, &addr, error) || !ClearStale(path, error)) return false;
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0 || listen(fd, 8) != 0) {
        *error = path + ": " + strerror(errno);
        if (fd >= 0) close(fd);
        return false;
    }
    m_path = path;
    m_stop = false;
    m_thread = std::thread(&CControlServer::Loop, this, fd);
    return true;
}

void CControlServer::Stop() {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_thread.joinable()) return;
    m_stop = true;
    m_thread.join();
    unlink(m_path.c_str());
    m_path.clear();
}

bool CControlServer::IsRunning() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_thread.joinable();
}

void CControlServer::Loop(int listenFd) {
    while (!m_stop) {
        pollfd p{listenFd, POLLIN, 0};
        if (poll(&p, 1, kPollMs) <= 0 || !(p.revents & POLLIN)) continue;
        const int fd = accept4(listenFd, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) continue;
        Serve(fd);
        close(fd);
    }
    close(listenFd);
}

void CControlServer::Serve(int fd) {
    std::string line;
    int waitedMs = 0;
    while (!m_stop && waitedMs < kReadTimeoutMs && line.size() < kMaxLine) {
        pollfd p{fd, POLLIN, 0};
        const int r = poll(&p, 1, kPollMs);
        if (r == 0) {
            waitedMs += kPollMs;
            continue;
        }
        char buf[512];
        const ssize_t n = r > 0 ? read(fd, buf, sizeof buf) : -1;
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        line.append(buf, static_cast<size_t>(n));
        if (line.find('\n') != std::string::npos) break;
    }
    const size_t nl = line.find_first_of("\r\n");
    if (nl != std::string::npos) line.resize(nl);
    if (m_stop) return;
    WriteAll(fd, m_handler(line));
}

}  // namespace stbsim
