// CUartAdapter: carries operations over the serial line to and from the host.
// It is the operation bus: received operations go to the registered handlers on
// its "UART Px" thread; "UART Rx" only reads bytes. SendOperation and WriteData
// may be called from any thread (whole frames under the transmit lock). The owner
// calls TerminateReceiveOps before destroying it. Framing: transport/uart_framing.h.
#pragma once

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <string>

#include <log4cpp/Category.hh>

#include "protocol/ss_op.h"
#include "toolkit/kt_mutex.h"
#include "toolkit/kt_rs232.h"
#include "toolkit/kt_semaphore.h"
#include "toolkit/kt_slice.h"
#include "transport/comm_bus.h"

class CUartAdapter : public CommBus {
public:
    // The port to open; PORT_NAMED opens the device given to the string constructor.
    enum UartPort_e {
        PORT_TTYPS0 = 1, PORT_TTYPS1 = 2, PORT_TTYPS2 = 3, PORT_TTYPS3 = 4,
        PORT_TTYUL0 = 5, PORT_TTYUL1 = 6, PORT_TTYUL2 = 7, PORT_TTYUL3 = 8,
        PORT_TTYAMA0 = 9, PORT_TTYAMA1 = 10, PORT_TTYAMA2 = 11, PORT_TTYAMA3 = 12,
        PORT_TTYS0 = 13, PORT_TTYS1 = 14, PORT_TTYS2 = 15, PORT_TTYS3 = 16,
        PORT_NAMED = 17,
    };
    // Bit rates; the value is the rate itself and goes unchanged to KT::CRs232::Open.
    enum BaudRate_e {
        BAUD_9600 = 9600, BAUD_19200 = 19200, BAUD_38400 = 38400, BAUD_57600 = 57600,
        BAUD_115200 = 115200, BAUD_230400 = 230400, BAUD_460800 = 460800, BAUD_921600 = 921600,
    };

    // Both constructors try to open the port at once; a missing port is retried
    // by StartReceiveOps.
    CUartAdapter(UartPort_e port, BaudRate_e baudRate);
    // PORT_NAMED with that device at 115200 bit/s.
    explicit CUartAdapter(const std::string& deviceName);
    // Stops and joins the threads if the owner has not done so.
    ~CUartAdapter() override;

    // Opens the port unless it is already open; returns whether it is open.
    bool OpenUartPort();
    // The device name of the selected port; empty (and a line on stderr) for an unknown value.
    std::string GetPortString() const;

    // Sets the running flags, opens the port and, if it is open, starts "UART Rx"
    // and "UART Px". Returns whether the port is open; starts no thread otherwise.
    // Controlling thread; handlers must be registered before.
    virtual bool StartReceiveOps();
    // Clears the flags, flushes and closes the port, joins the threads (each
    // notices within one 500 ms time-out). Controlling thread, never a handler.
    virtual void TerminateReceiveOps();

    // Sends the operation's cached image (serialised on first use: at most 240
    // value bytes; longer values go chunk by chunk through WriteData). True only
    // if every write wrote all its bytes. Any thread.
    bool SendOperation(SsOp& op) override;
    // Writes one frame around the payload. True only if every write was complete;
    // a short write does not stop the frame. Any thread.
    bool WriteData(const KT::CSlice<unsigned char>& payload);

    static bool IsEscapeChar(unsigned char b);

    // Frames the receiver has completed since start: every frame closed by its
    // end marker (dropped overlong ones included), those that gave an operation,
    // and the rest. Any thread.
    struct FrameCounters {
        unsigned long received = 0;
        unsigned long decoded = 0;
        unsigned long failed = 0;
    };
    FrameCounters GetFrameCounters() const;
    // One log line with the counters, at notice level (on request) or debug level
    // (the steady report of "UART Px", once a minute). Any thread.
    void LogFrameCounters(bool onRequest) const;

    // The out-of-step warning, as logged (tests and the host guide quote it).
    static const char* const kOutOfStepWarning;

    // Thread entry points; arg is the adapter. Both return 0 (null).
    static void* ReceiveOperations(void* arg);
    static void* ProcessOperations(void* arg);

private:
    void ReadIntoQueue();
    void ProcessDataIntoOperations();
    bool WaitForQueueSpace();
    std::size_t PopBytes(unsigned char* out, std::size_t max);
    void DispatchFrame(std::vector<unsigned char>& frame);
    void NoteFrameResult(bool empty, bool decoded);
    bool WriteFrameLocked(const unsigned char* payload, std::size_t len);
    bool StartThread(pthread_t& handle, bool& started, void* (*entry)(void*));

    log4cpp::Category& m_Log;           // "stbav.uartadapter", fetched on the constructing thread
    pthread_t rxThread{};
    bool rxStarted = false;             // rxThread is set; controlling thread only
    std::atomic<bool> rxRunning{false};
    pthread_t pxThread{};
    bool pxStarted = false;             // pxThread is set; controlling thread only
    std::atomic<bool> pxRunning{false};
    KT::CRs232 port;
    UartPort_e uartPort;
    BaudRate_e baudRate;
    std::deque<unsigned char> rxBytes;  // guarded by rxLock
    bool rxFull = false;                // guarded by rxLock: "UART Rx" waits for rxSpace
    KT::CSemaphore rxSignal{0};         // one count per successful read
    KT::CSemaphore rxSpace{0};          // the queue has room again
    KT::CMutex rxLock{"CUartAdapter"};
    KT::CMutex txLock{"CUartAdapter"};  // held for one whole frame
    std::string portName;

    std::atomic<unsigned long> framesReceived{0};
    std::atomic<unsigned long> framesDecoded{0};
    // "UART Px" only: the current out-of-step episode and its lost frames.
    bool outOfStep = false;
    unsigned long framesLostOutOfStep = 0;
};
