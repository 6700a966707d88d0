// host_dictionary: writes host/include/stbav/stbav_dictionary.h, the C host
// library's copy of the operation dictionary (opId constants named as in the
// dictionary, value types, index shapes, and the list the library builds its
// tables from), from the daemon's own tables (protocol/op_ss_data_tables.h), so
// the library never carries a hand-copied list.
//   host_dictionary                 the header on standard output
//   host_dictionary --check FILE    exit 1 if FILE differs (and say how to rewrite it)
//   host_dictionary --update FILE   rewrite FILE
// Single-threaded command-line program.
#include <cstdio>
#include <sstream>
#include <string>

#include "protocol/c_op_ss_data_map.h"
#include "protocol/op_ss_data_tables.h"
#include "toolkit/generated_file.h"

namespace {

// The dictionary as the daemon loads it.
COpSsDataMap LoadDictionary() {
    COpSsDataMap map;
    FillDictionary(map);
    return map;
}

// The library's constant name of a value-type code.
std::string TypeName(int code) {
    switch (code) {
        case VT_INT32: return "STBAV_VT_INT32";
        case VT_UINT32: return "STBAV_VT_UINT32";
        case VT_INT8: return "STBAV_VT_INT8";
        case VT_UINT8: return "STBAV_VT_UINT8";
        case VT_INT16: return "STBAV_VT_INT16";
        case VT_UINT16: return "STBAV_VT_UINT16";
        case VT_BOOL: return "STBAV_VT_BOOL";
        case VT_MAC: return "STBAV_VT_MAC";
        case VT_IP: return "STBAV_VT_IP";
        case VT_STRING: return "STBAV_VT_STRING";
        case VT_INT64: return "STBAV_VT_INT64";
        case VT_UINT64: return "STBAV_VT_UINT64";
        default: return std::to_string(code);
    }
}

std::string Header() {
    const COpSsDataMap map = LoadDictionary();
    std::ostringstream out;
    char hex[16];
    out << "/* stbav host library: the operation dictionary, written by host_dictionary from\n"
           " * the daemon's own tables; do not edit (rewrite it with `make host-dictionary`;\n"
           " * the test host_dictionary_current fails while this copy is stale). Constants\n"
           " * only; any thread. C99 and C++.\n"
           " *\n"
           " * Per operation NAME: STBAV_OP_NAME (its opId), STBAV_VT_OF_NAME (its value\n"
           " * type), STBAV_INDEX_OF_NAME (the type of its one index field). The list\n"
           " * STBAV_DICTIONARY(X) calls X(NAME, opId, value type, index type) per entry,\n"
           " * in opId order. */\n"
           "#ifndef STBAV_DICTIONARY_H\n"
           "#define STBAV_DICTIONARY_H\n"
           "\n"
           "#include \"stbav/stbav_types.h\"\n"
           "\n"
           "#define STBAV_DICTIONARY_SIZE "
        << map.Get().size() << "\n\n";
    for (const auto& entry : map.Get()) {
        const COpSsData& op = *entry.second;
        const std::vector<DataVarType_e> index = op.GetIndex().GetIndexTypeList();
        std::snprintf(hex, sizeof hex, "0x%04X", op.GetOpId());
        out << "#define STBAV_OP_" << op.GetName() << " " << op.GetOpId() << " /* " << hex << " */\n"
            << "#define STBAV_VT_OF_" << op.GetName() << " " << TypeName(op.GetDataType()) << "\n"
            << "#define STBAV_INDEX_OF_" << op.GetName() << " "
            << (index.empty() ? std::string("0") : TypeName(index[0])) << "\n";
    }
    out << "\n#define STBAV_DICTIONARY(X) \\\n";
    for (const auto& entry : map.Get()) {
        const COpSsData& op = *entry.second;
        const std::vector<DataVarType_e> index = op.GetIndex().GetIndexTypeList();
        out << "    X(" << op.GetName() << ", " << op.GetOpId() << ", " << TypeName(op.GetDataType()) << ", "
            << (index.empty() ? std::string("0") : TypeName(index[0])) << ") \\\n";
    }
    out << "    /* end */\n\n#endif\n";
    return out.str();
}

}  // namespace

int main(int argc, char** argv) {
    return stbav::GeneratedFileMain("host_dictionary", "host-dictionary", argc, argv, Header());
}
