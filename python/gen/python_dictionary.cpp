// python_dictionary: writes python/stbav/dictionary.py, the Python package's copy
// of the operation dictionary (opId, name, value type, index type) and of the
// meanings of enumerated values, from the daemon's own tables
// (protocol/op_ss_data_tables.h, protocol/op_value_names.h), so the package
// never carries a hand-copied list.
//   python_dictionary                 the module on standard output
//   python_dictionary --check FILE    exit 1 if FILE differs (and say how to rewrite it)
//   python_dictionary --update FILE   rewrite FILE
// Single-threaded command-line program.
#include <cstdio>
#include <sstream>
#include <string>

#include "protocol/c_op_ss_data_map.h"
#include "protocol/op_ss_data_tables.h"
#include "protocol/op_value_names.h"
#include "toolkit/generated_file.h"

namespace {

// The dictionary as the daemon loads it.
COpSsDataMap LoadDictionary() {
    COpSsDataMap map;
    FillDictionary(map);
    return map;
}

// A Python string literal (double quotes; quote, backslash and control bytes escaped).
std::string PyString(const std::string& text) {
    std::string out = "\"";
    char buf[8];
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c == 0x7F) {
            std::snprintf(buf, sizeof buf, "\\x%02x", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

std::string Module() {
    std::ostringstream out;
    out << "# The operation dictionary and the meanings of enumerated values, written\n"
           "# by python_dictionary from the daemon's own tables; do not edit (rewrite\n"
           "# it with `make python-dictionary`; the test python_dictionary_current fails\n"
           "# while this copy is stale). Constant data; any thread.\n"
           "\n"
           "# (opId, name, value type code, index type code), in opId order.\n"
           "OPS = (\n";
    for (const auto& entry : LoadDictionary().Get()) {
        const COpSsData& op = *entry.second;
        const std::vector<DataVarType_e> index = op.GetIndex().GetIndexTypeList();
        out << "    (" << op.GetOpId() << ", " << PyString(op.GetName()) << ", " << static_cast<int>(op.GetDataType())
            << ", " << (index.empty() ? -1 : static_cast<int>(index[0])) << "),\n";
    }
    out << ")\n\n"
           "# Operation name -> {value: meaning}, for the operations whose values are enumerated.\n"
           "VALUE_NAMES = {\n";
    for (const op_value_names::OpValues& o : op_value_names::All()) {
        out << "    " << PyString(o.op) << ": {";
        bool first = true;
        for (const op_value_names::ValueName& v : o.set->values) {
            out << (first ? "" : ", ") << v.value << ": " << PyString(v.name);
            first = false;
        }
        out << "},\n";
    }
    out << "}\n";
    return out.str();
}

}  // namespace

int main(int argc, char** argv) {
    return stbav::GeneratedFileMain("python_dictionary", "python-dictionary", argc, argv, Module());
}
