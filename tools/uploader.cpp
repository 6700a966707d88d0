// TCP upload of an upgrade package. Caller's thread.
#include "tools/uploader.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

namespace avhost {

namespace {

constexpr std::size_t kChunk = 64 * 1024;
constexpr int kCloseWaitMs = 10000;

int Connect(const std::string& host, uint16_t port, std::string& error) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const std::string where = host + ":" + std::to_string(port);
    int rc = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (rc != 0) {
        error = "cannot resolve " + host + ": " + gai_strerror(rc);
        return -1;
    }
    int fd = -1;
    for (addrinfo* a = found; a != nullptr; a = a->ai_next) {
        fd = socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC, a->ai_protocol);
        if (fd < 0) continue;
        if (connect(fd, a->ai_addr, a->ai_addrlen) == 0) break;
        error = "cannot connect to " + where + ": " + std::strerror(errno);
        close(fd);
        fd = -1;
    }
    freeaddrinfo(found);
    return fd;
}

bool SendAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        ssize_t n = send(fd, data, size, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

// After our side is closed: the receiver closes its side once the file is
// stored. Not hearing that in time is not an error; the bytes were sent.
void AwaitPeerClose(int fd) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kCloseWaitMs);
    char sink[256];
    while (std::chrono::steady_clock::now() < end) {
        pollfd p = {fd, POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) continue;
        if (recv(fd, sink, sizeof sink, 0) <= 0) return;
    }
}

}  // namespace

bool Uploader::Upload(const std::string& path, const std::string& host, uint16_t port, const Progress& progress,
                      UploadResult& result, std::string& error) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        error = "cannot read " + path + ": " + std::strerror(errno);
        return false;
    }
    const uint64_t total = static_cast<uint64_t>(file.tellg());
    file.seekg(0);
    const auto start = std::chrono::steady_clock::now();
    int fd = Connect(host, port, error);
    if (fd < 0) return false;
    std::vector<char> chunk(kChunk);
    uint64_t sent = 0;
    bool ok = true;
    while (ok) {
        file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        const std::size_t got = static_cast<std::size_t>(file.gcount());
        if (got == 0) break;
        ok = SendAll(fd, chunk.data(), got);
        if (!ok) {
            error = "sending to " + host + ":" + std::to_string(port) + " failed: " + std::strerror(errno);
            break;
        }
        sent += got;
        if (progress) progress(sent, total);
    }
    if (ok) {
        shutdown(fd, SHUT_WR);
        AwaitPeerClose(fd);
    }
    close(fd);
    result.bytes = sent;
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return ok;
}

std::string Uploader::SizeText(uint64_t bytes) {
    char buf[32];
    if (bytes < 1024) snprintf(buf, sizeof buf, "%llu B", static_cast<unsigned long long>(bytes));
    else if (bytes < 1024 * 1024) snprintf(buf, sizeof buf, "%.1f KiB", bytes / 1024.0);
    else snprintf(buf, sizeof buf, "%.1f MiB", bytes / (1024.0 * 1024.0));
    return buf;
}

std::string Uploader::ProgressBar(uint64_t sent, uint64_t total, unsigned width) {
    const double part = total == 0 ? 1.0 : static_cast<double>(sent) / static_cast<double>(total);
    const unsigned filled = static_cast<unsigned>(part * width + 0.5);
    char pct[16];
    snprintf(pct, sizeof pct, "%4.0f%%", part * 100.0);
    return "[" + std::string(filled, '#') + std::string(width - filled, ' ') + "] " + pct + "  " + SizeText(sent) +
           " / " + SizeText(total);
}

std::string Uploader::Summary(const UploadResult& result) {
    char buf[96];
    const double rate = result.seconds > 0 ? result.bytes / result.seconds / (1024.0 * 1024.0) : 0.0;
    snprintf(buf, sizeof buf, "%llu bytes in %.2f s (%.2f MiB/s)", static_cast<unsigned long long>(result.bytes),
             result.seconds, rate);
    return buf;
}

}  // namespace avhost
