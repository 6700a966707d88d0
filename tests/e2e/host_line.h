// HostLine: the host controller's end of the daemon's serial line, on the master
// side of a real pty pair that it creates; the daemon opens the slave by name.
// Operations are built and framed with the project's own protocol code. Test
// thread only: received bytes are read while waiting (no thread of its own).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "transport/uart_framing.h"

namespace e2e {

// One operation received from the daemon, with the time its frame was complete.
struct HostOp {
    unsigned opId = 0;
    int opType = 0;
    std::vector<unsigned char> index;
    std::vector<unsigned char> data;
    uint64_t monoUs = 0;  // CLOCK_MONOTONIC

    uint64_t Value() const;  // data bytes folded, most significant first
    std::string Text() const { return std::string(data.begin(), data.end()); }
};

uint64_t MonotonicUs();

class HostLine {
public:
    HostLine();
    ~HostLine();

    bool IsOpen() const { return m_Master >= 0; }
    const std::string& DeviceName() const { return m_SlaveName; }

    // Frames and writes the operation. Returns CLOCK_MONOTONIC µs taken right
    // after the last byte was written, or 0 when a write failed.
    uint64_t Send(SsOp& op);
    // A value operation (type 0 unless given, one-byte index 0) with these value bytes.
    uint64_t SendBytes(unsigned opId, const std::vector<unsigned char>& bytes, OpType_e type = OP_TYPE_DATA);
    uint64_t SendU8(unsigned opId, unsigned v) { return SendBytes(opId, {static_cast<unsigned char>(v)}); }
    uint64_t SendU16(unsigned opId, unsigned v);
    uint64_t SendU32(unsigned opId, uint32_t v);
    uint64_t SendText(unsigned opId, const std::string& text);
    // The apply trigger (type 6).
    uint64_t SendApply();
    // Writes bytes as they are (markers, garbage), waiting while the line is full.
    bool SendRaw(const std::vector<unsigned char>& bytes);

    // Reads and decodes until some operation received since the last Clear
    // satisfies pred, or timeoutMs passed.
    bool WaitFor(const std::function<bool(const HostOp&)>& pred, int timeoutMs = 10000);
    bool WaitForOp(unsigned opId, int timeoutMs = 10000);
    bool WaitForValue(unsigned opId, uint64_t value, int timeoutMs = 10000);
    // Waits until count operations with opId arrived since the last Clear.
    bool WaitForCount(unsigned opId, size_t count, int timeoutMs = 10000);
    // Reads whatever arrives during timeoutMs.
    void Drain(int timeoutMs);

    size_t Count(unsigned opId) const;
    // The last operation with opId since the last Clear, or null.
    const HostOp* Last(unsigned opId) const;
    const std::vector<HostOp>& Received() const { return m_Received; }
    void Clear() { m_Received.clear(); }
    // What was received since the last Clear, then Clear.
    std::vector<HostOp> Take() {
        std::vector<HostOp> out;
        out.swap(m_Received);
        return out;
    }
    // Every byte read from the line so far (framing included).
    uint64_t BytesReceived() const { return m_Bytes; }

private:
    void Pump(int timeoutMs);

    int m_Master = -1;
    int m_Slave = -1;  // held open so the line never hangs up under the daemon
    std::string m_SlaveName;
    FrameDecoder m_Decoder;
    std::vector<HostOp> m_Received;
    uint64_t m_Bytes = 0;
};

}  // namespace e2e
