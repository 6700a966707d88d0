// The host's end of the serial line over a pty master. Test thread only.
#include "tests/e2e/host_line.h"

#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace e2e {

uint64_t HostOp::Value() const {
    uint64_t v = 0;
    for (unsigned char b : data) v = (v << 8) | b;
    return v;
}

uint64_t MonotonicUs() {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint64_t>(ts.tv_sec) * 1000000u + static_cast<uint64_t>(ts.tv_nsec) / 1000u;
}

HostLine::HostLine() {
    char name[128] = {0};
    if (openpty(&m_Master, &m_Slave, name, nullptr, nullptr) != 0) {
        m_Master = m_Slave = -1;
        return;
    }
    m_SlaveName = name;
    for (int fd : {m_Slave, m_Master}) {
        termios tio;
        tcgetattr(fd, &tio);
        cfmakeraw(&tio);
        tcsetattr(fd, TCSANOW, &tio);
    }
}

HostLine::~HostLine() {
    for (int fd : {m_Master, m_Slave})
        if (fd >= 0) close(fd);
}

uint64_t HostLine::Send(SsOp& op) {
    std::vector<unsigned char> image;
    op.GetSerializedOp(image);
    return SendRaw(FrameEncoder::EncodeToBytes(image)) ? MonotonicUs() : 0;
}

bool HostLine::SendRaw(const std::vector<unsigned char>& bytes) {
    for (size_t done = 0; done < bytes.size();) {
        ssize_t n = write(m_Master, bytes.data() + done, bytes.size() - done);
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

uint64_t HostLine::SendBytes(unsigned opId, const std::vector<unsigned char>& bytes, OpType_e type) {
    SsOp op(type, opId);
    op.SetDataU8(bytes.data(), static_cast<unsigned>(bytes.size()));
    op.SetIndexList({0});
    return Send(op);
}

uint64_t HostLine::SendU16(unsigned opId, unsigned v) {
    return SendBytes(opId, {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
}

uint64_t HostLine::SendU32(unsigned opId, uint32_t v) {
    return SendBytes(opId, {static_cast<unsigned char>(v >> 24), static_cast<unsigned char>(v >> 16),
                            static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
}

uint64_t HostLine::SendText(unsigned opId, const std::string& text) {
    return SendBytes(opId, std::vector<unsigned char>(text.begin(), text.end()));
}

uint64_t HostLine::SendApply() {
    SsOp op(OP_TYPE_APPLY_CONFIG, 0);
    return Send(op);
}

bool HostLine::WaitFor(const std::function<bool(const HostOp&)>& pred, int timeoutMs) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    size_t checked = 0;
    for (;;) {
        for (; checked < m_Received.size(); ++checked)
            if (pred(m_Received[checked])) return true;
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (left <= 0) return false;
        Pump(static_cast<int>(left));
    }
}

bool HostLine::WaitForOp(unsigned opId, int timeoutMs) {
    return WaitFor([opId](const HostOp& op) { return op.opId == opId; }, timeoutMs);
}

bool HostLine::WaitForValue(unsigned opId, uint64_t value, int timeoutMs) {
    return WaitFor([=](const HostOp& op) { return op.opId == opId && op.Value() == value; }, timeoutMs);
}

bool HostLine::WaitForCount(unsigned opId, size_t count, int timeoutMs) {
    return WaitFor([&](const HostOp&) { return Count(opId) >= count; }, timeoutMs) || Count(opId) >= count;
}

void HostLine::Drain(int timeoutMs) {
    WaitFor([](const HostOp&) { return false; }, timeoutMs);
}

size_t HostLine::Count(unsigned opId) const {
    return std::count_if(m_Received.begin(), m_Received.end(), [&](const HostOp& op) { return op.opId == opId; });
}

const HostOp* HostLine::Last(unsigned opId) const {
    for (auto it = m_Received.rbegin(); it != m_Received.rend(); ++it)
        if (it->opId == opId) return &*it;
    return nullptr;
}

void HostLine::Pump(int timeoutMs) {
    pollfd p = {m_Master, POLLIN, 0};
    if (poll(&p, 1, timeoutMs) <= 0) return;
    unsigned char buf[4096];
    const ssize_t n = read(m_Master, buf, sizeof buf);
    if (n <= 0) {
        // The daemon closed its side: no more bytes will come for a while.
        usleep(static_cast<useconds_t>(std::min(timeoutMs, 20)) * 1000);
        return;
    }
    const uint64_t now = MonotonicUs();
    m_Bytes += static_cast<uint64_t>(n);
    for (ssize_t i = 0; i < n; ++i) {
        std::vector<unsigned char> frame;
        if (!m_Decoder.Push(buf[i], frame)) continue;
        SsOp op;
        if (op.DeserializeOp(frame) == 0) continue;
        m_Received.push_back({op.GetOpId(), static_cast<int>(op.GetOpType()), op.GetIndexList(), op.GetRawData(), now});
    }
}

}  // namespace e2e
