/* stbav host library: the streaming frame decoder and the readers of a decoded
 * operation. One decoder belongs to one thread at a time; all its state is in
 * the caller's stbav_decoder. */
#include "stbav/stbav_codec.h"

#define IN_FRAME 1u
#define ESCAPE 2u
#define DROPPING 4u /* the frame is bad: skip to the next marker */

void stbav_decoder_init(stbav_decoder *d) {
    d->frames = 0;
    d->bad_frames = 0;
    d->dropped_bytes = 0;
    d->len = 0;
    d->state = 0;
}

/* The frame under way is bad: count it once and skip the rest of it. */
static void bad(stbav_decoder *d) {
    if (!(d->state & DROPPING)) ++d->bad_frames;
    d->state = IN_FRAME | DROPPING;
}

/* Checks the image in d->buf; fills *op and returns 1 when it is exactly one
 * well-formed image. */
static int parse(const stbav_decoder *d, stbav_op *op) {
    unsigned n, m;
    if (d->len < 5) return 0;
    n = d->buf[3];
    if (n > STBAV_MAX_INDEX || 5u + n > d->len) return 0;
    m = d->buf[4 + n];
    if (m > STBAV_MAX_VALUE || 5u + n + m != d->len) return 0;
    op->type = d->buf[0];
    op->op_id = (uint16_t)(d->buf[1] | (unsigned)d->buf[2] << 8);
    op->index_len = (uint8_t)n;
    op->value_len = (uint8_t)m;
    op->index = d->buf + 4;
    op->value = d->buf + 5 + n;
    op->entry = stbav_lookup(op->op_id);
    return 1;
}

int stbav_decode(stbav_decoder *d, const uint8_t *data, size_t len, size_t *used, stbav_op *op) {
    size_t i;
    if (!data) len = 0;
    for (i = 0; i < len; ++i) {
        unsigned b = data[i];
        if (b == 0x0Fu) {
            if ((d->state & IN_FRAME) && !(d->state & DROPPING) && (d->len > 0 || (d->state & ESCAPE)))
                ++d->bad_frames;
            d->state = IN_FRAME;
            d->len = 0;
        } else if (!(d->state & IN_FRAME)) {
            ++d->dropped_bytes;
        } else if (b == 0x10u) {
            const unsigned was = d->state;
            d->state = 0;
            if (!(was & (DROPPING | ESCAPE)) && parse(d, op)) {
                ++d->frames;
                if (used) *used = i + 1;
                return 1;
            }
            if (!(was & DROPPING)) ++d->bad_frames;
            d->len = 0;
        } else if (d->state & DROPPING) {
            /* skipped */
        } else if (b == 0x12u && !(d->state & ESCAPE)) {
            d->state |= ESCAPE;
        } else {
            if (d->state & ESCAPE) {
                b ^= 0x20u;
                d->state &= (uint8_t)~ESCAPE;
                if (b < 0x0Fu || b > 0x13u) {
                    bad(d);
                    continue;
                }
            }
            if (d->len >= STBAV_MAX_IMAGE) {
                bad(d);
                continue;
            }
            d->buf[d->len++] = (uint8_t)b;
        }
    }
    if (used) *used = len;
    return 0;
}

int stbav_op_instance(const stbav_op *op, uint32_t *instance) {
    uint32_t v = 0;
    unsigned i;
    if (op->index_len == 0) return 0;
    for (i = 0; i < op->index_len; ++i) v = v << 8 | op->index[i];
    *instance = v;
    return 1;
}

int stbav_value_uint(const stbav_op *op, unsigned value_type, uint64_t *out) {
    const unsigned width = stbav_type_width(value_type);
    uint64_t v = 0;
    unsigned i;
    if (width == 0 || op->value_len != width) return 0;
    for (i = 0; i < width; ++i) v = v << 8 | op->value[i];
    if (value_type == STBAV_VT_BOOL) v = v != 0;
    *out = v;
    return 1;
}

int stbav_value_int(const stbav_op *op, unsigned value_type, int64_t *out) {
    uint64_t v;
    if (!stbav_value_uint(op, value_type, &v)) return 0;
    switch (value_type) {
        case STBAV_VT_INT8: *out = (int8_t)(uint8_t)v; return 1;
        case STBAV_VT_INT16: *out = (int16_t)(uint16_t)v; return 1;
        case STBAV_VT_INT32: *out = (int32_t)(uint32_t)v; return 1;
        default: break;
    }
    *out = (int64_t)v;
    return 1;
}
