// Bytes of the serial line for the protocol, transport and host library tests:
// an operation's image, an image framed as the daemon sends it, and parts joined
// into one buffer. Any thread.
#pragma once

#include <initializer_list>
#include <vector>

#include "protocol/ss_op.h"
#include "transport/uart_framing.h"

using Bytes = std::vector<unsigned char>;

// The image the operation goes out as (its cached one, if it has one).
inline Bytes ImageOf(SsOp& op) {
    Bytes image;
    op.GetSerializedOp(image);
    return image;
}
inline Bytes ImageOf(SsOp&& op) { return ImageOf(op); }

inline Bytes Frame(const Bytes& image) { return FrameEncoder::EncodeToBytes(image); }

inline Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}
