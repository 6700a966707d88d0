/* stbav host library: the frame encoder. Writes one byte-stuffed frame per call
 * into the caller's buffer; no state between calls, any thread. */
#include "stbav/stbav_codec.h"

#define START 0x0Fu
#define END 0x10u
#define ESCAPE 0x12u

/* Output cursor over the caller's buffer; ok drops to 0 once a byte does not fit. */
typedef struct {
    uint8_t *out;
    size_t cap;
    size_t pos;
    int ok;
} writer;

static void put_raw(writer *w, unsigned b) {
    if (w->pos < w->cap) {
        w->out[w->pos++] = (uint8_t)b;
    } else {
        w->ok = 0;
    }
}

static void put(writer *w, unsigned b) {
    b &= 0xFFu;
    if (b >= 0x0Fu && b <= 0x13u) {
        put_raw(w, ESCAPE);
        b ^= 0x20u;
    }
    put_raw(w, b);
}

unsigned stbav_type_width(unsigned value_type) {
    /* by code: INT32 UINT32 INT8 UINT8 INT16 UINT16 - - BOOL MAC IP - STRING - - - INT64 UINT64 */
    static const uint8_t widths[18] = {4, 4, 1, 1, 2, 2, 0, 0, 1, 0, 4, 0, 0, 0, 0, 0, 8, 8};
    return value_type < 18 ? widths[value_type] : 0;
}

static unsigned index_width(unsigned index_type) {
    switch (index_type) {
        case STBAV_VT_UINT8: return 1;
        case STBAV_VT_UINT16: return 2;
        case STBAV_VT_UINT32: return 4;
        default: return 0;
    }
}

/* v in w bytes, most significant first. */
static void be(uint8_t *dst, uint64_t v, unsigned w) {
    while (w-- > 0) {
        dst[w] = (uint8_t)v;
        v >>= 8;
    }
}

/* Encodes a data operation with an index of iw bytes and the given value bytes. */
static int data_op(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, unsigned iw, uint32_t instance,
                   const uint8_t *value, size_t len) {
    uint8_t index[STBAV_MAX_INDEX];
    stbav_op op;
    be(index, instance, iw);
    op.type = STBAV_OP_TYPE_DATA;
    op.op_id = op_id;
    op.index_len = (uint8_t)iw;
    op.value_len = (uint8_t)len;
    op.index = index;
    op.value = value;
    op.entry = 0;
    return stbav_encode(out, cap, flags, &op);
}

int stbav_encode(uint8_t *out, size_t cap, unsigned flags, const stbav_op *op) {
    writer w;
    unsigned i;
    if (!op) return STBAV_E_ARG;
    if (op->value_len > STBAV_MAX_VALUE || op->index_len > STBAV_MAX_INDEX) return STBAV_E_TOO_LONG;
    if ((op->index_len && !op->index) || (op->value_len && !op->value)) return STBAV_E_ARG;
    w.out = out;
    w.cap = out ? cap : 0;
    w.pos = 0;
    w.ok = 1;
    put_raw(&w, START);
    if (flags & STBAV_DOUBLE_START) put_raw(&w, START);
    put(&w, op->type);
    put(&w, op->op_id);
    put(&w, (unsigned)op->op_id >> 8);
    put(&w, op->index_len);
    for (i = 0; i < op->index_len; ++i) put(&w, op->index[i]);
    put(&w, op->value_len);
    for (i = 0; i < op->value_len; ++i) put(&w, op->value[i]);
    put_raw(&w, END);
    return w.ok ? (int)w.pos : STBAV_E_SPACE;
}

int stbav_encode_raw_number(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, unsigned value_type,
                            unsigned index_type, uint32_t instance, uint64_t bits) {
    const unsigned width = stbav_type_width(value_type);
    const unsigned iw = index_width(index_type);
    uint8_t value[8];
    if (width == 0 || iw == 0) return STBAV_E_TYPE;
    be(value, bits, width);
    return data_op(out, cap, flags, op_id, iw, instance, value, width);
}

static int signed_type(unsigned t) {
    return t == STBAV_VT_INT8 || t == STBAV_VT_INT16 || t == STBAV_VT_INT32 || t == STBAV_VT_INT64;
}

/* The index width of an entry, or 0 when instance does not fit it. */
static unsigned fitting_index(const stbav_entry *e, uint32_t instance) {
    const unsigned iw = index_width(e->index_type);
    if (iw == 0 || (iw == 1 && instance > 0xFFu) || (iw == 2 && instance > 0xFFFFu)) return 0;
    return iw;
}

int stbav_encode_number(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, uint32_t instance,
                        int64_t value) {
    const stbav_entry *e = stbav_lookup(op_id);
    unsigned width, iw, i;
    uint64_t back;
    uint8_t bytes[8];
    if (!e) return STBAV_E_UNKNOWN;
    width = stbav_type_width(e->value_type);
    if (width == 0) return STBAV_E_TYPE;
    iw = fitting_index(e, instance);
    if (iw == 0) return STBAV_E_RANGE;
    /* In range when the width's bytes, read back with the type's sign, give the value again. */
    be(bytes, (uint64_t)value, width);
    back = (signed_type(e->value_type) && (bytes[0] & 0x80u)) ? ~(uint64_t)0 : 0;
    for (i = 0; i < width; ++i) back = back << 8 | bytes[i];
    if (back != (uint64_t)value || (e->value_type == STBAV_VT_BOOL && value > 1) ||
        (e->value_type == STBAV_VT_UINT64 && value < 0))
        return STBAV_E_RANGE;
    return data_op(out, cap, flags, op_id, iw, instance, bytes, width);
}

int stbav_encode_text(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, uint32_t instance,
                      const char *text, size_t len) {
    const stbav_entry *e = stbav_lookup(op_id);
    unsigned iw;
    if (!e) return STBAV_E_UNKNOWN;
    if (e->value_type != STBAV_VT_STRING && e->value_type != STBAV_VT_MAC) return STBAV_E_TYPE;
    if (len > STBAV_MAX_VALUE) return STBAV_E_TOO_LONG;
    if (len && !text) return STBAV_E_ARG;
    iw = fitting_index(e, instance);
    if (iw == 0) return STBAV_E_RANGE;
    return data_op(out, cap, flags, op_id, iw, instance, (const uint8_t *)text, len);
}

int stbav_encode_apply(uint8_t *out, size_t cap, unsigned flags) {
    stbav_op op = {STBAV_OP_TYPE_APPLY, 0, 0, 0, 0, 0, 0};
    return stbav_encode(out, cap, flags, &op);
}
