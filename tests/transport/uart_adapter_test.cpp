// CUartAdapter over a real pty pair: the test writes and reads the master as the
// host would; the adapter opens the slave by name.
#include "transport/uart_adapter.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/protocol/print_capture.h"
#include "tests/support/log_capture.h"
#include "tests/support/thread_names.h"
#include "tests/support/wait_until.h"
#include "tests/transport/line_bytes.h"
#include "tests/transport/pty_pair.h"
#include "transport/c_op_handler.h"

using stbav_test::ThreadNames;

namespace {

constexpr unsigned kGenerousMs = 10000;

SsOp Op(unsigned opId, Bytes index, Bytes data, OpType_e type = OP_TYPE_DATA) {
    SsOp op(type, opId);
    op.SetIndexList(index);
    op.SetDataU8(data.data(), static_cast<unsigned>(data.size()));
    return op;
}


class UartAdapterPty : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(pty.IsOpen());
        adapter = std::make_unique<CUartAdapter>(pty.SlaveName());
        adapter->RegisterOpHandler(&handler);
        ASSERT_TRUE(adapter->StartReceiveOps());
    }
    void TearDown() override {
        if (adapter) adapter->TerminateReceiveOps();
    }

    // The next received operation's image; empty if none came in time.
    Bytes NextImage() {
        KT::CSharedPtr<SsOp> op;
        return queue.Dequeue(kGenerousMs, op) ? ImageOf(*op) : Bytes{};
    }
    // Sends a marker frame and checks it is the next operation: nothing else came before it.
    void ExpectNothingMoreThenSentinel() {
        const Bytes sentinel = ImageOf(Op(0x7777, {9}, {9}));
        ASSERT_TRUE(pty.Write(Frame(sentinel)));
        EXPECT_EQ(NextImage(), sentinel);
    }

    stbav_test::LogCapture log{"stbav.uartadapter"};  // before the adapter's threads log
    PtyPair pty;
    KT::CMsgQ<KT::CSharedPtr<SsOp>> queue;
    COpHandler handler{&queue};
    std::unique_ptr<CUartAdapter> adapter;
};

}  // namespace

// How the host's bytes arrive (one at a time, several frames in one write, a
// frame over many writes, garbage or a bad frame first, escaped bytes): the
// images come out whole and in order, and nothing else comes before the next frame.
TEST_F(UartAdapterPty, ReceivesFramesHoweverTheBytesArrive) {
    Bytes value(200);
    for (size_t i = 0; i < value.size(); ++i) value[i] = static_cast<unsigned char>(i * 7);
    const Bytes one = ImageOf(Op(0x0105, {1}, {3})), two = ImageOf(Op(0x00F5, {1}, {0x01, 0x00})),
                apply = ImageOf(Op(0x0000, {}, {}, OP_TYPE_APPLY_CONFIG)), big = ImageOf(Op(0x00E2, {2}, value)),
                special = ImageOf(Op(0x100F, {0x11}, {0x0F, 0x10, 0x11, 0x12, 0x13}));
    const struct {
        const char* why;
        Bytes line;
        size_t chunk;  // bytes per write; 0: one write
        std::vector<Bytes> images;
        const char* print;
    } cases[] = {
        {"one byte at a time", Frame(one), 1, {one}, nullptr},
        {"two frames in one write", Concat({Frame(two), Frame(apply)}), 0, {two, apply}, nullptr},
        {"split across many writes", Frame(big), 13, {big}, nullptr},
        {"special bytes escaped", Frame(special), 0, {special}, nullptr},
        {"a bad frame is reported and reception goes on", Concat({{0x0F, 0x00, 0x01, 0x00, 0x05, 0x10}, Frame(one)}),
         0, {one}, "UartRecv: Deserialize Failed"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        PrintCapture prints;
        const size_t step = c.chunk == 0 ? c.line.size() : c.chunk;
        for (size_t i = 0; i < c.line.size(); i += step)
            ASSERT_TRUE(pty.Write(Bytes(c.line.begin() + i, c.line.begin() + std::min(c.line.size(), i + step))));
        for (const Bytes& image : c.images) EXPECT_EQ(NextImage(), image);
        ExpectNothingMoreThenSentinel();
        EXPECT_TRUE(c.print == nullptr || prints.Contains(c.print));
    }
    EXPECT_GT(Frame(special).size(), special.size() + 2) << "the escapes are on the line";
}

// One stuffed frame per operation (of a long value only the first chunk) or per
// WriteData call; a received operation goes out again as it came.
TEST_F(UartAdapterPty, SendOperationAndWriteDataWriteOneStuffedFrameEach) {
    SsOp status = Op(0x0105, {1}, {3}), special = Op(0x1110, {0x12}, {0x0F, 0x13});
    SsOp text = Op(226, {}, Bytes(300, 'z'));
    const struct {
        SsOp* op;
        Bytes line;
    } cases[] = {
        {&status, {0x0F, 0x00, 0x05, 0x01, 0x01, 0x01, 0x01, 0x03, 0x10}},
        {&special, {0x0F, 0x00, 0x12, 0x30, 0x12, 0x31, 0x01, 0x12, 0x32, 0x02, 0x12, 0x2F, 0x12, 0x33, 0x10}},
        {&text, Concat({{0x0F, 0x00, 0xE2, 0x00, 0x00, 240}, Bytes(240, 'z'), {0x10}})},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(adapter->SendOperation(*c.op));
        EXPECT_EQ(pty.Read(c.line.size()), c.line);
    }
    Bytes payload{0x10, 'A', 0x0F};  // WriteData frames the bytes it is given alike
    ASSERT_TRUE(adapter->WriteData(KT::CSlice<unsigned char>(payload.data(), payload.size())));
    EXPECT_EQ(pty.Read(7), (Bytes{0x0F, 0x12, 0x30, 'A', 0x12, 0x2F, 0x10}));
    const Bytes image = ImageOf(Op(0x010F, {1}, {0x07, 0x80}));
    ASSERT_TRUE(pty.Write(Frame(image)));
    KT::CSharedPtr<SsOp> op;
    ASSERT_TRUE(queue.Dequeue(kGenerousMs, op));
    op->SetDataU16(0x0438);  // not serialised again: the cache goes out
    ASSERT_TRUE(adapter->SendOperation(*op));
    EXPECT_EQ(pty.Read(Frame(image).size()), Frame(image));
}

TEST_F(UartAdapterPty, ThreadsCarryTheirNames) {
    const auto each = [](size_t n) {
        return [n] { return ThreadNames().count("UART Rx") == n && ThreadNames().count("UART Px") == n; };
    };
    EXPECT_TRUE(stbav_test::WaitUntil(each(1)));  // the threads name themselves once running
    adapter->TerminateReceiveOps();
    // A joined thread can still show in /proc for a moment (the kernel removes
    // it after waking the joiner): wait for the names to go.
    EXPECT_TRUE(stbav_test::WaitUntil(each(0)));
}

// Waits 2 s by design: it measures the CPU the reader burns on a dead line.
TEST_F(UartAdapterPty, ClosedHostSideDoesNotMakeTheReaderSpin) {
    pty.CloseMaster();
    const std::clock_t cpuBefore = std::clock();  // the whole process's CPU time
    std::this_thread::sleep_for(std::chrono::seconds(2));
    EXPECT_LT(static_cast<double>(std::clock() - cpuBefore) / CLOCKS_PER_SEC, 0.2);  // a failure shows the seconds
    const auto start = std::chrono::steady_clock::now();
    adapter->TerminateReceiveOps();
    EXPECT_LT(stbav_test::SecondsSince(start), 2.0);
}

TEST(UartAdapter, MissingDeviceStartsNoThread) {
    PrintCapture prints;
    const size_t threadsBefore = ThreadNames().size();
    CUartAdapter adapter(std::string("/dev/stbav-no-such-tty"));
    EXPECT_FALSE(adapter.StartReceiveOps());
    EXPECT_EQ(ThreadNames().size(), threadsBefore);
    EXPECT_TRUE(prints.Contains("Uart receive thread error: ReadPort could not be opened"));
    SsOp op;
    EXPECT_FALSE(adapter.SendOperation(op));
    adapter.TerminateReceiveOps();
}

TEST(UartAdapter, PortNames) {
    const struct {
        CUartAdapter::UartPort_e port;
        const char* name;
    } cases[] = {{CUartAdapter::PORT_TTYPS0, "/dev/ttyPS0"}, {CUartAdapter::PORT_TTYUL3, "/dev/ttyUL3"},
                          {CUartAdapter::PORT_TTYAMA0, "/dev/ttyAMA0"}, {CUartAdapter::PORT_TTYS2, "/dev/ttyS2"},
                          {CUartAdapter::PORT_TTYS3, "/dev/ttyS3"}};
    PrintCapture prints;  // the ports do not exist here
    for (const auto& c : cases) EXPECT_EQ(CUartAdapter(c.port, CUartAdapter::BAUD_115200).GetPortString(), c.name);
    testing::internal::CaptureStderr();
    EXPECT_EQ(CUartAdapter(static_cast<CUartAdapter::UartPort_e>(18), CUartAdapter::BAUD_115200).GetPortString(), "");
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "CUartAdapter::GetPortString() No matching value for UartPort_e enum: 18\n"),
              std::string::npos);
}

// A stray end marker puts the receiver out of step: one warning for the whole
// episode however many frames are lost, one notice when a doubled start marker
// brings a frame through again; the counters tell the same story.
TEST_F(UartAdapterPty, OutOfStepEpisodeIsReportedOnceAndEndsWithADoubledStart) {
    const Bytes lost = ImageOf(Op(0x0105, {1}, {3}));
    ASSERT_TRUE(pty.Write(Concat({{0x10}, Frame(lost), Frame(lost), Frame(lost)})));
    ASSERT_TRUE(stbav_test::WaitUntil([&] { return adapter->GetFrameCounters().received == 3; }));
    const Bytes kept = ImageOf(Op(0x0106, {1}, {4}));
    ASSERT_TRUE(pty.Write(Concat({{0x0F}, Frame(kept)})));
    EXPECT_EQ(NextImage(), kept);
    ASSERT_TRUE(stbav_test::WaitUntil([&] { return log.Lines().size() == 2; }));
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               std::string("WARN stbav.uartadapter: ") + CUartAdapter::kOutOfStepWarning,
                               "NOTICE stbav.uartadapter: UartRecv: back in step with the host after 4 empty frames"}));
    const CUartAdapter::FrameCounters c = adapter->GetFrameCounters();
    // Received: 3 empty, the one closed by the doubled start, the kept one.
    EXPECT_EQ(std::make_tuple(c.received, c.decoded, c.failed), std::make_tuple(5u, 1u, 4u));
}

// Megabytes with no end marker: one line for the dropped frame, the byte queue
// and the frame buffer stay small (the host's writes wait instead), and the next
// frame after the flood's end marker arrives.
TEST_F(UartAdapterPty, FloodWithoutEndMarkerIsDroppedWithOneLine) {
    Bytes flood(8 * 1024 * 1024, 0x41);
    flood[0] = 0x0F;
    flood.back() = 0x10;
    ASSERT_TRUE(pty.Write(flood));  // blocks while the receiver's queue is full
    ExpectNothingMoreThenSentinel();
    EXPECT_EQ(log.Count("WARN", "UartRecv: frame longer than 1030 bytes dropped; its bytes are skipped up to its "
                                "end marker"), 1u);
    EXPECT_EQ(adapter->GetFrameCounters().failed, 1u);
}
