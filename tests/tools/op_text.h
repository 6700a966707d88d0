// What the tools tests write as text, made into the tool's own values: an
// operation from NAME=VALUE[@INDEX] as a person types it, bytes from a hex
// string, and the frames the monitor's decoder finds in a line or in the frame
// of an op image. Each text must parse. Test thread only.
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

// The frames of line, a frame still open at its end included; FrameOf: the one
// frame of an op image (in hex) as the line carries it.
inline std::vector<avhost::LineFrame> FramesOf(const avhost::Bytes& line) {
    avhost::LineDecoder decoder;
    std::vector<avhost::LineFrame> frames;
    decoder.Push(line.data(), line.size(), frames);
    avhost::LineFrame rest;
    if (decoder.Flush(rest)) frames.push_back(rest);
    return frames;
}

inline avhost::LineFrame FrameOf(const std::string& imageHex) {
    const std::vector<avhost::LineFrame> frames = FramesOf(FrameEncoder::EncodeToBytes(Hex(imageHex)));
    EXPECT_EQ(frames.size(), 1u) << imageHex;
    return frames.empty() ? avhost::LineFrame() : frames[0];
}
