// Bytes of the serial line for the transport and host library tests: an image
// framed as the daemon sends it, and parts joined into one buffer. Any thread.
#pragma once

#include <initializer_list>
#include <vector>

#include "transport/uart_framing.h"

using Bytes = std::vector<unsigned char>;

inline Bytes Frame(const Bytes& image) { return FrameEncoder::EncodeToBytes(image); }

inline Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}
