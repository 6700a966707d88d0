// LineDecoder: splits the bytes of one direction of the serial line into frames
// exactly as the daemon's receiver does (transport's FrameDecoder), keeping each
// frame's bytes as they were on the line, and decodes each frame into an SsOp.
// EncodeOpFrames is the other way: the frames that carry one operation.
// Plain values; each instance belongs to one thread.
#pragma once

#include <cstddef>
#include <vector>

#include "protocol/ss_op.h"
#include "transport/uart_framing.h"

namespace avhost {

using Bytes = std::vector<unsigned char>;

struct LineFrame {
    enum Kind {
        kOp,          // a frame that decoded into op
        kBadFrame,    // a complete frame whose content is not an op image
        kStray,       // bytes outside any frame (the receiver drops them)
        kIncomplete,  // the start of a frame that had not ended when the line stopped
    };
    Kind kind = kOp;
    Bytes line;  // the bytes as on the line (stuffed, with markers)
    SsOp op;     // kOp only
};

class LineDecoder {
public:
    // Feeds received bytes; appends what they complete to frames, in line order.
    void Push(const unsigned char* data, std::size_t len, std::vector<LineFrame>& frames);
    // Stray bytes held since the last frame, reported now rather than when the
    // next start marker comes (so they carry the time they arrived). Call after
    // a read; appends nothing while a frame is open or nothing is held.
    void TakeStray(std::vector<LineFrame>& frames);
    // The bytes of a frame still open (kIncomplete) or stray bytes still held
    // (kStray); false when nothing is pending. The decoder starts afresh.
    bool Flush(LineFrame& rest);

private:
    void Emit(LineFrame::Kind kind, std::vector<LineFrame>& frames);

    FrameDecoder m_decoder;
    Bytes m_line;     // line bytes since the last emitted frame
    Bytes m_payload;  // scratch for the decoder's unstuffed frame
};

// The frames (as on the line) that carry op: one per chunk of 240 value bytes,
// at least one. Uses the op's chunking interface, so op's cached image changes.
std::vector<Bytes> EncodeOpFrames(SsOp& op);

// "0F 00 05" (upper-case hex, one blank between bytes).
std::string HexString(const Bytes& bytes);

}  // namespace avhost
