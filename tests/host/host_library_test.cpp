// The C host library (host/) against the daemon's own code: every dictionary
// entry and value type round-tripped both ways (C encoder -> daemon decoder,
// daemon encoder -> C decoder, byte-identical images and frames), the video
// format code against UhdVidFormat for every field value, and the decoder's
// resynchronisation, counters and bounds. This file also proves that the
// library's headers compile as C++. Single-threaded.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "output/uhd_vid_format.h"
#include "protocol/c_index.h"
#include "protocol/c_op_ss_data_map.h"
#include "protocol/op_ss_data_tables.h"
#include "protocol/ss_op.h"
#include "stbav/stbav_codec.h"
#include "stbav/stbav_format.h"
#include "tests/transport/line_bytes.h"

static_assert(sizeof(stbav_decoder) < 300, "decoder state stays under 300 bytes");

namespace {

const DataVarType_e kTypes[] = {VT_INT32, VT_UINT32, VT_INT8,   VT_UINT8,  VT_INT16, VT_UINT16,
                                VT_BOOL,  VT_MAC,    VT_IP,     VT_STRING, VT_INT64, VT_UINT64};

// Values per type: zero, the extremes, and patterns full of marker bytes.
const std::vector<uint64_t> kNumbers = {0,    1, 0x0F10111213120F10ull, 0xFFFFFFFFFFFFFFFFull, 0x8000000000000000ull,
                                        0x7F};
const std::vector<std::string> kTexts = {"", "stbav HD \x0F\x10\x11\x12\x13", std::string(240, '\x12')};

// The daemon's image of a data operation with the entry's index.
Bytes DaemonImage(const COpSsData& e, uint32_t instance, DataVarType_e type, uint64_t number, const std::string& text) {
    SsOp op(OP_TYPE_DATA, e.GetOpId());
    CIndex index(e.GetIndex());
    index.SetIndex(0, instance);
    index.Serialize();
    op.SetIndexList(index.GetIndexStream());
    if (type == VT_STRING || type == VT_MAC) {
        op.SetDataU8(text);
    } else if (type == VT_IP) {
        op.SetDataU32(static_cast<unsigned>(number));
    } else {
        EXPECT_TRUE(op.SetSsOpData(static_cast<unsigned long long>(number), type));
    }
    Bytes image;
    op.GetSerializedOp(image);
    return image;
}

// Every operation a new C decoder finds in line, fed in pieces of step bytes.
struct CDecode {
    CDecode(const Bytes& line, size_t step);
    stbav_decoder d;            // with its counters; ops point into it
    std::vector<stbav_op> ops;
    std::vector<Bytes> images;  // each op re-encoded by the library (no markers)
};
CDecode::CDecode(const Bytes& line, size_t step) {
    stbav_decoder_init(&d);
    for (size_t at = 0; at < line.size();) {
        const size_t n = std::min(step, line.size() - at);
        size_t used = 0;
        stbav_op op;
        const int got = stbav_decode(&d, line.data() + at, n, &used, &op);
        EXPECT_LE(used, n);
        at += used;
        if (got) {
            ops.push_back(op);
            Bytes image = {op.type, static_cast<unsigned char>(op.op_id), static_cast<unsigned char>(op.op_id >> 8),
                           op.index_len};
            image.insert(image.end(), op.index, op.index + op.index_len);
            image.push_back(op.value_len);
            image.insert(image.end(), op.value, op.value + op.value_len);
            images.push_back(image);
        }
    }
}

// The daemon's receiver over a frame: the image it decodes, or empty.
Bytes DaemonDecode(const Bytes& line) {
    FrameDecoder decoder;
    Bytes frame;
    for (unsigned char b : line) {
        if (!decoder.Push(b, frame)) continue;
        frame.push_back(0);
        SsOp op;
        if (op.DeserializeOp(frame) == 0) return {};
        Bytes image;
        op.GetSerializedOp(image);
        return image;
    }
    return {};
}

TEST(HostLibrary, EveryEntryAndValueTypeRoundTripsWithTheDaemonBothWays) {
    COpSsDataMap dictionary;
    FillDictionary(dictionary);
    const auto& map = dictionary.Get();
    ASSERT_EQ(map.size(), static_cast<size_t>(STBAV_DICTIONARY_SIZE));
    unsigned roundTrips = 0, differences = 0;
    for (const auto& kv : map) {
        const COpSsData& e = *kv.second;
        const DataVarType_e indexType = e.GetIndex().GetIndexTypeList().at(0);
        const stbav_entry* c = stbav_lookup(static_cast<uint16_t>(e.GetOpId()));
        ASSERT_NE(c, nullptr) << e.GetName();
        EXPECT_EQ(c->value_type, e.GetDataType()) << e.GetName();
        EXPECT_EQ(c->index_type, indexType) << e.GetName();
        EXPECT_STREQ(stbav_name(c->op_id), e.GetName().c_str());
        const uint32_t instance = indexType == VT_UINT32 ? 0x0F101112u : 0x13u;
        for (DataVarType_e type : kTypes) {
            const bool bytes = type == VT_STRING || type == VT_MAC;
            const std::vector<uint64_t> numbers = bytes ? std::vector<uint64_t>(kTexts.size()) : kNumbers;
            for (size_t i = 0; i < numbers.size(); ++i) {
                const std::string text = bytes ? kTexts[i] : std::string();
                const Bytes image = DaemonImage(e, instance, type, numbers[i], text);
                const Bytes daemonFrame = FrameEncoder::EncodeToBytes(image);
                // C encodes, the daemon decodes.
                Bytes cFrame(STBAV_MAX_FRAME);
                const stbav_op op = {0, c->op_id, static_cast<uint8_t>(image[3]), static_cast<uint8_t>(text.size()),
                                     image.data() + 4, reinterpret_cast<const uint8_t*>(text.data()), nullptr};
                const int n = bytes ? stbav_encode(cFrame.data(), cFrame.size(), 0, &op)
                                    : stbav_encode_raw_number(cFrame.data(), cFrame.size(), 0, c->op_id, type,
                                                              indexType, instance, numbers[i]);
                ASSERT_GT(n, 0);
                cFrame.resize(n);
                differences += cFrame != daemonFrame;
                differences += DaemonDecode(cFrame) != image;
                // The daemon encodes, C decodes.
                const CDecode got(daemonFrame, 7);
                differences += got.ops.size() != 1 || got.images.at(0) != image || got.ops[0].entry != c;
                if (!bytes && got.ops.size() == 1) {
                    uint64_t v = 0;
                    const unsigned w = stbav_type_width(type);
                    const uint64_t mask = w == 8 ? ~0ull : (1ull << (8 * w)) - 1;
                    const uint64_t want = type == VT_BOOL ? (numbers[i] & 0xFF) != 0 : numbers[i] & mask;
                    differences += !stbav_value_uint(&got.ops[0], type, &v) || v != want;
                    // Signed reading as the daemon's typed getters read it.
                    SsOp daemonOp;
                    daemonOp.DeserializeOp(image);
                    const int64_t wantSigned = type == VT_INT8    ? daemonOp.GetData8(0)
                                               : type == VT_INT16 ? daemonOp.GetData16()
                                               : type == VT_INT32 ? daemonOp.GetData32()
                                               : type == VT_INT64 ? daemonOp.GetData64()
                                                                  : static_cast<int64_t>(want);
                    int64_t s = 0;
                    differences += !stbav_value_int(&got.ops[0], type, &s) || s != wantSigned;
                }
                // The decoded operation encodes to the daemon's frame again.
                Bytes again(STBAV_MAX_FRAME);
                const int m = got.ops.size() == 1 ? stbav_encode(again.data(), again.size(), 0, &got.ops[0]) : 0;
                again.resize(m > 0 ? m : 0);
                differences += again != daemonFrame;
                roundTrips += 2;
            }
        }
    }
    std::printf("round trips: %zu entries x %zu value types (%u values in all per entry) x 2 directions = %u, "
                "differences %u\n",
                map.size(), sizeof kTypes / sizeof kTypes[0], roundTrips / 2 / static_cast<unsigned>(map.size()),
                roundTrips, differences);
    RecordProperty("round_trips", roundTrips);
    EXPECT_EQ(differences, 0u);
    EXPECT_EQ(stbav_lookup(400), nullptr);
}

TEST(HostLibrary, DictionaryTypedEncodingMatchesWhatTheDaemonReads) {
    // Every numeric entry, at both ends of its type's range: the daemon reads the
    // value back with the typed getter of the entry's own type.
    COpSsDataMap dictionary;
    FillDictionary(dictionary);
    for (const auto& kv : dictionary.Get()) {
        const COpSsData& e = *kv.second;
        const unsigned w = stbav_type_width(e.GetDataType());
        Bytes out(STBAV_MAX_FRAME);
        if (w == 0) {
            EXPECT_EQ(stbav_encode_number(out.data(), out.size(), 0, e.GetOpId(), 0, 1), STBAV_E_TYPE);
            EXPECT_GT(stbav_encode_text(out.data(), out.size(), 0, e.GetOpId(), 0, "abc", 3), 0);
            continue;
        }
        EXPECT_EQ(stbav_encode_text(out.data(), out.size(), 0, e.GetOpId(), 0, "abc", 3), STBAV_E_TYPE);
        const bool isSigned = e.GetDataType() == VT_INT8 || e.GetDataType() == VT_INT16 ||
                              e.GetDataType() == VT_INT32 || e.GetDataType() == VT_INT64;
        const int64_t hi = e.GetDataType() == VT_BOOL ? 1 : w == 8 ? INT64_MAX
                           : isSigned                ? (int64_t{1} << (8 * w - 1)) - 1
                                                     : (int64_t{1} << (8 * w)) - 1;
        const int64_t lo = isSigned ? -hi - 1 : 0;
        for (int64_t v : {lo, hi}) {
            const int n = stbav_encode_number(out.data(), out.size(), STBAV_DOUBLE_START, e.GetOpId(), 1, v);
            ASSERT_GT(n, 0) << e.GetName();
            out.resize(n);
            EXPECT_EQ(out[0], 0x0F);
            EXPECT_EQ(DaemonDecode(out), DaemonImage(e, 1, e.GetDataType(), static_cast<uint64_t>(v), ""))
                << e.GetName() << " " << v;
        }
        if (w < 8) {
            EXPECT_EQ(stbav_encode_number(out.data(), STBAV_MAX_FRAME, 0, e.GetOpId(), 1, hi + 1), STBAV_E_RANGE);
            EXPECT_EQ(stbav_encode_number(out.data(), STBAV_MAX_FRAME, 0, e.GetOpId(), 1, lo - 1), STBAV_E_RANGE);
        }
    }
}

TEST(HostLibrary, FormatCodesAgreeWithTheDaemonForEveryFieldValue) {
    // Every value of each narrow field, the six resolutions and some beyond (masked).
    for (uint32_t res : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 0x3FFFFFu, 0x400003u})
        for (unsigned scan = 0; scan < 4; ++scan)
            for (unsigned rate = 0; rate < 16; ++rate)
                for (unsigned aspect = 0; aspect < 16; ++aspect) {
                    const UhdVidFormat daemon(static_cast<VideoFormatBase::Resolution_e>(res),
                                              static_cast<VideoFormatBase::ScanType_e>(scan),
                                              static_cast<VideoFormatBase::AspectRatio_e>(aspect),
                                              static_cast<VideoFormatBase::FrameRate_e>(rate));
                    const uint32_t code = stbav_format_pack(res, scan, rate, aspect);
                    ASSERT_EQ(code, daemon.GetId()) << res << " " << scan << " " << rate << " " << aspect;
                    stbav_format f;
                    stbav_format_unpack(code, &f);
                    ASSERT_EQ(f.resolution, static_cast<uint32_t>(daemon.GetResolution()));
                    ASSERT_EQ(f.scan, static_cast<unsigned>(daemon.GetScanType()));
                    ASSERT_EQ(f.rate, static_cast<unsigned>(daemon.GetFrameRate()));
                    ASSERT_EQ(f.aspect, static_cast<unsigned>(daemon.GetAspectRatio()));
                    ASSERT_EQ(stbav_resolution_height(f.resolution), daemon.GetHeight());
                    ASSERT_EQ(stbav_resolution_width(f.resolution), daemon.GetWidth());
                }
    for (uint32_t w : {0u, 352u, 720u, 1280u, 1440u, 1920u, 3840u, 4096u})
        for (uint32_t h : {0u, 480u, 576u, 600u, 720u, 1080u, 2160u})
            ASSERT_EQ(stbav_resolution_of_size(h, w), static_cast<uint32_t>(SizeToResolution(h, w))) << w << "x" << h;
    EXPECT_EQ(stbav_format_pack(3, 1, 6, 3), 0x630D0000u);
}

struct DecodeCase {
    const char* what;
    Bytes line;
    std::vector<unsigned> opIds;  // operations returned, in order
    unsigned bad, dropped;
};

TEST(HostLibrary, DecoderResynchronisesCountsAndKeepsItsBounds) {
    const Bytes ok = Frame({0, 5, 1, 1, 1, 1, 3});  // videooutputInterface = 3
    Bytes longest = {0, 2, 0, 4, 0x10, 0x10, 0x10, 0x10, 240};
    longest.resize(longest.size() + 240, 0x0F);
    Bytes tooLong = {0, 0x0E, 1, 1, 0, 241};
    tooLong.resize(tooLong.size() + 241, 'a');
    const Bytes overlong = Concat({{0x0F}, Bytes(600, 'a'), {0x10}});
    const DecodeCase cases[] = {
        {"one frame", ok, {261}, 0, 0},
        {"noise before the frame", Concat({{1, 2, 0x11}, ok}), {261}, 0, 3},
        {"stray end marker: in step at the next start", Concat({{0x10}, ok}), {261}, 0, 1},
        {"two start markers", Concat({{0x0F}, ok}), {261}, 0, 0},
        {"frame cut by a start marker", Concat({{0x0F, 0, 5, 1}, ok}), {261}, 1, 0},
        {"two frames in one piece", Concat({ok, Frame({6, 0, 0, 0, 0})}), {261, 0}, 0, 0},
        {"value length past the frame", Frame({0, 5, 1, 1, 1, 5, 3}), {}, 1, 0},
        {"a byte after the image", Frame({0, 5, 1, 1, 1, 1, 3, 9}), {}, 1, 0},
        {"short image", Frame({0, 5, 1, 1}), {}, 1, 0},
        {"empty frame", {0x0F, 0x10}, {}, 1, 0},
        {"index over 4 bytes", Frame({0, 5, 1, 5, 1, 1, 1, 1, 1, 0}), {}, 1, 0},
        {"escape of an ordinary byte", Concat({{0x0F, 0, 5, 0x12, 0x41, 1, 1, 1, 3, 0x10}, ok}), {261}, 1, 0},
        {"escape before the end marker", Concat({{0x0F, 0, 5, 1, 0x12, 0x10}, ok}), {261}, 1, 0},
        {"longest image (4-byte index, 240 bytes, all escaped)", FrameEncoder::EncodeToBytes(longest), {2}, 0, 0},
        {"value of 241 bytes", FrameEncoder::EncodeToBytes(tooLong), {}, 1, 0},
        {"overlong frame, then in step", Concat({overlong, ok}), {261}, 1, 0},
    };
    for (const DecodeCase& c : cases) {
        for (size_t step : {size_t{1}, size_t{5}, c.line.size()}) {
            const CDecode got(c.line, step);
            std::vector<unsigned> ids;
            for (const stbav_op& op : got.ops) ids.push_back(op.op_id);
            // Operations, then the frame, bad frame and dropped byte counters.
            EXPECT_EQ(std::make_tuple(ids, got.d.frames, got.d.bad_frames, got.d.dropped_bytes),
                      std::make_tuple(c.opIds, c.opIds.size(), c.bad, c.dropped))
                << c.what << " (pieces of " << step << ")";
        }
    }
}

TEST(HostLibrary, EncoderRefusesWhatDoesNotFitAndNeverWritesPastItsBuffer) {
    const std::string text241(241, 'x');
    Bytes out(STBAV_MAX_FRAME + 8, 0xAA);
    EXPECT_EQ(stbav_encode_text(out.data(), out.size(), 0, STBAV_OP_serviceselectionServiceName, 0, text241.data(), 241),
              STBAV_E_TOO_LONG);
    EXPECT_EQ(stbav_encode_number(out.data(), out.size(), 0, 400, 0, 1), STBAV_E_UNKNOWN);
    EXPECT_EQ(stbav_encode_number(out.data(), out.size(), 0, STBAV_OP_videooutputInterface, 256, 1), STBAV_E_RANGE);
    EXPECT_EQ(stbav_encode_text(out.data(), out.size(), 0, STBAV_OP_serviceselectionServiceName, 0, nullptr, 3),
              STBAV_E_ARG);
    // The worst case (every byte but the two lengths escaped) fits STBAV_MAX_FRAME; every
    // smaller buffer than the frame is refused, untouched beyond its end.
    const Bytes value(240, 0x10), index(4, 0x0F);
    const stbav_op worst = {0x12, 0x1010, 4, 240, index.data(), value.data(), nullptr};
    const int worstLen = stbav_encode(out.data(), out.size(), STBAV_DOUBLE_START, &worst);
    ASSERT_EQ(worstLen, 3 + 2 * 249 - 2);
    for (size_t cap : {size_t{0}, size_t{1}, size_t{100}, size_t(worstLen - 1)}) {
        Bytes small(cap + 8, 0xAA);
        EXPECT_EQ(stbav_encode(small.data(), cap, STBAV_DOUBLE_START, &worst), STBAV_E_SPACE);
        EXPECT_EQ(Bytes(small.begin() + cap, small.end()), Bytes(8, 0xAA)) << cap;
    }
    // The apply trigger, as the host guide shows it.
    const int n = stbav_encode_apply(out.data(), out.size(), STBAV_DOUBLE_START);
    EXPECT_EQ(Bytes(out.begin(), out.begin() + n), (Bytes{0x0F, 0x0F, 6, 0, 0, 0, 0, 0x10}));
    uint16_t id = 0;
    EXPECT_TRUE(stbav_op_id("videoWidth", &id));
    EXPECT_EQ(id, STBAV_OP_videoWidth);
    EXPECT_FALSE(stbav_op_id("videoWidt", &id));
}

}  // namespace
