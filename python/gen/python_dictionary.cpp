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
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "protocol/c_op_ss_data_map.h"
#include "protocol/op_ss_data_tables.h"
#include "protocol/op_value_names.h"

namespace {

// The dictionary as the daemon loads it, every table once.
COpSsDataMap LoadDictionary() {
    COpSsData** const tables[] = {analogAudioSsData,    audioPidLockSsData,     audioSrvSsData,
                                  avSsConfigSsData,     compositeSsData,        stbAvSubsystemSsData,
                                  overlaySsData,        pidLockSsData,          selectedAudioSsData,
                                  selectedOtherSsData,  selectedServiceSsData,  serviceLockSsData,
                                  serviceSelectionSsData, videoOutputSsData,    videoSsData};
    COpSsDataMap map;
    for (COpSsData** table : tables) map.FillMap(table);
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

bool ReadFile(const char* path, std::string& text) {
    std::ifstream f(path, std::ios::binary);
    if (!f) return false;
    std::ostringstream s;
    s << f.rdbuf();
    text = s.str();
    return true;
}

int CheckOrUpdate(const char* self, const char* mode, const char* path, const std::string& module) {
    std::string text;
    const bool readable = ReadFile(path, text);
    if (readable && text == module) return 0;
    if (std::strcmp(mode, "--check") == 0) {
        std::fprintf(stderr,
                     "python_dictionary: %s %s the daemon's tables; rewrite it with\n"
                     "  make python-dictionary      (or: %s --update %s)\n"
                     "and commit the result\n",
                     path, readable ? "differs from" : "cannot be read, so it does not match", self, path);
        return 1;
    }
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f << module;
    return f.good() ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string module = Module();
    if (argc == 1) {
        std::fputs(module.c_str(), stdout);
        return 0;
    }
    if (argc == 3 && (std::strcmp(argv[1], "--check") == 0 || std::strcmp(argv[1], "--update") == 0))
        return CheckOrUpdate(argv[0], argv[1], argv[2], module);
    std::fprintf(stderr, "usage: python_dictionary [--check FILE | --update FILE]\n");
    return 2;
}
