// Fuzz target: avhost's input parsers. Byte 0 picks the parser, the rest is its
// text: a capture (text, raw binary or hex, as "avhost decode" reads it) decoded
// frame by frame and formatted as text and JSON; or "NAME=VALUE@INDEX"
// assignments, hex byte strings and video format codes as "avhost send",
// "avhost raw" and sessions read them.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_quiet.h"
#include "tools/capture_reader.h"
#include "tools/line_decoder.h"
#include "tools/op_catalog.h"
#include "tools/op_formatter.h"
#include "tools/value_parser.h"

using namespace avhost;

namespace {

void Decode(const std::string& content, char dir) {
    std::vector<CaptureChunk> chunks;
    std::string error;
    if (!CaptureReader::Read(content, dir, chunks, error)) return;
    static const OpCatalog catalog;
    const OpFormatter formatter(catalog);
    LineDecoder toDaemon, toHost;
    std::vector<LineFrame> frames;
    for (const CaptureChunk& c : chunks) {
        frames.clear();
        LineDecoder& decoder = c.dir == '>' ? toDaemon : toHost;
        decoder.Push(c.bytes.data(), c.bytes.size(), frames);
        decoder.TakeStray(frames);
        for (const LineFrame& f : frames) {
            formatter.Text(c.t, c.dir, f);
            formatter.Json(c.t, c.dir, f);
        }
    }
    LineFrame rest;
    if (toDaemon.Flush(rest)) formatter.Text(0, '>', rest);
    if (toHost.Flush(rest)) formatter.Json(0, '<', rest);
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

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    stbav_fuzz::Quiet();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 3) {
        case 0: Decode(text, '>'); break;
        case 1: Decode(text, '<'); break;
        default: ParseValues(text); break;
    }
    return 0;
}
