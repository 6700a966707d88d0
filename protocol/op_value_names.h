// The meanings of the enumerated values that travel in operations (the
// decoded stream's attributes, codec types, audio coding, decoder and sync
// states, output settings): one table keyed by operation name, the only copy
// of these names in the tree. The host tool shows them beside the codes, and
// generated documents can list them. Static constant data; any thread.
#pragma once

#include <string>
#include <vector>

namespace op_value_names {

struct ValueName {
    long long value;
    const char* name;  // "25 fps", "H.264 High", "4:2:0"
};

// A named set of values shared by several operations (e.g. "AudioTypeStatus_e").
struct ValueSet {
    const char* type;  // the enumeration's name in the daemon's code
    std::vector<ValueName> values;
};

struct OpValues {
    const char* op;     // operation name in the dictionary
    const ValueSet* set;
};

// Every operation with enumerated values, in dictionary group order.
const std::vector<OpValues>& All();
// The value set of an operation, or null when its values are plain numbers.
const ValueSet* ForOp(const std::string& opName);
// The meaning of value for that operation, or null (unknown operation or a
// value outside its set).
const char* NameOf(const std::string& opName, long long value);

}  // namespace op_value_names
