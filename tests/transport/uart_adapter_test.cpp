// CUartAdapter over a real pty pair: the test writes and reads the master as the
// host would; the adapter opens the slave by name.
#include "transport/uart_adapter.h"

#include <dirent.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/protocol/print_capture.h"
#include "tests/support/log_capture.h"
#include "tests/transport/pty_pair.h"
#include "transport/c_op_handler.h"
#include "transport/uart_framing.h"

using Bytes = std::vector<unsigned char>;

namespace {

constexpr unsigned kGenerousMs = 10000;

Bytes ImageOf(unsigned opId, Bytes index, Bytes data, OpType_e type = OP_TYPE_DATA) {
    SsOp op(type, opId);
    op.SetIndexList(index);
    op.SetDataU8(data.data(), static_cast<unsigned>(data.size()));
    Bytes image;
    op.GetSerializedOp(image);
    return image;
}

Bytes Frame(const Bytes& image) { return FrameEncoder::EncodeToBytes(image); }

Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}

std::multiset<std::string> ThreadNames() {
    std::multiset<std::string> names;
    DIR* dir = opendir("/proc/self/task");
    while (dirent* e = readdir(dir)) {
        if (e->d_name[0] == '.') continue;
        std::ifstream comm(std::string("/proc/self/task/") + e->d_name + "/comm");
        std::string name;
        std::getline(comm, name);
        names.insert(name);
    }
    closedir(dir);
    return names;
}

// Polls the predicate every few ms for up to 10 s.
template <typename Pred>
bool WaitFor(Pred pred) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!pred()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

double ProcessCpuSeconds() {
    timespec ts;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
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
        if (!queue.Dequeue(kGenerousMs, op)) return {};
        Bytes image;
        op->GetSerializedOp(image);
        return image;
    }
    // Sends a marker frame and checks it is the next operation: nothing else came before it.
    void ExpectNothingMoreThenSentinel() {
        const Bytes sentinel = ImageOf(0x7777, {9}, {9});
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

TEST_F(UartAdapterPty, ReceivesAFrameWrittenOneByteAtATime) {
    const Bytes image = ImageOf(0x0105, {1}, {3});
    for (unsigned char b : Frame(image)) ASSERT_TRUE(pty.Write({b}));
    EXPECT_EQ(NextImage(), image);
    ExpectNothingMoreThenSentinel();
}

TEST_F(UartAdapterPty, ReceivesTwoFramesFromOneWriteInOrder) {
    const Bytes a = ImageOf(0x00F5, {1}, {0x01, 0x00});
    const Bytes b = ImageOf(0x0000, {}, {}, OP_TYPE_APPLY_CONFIG);
    ASSERT_TRUE(pty.Write(Concat({Frame(a), Frame(b)})));
    EXPECT_EQ(NextImage(), a);
    EXPECT_EQ(NextImage(), b);
    ExpectNothingMoreThenSentinel();
}

TEST_F(UartAdapterPty, AssemblesAFrameSplitAcrossManyWrites) {
    Bytes value(200);
    for (size_t i = 0; i < value.size(); ++i) value[i] = static_cast<unsigned char>(i * 7);
    const Bytes image = ImageOf(0x00E2, {2}, value);
    const Bytes line = Frame(image);
    for (size_t i = 0; i < line.size(); i += 13) {
        Bytes piece(line.begin() + i, line.begin() + std::min(line.size(), i + 13));
        ASSERT_TRUE(pty.Write(piece));
    }
    EXPECT_EQ(NextImage(), image);
}

TEST_F(UartAdapterPty, DropsGarbageBeforeTheFirstStartMarker) {
    const Bytes image = ImageOf(0x0106, {1}, {2});
    ASSERT_TRUE(pty.Write(Concat({{0xAA, 0x55, 0x11, 0x13, 0x00}, Frame(image)})));
    EXPECT_EQ(NextImage(), image);
    ExpectNothingMoreThenSentinel();
}

TEST_F(UartAdapterPty, UnescapesSpecialBytesOnReceipt) {
    const Bytes image = ImageOf(0x100F, {0x11}, {0x0F, 0x10, 0x11, 0x12, 0x13});
    const Bytes line = Frame(image);
    EXPECT_GT(line.size(), image.size() + 2);
    ASSERT_TRUE(pty.Write(line));
    EXPECT_EQ(NextImage(), image);
}

TEST_F(UartAdapterPty, BadFrameIsReportedAndReceptionGoesOn) {
    PrintCapture prints;
    const Bytes image = ImageOf(0x0107, {1}, {4});
    ASSERT_TRUE(pty.Write(Concat({{0x0F, 0x00, 0x01, 0x00, 0x05, 0x10}, Frame(image)})));
    EXPECT_EQ(NextImage(), image);
    EXPECT_TRUE(prints.Contains("UartRecv: Deserialize Failed"));
}

TEST_F(UartAdapterPty, SendOperationWritesOneStuffedFrame) {
    SsOp status(OP_TYPE_DATA, 0x0105);
    status.SetIndexList({1});
    status.SetDataU8(3);
    ASSERT_TRUE(adapter->SendOperation(status));
    const Bytes line{0x0F, 0x00, 0x05, 0x01, 0x01, 0x01, 0x01, 0x03, 0x10};
    EXPECT_EQ(pty.Read(line.size()), line);

    SsOp special(OP_TYPE_DATA, 0x1110);
    special.SetIndexList({0x12});
    special.SetDataU16(0x0F13);
    ASSERT_TRUE(adapter->SendOperation(special));
    const Bytes expected{0x0F, 0x00, 0x12, 0x30, 0x12, 0x31, 0x01, 0x12, 0x32, 0x02, 0x12, 0x2F, 0x12, 0x33, 0x10};
    EXPECT_EQ(pty.Read(expected.size()), expected);
}

TEST_F(UartAdapterPty, AReceivedOperationIsEchoedFromItsCache) {
    const Bytes image = ImageOf(0x010F, {1}, {0x07, 0x80});
    ASSERT_TRUE(pty.Write(Frame(image)));
    KT::CSharedPtr<SsOp> op;
    ASSERT_TRUE(queue.Dequeue(kGenerousMs, op));
    op->SetDataU16(0x0438);  // not serialised again: the cache goes out
    ASSERT_TRUE(adapter->SendOperation(*op));
    EXPECT_EQ(pty.Read(Frame(image).size()), Frame(image));
}

TEST_F(UartAdapterPty, LongValueGoesOutChunkByChunk) {
    std::string text(300, ' ');
    for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(i % 40 == 0 ? 0x10 : 'A' + i % 26);
    SsOp op(OP_TYPE_DATA, 226);
    op.SetIndexList({1});
    op.SetDataU8(text);

    Bytes expectedLine;
    unsigned int offset = 0;
    while (offset < op.GetDataLength()) {
        unsigned char* ptr = nullptr;
        unsigned int len = 0;
        op.GetSerializedOp(ptr, len, offset);
        ASSERT_TRUE(adapter->WriteData(KT::CSlice<unsigned char>(ptr, len)));
        Bytes line = Frame(Bytes(ptr, ptr + len));
        expectedLine.insert(expectedLine.end(), line.begin(), line.end());
    }
    Bytes got = pty.Read(expectedLine.size());
    ASSERT_EQ(got, expectedLine);

    FrameDecoder decoder;
    Bytes frame;
    std::string reassembled;
    int frames = 0;
    for (unsigned char b : got) {
        if (!decoder.Push(b, frame)) continue;
        frame.push_back(0);
        SsOp chunk;
        ASSERT_GT(chunk.DeserializeOp(frame.data(), static_cast<unsigned>(frame.size())), 0u);
        EXPECT_EQ(chunk.GetOpId(), 226u);
        reassembled += chunk.GetDataString();
        ++frames;
    }
    EXPECT_EQ(frames, 2);
    EXPECT_EQ(reassembled, text);
}

TEST_F(UartAdapterPty, SendOperationSendsOnlyTheFirstChunkOfALongValue) {
    SsOp op(OP_TYPE_DATA, 226);
    op.SetDataU8(std::string(300, 'z'));
    ASSERT_TRUE(adapter->SendOperation(op));
    const Bytes expected = Concat({{0x0F, 0x00, 0xE2, 0x00, 0x00, 240}, Bytes(240, 'z'), {0x10}});
    EXPECT_EQ(pty.Read(expected.size()), expected);
}

TEST_F(UartAdapterPty, ThreadsCarryTheirNames) {
    // The threads name themselves once running.
    EXPECT_TRUE(WaitFor([] {
        std::multiset<std::string> names = ThreadNames();
        return names.count("UART Rx") == 1 && names.count("UART Px") == 1;
    }));
    adapter->TerminateReceiveOps();
    // A joined thread can still show in /proc for a moment (the kernel removes
    // it after waking the joiner): wait for the names to go.
    EXPECT_TRUE(WaitFor([] {
        std::multiset<std::string> names = ThreadNames();
        return names.count("UART Rx") == 0 && names.count("UART Px") == 0;
    }));
}

// Waits 2 s by design: it measures the CPU the reader burns on a dead line.
TEST_F(UartAdapterPty, ClosedHostSideDoesNotMakeTheReaderSpin) {
    pty.CloseMaster();
    const double cpuBefore = ProcessCpuSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    const double cpuUsed = ProcessCpuSeconds() - cpuBefore;
    RecordProperty("cpu_seconds_over_2s", std::to_string(cpuUsed));
    EXPECT_LT(cpuUsed, 0.2);

    const auto start = std::chrono::steady_clock::now();
    adapter->TerminateReceiveOps();
    const double terminateSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    RecordProperty("terminate_seconds", std::to_string(terminateSeconds));
    std::printf("dead pty: cpu %.4f s over 2 s, terminate %.4f s\n", cpuUsed, terminateSeconds);
    EXPECT_LT(terminateSeconds, 2.0);
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
    struct Case {
        CUartAdapter::UartPort_e port;
        const char* name;
    };
    const Case cases[] = {{CUartAdapter::PORT_TTYPS0, "/dev/ttyPS0"}, {CUartAdapter::PORT_TTYUL3, "/dev/ttyUL3"},
                          {CUartAdapter::PORT_TTYAMA0, "/dev/ttyAMA0"}, {CUartAdapter::PORT_TTYS2, "/dev/ttyS2"},
                          {CUartAdapter::PORT_TTYS3, "/dev/ttyS3"}};
    PrintCapture prints;  // the ports do not exist here
    for (const Case& c : cases) EXPECT_EQ(CUartAdapter(c.port, CUartAdapter::BAUD_115200).GetPortString(), c.name);
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
    const Bytes lost = ImageOf(0x0105, {1}, {3});
    ASSERT_TRUE(pty.Write(Concat({{0x10}, Frame(lost), Frame(lost), Frame(lost)})));
    ASSERT_TRUE(stbav_test::WaitUntil([&] { return adapter->GetFrameCounters().received == 3; }));
    const Bytes kept = ImageOf(0x0106, {1}, {4});
    ASSERT_TRUE(pty.Write(Concat({{0x0F}, Frame(kept)})));
    EXPECT_EQ(NextImage(), kept);
    ASSERT_TRUE(stbav_test::WaitUntil([&] { return log.Lines().size() == 2; }));
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               std::string("WARN stbav.uartadapter: ") + CUartAdapter::kOutOfStepWarning,
                               "NOTICE stbav.uartadapter: UartRecv: back in step with the host after 4 empty frames"}));
    const CUartAdapter::FrameCounters c = adapter->GetFrameCounters();
    EXPECT_EQ(c.received, 5u);  // 3 empty, the one closed by the doubled start, the kept one
    EXPECT_EQ(c.decoded, 1u);
    EXPECT_EQ(c.failed, 4u);
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
