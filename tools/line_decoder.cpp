// Frame splitting and op decoding for the host tool. No I/O, no locks.
#include "tools/line_decoder.h"

#include <cstdio>
#include <string>

namespace avhost {

void LineDecoder::Push(const unsigned char* data, std::size_t len, std::vector<LineFrame>& frames) {
    for (std::size_t i = 0; i < len; ++i) {
        const unsigned char b = data[i];
        // A start marker while idle opens a frame: what was held until now was
        // dropped by the receiver, so it is reported on its own.
        if (b == uart_framing::kStart && !m_decoder.InFrame() && !m_decoder.FrameEnded() && !m_line.empty())
            Emit(LineFrame::kStray, frames);
        m_line.push_back(b);
        if (!m_decoder.Push(b, m_payload)) continue;
        // As the daemon does: one zero byte after the image so the header parse
        // never reads past a short frame.
        m_payload.push_back(0x00);
        LineFrame frame;
        bool ok = frame.op.DeserializeOp(m_payload.data(), static_cast<unsigned>(m_payload.size())) != 0;
        frame.kind = ok ? LineFrame::kOp : LineFrame::kBadFrame;
        frame.line.swap(m_line);
        m_line.clear();
        frames.push_back(std::move(frame));
    }
}

void LineDecoder::Emit(LineFrame::Kind kind, std::vector<LineFrame>& frames) {
    LineFrame frame;
    frame.kind = kind;
    frame.line.swap(m_line);
    m_line.clear();
    frames.push_back(std::move(frame));
}

void LineDecoder::TakeStray(std::vector<LineFrame>& frames) {
    if (!m_decoder.InFrame() && !m_decoder.FrameEnded() && !m_line.empty()) Emit(LineFrame::kStray, frames);
}

bool LineDecoder::Flush(LineFrame& rest) {
    if (m_line.empty()) return false;
    rest = LineFrame();
    rest.kind = m_decoder.InFrame() || m_decoder.FrameEnded() ? LineFrame::kIncomplete : LineFrame::kStray;
    rest.line.swap(m_line);
    m_line.clear();
    m_decoder = FrameDecoder();
    return true;
}

std::vector<Bytes> EncodeOpFrames(SsOp& op) {
    std::vector<Bytes> frames;
    unsigned int offset = 0;
    do {
        unsigned char* image = nullptr;
        unsigned int len = 0;
        if (op.GetSerializedOp(image, len, offset) == 0) break;
        frames.push_back(FrameEncoder::EncodeToBytes(Bytes(image, image + len)));
    } while (offset < op.GetDataLength());
    return frames;
}

std::string HexString(const Bytes& bytes) {
    std::string out;
    char buf[4];
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        snprintf(buf, sizeof buf, i == 0 ? "%02X" : " %02X", bytes[i]);
        out += buf;
    }
    return out;
}

}  // namespace avhost
