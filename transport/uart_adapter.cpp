// CUartAdapter: port handling, the "UART Rx" reader, the "UART Px" frame
// processor and the framed send path.
#include "transport/uart_adapter.h"

#include <sys/prctl.h>

#include <algorithm>
#include <iostream>
#include <vector>

#include "toolkit/kt_print.h"
#include "toolkit/log.h"
#include "transport/uart_framing.h"

namespace {

constexpr unsigned kReadBufferSize = 8264;
constexpr unsigned kWaitMs = 500;
// Bytes read but not yet decoded; past this "UART Rx" stops reading until
// "UART Px" has taken half of them (the line's own buffers hold the rest).
constexpr std::size_t kMaxQueued = 64 * 1024;
constexpr std::size_t kPopBatch = 4096;
constexpr auto kCounterReportPeriod = std::chrono::seconds(60);


const char* const kPortNames[] = {
    nullptr,         "/dev/ttyPS0",  "/dev/ttyPS1",  "/dev/ttyPS2",  "/dev/ttyPS3", "/dev/ttyUL0",
    "/dev/ttyUL1",   "/dev/ttyUL2",  "/dev/ttyUL3",  "/dev/ttyAMA0", "/dev/ttyAMA1", "/dev/ttyAMA2",
    "/dev/ttyAMA3",  "/dev/ttyS0",   "/dev/ttyS1",   "/dev/ttyS2",   "/dev/ttyS3",
};

}  // namespace

const char* const CUartAdapter::kOutOfStepWarning =
    "UartRecv: out of step with the host: an end marker came outside a frame, so every start marker now closes an "
    "empty frame and the operation after it is lost; the host should start each frame with two start markers "
    "(0F 0F) to get back in step";

CUartAdapter::CUartAdapter(UartPort_e p, BaudRate_e rate)
    : m_Log(stbav::Logger("stbav.uartadapter")), uartPort(p), baudRate(rate) {
    OpenUartPort();
}

CUartAdapter::CUartAdapter(const std::string& deviceName)
    : m_Log(stbav::Logger("stbav.uartadapter")), uartPort(PORT_NAMED), baudRate(BAUD_115200), portName(deviceName) {
    OpenUartPort();
}

CUartAdapter::~CUartAdapter() {
    rxRunning = false;
    if (rxStarted || pxStarted) TerminateReceiveOps();
}

bool CUartAdapter::OpenUartPort() {
    if (port.IsValid()) return true;
    if (!port.Open(GetPortString(), baudRate, KT::CRs232::FLOW_SOFTWARE)) {
        KT::MyPrintf("Uart receive thread error: ReadPort could not be opened");
        return false;
    }
    return true;
}

std::string CUartAdapter::GetPortString() const {
    if (uartPort == PORT_NAMED) return portName;
    if (uartPort >= PORT_TTYPS0 && uartPort <= PORT_TTYS3) return kPortNames[uartPort];
    std::cerr << "CUartAdapter::GetPortString() No matching value for UartPort_e enum: " << uartPort << std::endl;
    return std::string();
}

bool CUartAdapter::StartThread(pthread_t& handle, bool& started, void* (*entry)(void*)) {
    if (started) return true;
    started = pthread_create(&handle, nullptr, entry, this) == 0;
    if (!started) KT::MyPrintf("Uart thread could not be started");
    return started;
}

bool CUartAdapter::StartReceiveOps() {
    rxRunning = true;
    pxRunning = true;
    if (!OpenUartPort()) return false;
    bool ok = StartThread(rxThread, rxStarted, &CUartAdapter::ReceiveOperations);
    ok = StartThread(pxThread, pxStarted, &CUartAdapter::ProcessOperations) && ok;
    return ok;
}

void CUartAdapter::TerminateReceiveOps() {
    rxRunning = false;
    pxRunning = false;
    port.Flush();
    port.Close();
    rxSignal.Signal();  // lets "UART Px" see the cleared flag without waiting out its time-out
    rxSpace.Signal();   // and "UART Rx" if it waits for room in the queue
    if (rxStarted) pthread_join(rxThread, nullptr);
    if (pxStarted) pthread_join(pxThread, nullptr);
    rxStarted = false;
    pxStarted = false;
}

bool CUartAdapter::IsEscapeChar(unsigned char b) { return uart_framing::IsEscapeChar(b); }

void* CUartAdapter::ReceiveOperations(void* arg) {
    prctl(PR_SET_NAME, "UART Rx", 0, 0, 0);
    static_cast<CUartAdapter*>(arg)->ReadIntoQueue();
    return nullptr;
}

void* CUartAdapter::ProcessOperations(void* arg) {
    prctl(PR_SET_NAME, "UART Px", 0, 0, 0);
    static_cast<CUartAdapter*>(arg)->ProcessDataIntoOperations();
    return nullptr;
}

// "UART Rx": no parsing here, and the lock is held only for the copy, so the port
// is drained promptly; one signal per read, not per byte. A full queue stops the
// reading until "UART Px" catches up, so memory stays flat under any flood.
void CUartAdapter::ReadIntoQueue() {
    std::vector<unsigned char> buffer(kReadBufferSize);
    KT::MyPrintf("Uart receive thread running");
    while (rxRunning) {
        if (!WaitForQueueSpace()) continue;
        KT::CSlice<unsigned char> slice(buffer);
        int n = port.Read(slice, kWaitMs);
        if (n <= 0) continue;
        rxLock.Lock();
        rxBytes.insert(rxBytes.end(), buffer.begin(), buffer.begin() + n);
        rxLock.Unlock();
        rxSignal.Signal();
    }
}

// True when the queue has room; otherwise waits at most one time-out for it.
bool CUartAdapter::WaitForQueueSpace() {
    {
        KT::CMutexLock lock(rxLock);
        if (rxBytes.size() < kMaxQueued) return true;
        rxFull = true;
    }
    rxSpace.Wait(kWaitMs);
    return false;
}

// Takes up to max bytes from the front of the queue under rxLock; 0 when empty.
std::size_t CUartAdapter::PopBytes(unsigned char* out, std::size_t max) {
    KT::CMutexLock lock(rxLock);
    const std::size_t n = rxBytes.size() < max ? rxBytes.size() : max;
    std::copy(rxBytes.begin(), rxBytes.begin() + static_cast<std::ptrdiff_t>(n), out);
    rxBytes.erase(rxBytes.begin(), rxBytes.begin() + static_cast<std::ptrdiff_t>(n));
    if (rxFull && rxBytes.size() <= kMaxQueued / 2) {
        rxFull = false;
        rxSpace.Signal();
    }
    return n;
}

// "UART Px": drains the byte queue through the frame decoder after each signal.
void CUartAdapter::ProcessDataIntoOperations() {
    FrameDecoder decoder;
    std::vector<unsigned char> frame;
    std::vector<unsigned char> batch(kPopBatch);
    unsigned long dropped = 0;
    auto nextReport = std::chrono::steady_clock::now() + kCounterReportPeriod;
    KT::MyPrintf("Uart processing thread running");
    while (pxRunning) {
        const bool signalled = rxSignal.Wait(kWaitMs);
        if (std::chrono::steady_clock::now() >= nextReport) {
            LogFrameCounters(false);
            nextReport = std::chrono::steady_clock::now() + kCounterReportPeriod;
        }
        if (!signalled) continue;
        std::size_t n;
        while (pxRunning && (n = PopBytes(batch.data(), batch.size())) > 0) {
            for (std::size_t i = 0; i < n; ++i) {
                if (decoder.Push(batch[i], frame)) DispatchFrame(frame);
                if (decoder.DroppedFrames() == dropped) continue;
                dropped = decoder.DroppedFrames();
                ++framesReceived;  // closed or not, it counts as a failed frame
                stbav::LogWarn(m_Log, "UartRecv: frame longer than %zu bytes dropped; its bytes are skipped up to "
                               "its end marker", uart_framing::kMaxStuffedImage);
            }
        }
    }
}

void CUartAdapter::DispatchFrame(std::vector<unsigned char>& frame) {
    const bool empty = frame.empty();
    frame.push_back(0x00);  // the header parse may read one byte past a short image
    KT::CSharedPtr<SsOp> op(new SsOp());
    const bool decoded = op->DeserializeOp(frame.data(), static_cast<unsigned>(frame.size())) != 0;
    NoteFrameResult(empty, decoded);
    if (!decoded) {
        KT::MyPrintf("UartRecv: Deserialize Failed");
    } else {
        SendOpToHandlers(op);
    }
    frame.clear();
}

// An empty frame is what a start marker closes when an end marker came before
// it: the host and the receiver are out of step until two start markers meet.
void CUartAdapter::NoteFrameResult(bool empty, bool decoded) {
    ++framesReceived;
    if (decoded) ++framesDecoded;
    if (empty) {
        ++framesLostOutOfStep;
        if (outOfStep) return;
        outOfStep = true;
        stbav::LogWarn(m_Log, "%s", kOutOfStepWarning);
    } else if (decoded && outOfStep) {
        outOfStep = false;
        stbav::LogNotice(m_Log, "UartRecv: back in step with the host after %lu empty frames", framesLostOutOfStep);
        framesLostOutOfStep = 0;
    }
}

CUartAdapter::FrameCounters CUartAdapter::GetFrameCounters() const {
    FrameCounters c;
    c.decoded = framesDecoded.load();
    c.received = framesReceived.load();
    c.failed = c.received >= c.decoded ? c.received - c.decoded : 0;
    return c;
}

void CUartAdapter::LogFrameCounters(bool onRequest) const {
    const FrameCounters c = GetFrameCounters();
#define STBAV_FRAME_COUNTERS "UartRecv: frames received=%lu decoded=%lu failed=%lu"
    if (onRequest) stbav::LogNotice(m_Log, STBAV_FRAME_COUNTERS, c.received, c.decoded, c.failed);
    else stbav::LogDebug(m_Log, STBAV_FRAME_COUNTERS, c.received, c.decoded, c.failed);
#undef STBAV_FRAME_COUNTERS
}

bool CUartAdapter::SendOperation(SsOp& op) {
    KT::CMutexLock lock(txLock);
    unsigned char* image = nullptr;
    unsigned int len = 0;
    op.GetSerializedOp(image, len);
    return WriteFrameLocked(image, len);
}

bool CUartAdapter::WriteData(const KT::CSlice<unsigned char>& payload) {
    KT::CMutexLock lock(txLock);
    return WriteFrameLocked(payload.Data(), payload.Size());
}

bool CUartAdapter::WriteFrameLocked(const unsigned char* payload, std::size_t len) {
    std::vector<FrameWrite> writes;
    FrameEncoder::Encode(payload, len, writes);
    bool complete = true;
    for (const FrameWrite& w : writes) {
        // Write only reads the bytes; the markers live in read-only storage.
        KT::CSlice<unsigned char> slice(const_cast<unsigned char*>(w.data), w.size);
        if (port.Write(slice) != static_cast<int>(w.size)) complete = false;
    }
    port.Flush();
    return complete;
}
