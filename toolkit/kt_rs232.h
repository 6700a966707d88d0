// KT::CRs232: a serial port in raw 8N1 mode. One thread reads while others write;
// Read and Write may run at the same time, Open/Close are for the owning thread.
// Read() never spins on a dead device: on an error or hang-up it waits out its
// time-out (and tries to reopen the device by name, so that a re-plugged USB
// serial adapter comes back) and returns 0.
#pragma once

#include <atomic>
#include <mutex>
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
    ~CRs232();

    // Opens the device raw 8N1 at the given bit rate (115200, 9600, ...). Returns
    // success; an already open port is closed first.
    bool Open(const std::string& name, int rate, FlowControl_e flow);
    bool IsValid() const;
    // Reads what is available into buf, waiting at most timeoutMs. Returns the
    // number of bytes read, 0 on time-out, error or hang-up.
    int Read(CSlice<unsigned char>& buf, unsigned timeoutMs);
    // Writes all bytes (retrying partial writes); returns the number written.
    int Write(const CSlice<unsigned char>& buf);
    // Waits until written output has been transmitted.
    void Flush();
    void Close();
    const std::string& Name() const { return m_name; }

private:
    bool Reopen();

    std::atomic<int> m_fd{-1};
    std::string m_name;
    int m_rate = 0;
    FlowControl_e m_flow = FLOW_NONE;
    std::mutex m_openMutex;  // serialises Open/Close/Reopen
};

}  // namespace KT
