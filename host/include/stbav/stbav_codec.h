/* stbav host library: frames and operations on the serial line to and from
 * stbavd. The encoder writes one whole byte-stuffed frame into a caller buffer;
 * the decoder rebuilds operations from received bytes fed in any pieces. No heap,
 * no I/O, no global state: each function works on what it is given, so any
 * thread may use it, and one decoder belongs to one thread at a time.
 *
 * Frame: 0x0F, the operation image with every byte 0x0F..0x13 sent as 0x12 and
 * the byte XOR 0x20, then 0x10. Image: type, opId low byte, opId high byte, N,
 * N index bytes, M (at most 240), M value bytes. The opId goes low byte first;
 * index and values go most significant byte first. C99 and C++. */
#ifndef STBAV_CODEC_H
#define STBAV_CODEC_H

#include <stddef.h>
#include <stdint.h>

#include "stbav/stbav_dictionary.h"
#include "stbav/stbav_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The most value bytes one operation carries. */
#define STBAV_MAX_VALUE 240u
/* The longest index the dictionary uses (stbsystemSoftwareVersion: 4 bytes). */
#define STBAV_MAX_INDEX 4u
/* The longest image the encoder writes and the decoder takes. */
#define STBAV_MAX_IMAGE (5u + STBAV_MAX_INDEX + STBAV_MAX_VALUE)
/* Worst-case frame: two start markers, every image byte escaped, end marker.
 * A buffer of this size always holds any frame the encoder writes. */
#define STBAV_MAX_FRAME (3u + 2u * STBAV_MAX_IMAGE)

/* Encoder flags. STBAV_DOUBLE_START begins the frame with two start markers
 * (0F 0F): a receiver put out of step by a stray end marker is back in step
 * before the frame. Recommended for every frame a host sends. */
#define STBAV_DOUBLE_START 1u

/* Errors: every function that can fail returns one of these (negative). */
#define STBAV_E_SPACE (-1)      /* the output buffer is too small: nothing usable written */
#define STBAV_E_TOO_LONG (-2)   /* value above 240 bytes or index above 4 bytes: refused, not cut */
#define STBAV_E_UNKNOWN (-3)    /* opId not in the dictionary */
#define STBAV_E_TYPE (-4)       /* the value does not suit the type (text for a number, etc.) */
#define STBAV_E_RANGE (-5)      /* number or instance does not fit its field */
#define STBAV_E_ARG (-6)        /* null pointer where data is needed */

/* One operation. Encoding reads it; decoding fills it with pointers into the
 * decoder, valid until the decoder is fed again. */
typedef struct stbav_op {
    uint8_t type;               /* STBAV_OP_TYPE_DATA or STBAV_OP_TYPE_APPLY */
    uint16_t op_id;
    uint8_t index_len;          /* 0 to STBAV_MAX_INDEX */
    uint8_t value_len;          /* 0 to STBAV_MAX_VALUE */
    const uint8_t *index;       /* may be null when index_len is 0 */
    const uint8_t *value;       /* may be null when value_len is 0 */
    const stbav_entry *entry;   /* decoded: the dictionary entry, null for an unknown opId */
} stbav_op;

/* The dictionary entry of an opId. Returns the entry, or null when the opId is
 * not in the dictionary. */
const stbav_entry *stbav_lookup(uint16_t op_id);

#ifdef STBAV_HOST_NAMES
/* The dictionary's name of an opId (only in a library built with
 * STBAV_HOST_NAMES). Returns the name, or null for an unknown opId. */
const char *stbav_name(uint16_t op_id);
/* The opId of a dictionary name. Returns 1 and sets *op_id, or 0 (unchanged)
 * for an unknown name. */
int stbav_op_id(const char *name, uint16_t *op_id);
#endif

/* Bytes of a value of a fixed-width type (1, 2, 4 or 8). Returns the width, or 0
 * for STBAV_VT_STRING, STBAV_VT_MAC and unknown codes. */
unsigned stbav_type_width(unsigned value_type);

/* Writes the frame of op into out (cap bytes). Returns the frame length (> 0),
 * or STBAV_E_TOO_LONG (value over 240 bytes or index over 4 bytes),
 * STBAV_E_ARG (null data with a length), STBAV_E_SPACE (cap too small; out
 * holds no usable frame). */
int stbav_encode(uint8_t *out, size_t cap, unsigned flags, const stbav_op *op);

/* Writes a data operation whose value is the number bits in the width of
 * value_type (two's complement for negative numbers, most significant byte
 * first) and whose index is instance in the width of index_type (STBAV_VT_UINT8,
 * STBAV_VT_UINT16 or STBAV_VT_UINT32). No range check: the low bytes are sent.
 * Returns the frame length, or STBAV_E_TYPE (value_type has no fixed width or
 * index_type is no index type), STBAV_E_SPACE. */
int stbav_encode_raw_number(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, unsigned value_type,
                            unsigned index_type, uint32_t instance, uint64_t bits);

/* Writes a data operation typed by the dictionary: the value in the width of the
 * opId's value type, the instance in the width of its index field. Returns the
 * frame length, or STBAV_E_UNKNOWN, STBAV_E_TYPE (a text or byte-string entry),
 * STBAV_E_RANGE (value outside the type's range, or instance too large for the
 * index), STBAV_E_SPACE. Use stbav_encode_raw_number for UINT64 above INT64_MAX. */
int stbav_encode_number(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, uint32_t instance,
                        int64_t value);

/* Writes a data operation with text (or bytes) as its value, for an opId typed
 * STBAV_VT_STRING or STBAV_VT_MAC. Returns the frame length, or STBAV_E_UNKNOWN,
 * STBAV_E_TYPE (a numeric entry), STBAV_E_TOO_LONG (len above 240: refused,
 * never cut), STBAV_E_RANGE (instance), STBAV_E_ARG, STBAV_E_SPACE. */
int stbav_encode_text(uint8_t *out, size_t cap, unsigned flags, uint16_t op_id, uint32_t instance,
                      const char *text, size_t len);

/* Writes the apply trigger (type 6, opId 0, no index, no value). Returns the
 * frame length, or STBAV_E_SPACE. */
int stbav_encode_apply(uint8_t *out, size_t cap, unsigned flags);

/* Receive state. Plain data, no pointers: initialise with stbav_decoder_init,
 * copy or move it freely. sizeof is below 300 bytes. */
typedef struct stbav_decoder {
    uint32_t frames;        /* operations returned */
    uint32_t bad_frames;    /* frames dropped: malformed image, too long, cut by a new start marker */
    uint32_t dropped_bytes; /* bytes outside any frame (stray end markers included) */
    uint16_t len;           /* image bytes of the frame being received */
    uint8_t state;          /* internal */
    uint8_t buf[STBAV_MAX_IMAGE];
} stbav_decoder;

/* Resets the decoder: no frame under way, counters 0. */
void stbav_decoder_init(stbav_decoder *d);

/* Feeds up to len bytes. Stops after the byte that completes an operation.
 * Returns 1 when *op holds an operation (fields point into d; valid until the
 * next feed), 0 when every byte was taken without completing one. *used (may be
 * null) is set to the bytes taken; feed the rest in the next call. A start
 * marker always begins a new frame (what was under way counts as a bad frame
 * when it held bytes), so the decoder is back in step at the next frame after
 * any noise. Never reads past data + len nor writes past the decoder. */
int stbav_decode(stbav_decoder *d, const uint8_t *data, size_t len, size_t *used, stbav_op *op);

/* The index as one number (its bytes, most significant first). Returns 1 and
 * sets *instance, or 0 (unchanged) for an operation without index. */
int stbav_op_instance(const stbav_op *op, uint32_t *instance);

/* The value read with value_type (sign-extended for signed types, BOOL as 0/1).
 * The length must be the type's width exactly. Returns 1 and sets *out, or 0
 * (unchanged) on a type without fixed width or a length that differs. */
int stbav_value_int(const stbav_op *op, unsigned value_type, int64_t *out);

/* The same for unsigned reading of all 64 bits (UINT64 values above INT64_MAX). */
int stbav_value_uint(const stbav_op *op, unsigned value_type, uint64_t *out);

#ifdef __cplusplus
}
#endif

#endif
