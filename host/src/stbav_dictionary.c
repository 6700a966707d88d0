/* stbav host library: the operation dictionary as constant tables (from the
 * generated stbav/stbav_dictionary.h) and its look-ups. Read-only; any thread. */
#include "stbav/stbav_codec.h"

/* In opId order, as the generator writes the list. */
static const stbav_entry entries[STBAV_DICTIONARY_SIZE] = {
#define STBAV_ENTRY_ROW(name, op_id, value_type, index_type) {op_id, value_type, index_type},
    STBAV_DICTIONARY(STBAV_ENTRY_ROW)
#undef STBAV_ENTRY_ROW
};

/* Position of op_id in entries, or -1. */
static int find(uint16_t op_id) {
    int lo = 0, hi = STBAV_DICTIONARY_SIZE - 1;
    while (lo <= hi) {
        const int mid = (lo + hi) / 2;
        if (entries[mid].op_id == op_id) return mid;
        if (entries[mid].op_id < op_id) {
            lo = mid + 1;
        } else {
            hi = mid - 1;
        }
    }
    return -1;
}

const stbav_entry *stbav_lookup(uint16_t op_id) {
    const int i = find(op_id);
    return i < 0 ? 0 : &entries[i];
}

#ifdef STBAV_HOST_NAMES
static const char *const names[STBAV_DICTIONARY_SIZE] = {
#define STBAV_NAME_ROW(name, op_id, value_type, index_type) #name,
    STBAV_DICTIONARY(STBAV_NAME_ROW)
#undef STBAV_NAME_ROW
};

const char *stbav_name(uint16_t op_id) {
    const int i = find(op_id);
    return i < 0 ? 0 : names[i];
}

int stbav_op_id(const char *name, uint16_t *op_id) {
    int i;
    for (i = 0; name && i < STBAV_DICTIONARY_SIZE; ++i) {
        const char *a = names[i];
        const char *b = name;
        while (*a && *a == *b) {
            ++a;
            ++b;
        }
        if (*a == *b) {
            *op_id = entries[i].op_id;
            return 1;
        }
    }
    return 0;
}
#endif
