// Frame encoding and decoding over byte buffers: fixed vectors, one test per
// corruption case, and a seeded random round trip.
#include "transport/uart_framing.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "protocol/ss_op.h"

using Bytes = std::vector<unsigned char>;

namespace {

Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}

std::vector<Bytes> Writes(const Bytes& payload) {
    std::vector<FrameWrite> writes;
    FrameEncoder::Encode(payload.data(), payload.size(), writes);
    std::vector<Bytes> out;
    for (const FrameWrite& w : writes) out.emplace_back(w.data, w.data + w.size);
    return out;
}

// Every frame the decoder completes while taking the stream.
std::vector<Bytes> Decode(FrameDecoder& decoder, const Bytes& stream) {
    std::vector<Bytes> frames;
    Bytes frame;
    for (unsigned char b : stream)
        if (decoder.Push(b, frame)) frames.push_back(frame);
    return frames;
}

std::vector<Bytes> Decode(const Bytes& stream) {
    FrameDecoder decoder;
    return Decode(decoder, stream);
}

}  // namespace

TEST(FrameEncoder, StatusImageGoesOutInThreeWrites) {
    const Bytes image{0x00, 0x05, 0x01, 0x01, 0x01, 0x01, 0x03};
    EXPECT_EQ(FrameEncoder::EncodeToBytes(image), (Bytes{0x0F, 0x00, 0x05, 0x01, 0x01, 0x01, 0x01, 0x03, 0x10}));
    EXPECT_EQ(Writes(image), (std::vector<Bytes>{{0x0F}, image, {0x10}}));
}

TEST(FrameEncoder, EverySpecialByteIsEscapedInOneByteWrites) {
    EXPECT_EQ(Writes({0x0F, 0x10, 0x11, 0x12, 0x13}),
              (std::vector<Bytes>{{0x0F}, {0x12}, {0x2F}, {0x12}, {0x30}, {0x12}, {0x31}, {0x12}, {0x32}, {0x12},
                                  {0x33}, {0x10}}));
    EXPECT_EQ(Writes({0xA0, 0x10, 0xB0, 0xC0, 0x11, 0x0E, 0x14}),
              (std::vector<Bytes>{{0x0F}, {0xA0}, {0x12}, {0x30}, {0xB0, 0xC0}, {0x12}, {0x31}, {0x0E, 0x14}, {0x10}}));
    EXPECT_EQ(Writes({}), (std::vector<Bytes>{{0x0F}, {0x10}}));
}

TEST(FrameDecoder, DecodesStreams) {
    const struct {
        const char* why;
        Bytes stream;
        std::vector<Bytes> frames;
    } cases[] = {
        {"every special byte unstuffed", {0x0F, 0x12, 0x2F, 0x12, 0x30, 0x12, 0x31, 0x12, 0x32, 0x12, 0x33, 0x10},
         {{0x0F, 0x10, 0x11, 0x12, 0x13}}},
        {"bare XON/XOFF are data", {0x0F, 0x11, 0x13, 0x0E, 0x14, 0x10}, {{0x11, 0x13, 0x0E, 0x14}}},
        {"two frames in order", {0x0F, 0x01, 0x10, 0x0F, 0x02, 0x03, 0x10}, {{0x01}, {0x02, 0x03}}},
        {"garbage before the start dropped", {0xAA, 0x11, 0x00, 0x0F, 0x05, 0x10}, {{0x05}}},
        {"start marker inside a frame ignored", {0x0F, 0x01, 0x0F, 0x02, 0x10}, {{0x01, 0x02}}},
    };
    for (const auto& c : cases) EXPECT_EQ(Decode(c.stream), c.frames) << c.why;
}

TEST(FrameDecoder, EndMarkerOutsideFrameCompletesAnEmptyFrameAtTheNextStart) {
    FrameDecoder decoder;
    EXPECT_TRUE(Decode(decoder, {0x10, 0x44}).empty());
    EXPECT_TRUE(decoder.FrameEnded());
    // The start marker completes the empty frame at once; the payload after it is
    // outside a frame and dropped, and that frame's own end marker is noted again,
    // so ordinary frames keep coming out empty. A doubled start marker resyncs.
    EXPECT_EQ(Decode(decoder, {0x0F, 0x01, 0x02, 0x10, 0x0F, 0x03, 0x10}), (std::vector<Bytes>{{}, {}}));
    EXPECT_TRUE(decoder.FrameEnded());
    EXPECT_EQ(Decode(decoder, {0x0F, 0x0F, 0x04, 0x10, 0x0F, 0x05, 0x10}), (std::vector<Bytes>{{}, {0x04}, {0x05}}));
}

TEST(FrameDecoder, EscapePendingSurvivesFrameEnd) {
    FrameDecoder decoder;
    EXPECT_EQ(Decode(decoder, {0x0F, 0x01, 0x12, 0x10}), (std::vector<Bytes>{{0x01}}));
    EXPECT_TRUE(decoder.EscapePending());
    EXPECT_EQ(Decode(decoder, {0x0F, 0x22, 0x22, 0x10}), (std::vector<Bytes>{{0x02, 0x22}}));
    EXPECT_FALSE(decoder.EscapePending());
}

// The longest valid image, every byte escaped, still decodes; one line byte more
// and the frame is dropped, the rest of it skipped up to its end marker, and the
// next frame decodes as if nothing had happened. Memory stays bounded meanwhile.
TEST(FrameDecoder, FrameLongerThanTheLongestStuffedImageIsDropped) {
    const Bytes longest(uart_framing::kMaxImage, 0x10);
    const Bytes line = FrameEncoder::EncodeToBytes(longest);
    ASSERT_EQ(line.size(), uart_framing::kMaxStuffedImage + 2);
    EXPECT_EQ(Decode(line), (std::vector<Bytes>{longest}));

    struct Case {
        const char* name;
        Bytes body;  // between the markers
    } const cases[] = {
        {"one escape too many", Concat({Bytes(line.begin() + 1, line.end() - 1), {0x12, 0x30}})},
        {"plain bytes", Bytes(uart_framing::kMaxStuffedImage + 1, 0x41)},
        {"a flood", Bytes(3 * 1000 * 1000, 0x42)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FrameDecoder decoder;
        Bytes stream{0x0F};
        stream.insert(stream.end(), c.body.begin(), c.body.end());
        stream.push_back(0x0F);  // ignored inside the dropped frame, as in any frame
        stream.push_back(0x10);
        EXPECT_TRUE(Decode(decoder, stream).empty());
        EXPECT_EQ(decoder.DroppedFrames(), 1u);
        EXPECT_FALSE(decoder.Dropping());
        EXPECT_FALSE(decoder.FrameEnded());
        EXPECT_EQ(Decode(decoder, {0x0F, 0x07, 0x10}), (std::vector<Bytes>{{0x07}}));
    }
}

// The receiver appends one 0x00 before parsing, so a cut right after the index
// reads as an empty value and a cut one byte short of a 2-byte value takes the
// spare byte as data; every other cut fails.
TEST(FrameDecoder, TruncatedImageFailsToParse) {
    const Bytes image{0x00, 0x05, 0x01, 0x01, 0x01, 0x02, 0x03, 0x04};
    const unsigned expectedConsumed[] = {0, 0, 0, 0, 0, 6, 0, 8};
    for (size_t cut = 0; cut < image.size(); ++cut) {
        Bytes truncated(image.begin(), image.begin() + cut);
        std::vector<Bytes> frames = Decode(FrameEncoder::EncodeToBytes(truncated));
        ASSERT_EQ(frames.size(), 1u);
        frames[0].push_back(0x00);
        SsOp op;
        EXPECT_EQ(op.DeserializeOp(frames[0].data(), static_cast<unsigned>(frames[0].size())), expectedConsumed[cut])
            << "cut " << cut;
    }
}

// Random payloads, rich in special bytes, survive encoder -> decoder, back to back.
TEST(FrameRoundTrip, SeededRandomPayloads) {
    std::mt19937 rng(0x5EED);
    FrameDecoder decoder;
    Bytes frame;
    for (int iter = 0; iter < 50000; ++iter) {
        Bytes payload(rng() % 64 == 0 ? rng() % (uart_framing::kMaxImage + 1) : rng() % 40);
        for (auto& b : payload) b = static_cast<unsigned char>(rng() % 4 == 0 ? 0x0F + rng() % 5 : rng() & 0xFF);
        Bytes line = FrameEncoder::EncodeToBytes(payload);
        int completed = 0;
        for (size_t i = 0; i < line.size(); ++i) {
            if (decoder.Push(line[i], frame)) {
                ++completed;
                ASSERT_EQ(i, line.size() - 1) << iter;
            }
        }
        ASSERT_EQ(completed, 1) << iter;
        ASSERT_EQ(frame, payload) << iter;
        for (size_t i = 1; i + 1 < line.size(); ++i) ASSERT_FALSE(line[i] == 0x0F || line[i] == 0x10) << iter;
    }
}
