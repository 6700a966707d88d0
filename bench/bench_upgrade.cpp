// Throughput of the upgrade file receiver: one 100 MB upload over 127.0.0.1 per
// iteration, from connect to the receiver closing the connection (which it does
// after the file is written, synced and closed). Fixed paths rooted in /tmp.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "control/stb_receive_upgrade_file.h"
#include "toolkit/fixed_paths.h"

namespace {

const size_t kUploadBytes = 100u * 1024 * 1024;
const size_t kChunk = 64 * 1024;

uint16_t FreePort() {
    int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    close(s);
    return ntohs(a.sin_port);
}

int Connect(uint16_t port) {
    for (int attempt = 0; attempt < 5000; ++attempt) {
        int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(port);
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0) return fd;
        close(fd);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return -1;
}

// Sends the whole package, ends the stream and waits for the receiver's close.
bool UploadOnce(uint16_t port, const std::vector<char>& chunk) {
    int fd = Connect(port);
    if (fd < 0) return false;
    for (size_t sent = 0; sent < kUploadBytes;) {
        ssize_t n = send(fd, chunk.data(), std::min(chunk.size(), kUploadBytes - sent), MSG_NOSIGNAL);
        if (n <= 0) {
            close(fd);
            return false;
        }
        sent += static_cast<size_t>(n);
    }
    shutdown(fd, SHUT_WR);
    char byte;
    bool closedByReceiver = recv(fd, &byte, 1, 0) == 0;
    close(fd);
    return closedByReceiver;
}

void BM_Upload100MB(benchmark::State& state) {
    char tmpl[] = "/tmp/stbav-bench-upgrade-XXXXXX";
    std::string root = mkdtemp(tmpl);
    mkdir((root + "/sdcard").c_str(), 0755);
    stbav::paths::SetRoot(root);
    uint16_t port = FreePort();
    std::vector<char> chunk(kChunk);
    for (size_t i = 0; i < chunk.size(); ++i) chunk[i] = static_cast<char>(i * 31);
    {
        StbReceiveUpgradeFile receiver(port);
        for (auto _ : state) {
            if (!UploadOnce(port, chunk)) {
                state.SkipWithError("upload failed");
                break;
            }
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kUploadBytes));
    stbav::paths::SetRoot("");
    std::system(("rm -rf " + root).c_str());
}
BENCHMARK(BM_Upload100MB)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
