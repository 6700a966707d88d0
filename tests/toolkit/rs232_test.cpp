// Tests of KT::CRs232 over a real pseudo-terminal pair: the port opens the slave by
// name, the test plays the host on the master side.
#include <time.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/wait_until.h"
#include "tests/transport/pty_pair.h"
#include "toolkit/kt_rs232.h"
#include "toolkit/kt_thread.h"

namespace {

using stbav_test::SecondsSince;
using stbav_test::WaitUntil;
using Clock = std::chrono::steady_clock;
using Bytes = std::vector<unsigned char>;

double ThreadCpuSeconds() {
    struct timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) / 1e9;
}

// The test plays the host on the master of a pty pair left in its default
// (cooked) mode, so the port itself must make the line raw.
class Rs232Test : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(pty.IsOpen());
        ASSERT_TRUE(port.Open(pty.SlaveName(), 115200, KT::CRs232::FLOW_SOFTWARE));
    }
    // Reads through the port until n bytes came, up to 10 s.
    Bytes ReadPort(size_t n) {
        Bytes got;
        Bytes buf(8264);
        const auto deadline = Clock::now() + std::chrono::seconds(10);
        while (got.size() < n && Clock::now() < deadline) {
            KT::CSlice<unsigned char> slice(buf);
            int r = port.Read(slice, 100);
            if (r > 0) got.insert(got.end(), buf.begin(), buf.begin() + r);
        }
        return got;
    }

    PtyPair pty{false};
    KT::CRs232 port;
};

// Every byte value, flow-control and line-discipline characters included
// (0x00, 0x03, 0x0A, 0x0D, 0x11, 0x13, 0x7F), goes through untouched both ways;
// a write larger than the pty's buffer completes while the other side reads.
TEST_F(Rs232Test, EveryByteValueCrossesRawBothWaysAndALargeWriteCompletes) {
    Bytes all(256);
    for (int i = 0; i < 256; ++i) all[i] = static_cast<unsigned char>(i);
    ASSERT_TRUE(pty.Write(all));
    EXPECT_EQ(ReadPort(all.size()), all);

    Bytes big(256 * 1024);  // every byte value in each run of 256
    for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<unsigned char>(i * 7 + (i >> 8));
    Bytes received;
    std::thread host([&] { received = pty.Read(big.size()); });
    KT::CSlice<unsigned char> slice(big);
    EXPECT_EQ(port.Write(slice), static_cast<int>(big.size()));
    port.Flush();
    host.join();
    EXPECT_TRUE(received == big);
}

// The host side goes away: reads must keep returning 0 after their time-out
// without burning CPU (a pty then polls readable and reads 0 forever).
TEST_F(Rs232Test, ReadLoopOnAHungUpPtyDoesNotSpin) {
    ASSERT_TRUE(pty.Write({0x0F, 0x11, 0x10}));
    ASSERT_EQ(ReadPort(3).size(), 3u);
    pty.CloseMaster();

    int reads = 0;
    int bytes = 0;
    Bytes buf(8264);
    const double cpuStart = ThreadCpuSeconds();
    const auto start = Clock::now();
    while (SecondsSince(start) < 1.0) {
        KT::CSlice<unsigned char> slice(buf);
        bytes += port.Read(slice, 200);
        ++reads;
    }
    const double cpu = ThreadCpuSeconds() - cpuStart;
    std::printf("hung-up pty: %d reads of 200 ms in 1 s used %.6f s CPU\n", reads, cpu);
    RecordProperty("hung_up_read_cpu_us", static_cast<int>(cpu * 1e6));
    EXPECT_EQ(bytes, 0);
    EXPECT_LE(reads, 7);
    EXPECT_LT(cpu, 0.05);
    EXPECT_FALSE(port.IsValid());  // the node is gone, so it stays closed
}

// A reader blocked for a minute comes back at once when the owner closes the
// port (or, had the close come first, when its worker thread is cancelled).
TEST_F(Rs232Test, CloseAndCancelEndABlockedRead) {
    std::atomic<bool> entered{false};
    std::atomic<int> result{-1};
    KT::CThread reader(
        [&] {
            Bytes buf(64);
            KT::CSlice<unsigned char> slice(buf);
            entered = true;
            result = port.Read(slice, 60000);
            return false;
        },
        "UART Rx", 0);
    ASSERT_TRUE(reader.Run());
    ASSERT_TRUE(WaitUntil([&] { return entered.load(); }));
    auto start = Clock::now();
    port.Close();
    WaitUntil([&] { return result.load() >= 0; }, std::chrono::seconds(2));
    reader.Cancel();
    EXPECT_LT(SecondsSince(start), 5.0);
    EXPECT_EQ(result.load(), 0);
    EXPECT_FALSE(port.IsValid());
}

// Reads time out with 0 on an open port and on a closed one; a closed port
// writes nothing, closes again harmlessly and can be reopened.
TEST_F(Rs232Test, ReadTimeOutCloseAndReopen) {
    Bytes buf(8);
    KT::CSlice<unsigned char> slice(buf);
    for (int closes : {0, 2}) {
        for (int i = 0; i < closes; ++i) port.Close();
        auto start = Clock::now();
        EXPECT_EQ(port.Read(slice, 100), 0) << closes;
        EXPECT_GE(SecondsSince(start), 0.09) << closes;
    }
    EXPECT_EQ(port.Write(slice), 0);
    port.Flush();
    ASSERT_TRUE(port.Open(pty.SlaveName(), 9600, KT::CRs232::FLOW_NONE));
    ASSERT_TRUE(pty.Write({0x13}));
    EXPECT_EQ(ReadPort(1), Bytes{0x13});
}

TEST(Rs232Open, FailsOnMissingDeviceUnknownRateOrNonTerminal) {
    PtyPair pty;
    const struct {
        std::string device;
        int rate;
        int error;
    } cases[] = {
        {"/dev/kt-no-such-serial-device", 115200, ENOENT},
        {pty.SlaveName(), 12345, EINVAL},
        {pty.SlaveName(), 0, EINVAL},
        {"/dev/null", 115200, ENOTTY},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.device + " @ " + std::to_string(c.rate));
        KT::CRs232 port;
        EXPECT_FALSE(port.Open(c.device, c.rate, KT::CRs232::FLOW_SOFTWARE));
        EXPECT_FALSE(port.IsValid());
        EXPECT_EQ(port.OpenError(), c.error);
    }
    KT::CRs232 port;
    for (int rate : {9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600}) {
        EXPECT_TRUE(port.Open(pty.SlaveName(), rate, KT::CRs232::FLOW_SOFTWARE)) << rate;
    }
}

// One user per line: a second port on the same device is refused while the
// first is open (even in the same process), the first keeps reading every byte,
// and the device is free again once the first closes.
TEST_F(Rs232Test, SecondOpenerIsRefusedAndTheFirstKeepsTheLine) {
    KT::CRs232 second;
    EXPECT_FALSE(second.Open(pty.SlaveName(), 115200, KT::CRs232::FLOW_SOFTWARE));
    EXPECT_EQ(second.OpenError(), EBUSY);
    EXPECT_EQ(second.OpenErrorText(pty.SlaveName()),
              pty.SlaveName() + ": in use by another program (a serial line has one user at a time)");
    const Bytes sent = {1, 2, 3, 4, 5};
    ASSERT_TRUE(pty.Write(sent));
    EXPECT_EQ(ReadPort(sent.size()), sent);
    port.Close();
    EXPECT_TRUE(second.Open(pty.SlaveName(), 115200, KT::CRs232::FLOW_SOFTWARE));
}

}  // namespace
