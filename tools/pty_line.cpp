// A pty pair made by the tool: the host on the master, the daemon on the slave.
#include "tools/pty_line.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

namespace avhost {

PtyLine::~PtyLine() {
    if (m_master >= 0) close(m_master);
    if (m_slave >= 0) close(m_slave);
}

bool PtyLine::Open(std::string& error) {
    char name[128] = {0};
    if (openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0) {
        error = std::string("cannot create a pty pair: ") + std::strerror(errno);
        return false;
    }
    m_slaveName = name;
    struct termios tio;
    tcgetattr(m_slave, &tio);
    cfmakeraw(&tio);
    cfsetispeed(&tio, B115200);
    cfsetospeed(&tio, B115200);
    tcsetattr(m_slave, TCSANOW, &tio);
    fcntl(m_master, F_SETFL, fcntl(m_master, F_GETFL) | O_NONBLOCK);
    fcntl(m_master, F_SETFD, FD_CLOEXEC);
    fcntl(m_slave, F_SETFD, FD_CLOEXEC);
    return true;
}

int PtyLine::Read(unsigned char* buf, std::size_t size, unsigned timeoutMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    struct pollfd p = {m_master, POLLIN, 0};
    if (poll(&p, 1, static_cast<int>(timeoutMs)) > 0 && (p.revents & POLLIN)) {
        ssize_t n = read(m_master, buf, size);
        if (n > 0) return static_cast<int>(n);
    }
    // Nothing read, or an error: wait out the time-out so a read loop never spins.
    std::this_thread::sleep_until(deadline);
    return 0;
}

bool PtyLine::Write(const unsigned char* data, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        ssize_t n = write(m_master, data + done, size - done);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EINTR) return false;
        struct pollfd p = {m_master, POLLOUT, 0};
        if (poll(&p, 1, 2000) <= 0) return false;
    }
    return true;
}

}  // namespace avhost
