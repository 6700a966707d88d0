// CUartAdapter: port handling, the "UART Rx" reader, the "UART Px" frame
// processor and the framed send path.
#include "transport/uart_adapter.h"

#include <sys/prctl.h>

#include <iostream>
#include <vector>

#include "toolkit/kt_print.h"
#include "transport/uart_framing.h"

namespace {

constexpr unsigned kReadBufferSize = 8264;
constexpr unsigned kWaitMs = 500;

const char* const kPortNames[] = {
    nullptr,         "/dev/ttyPS0",  "/dev/ttyPS1",  "/dev/ttyPS2",  "/dev/ttyPS3", "/dev/ttyUL0",
    "/dev/ttyUL1",   "/dev/ttyUL2",  "/dev/ttyUL3",  "/dev/ttyAMA0", "/dev/ttyAMA1", "/dev/ttyAMA2",
    "/dev/ttyAMA3",  "/dev/ttyS0",   "/dev/ttyS1",   "/dev/ttyS2",   "/dev/ttyS3",
};

}  // namespace

CUartAdapter::CUartAdapter(UartPort_e p, BaudRate_e rate) : uartPort(p), baudRate(rate) { OpenUartPort(); }

CUartAdapter::CUartAdapter(const std::string& deviceName)
    : uartPort(PORT_NAMED), baudRate(BAUD_115200), portName(deviceName) {
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
// is drained promptly; one signal per read, not per byte.
void CUartAdapter::ReadIntoQueue() {
    std::vector<unsigned char> buffer(kReadBufferSize);
    KT::MyPrintf("Uart receive thread running");
    while (rxRunning) {
        KT::CSlice<unsigned char> slice(buffer);
        int n = port.Read(slice, kWaitMs);
        if (n <= 0) continue;
        rxLock.Lock();
        rxBytes.insert(rxBytes.end(), buffer.begin(), buffer.begin() + n);
        rxLock.Unlock();
        rxSignal.Signal();
    }
}

// Pops the front byte under rxLock; false when the queue was already empty.
bool CUartAdapter::PopByte(unsigned char& byte, bool& emptyAfter) {
    KT::CMutexLock lock(rxLock);
    if (rxBytes.empty()) return false;
    byte = rxBytes.front();
    rxBytes.pop_front();
    emptyAfter = rxBytes.empty();
    return true;
}

// "UART Px": drains the byte queue through the frame decoder after each signal.
void CUartAdapter::ProcessDataIntoOperations() {
    FrameDecoder decoder;
    std::vector<unsigned char> frame;
    KT::MyPrintf("Uart processing thread running");
    while (pxRunning) {
        if (!rxSignal.Wait(kWaitMs)) continue;
        unsigned char byte = 0;
        bool empty = false;
        while (!empty && PopByte(byte, empty)) {
            if (decoder.Push(byte, frame)) DispatchFrame(frame);
        }
    }
}

void CUartAdapter::DispatchFrame(std::vector<unsigned char>& frame) {
    frame.push_back(0x00);  // the header parse may read one byte past a short image
    KT::CSharedPtr<SsOp> op(new SsOp());
    if (op->DeserializeOp(frame.data(), static_cast<unsigned>(frame.size())) == 0) {
        KT::MyPrintf("UartRecv: Deserialize Failed");
    } else {
        SendOpToHandlers(op);
    }
    frame.clear();
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
