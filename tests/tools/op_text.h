// What the tools tests write as text, made into the tool's own values: an
// operation from NAME=VALUE[@INDEX] as a person types it, bytes from a hex
// string, and the frames the monitor's decoder finds in a line. Each text must
// parse. Test thread only.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/line_decoder.h"
#include "tools/value_parser.h"

inline SsOp OpFrom(const std::string& assignment) {
    static const avhost::OpCatalog catalog;
    SsOp op;
    std::string error;
    EXPECT_TRUE(avhost::ParseAssignment(catalog, assignment, op, error)) << error;
    return op;
}

inline avhost::Bytes Hex(const std::string& text) {
    avhost::Bytes bytes;
    std::string error;
    EXPECT_TRUE(avhost::ParseHexBytes(text, bytes, error)) << text;
    return bytes;
}

// The frames of line, a frame still open at its end included.
inline std::vector<avhost::LineFrame> FramesOf(const avhost::Bytes& line) {
    avhost::LineDecoder decoder;
    std::vector<avhost::LineFrame> frames;
    decoder.Push(line.data(), line.size(), frames);
    avhost::LineFrame rest;
    if (decoder.Flush(rest)) frames.push_back(rest);
    return frames;
}
