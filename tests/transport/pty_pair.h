// PtyPair: a real pseudo-terminal pair for serial tests. The code under test
// opens the slave by name; the test plays the host on the master.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

class PtyPair {
public:
    // raw: the slave set raw here; otherwise it keeps the default (cooked) mode.
    explicit PtyPair(bool raw = true) {
        char name[128] = {0};
        if (openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0) return;
        m_slaveName = name;
        if (!raw) return;
        struct termios tio;
        tcgetattr(m_slave, &tio);
        cfmakeraw(&tio);
        tcsetattr(m_slave, TCSANOW, &tio);
    }
    ~PtyPair() {
        CloseMaster();
        if (m_slave >= 0) close(m_slave);
    }

    bool IsOpen() const { return m_master >= 0; }
    const std::string& SlaveName() const { return m_slaveName; }
    void CloseMaster() {
        if (m_master >= 0) close(m_master);
        m_master = -1;
    }

    bool Write(const std::vector<unsigned char>& bytes) {
        return write(m_master, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    // Reads until count bytes arrived or the deadline passed; returns what came.
    std::vector<unsigned char> Read(size_t count, int deadlineMs = 10000) {
        std::vector<unsigned char> out;
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadlineMs);
        while (out.size() < count) {
            int left = static_cast<int>(
                std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count());
            if (left <= 0) break;
            struct pollfd p = {m_master, POLLIN, 0};
            if (poll(&p, 1, left) <= 0) continue;
            unsigned char buf[4096];
            ssize_t n = read(m_master, buf, std::min(sizeof buf, count - out.size()));
            if (n <= 0) break;
            out.insert(out.end(), buf, buf + n);
        }
        return out;
    }

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_slaveName;
};
