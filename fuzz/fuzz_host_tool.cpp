// Fuzz target: avhost's input parsers. Byte 0 picks the parser, the rest is its
// text: a capture (text, raw binary or hex) given to "avhost decode" on its
// standard input, in the output style byte 0 also picks; or "NAME=VALUE@INDEX"
// assignments, hex byte strings and video format codes as "avhost send",
// "avhost raw" and sessions read them.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/fuzz_quiet.h"
#include "tools/avhost_commands.h"
#include "tools/line_decoder.h"
#include "tools/op_catalog.h"
#include "tools/value_parser.h"

using namespace avhost;

namespace {

// Text (with a filter), JSON or CSV.
const char* const kStyles[] = {"--skip=apply", "--json", "--csv"};

// "avhost decode --dir DIR STYLE" over the content as its standard input.
void Decode(const std::string& content, const std::string& dir, const std::string& style) {
    std::istringstream in(content);
    std::ostringstream out, err;
    RunAvhost({"decode", "--dir", dir, style}, in, out, err);
}

void ParseValues(const std::string& text) {
    static const OpCatalog catalog;
    std::string error;
    SsOp op;
    if (ParseAssignment(catalog, text, op, error)) EncodeOpFrames(op);
    Bytes bytes;
    ParseHexBytes(text, bytes, error);
    uint32_t code = 0;
    ParseFormatCode(text, code, error);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 3) {
        case 0: Decode(text, ">", kStyles[data[0] / 3 % 3]); break;
        case 1: Decode(text, "<", kStyles[data[0] / 3 % 3]); break;
        default: ParseValues(text); break;
    }
    return 0;
}
