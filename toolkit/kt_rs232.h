// KT::CRs232: a serial port in raw 8N1 mode. One thread reads while others write;
// Read and Write may run at the same time, Open/Close are for the owning thread.
// Read() never spins on a dead device: on an error or hang-up it waits out its
// time-out (and tries to reopen the device by name, so that a re-plugged USB
// serial adapter comes back) and returns 0. The owner owns the descriptor.
#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <string>

#include "toolkit/kt_slice.h"
#include "toolkit/kt_uncopyable.h"

namespace KT {

class CRs232 : private CUncopyable {
public:
    // What each value does in this implementation:
    //  FLOW_NONE (0)     no flow control.
    //  FLOW_HARDWARE (1) RTS/CTS (CRTSCTS).
    //  FLOW_SOFTWARE (2) the line reserves XON/XOFF: the framing above escapes
    //                    0x11 and 0x13, so the driver's own IXON/IXOFF handling is
    //                    left off and an unescaped XON/XOFF byte still reaches the
    //                    reader as data.
    enum FlowControl_e { FLOW_NONE = 0, FLOW_HARDWARE = 1, FLOW_SOFTWARE = 2 };

    CRs232();
    // Closes the port. No Read or Write may still be running.
    ~CRs232();

    // Opens the device (O_RDWR | O_NOCTTY, non-blocking) raw 8N1 with CLOCAL and
    // CREAD at the given bit rate: 1200 to 921600 in the standard steps. Returns
    // success; false for an unknown rate, a missing device, one that is not a
    // terminal, or one another port holds. An already open port is closed first.
    // Owner's thread.
    // The port is exclusive: it holds an flock() on the device for as long as it
    // is open, and sets TIOCEXCL so that programs which do not lock are refused
    // too (except privileged ones). A second opener (another daemon, avhost, or
    // another CRs232 in the same process) fails with EBUSY; the first keeps every
    // byte of the line.
    bool Open(const std::string& name, int rate, FlowControl_e flow);
    // Why the last Open failed: EINVAL (rate), ENOTTY (not a terminal), EBUSY
    // (in use), or the error of open(2). 0 after a successful Open. Owner's thread.
    int OpenError() const { return m_openError; }
    // One line for a person: "DEVICE: REASON" for the last failed Open.
    std::string OpenErrorText(const std::string& name) const;
    // True while a device is open (false after Close, or after a hang-up until the
    // device could be reopened).
    bool IsValid() const;
    // Reads what is available into buf, waiting at most timeoutMs. Returns the
    // number of bytes read, or 0 on time-out, error, hang-up or closed port. On
    // anything but a time-out it first waits out the rest of timeoutMs (cut short
    // when the calling KT::CThread is cancelled), so a loop of reads never spins.
    // On a hang-up or I/O error the device is closed and, once that wait is over,
    // reopened by name if it is back (a re-plugged USB adapter). Pseudo-terminals
    // are never reopened: their node goes with the master and its number may be
    // reused by another pair. Close() ends a pending Read at once (it returns 0).
    // One reading thread.
    int Read(CSlice<unsigned char>& buf, unsigned timeoutMs);
    // Writes all bytes, retrying partial writes; gives up when the device accepts
    // nothing for 2 s, fails, or is closed. Returns the number of bytes written.
    // Any thread, at the same time as Read.
    int Write(const CSlice<unsigned char>& buf);
    // Waits until written output has left the driver's queue, for at most the
    // time the queued bytes take at the bit rate plus 100 ms (RTS/CTS can stall
    // a line forever, so tcdrain() is not trusted with that); then tcdrain() for
    // the last bytes unless hardware flow control is on. Any thread.
    void Flush();
    // Closes the port; wakes a Read or Write that is waiting on it and waits for
    // it to leave. Owner's thread; safe when not open.
    void Close();
    const std::string& Name() const { return m_name; }

private:
    enum class ReadEnd { kData, kTimeout, kWoken, kNoData, kDead };

    // Opens, locks and configures a device; the descriptor, or -1 with error set.
    static int OpenConfigured(const std::string& name, int rate, FlowControl_e flow, int& error);
    ReadEnd ReadFd(int fd, CSlice<unsigned char>& buf, std::chrono::steady_clock::time_point deadline, int& got);
    bool WaitWritable(int fd);
    // Takes fd out of use if it is still the current one: wakes waiters, waits
    // for in-flight I/O to leave, closes it. Caller holds m_openMutex.
    void DetachLocked(int fd);
    // After a hang-up: opens the device again when the owner still wants it open.
    bool Reopen();

    std::atomic<int> m_fd{-1};
    std::atomic<bool> m_wanted{false};  // the owner opened and has not closed the port
    std::string m_name;                 // guarded by m_openMutex (Name(): owner only)
    std::atomic<int> m_rate{0};
    std::atomic<FlowControl_e> m_flow{FLOW_NONE};
    bool m_isPty = false;               // guarded by m_openMutex
    int m_openError = 0;                // owner's thread
    std::mutex m_openMutex;             // serialises Open/Close/Reopen
    // Held shared by Read/Write/Flush while they use the descriptor, exclusive to
    // close it, so a descriptor is never closed (and its number reused) under them.
    std::shared_mutex m_ioMutex;
    int m_wake[2] = {-1, -1};           // pipe: a byte in it tells waiters the fd is going
};

}  // namespace KT
