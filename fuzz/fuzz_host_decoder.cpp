// Fuzz target: the C host library's streaming decoder (host/). Input: byte 0
// picks the piece size (1 to 32 bytes), the rest is the line, fed piece by
// piece from a block of exactly its size, so any read past it is caught. Every
// operation returned must fit the limits, point into the decoder, and survive
// encoding and decoding again unchanged; the counters must add up.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "stbav/stbav_codec.h"

namespace {

void Check(bool ok) {
    if (!ok) std::abort();
}

// Encodes op and decodes the frame again: the same operation must come back.
void ReEncode(const stbav_op& op) {
    uint8_t frame[STBAV_MAX_FRAME];
    const int n = stbav_encode(frame, sizeof frame, STBAV_DOUBLE_START, &op);
    Check(n > 0 && static_cast<unsigned>(n) <= STBAV_MAX_FRAME);
    stbav_decoder d;
    stbav_decoder_init(&d);
    stbav_op again;
    size_t used = 0;
    Check(stbav_decode(&d, frame, static_cast<size_t>(n), &used, &again) == 1);
    Check(used == static_cast<size_t>(n) && d.bad_frames == 0 && d.dropped_bytes == 0);
    Check(again.type == op.type && again.op_id == op.op_id && again.index_len == op.index_len &&
          again.value_len == op.value_len && again.entry == op.entry);
    Check(std::memcmp(again.index, op.index, op.index_len) == 0 && std::memcmp(again.value, op.value, op.value_len) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const size_t piece = (data[0] & 31u) + 1;
    const size_t len = size - 1;
    std::unique_ptr<uint8_t[]> line(new uint8_t[len]);
    if (len) std::memcpy(line.get(), data + 1, len);
    stbav_decoder d;
    stbav_decoder_init(&d);
    const uint8_t* const lo = d.buf;
    const uint8_t* const hi = d.buf + sizeof d.buf;
    uint32_t ops = 0;
    for (size_t at = 0; at < len;) {
        const size_t n = len - at < piece ? len - at : piece;
        size_t used = 0;
        stbav_op op;
        const int got = stbav_decode(&d, line.get() + at, n, &used, &op);
        Check(used <= n && (got || used == n));
        at += used;
        if (!got) continue;
        ++ops;
        Check(op.index_len <= STBAV_MAX_INDEX && op.value_len <= STBAV_MAX_VALUE);
        Check(op.index >= lo && op.index + op.index_len <= hi && op.value >= lo && op.value + op.value_len <= hi);
        Check(op.entry == stbav_lookup(op.op_id));
        uint32_t instance;
        int64_t v;
        stbav_op_instance(&op, &instance);
        if (op.entry) stbav_value_int(&op, op.entry->value_type, &v);
        ReEncode(op);
    }
    Check(d.frames == ops && d.len <= sizeof d.buf);
    // Every byte is either in a frame (good, bad or under way) or counted as dropped.
    Check(d.dropped_bytes <= len);
    return 0;
}
