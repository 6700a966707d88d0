// The upgrade file receiver over real TCP connections on 127.0.0.1, with the
// fixed paths rooted in a temporary folder. The receiver's thread logs; the test
// thread waits for its lines and reads the target file.
#include "control/stb_receive_upgrade_file.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/e2e/e2e_support.h"
#include "tests/support/free_port.h"
#include "tests/support/log_capture.h"
#include "toolkit/fixed_paths.h"

namespace {

using stbav_test::LogCapture;
using stbav_test::WaitUntil;

#define PREFIX "StbReceiveUpgradeFile::ReceiveUpgradeFileProcess() - "
const char* const kSuccess = PREFIX "recv file successfule!\n";

// Connects to 127.0.0.1:port, retrying while the receiver is not listening yet,
// and writes data (a blocking send writes it whole); the open socket, or -1.
int Connect(uint16_t port, const std::string& data = "") {
    int fd = -1;
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(port);
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    WaitUntil([&] {
        fd = socket(AF_INET, SOCK_STREAM, 0);
        if (connect(fd, reinterpret_cast<const sockaddr*>(&a), sizeof a) == 0) return true;
        close(fd);
        fd = -1;
        return false;
    });
    if (fd < 0 || send(fd, data.data(), data.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(data.size())) return fd;
    close(fd);
    return -1;
}

std::string Pattern(size_t size, char seed) {
    std::string s(size, '\0');
    for (size_t i = 0; i < size; ++i) s[i] = static_cast<char>(seed + i * 7);
    return s;
}

class UpgradeReceiverTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(mkdir((m_Root / "sdcard").c_str(), 0755), 0);
        stbav::paths::SetRoot(m_Root.Path());
        ASSERT_NE(m_Port, 0);
    }
    void TearDown() override { stbav::paths::SetRoot(""); }
    std::string Target() const { return m_Root / "sdcard/update.zip"; }
    std::string ReadTarget() const {
        std::string content;
        e2e::ReadFile(Target(), content);
        return content;
    }
    // The destructor must not hang in accept or read: it has no other way to stop
    // the thread than its own poll time-out.
    void ExpectPromptStop(std::unique_ptr<StbReceiveUpgradeFile>& receiver) {
        const auto start = std::chrono::steady_clock::now();
        receiver.reset();
        const double seconds = stbav_test::SecondsSince(start);
        std::printf("destructor took %.0f ms\n", seconds * 1000);
        EXPECT_LT(seconds, 2.0);  // the goal is about 200 ms; the bound only catches a hang
    }
    void Upload(const std::string& data) {
        ASSERT_TRUE(WaitUntil([&] { return e2e::UploadTcp(m_Port, data); }));  // once the receiver listens
    }

    LogCapture m_Log{"stbav.StbReceiveUpgradeFile"};
    e2e::TempDir m_Root;
    uint16_t m_Port = stbav_test::FreeListenPort();
};

// Each upload replaces the file; an empty connection leaves it empty.
TEST_F(UpgradeReceiverTest, EachUploadReplacesThePreviousFile) {
    ASSERT_TRUE(e2e::WriteFile(Target(), "previous package"));
    StbReceiveUpgradeFile receiver(m_Port);
    const std::string uploads[] = {Pattern(100000, 'a'), Pattern(3000, 'q'), ""};
    for (size_t i = 0; i < 3; ++i) {
        Upload(uploads[i]);
        ASSERT_TRUE(m_Log.WaitFor("INFO", kSuccess, i + 1));
        EXPECT_EQ(m_Log.Count("INFO", PREFIX "close connect!\n"), i + 1);
        EXPECT_EQ(ReadTarget(), uploads[i]) << i;
    }
    EXPECT_EQ(m_Log.CountPrefix(PREFIX "Error"), 0u);
}

TEST_F(UpgradeReceiverTest, ResetMidTransferLeavesPartialFileAndLogsFailure) {
    StbReceiveUpgradeFile receiver(m_Port);
    int fd = Connect(m_Port, Pattern(5000, 'x'));
    ASSERT_GE(fd, 0);
    ASSERT_TRUE(WaitUntil([&] { return ReadTarget().size() == 5000; }));
    linger lg{1, 0};  // close with a reset instead of an orderly end of stream
    setsockopt(fd, SOL_SOCKET, SO_LINGER, &lg, sizeof lg);
    close(fd);

    ASSERT_TRUE(m_Log.WaitFor("ERROR", PREFIX "recv file failed!\n"));
    std::string readError = std::string(PREFIX "Error: call read: ") + strerror(ECONNRESET) + "!\n";
    EXPECT_TRUE(m_Log.Has("ERROR", readError));
    EXPECT_FALSE(m_Log.Has("INFO", kSuccess));
    EXPECT_EQ(ReadTarget(), Pattern(5000, 'x'));

    // The receiver goes on with the next connection.
    Upload("next");
    ASSERT_TRUE(m_Log.WaitFor("INFO", kSuccess));
    EXPECT_EQ(ReadTarget(), "next");
}

TEST_F(UpgradeReceiverTest, MissingTargetFolderLogsOpenFailureAndStopsServing) {
    ASSERT_EQ(rmdir((m_Root / "sdcard").c_str()), 0);
    auto receiver = std::make_unique<StbReceiveUpgradeFile>(m_Port);
    int fd = Connect(m_Port);
    ASSERT_GE(fd, 0);
    std::string text = std::string(PREFIX "Error: call open faild: ") + strerror(ENOENT) + "!\n";
    ASSERT_TRUE(m_Log.WaitFor("ERROR", text));
    // The connection stays open until the receiver is destroyed, which closes it.
    receiver.reset();
    char byte;
    EXPECT_EQ(recv(fd, &byte, 1, 0), 0);
    close(fd);
}

TEST_F(UpgradeReceiverTest, PortInUseIsReportedAndTheReceiverStillStops) {
    auto first = std::make_unique<StbReceiveUpgradeFile>(m_Port);
    Upload("");  // the first one listens
    {
        StbReceiveUpgradeFile second(m_Port);
        std::string text = std::string(PREFIX "Warning: call bind port ") + std::to_string(m_Port) + ": " +
                           strerror(EADDRINUSE) + "!\n";
        EXPECT_TRUE(m_Log.WaitFor("WARN", text));
    }
    ASSERT_TRUE(m_Log.WaitFor("INFO", kSuccess));
    ExpectPromptStop(first);  // idle in accept
}

TEST_F(UpgradeReceiverTest, DestructorReturnsPromptlyMidTransfer) {
    auto receiver = std::make_unique<StbReceiveUpgradeFile>(m_Port);
    int fd = Connect(m_Port, "partial");
    ASSERT_GE(fd, 0);
    ASSERT_TRUE(WaitUntil([&] { return ReadTarget().size() == 7; }));
    ExpectPromptStop(receiver);  // in read
    close(fd);
}

}  // namespace
