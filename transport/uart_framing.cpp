// Frame encoding and decoding over byte buffers. No I/O, no locks.
#include "transport/uart_framing.h"

using namespace uart_framing;

namespace {

const unsigned char kStartByte[1] = {kStart};
const unsigned char kEndByte[1] = {kEnd};
const unsigned char kEscapeByte[1] = {kEscape};
// The changed form of each special byte, 0x0F..0x13.
const unsigned char kEscaped[5] = {0x0F ^ kEscapeXor, 0x10 ^ kEscapeXor, 0x11 ^ kEscapeXor, 0x12 ^ kEscapeXor,
                                   0x13 ^ kEscapeXor};

}  // namespace

void FrameEncoder::Encode(const unsigned char* payload, std::size_t len, std::vector<FrameWrite>& writes) {
    writes.clear();
    writes.push_back({kStartByte, 1});
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < len; ++i) {
        if (!IsEscapeChar(payload[i])) continue;
        if (i > runStart) writes.push_back({payload + runStart, i - runStart});
        writes.push_back({kEscapeByte, 1});
        writes.push_back({&kEscaped[payload[i] - 0x0F], 1});
        runStart = i + 1;
    }
    if (len > runStart) writes.push_back({payload + runStart, len - runStart});
    writes.push_back({kEndByte, 1});
}

std::vector<unsigned char> FrameEncoder::EncodeToBytes(const std::vector<unsigned char>& payload) {
    std::vector<FrameWrite> writes;
    Encode(payload.data(), payload.size(), writes);
    std::vector<unsigned char> out;
    for (const FrameWrite& w : writes) out.insert(out.end(), w.data, w.data + w.size);
    return out;
}

bool FrameDecoder::Push(unsigned char byte, std::vector<unsigned char>& frame) {
    switch (byte) {
        case kStart: m_inFrame = true; break;
        case kEnd: m_frameEnded = true; break;
        case kEscape:
            m_escapePending = true;
            if (m_inFrame) ++m_lineBytes;
            break;
        default:
            if (m_escapePending) {
                byte ^= kEscapeXor;
                m_escapePending = false;
            }
            if (m_inFrame) {
                ++m_lineBytes;
                if (!m_dropping) m_buffer.push_back(byte);
            }
            break;
    }
    if (m_inFrame && !m_dropping && m_lineBytes > kMaxStuffedImage) {
        m_dropping = true;
        ++m_droppedFrames;
        std::vector<unsigned char>().swap(m_buffer);
    }
    if (!(m_inFrame && m_frameEnded)) return false;
    const bool complete = !m_dropping;
    if (complete) frame.swap(m_buffer);
    m_buffer.clear();
    m_lineBytes = 0;
    m_inFrame = false;
    m_frameEnded = false;
    m_dropping = false;
    return complete;
}
