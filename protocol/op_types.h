// The two code sets of an operation: the value type of a value or index field
// (DataVarType_e) and the operation type (OpType_e). Their numbers travel on the
// line and are compared by the dictionary, so they must never be renumbered.
#pragma once

#include <cstdint>

// Value type of an operation's value and of each index field. 32 bits wide, so
// that any code read from the line or a table is a valid value.
enum DataVarType_e : int32_t {
    VT_INT32 = 0,    // 4 bytes, big-endian, two's complement
    VT_UINT32 = 1,   // 4 bytes, big-endian; as index field: 4 bytes
    VT_INT8 = 2,     // 1 byte
    VT_UINT8 = 3,    // 1 byte; as index field: 1 byte
    VT_INT16 = 4,    // 2 bytes, big-endian
    VT_UINT16 = 5,   // 2 bytes, big-endian; as index field: 2 bytes
    VT_BOOL = 8,     // 1 byte, 0 = false
    VT_MAC = 9,      // byte string handed whole to KT::CMacAddress::Set
    VT_IP = 10,      // 4 bytes, big-endian IPv4 address
    VT_STRING = 12,  // the text's bytes, no terminator, no length prefix
    VT_INT64 = 16,   // 8 bytes, big-endian
    VT_UINT64 = 17,  // 8 bytes, big-endian
};

// Operation type; one byte of it travels. Only 0 and 6 have a meaning for the
// daemon; 1 to 5 and 7 are legal on the line but nobody handles them, and a
// receiver ignores anything above 7.
enum OpType_e : int32_t {
    OP_TYPE_DATA = 0,          // a setting from the host or a status value to it
    OP_TYPE_RESERVED_1 = 1,
    OP_TYPE_RESERVED_2 = 2,
    OP_TYPE_RESERVED_3 = 3,
    OP_TYPE_RESERVED_4 = 4,
    OP_TYPE_RESERVED_5 = 5,
    OP_TYPE_APPLY_CONFIG = 6,  // apply the configuration received so far
    OP_TYPE_RESERVED_7 = 7,
};
