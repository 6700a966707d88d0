// Upload over a real TCP socket on 127.0.0.1 to a small receiver (a thread of the
// test) that stores what it reads until the uploader closes its side.
#include "tools/uploader.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/e2e/e2e_support.h"

namespace avhost {
namespace {

TEST(Uploader, SendsTheWholeFileAndEndsItByClosing) {
    std::string content(300 * 1024 + 7, '\0');
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 131 % 251);
    const e2e::TempDir dir;
    const std::string path = dir / "upload.bin";
    ASSERT_TRUE(e2e::WriteFile(path, content));
    // The receiver: an ephemeral port of 127.0.0.1, one connection read to its end.
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof addr;
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&addr), len), 0);
    ASSERT_EQ(listen(listener, 1), 0);
    ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&addr), &len), 0);
    std::string received;
    std::thread server([&] {
        const int conn = accept(listener, nullptr, nullptr);
        char buf[8192];
        for (ssize_t n; (n = read(conn, buf, sizeof buf)) > 0;) received.append(buf, static_cast<size_t>(n));
        close(conn);
    });
    uint64_t lastSent = 0, lastTotal = 0;
    int calls = 0;
    UploadResult result;
    std::string error;
    bool ok = Uploader::Upload(
        path, "127.0.0.1", ntohs(addr.sin_port),
        [&](uint64_t sent, uint64_t total) {
            EXPECT_GE(sent, lastSent);
            lastSent = sent;
            lastTotal = total;
            ++calls;
        },
        result, error);
    server.join();
    close(listener);
    ASSERT_TRUE(ok) << error;
    EXPECT_TRUE(received == content);
    EXPECT_EQ(result.bytes, content.size());
    EXPECT_EQ(lastSent, content.size());
    EXPECT_EQ(lastTotal, content.size());
    EXPECT_GT(calls, 1);
}

TEST(Uploader, ProgressAndSummaryTexts) {
    EXPECT_EQ(Uploader::ProgressBar(512 * 1024, 1024 * 1024, 10), "[#####     ]   50%  512.0 KiB / 1.0 MiB");
    EXPECT_EQ(Uploader::ProgressBar(0, 0, 4), "[####]  100%  0 B / 0 B");
    EXPECT_EQ(Uploader::Summary(UploadResult{2 * 1024 * 1024, 0.5}), "2097152 bytes in 0.50 s (4.00 MiB/s)");
}

}  // namespace
}  // namespace avhost
