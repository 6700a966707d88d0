// FreeListenPort: a TCP port on which a test can start a server a moment later.
// Header only; safe on any thread.
//
// Not a port the kernel hands out by itself (bind to port 0, or the local port of
// an outgoing connection): those come from the ephemeral range, and between our
// check and the server's bind any connect on the machine can take such a port as
// its local end. A client connecting to a port of that range while the server is
// not listening yet can even be given the same port as its own and connect to
// itself. The port returned here lies below the ephemeral range, starts at an
// offset drawn from the process id (tests run in parallel processes) and is
// checked free by binding it.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdio>

namespace stbav_test {

// 0 when no port of the range is free.
inline uint16_t FreeListenPort() {
    static std::atomic<unsigned> counter{0};
    const unsigned first = 10000;
    // First port of the kernel's ephemeral range (32768 when it cannot be read).
    unsigned low = 32768, high = 60999;
    if (FILE* f = std::fopen("/proc/sys/net/ipv4/ip_local_port_range", "r")) {
        if (std::fscanf(f, "%u %u", &low, &high) != 2) low = 32768;
        std::fclose(f);
    }
    const unsigned span = low > first + 1000 ? low - first : 20000;
    const unsigned start = static_cast<unsigned>(getpid()) * 97u + counter.fetch_add(1) * 7u;
    for (unsigned i = 0; i < span; ++i) {
        const uint16_t port = static_cast<uint16_t>(first + (start + i) % span);
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        if (fd < 0) return 0;
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(port);
        addr.sin_addr.s_addr = htonl(INADDR_ANY);
        const bool free = bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
        close(fd);
        if (free) return port;
    }
    return 0;
}

}  // namespace stbav_test
