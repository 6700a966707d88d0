/* stbav host library: the protocol's value-type and operation-type codes and the
 * shape of one dictionary entry. Constant definitions only; usable from any
 * thread. C99 and C++. */
#ifndef STBAV_TYPES_H
#define STBAV_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Value-type codes of a value and of an index field; the numbers travel on the line. */
enum {
    STBAV_VT_INT32 = 0,   /* 4 bytes, most significant first, two's complement */
    STBAV_VT_UINT32 = 1,  /* 4 bytes; as index field: 4 bytes */
    STBAV_VT_INT8 = 2,    /* 1 byte */
    STBAV_VT_UINT8 = 3,   /* 1 byte; as index field: 1 byte */
    STBAV_VT_INT16 = 4,   /* 2 bytes */
    STBAV_VT_UINT16 = 5,  /* 2 bytes; as index field: 2 bytes */
    STBAV_VT_BOOL = 8,    /* 1 byte, 0 false */
    STBAV_VT_MAC = 9,     /* a byte string */
    STBAV_VT_IP = 10,     /* 4 bytes, IPv4 address as a 32-bit number */
    STBAV_VT_STRING = 12, /* the text's bytes, no terminator */
    STBAV_VT_INT64 = 16,  /* 8 bytes */
    STBAV_VT_UINT64 = 17  /* 8 bytes */
};

/* Operation types: 0 a data operation (a setting or a status value), 6 apply the
 * settings received so far. 1 to 5 and 7 are legal but nobody acts on them. */
enum {
    STBAV_OP_TYPE_DATA = 0,
    STBAV_OP_TYPE_APPLY = 6
};

/* One dictionary entry: opId, value type and the type of its one index field. */
typedef struct stbav_entry {
    uint16_t op_id;
    uint8_t value_type;
    uint8_t index_type;
} stbav_entry;

#ifdef __cplusplus
}
#endif

#endif
