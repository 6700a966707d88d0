// Frame splitting, the text capture (write, read back, golden file) and decoding
// of raw binary and plain hex captures through the decode command, and pcap
// captures written and read back.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "tests/e2e/e2e_support.h"
#include "tests/tools/op_text.h"
#include "tools/avhost_commands.h"
#include "tools/capture_reader.h"
#include "tools/capture_writer.h"
#include "tools/line_decoder.h"
#include "tools/pcap_file.h"

namespace avhost {
namespace {

std::vector<std::string> Kinds(const std::vector<LineFrame>& frames) {
    static const char* const names[] = {"op", "bad", "stray", "incomplete"};
    std::vector<std::string> out;
    for (const LineFrame& f : frames) out.push_back(std::string(names[f.kind]) + " " + HexString(f.line));
    return out;
}

// Each chunk as "time direction bytes", the time to the microsecond.
std::vector<std::string> Lines(const std::vector<CaptureChunk>& chunks) {
    std::vector<std::string> out;
    char t[32];
    for (const CaptureChunk& c : chunks) {
        std::snprintf(t, sizeof t, "%.6f ", c.t);
        out.push_back(t + std::string(1, c.dir) + " " + HexString(c.bytes));
    }
    return out;
}

int Decode(const std::vector<std::string>& args, const std::string& input, std::string& out, std::string& err) {
    std::istringstream in(input);
    std::ostringstream o, e;
    std::vector<std::string> words = {"decode"};
    words.insert(words.end(), args.begin(), args.end());
    int status = RunAvhost(words, in, o, e);
    out = o.str();
    err = e.str();
    return status;
}

// Two operations, both with an escaped byte in opId 0x010F; the second also in its value 0x0F10.
const char* const kTwoFrames = "0F 00 12 2F 01 01 00 02 07 80 10 0F 00 12 2F 01 01 01 02 12 2F 12 30 10";

TEST(LineDecoder, SplitsTheLineAsTheReceiverDoes) {
    const struct {
        const char* line;
        std::vector<std::string> frames;
    } cases[] = {
        {kTwoFrames, {"op 0F 00 12 2F 01 01 00 02 07 80 10", "op 0F 00 12 2F 01 01 01 02 12 2F 12 30 10"}},
        {"41 42 0F 06 00 00 00 00 10", {"stray 41 42", "op 0F 06 00 00 00 00 10"}},
        {"0F 01 10", {"bad 0F 01 10"}},
        // an end marker outside a frame stays noted: the next start completes an empty frame
        {"10 0F 00 05 0F 06 00 00 00 00 10", {"bad 10 0F", "stray 00 05", "op 0F 06 00 00 00 00 10"}},
        {"0F 06 0F 00 00 00 00 10", {"op 0F 06 0F 00 00 00 00 10"}},  // a second start inside is ignored
    };
    for (const auto& c : cases) {
        const Bytes line = Hex(c.line);
        LineDecoder byByte;
        std::vector<LineFrame> frames;
        for (unsigned char byte : line) byByte.Push(&byte, 1, frames);
        EXPECT_EQ(Kinds(FramesOf(line)), c.frames) << c.line;  // all at once (nothing is left open)
        EXPECT_EQ(Kinds(frames), c.frames) << c.line;          // byte by byte
    }
}

TEST(EncodeOpFrames, CutsLongValuesIntoChunksOf240) {
    SsOp op(OP_TYPE_DATA, 249);
    op.SetIndexList({0});
    op.SetDataU8(std::string(300, 'a'));
    std::vector<Bytes> frames = EncodeOpFrames(op);
    ASSERT_EQ(frames.size(), 2u);
    frames[0].insert(frames[0].end(), frames[1].begin(), frames[1].end());
    const std::vector<LineFrame> decoded = FramesOf(frames[0]);
    ASSERT_EQ(decoded.size(), 2u);
    EXPECT_EQ(decoded[0].op.GetDataLength(), 240u);
    EXPECT_EQ(decoded[1].op.GetDataLength(), 60u);
}

TEST(Capture, WhatIsWrittenReadsBack) {
    std::ostringstream text;
    CaptureWriter writer(text);
    writer.WriteHeader("/dev/pts/7", "2024-05-01T12:00:00Z");
    writer.Record(0.0004, '>', Hex("0F 06 00 00 00 00 10"), "apply");
    writer.Record(1.25, '<', Hex("0F 00 03 00 01 00 02 6F 6B 10"), "#3 note\nwith a line end");
    writer.Record(12.5, '<', Hex("41"), "");
    const std::string expected =
        "# avhost capture 1\n"
        "# date: 2024-05-01T12:00:00Z\n"
        "# line: /dev/pts/7 115200 8N1\n"
        "# time (s) since start, direction (> host to daemon, < daemon to host), frame bytes as on the line\n"
        "0.000 > 0F 06 00 00 00 00 10  # apply\n"
        "1.250 < 0F 00 03 00 01 00 02 6F 6B 10  # #3 note with a line end\n"
        "12.500 < 41\n";
    EXPECT_EQ(text.str(), expected);

    std::vector<CaptureChunk> chunks;
    std::string error;
    ASSERT_TRUE(CaptureReader::Read(text.str(), '<', chunks, error)) << error;
    EXPECT_EQ(Lines(chunks), (std::vector<std::string>{"0.000000 > 0F 06 00 00 00 00 10",
                                                       "1.250000 < 0F 00 03 00 01 00 02 6F 6B 10", "12.500000 < 41"}));
}

TEST(Capture, AHexDumpMayOpenWithACommentBadTextLinesAreReported) {
    EXPECT_EQ(CaptureReader::Detect("# from a logic analyser\n0F 00 10\n"), CaptureReader::kHex);
    std::vector<CaptureChunk> chunks;
    std::string error;
    EXPECT_FALSE(CaptureReader::Read("# avhost capture 1\n0.1 < 0F 10\n0.2 ? 0F\n", '<', chunks, error));
    EXPECT_EQ(error, "line 3: expected '<time> <direction> <hex bytes>'");
    EXPECT_FALSE(CaptureReader::Read("0.1 < 0F 1\n", '<', chunks, error));
    EXPECT_EQ(error, "line 1: not a hex byte string: odd number of hex digits");
}

// A malformed capture is a runtime failure (status 1).
TEST(Decode, RawBinaryAndPlainHexGiveTheSameLinesAMalformedCaptureFails) {
    const Bytes line = Hex(kTwoFrames);
    std::string binaryOut, hexOut, jsonOut, err;
    EXPECT_EQ(Decode({}, std::string(line.begin(), line.end()), binaryOut, err), 0) << err;
    EXPECT_EQ(Decode({"--dir", "<"}, std::string(kTwoFrames) + "\n", hexOut, err), 0) << err;
    EXPECT_EQ(binaryOut,
              "   0.000 < videoWidth[0] = 1920\n"
              "   0.000 < videoWidth[1] = 3856\n");
    EXPECT_EQ(hexOut, binaryOut);
    EXPECT_EQ(Decode({"--json", "--dir", ">"}, "0F 06 00 00 00 00 10 0F 00", jsonOut, err), 0) << err;
    EXPECT_EQ(jsonOut,
              "{\"t\":0.000,\"dir\":\">\",\"op\":\"apply\",\"opId\":0,\"opType\":6}\n"
              "{\"t\":0.000,\"dir\":\">\",\"error\":\"incomplete frame\",\"bytes\":\"0F 00\"}\n");
    EXPECT_EQ(Decode({}, "0.1 < 0F 10\n0.2 < 0F 1\n", jsonOut, err), 1);
    EXPECT_EQ(err, "avhost: line 2: not a hex byte string: odd number of hex digits\n");
}

TEST(Decode, GoldenCaptureOfASession) {
    std::string expected;
    ASSERT_TRUE(e2e::ReadFile(TOOLS_TEST_DATA "/golden/session_capture.decoded.txt", expected));
    std::string out, err;
    EXPECT_EQ(Decode({TOOLS_TEST_DATA "/golden/session_capture.txt"}, "", out, err), 0) << err;
    EXPECT_EQ(out, expected);
}

// One record per frame with its direction byte and time stamp; several frames in
// one chunk and a frame left open are split as the receiver splits them; the
// file is recognised by its magic and read back; other link types are refused.
TEST(Pcap, RecordsFramesWithDirectionAndTimeAndReadsThemBack) {
    const e2e::TempDir dir;
    const std::string path = dir / "session.pcap";
    std::string error;
    {
        PcapWriter pcap;
        ASSERT_TRUE(pcap.Open(path, 1700000000.0, error)) << error;
        pcap.Record(0.5, '>', Hex("0F 0F 00 07 00 01 00 01 01 10"));
        pcap.Record(1.25, '<', Hex("0F 00 0F 01 01 01 02 07 80 10 41 0F 00 03 00 01 00"));
        pcap.Record(2.0, '>', Hex("10"));
        EXPECT_TRUE(pcap.Close());
    }
    std::string content;
    ASSERT_TRUE(e2e::ReadFile(path, content));
    ASSERT_GT(content.size(), 24u);
    EXPECT_EQ(static_cast<unsigned char>(content[20]), 147);  // link type DLT_USER0 (little-endian host)
    std::vector<CaptureChunk> chunks;
    ASSERT_TRUE(CaptureReader::Read(content, '<', chunks, error)) << error;
    EXPECT_EQ(Lines(chunks), (std::vector<std::string>{"0.000000 > 0F 0F 00 07 00 01 00 01 01 10",
                                                       "0.750000 < 0F 00 0F 01 01 01 02 07 80 10", "0.750000 < 41",
                                                       "1.500000 > 10",  // a stray end marker still held at the end
                                                       "0.750000 < 0F 00 03 00 01 00"}));  // the frame still open
    EXPECT_FALSE(CaptureReader::Read(content.substr(0, content.size() - 3), '<', chunks, error));  // damaged
    content[20] = 1;  // Ethernet
    EXPECT_FALSE(CaptureReader::Read(content, '<', chunks, error));
    EXPECT_NE(error.find("DLT_USER0"), std::string::npos) << error;
}

}  // namespace
}  // namespace avhost
