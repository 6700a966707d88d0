// Frame encoding and decoding over byte buffers: fixed vectors, streams through
// one decoder, over-long frames, and a seeded random round trip.
#include "transport/uart_framing.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/transport/line_bytes.h"

namespace {

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

// One decoder takes the streams one after the other; after each, whether it waits
// for an escaped byte and whether it is out of step (a stray end marker).
TEST(FrameDecoder, DecodesStreams) {
    const struct {
        const char* why;
        Bytes stream;
        std::vector<Bytes> frames;
        bool frameEnded, escapePending;
    } cases[] = {
        {"every special byte unstuffed", {0x0F, 0x12, 0x2F, 0x12, 0x30, 0x12, 0x31, 0x12, 0x32, 0x12, 0x33, 0x10},
         {{0x0F, 0x10, 0x11, 0x12, 0x13}}, false, false},
        {"bare XON/XOFF are data", {0x0F, 0x11, 0x13, 0x0E, 0x14, 0x10}, {{0x11, 0x13, 0x0E, 0x14}}, false, false},
        {"two frames in order", {0x0F, 0x01, 0x10, 0x0F, 0x02, 0x03, 0x10}, {{0x01}, {0x02, 0x03}}, false, false},
        {"garbage before the start dropped", {0xAA, 0x11, 0x00, 0x0F, 0x05, 0x10}, {{0x05}}, false, false},
        {"start marker inside a frame ignored", {0x0F, 0x01, 0x0F, 0x02, 0x10}, {{0x01, 0x02}}, false, false},
        {"an escape at the frame's end stays pending", {0x0F, 0x01, 0x12, 0x10}, {{0x01}}, false, true},
        {"and applies to the next frame's first byte", {0x0F, 0x22, 0x22, 0x10}, {{0x02, 0x22}}, false, false},
        {"an end marker outside a frame is noted", {0x10, 0x44}, {}, true, false},
        // The start marker completes the empty frame at once; the payload after it is
        // outside a frame and dropped, and that frame's own end marker is noted again,
        // so ordinary frames keep coming out empty.
        {"out of step", {0x0F, 0x01, 0x02, 0x10, 0x0F, 0x03, 0x10}, {{}, {}}, true, false},
        {"a doubled start marker resyncs", {0x0F, 0x0F, 0x04, 0x10, 0x0F, 0x05, 0x10}, {{}, {0x04}, {0x05}}, false,
         false},
    };
    FrameDecoder decoder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Decode(decoder, c.stream), c.frames);
        EXPECT_EQ(decoder.FrameEnded(), c.frameEnded);
        EXPECT_EQ(decoder.EscapePending(), c.escapePending);
    }
}

// The longest valid image, every byte escaped, still decodes; one line byte more
// and the frame is dropped, the rest of it skipped up to its end marker, and the
// next frame decodes as if nothing had happened. Memory stays bounded meanwhile.
TEST(FrameDecoder, FrameLongerThanTheLongestStuffedImageIsDropped) {
    const Bytes longest(uart_framing::kMaxImage, 0x10);
    const Bytes line = FrameEncoder::EncodeToBytes(longest);
    ASSERT_EQ(line.size(), uart_framing::kMaxStuffedImage + 2);
    FrameDecoder fresh;
    EXPECT_EQ(Decode(fresh, line), (std::vector<Bytes>{longest}));

    struct Case {
        const char* name;
        Bytes body;  // between the markers
    } const cases[] = {
        {"one escape too many", Concat({Bytes(line.begin() + 1, line.end() - 1), {0x12, 0x30}})},
        {"plain bytes", Bytes(uart_framing::kMaxStuffedImage + 1, 0x41)},
        {"a flood", Bytes(3 * 1000 * 1000, 0x42)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FrameDecoder decoder;
        // The second start marker is ignored inside the dropped frame, as in any frame.
        const Bytes stream = Concat({{0x0F}, c.body, {0x0F, 0x10}});
        EXPECT_TRUE(Decode(decoder, stream).empty());
        EXPECT_EQ(decoder.DroppedFrames(), 1u);
        EXPECT_FALSE(decoder.Dropping());
        EXPECT_FALSE(decoder.FrameEnded());
        EXPECT_EQ(Decode(decoder, {0x0F, 0x07, 0x10}), (std::vector<Bytes>{{0x07}}));
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
