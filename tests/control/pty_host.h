// PtyHost: plays the host controller on the master side of a real pty pair,
// with the project's own operation record and framing. The daemon under test
// opens the slave by name. Used from the test thread only.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "tests/status/status_test_support.h"
#include "transport/uart_framing.h"

namespace stbav_test {

class PtyHost {
public:
    PtyHost() {
        char name[128] = {0};
        if (openpty(&m_Master, &m_Slave, name, nullptr, nullptr) != 0) return;
        m_SlaveName = name;
        struct termios tio;
        tcgetattr(m_Slave, &tio);
        cfmakeraw(&tio);
        tcsetattr(m_Slave, TCSANOW, &tio);
    }
    ~PtyHost() {
        if (m_Master >= 0) close(m_Master);
        if (m_Slave >= 0) close(m_Slave);  // kept open so the line never hangs up under the daemon
    }

    bool IsOpen() const { return m_Master >= 0; }
    const std::string& SlaveName() const { return m_SlaveName; }

    void Send(SsOp& op) {
        std::vector<unsigned char> image;
        op.GetSerializedOp(image);
        const std::vector<unsigned char> frame = FrameEncoder::EncodeToBytes(image);
        size_t done = 0;
        while (done < frame.size()) {
            ssize_t n = write(m_Master, frame.data() + done, frame.size() - done);
            if (n <= 0) return;
            done += static_cast<size_t>(n);
        }
    }
    // A value operation (type 0, index 0) carrying the given bytes.
    void SendBytes(unsigned int opId, const std::vector<unsigned char>& bytes, OpType_e type = OP_TYPE_DATA) {
        SsOp op(type, opId);
        op.SetDataU8(bytes.data(), static_cast<unsigned int>(bytes.size()));
        op.SetIndexList({0});
        Send(op);
    }
    void SendU8(unsigned int opId, unsigned char v) { SendBytes(opId, {v}); }
    void SendU16(unsigned int opId, unsigned short v) {
        SendBytes(opId, {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
    }
    void SendU32(unsigned int opId, unsigned int v) {
        SendBytes(opId, {static_cast<unsigned char>(v >> 24), static_cast<unsigned char>(v >> 16),
                         static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
    }
    void SendText(unsigned int opId, const std::string& text) {
        SendBytes(opId, std::vector<unsigned char>(text.begin(), text.end()));
    }
    void SendApply() {
        SsOp op(OP_TYPE_APPLY_CONFIG, 0);
        Send(op);
    }

    // Reads from the line until count operations with opId arrived since the
    // last Take, or the deadline passed.
    bool WaitForCount(unsigned int opId, size_t count, int timeoutMs = 10000) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        while (CountOf(opId) < count) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
            if (left <= 0) return false;
            Pump(static_cast<int>(left));
        }
        return true;
    }
    bool WaitForOp(unsigned int opId, int timeoutMs = 10000) { return WaitForCount(opId, 1, timeoutMs); }
    size_t CountOf(unsigned int opId) const {
        size_t n = 0;
        for (const SentOp& op : m_Received) n += op.opId == opId;
        return n;
    }
    std::vector<SentOp> Take() {
        std::vector<SentOp> out;
        out.swap(m_Received);
        return out;
    }

private:
    // Waits up to timeoutMs for bytes and decodes the frames they complete.
    void Pump(int timeoutMs) {
        struct pollfd p = {m_Master, POLLIN, 0};
        if (poll(&p, 1, timeoutMs) <= 0) return;
        unsigned char buf[4096];
        ssize_t n = read(m_Master, buf, sizeof buf);
        for (ssize_t i = 0; i < n; ++i) {
            std::vector<unsigned char> frame;
            if (!m_Decoder.Push(buf[i], frame)) continue;
            SsOp op;
            if (op.DeserializeOp(frame) != 0) m_Received.push_back(ToSentOp(op));
        }
    }

    int m_Master = -1;
    int m_Slave = -1;
    std::string m_SlaveName;
    FrameDecoder m_Decoder;
    std::vector<SentOp> m_Received;
};

}  // namespace stbav_test
