// SsOp: value setters and getters, the op image with chunking, and parsing.
#include "protocol/ss_op.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/protocol/print_capture.h"
#include "tests/transport/line_bytes.h"
#include "toolkit/kt_address.h"

TEST(SsOpImage, CacheIsKeptUntilRebuilt) {
    SsOp op(OP_TYPE_DATA, 7);
    op.SetDataU8(1);
    Bytes first = ImageOf(op);
    op.SetDataU8(2);  // setters do not refresh the cached image
    EXPECT_EQ(ImageOf(op), first);
    EXPECT_EQ(op.SerializeOp(), 6u);
    EXPECT_EQ(ImageOf(op).back(), 2);
}

TEST(SsOpImage, LongValueIsSentInChunksOf240) {
    std::string text(300, 'x');
    for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i % 26);
    SsOp op(OP_TYPE_DATA, 226);
    op.SetIndexList({1});
    op.SetDataU8(text);

    unsigned char* ptr = nullptr;
    unsigned int len = 0;
    unsigned int offset = 0;
    for (unsigned int size : {240u, 60u, 0u}) {  // offset == length: an empty chunk
        const unsigned int from = offset;
        ASSERT_EQ(op.GetSerializedOp(ptr, len, offset), 5u + 1 + size);
        EXPECT_EQ(ptr[5], size);
        EXPECT_EQ(std::string(ptr + 6, ptr + len), text.substr(from, size));
        EXPECT_EQ(offset, from + size);
    }

    offset = 301;
    EXPECT_EQ(op.SerializeOp(offset), 0u);
    EXPECT_EQ(offset, 301u);
}

TEST(SsOpSetters, WriteBigEndianBytes) {
    const struct {
        const char* name;
        void (*set)(SsOp&);
        Bytes expected;
    } cases[] = {
        {"U8", [](SsOp& o) { o.SetDataU8(0xAB); }, {0xAB}},
        {"U16", [](SsOp& o) { o.SetDataU16(0x1234); }, {0x12, 0x34}},
        {"16 negative", [](SsOp& o) { o.SetData16(-2); }, {0xFF, 0xFE}},
        {"U32", [](SsOp& o) { o.SetDataU32(0x01020304); }, {1, 2, 3, 4}},
        {"32 negative", [](SsOp& o) { o.SetData32(-1); }, {0xFF, 0xFF, 0xFF, 0xFF}},
        {"size above 4", [](SsOp& o) { o.SetData(0x01020304, 6); }, {0, 0, 1, 2, 3, 4}},
        {"size 3", [](SsOp& o) { o.SetData(0x01020304, 3); }, {2, 3, 4}},
        {"U64", [](SsOp& o) { o.SetDataU64(0x0102030405060708ULL); }, {1, 2, 3, 4, 5, 6, 7, 8}},
        {"64 negative", [](SsOp& o) { o.SetData64(-2); }, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}},
        {"text", [](SsOp& o) { o.SetDataU8(std::string("ab")); }, {'a', 'b'}},
        {"raw", [](SsOp& o) { const unsigned char b[] = {9, 0, 8}; o.SetDataU8(b, 3); }, {9, 0, 8}},
    };
    for (const auto& c : cases) {
        SsOp op;
        op.SetDataU8(std::string("old value"));
        c.set(op);
        EXPECT_EQ(op.GetRawData(), c.expected) << c.name;
    }
}

TEST(SsOpGetters, SizeAndBoundsFailuresPrintAndReturnZero) {
    PrintCapture prints;
    SsOp op;
    op.SetDataU8(0x80);
    EXPECT_EQ(op.GetData(2), 0u);
    EXPECT_EQ(op.GetData8(0), -128);
    EXPECT_EQ(op.GetDataU8(3), 0);
    EXPECT_EQ(op.GetData8(1), 0);
    EXPECT_EQ(op.GetData64(), 0);
    EXPECT_EQ(op.GetDataU64(), 0u);
    EXPECT_EQ(prints.Lines(), (std::vector<std::string>{
                                  "GetData wrong size (2 != 1)",
                                  "GetDataU8 out of bounds (3 >= 1)",
                                  "GetData8 out of bounds (1 >= 1)",
                                  "GetData64 wrong size (1 < 8)",
                                  "GetDataU64 wrong size (1 < 8)",
                              }));
}

TEST(SsOpGetters, SixtyFourBitsKeepTheLastEightBytes) {
    SsOp op;
    const unsigned char nine[] = {0xAA, 1, 2, 3, 4, 5, 6, 7, 0x88};
    op.SetDataU8(nine, 9);
    EXPECT_EQ(op.GetDataU64(), 0x0102030405060788ULL);
    EXPECT_EQ(op.GetData64(), 0x0102030405060788LL);
}

TEST(SsOpGetters, LastIndexIsOneWithoutIndex) {
    SsOp op;
    EXPECT_EQ(op.GetLastIndex(), 1u);
    op.SetIndexList({0, 0, 0, 7});
    EXPECT_EQ(op.GetLastIndex(), 7u);
}

std::string Show(char v) { return std::to_string(static_cast<signed char>(v)); }  // plain char is unsigned on ARM
std::string Show(bool v) { return v ? "true" : "false"; }
std::string Show(const KT::CIpAddress& v) { return std::to_string(v.GetIpInt()); }
std::string Show(const KT::CMacAddress& v) { return v.ToString(); }
template <typename T>
std::string Show(T v) { return std::to_string(v); }

// A typed getter whose output starts as start: what it holds after the call,
// with "refused " before it when the getter returned false.
template <typename T>
std::function<std::string(SsOp&, DataVarType_e)> Getter(T start = T{}) {
    return [start](SsOp& op, DataVarType_e type) {
        T out = start;
        const bool read = op.GetData(type, out);
        return (read ? "" : "refused ") + Show(out);
    };
}

// Every typed getter reads its own type; any other code is refused with a
// message naming the type expected, and the output is left as it was.
TEST(SsOpTypedGetters, ReadTheirOwnTypeAndRefuseOthersWithTheirMessage) {
    const Bytes u8{0xFE}, s16{0xFC, 0x18}, u32{0xC0, 0xA8, 0x01, 0x02}, mac{0xAA, 0x01, 0x02, 0x03, 0x04, 0x05};
    const Bytes s64{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFB};  // -5
    const struct {
        const char* name;
        DataVarType_e type;
        Bytes value;
        std::function<std::string(SsOp&, DataVarType_e)> get;
        std::string read, refused;
    } cases[] = {
        {"VT_UINT8", VT_UINT8, u8, Getter<unsigned char>(9), "254", "refused 9"},
        {"VT_INT8", VT_INT8, u8, Getter<char>(9), "-2", "refused 9"},
        {"VT_UINT16", VT_UINT16, s16, Getter<unsigned short>(9), "64536", "refused 9"},
        {"VT_INT16", VT_INT16, s16, Getter<short>(9), "-1000", "refused 9"},
        {"VT_UINT32", VT_UINT32, u32, Getter<unsigned int>(9), std::to_string(0xC0A80102u), "refused 9"},
        {"VT_INT32", VT_INT32, u32, Getter<int>(9), std::to_string(static_cast<int>(0xC0A80102u)), "refused 9"},
        {"VT_BOOL", VT_BOOL, u8, Getter<bool>(false), "true", "refused false"},
        {"VT_INT64", VT_INT64, s64, Getter<long long>(9), "-5", "refused 9"},
        {"VT_UINT64", VT_UINT64, s64, Getter<unsigned long long>(9), "18446744073709551611", "refused 9"},
        {"VT_IP", VT_IP, u32, Getter<KT::CIpAddress>(), std::to_string(0xC0A80102u), "refused 0"},
        {"VT_MAC", VT_MAC, mac, Getter<KT::CMacAddress>(), "aa:01:02:03:04:05", "refused 00:00:00:00:00:00"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PrintCapture prints;
        SsOp op;
        op.SetDataU8(c.value.data(), static_cast<unsigned>(c.value.size()));
        EXPECT_EQ(c.get(op, c.type), c.read);
        const int other = c.type + 1;  // a code of its own in each message
        EXPECT_EQ(c.get(op, static_cast<DataVarType_e>(other)), c.refused);
        EXPECT_EQ(prints.Lines(), std::vector<std::string>{"Expected type " + std::string(c.name) + " got type: " +
                                                           std::to_string(other)});
    }
}

enum class TestLevel_e : unsigned char { Low = 1, High = 200 };

TEST(SsOpSetSsOpData, StoresNumbersUnderTheWireType) {
    const struct {
        DataVarType_e type;
        Bytes expected;
    } cases[] = {
        {VT_INT32, {0xFF, 0xFF, 0xFF, 0xFF}}, {VT_UINT32, {0xFF, 0xFF, 0xFF, 0xFF}}, {VT_INT8, {0xFF}},
        {VT_UINT8, {0xFF}}, {VT_BOOL, {0xFF}}, {VT_INT16, {0xFF, 0xFF}}, {VT_UINT16, {0xFF, 0xFF}},
        {VT_INT64, Bytes(8, 0xFF)}, {VT_UINT64, {0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},
    };
    for (const auto& c : cases) {
        SsOp op;
        // The value's own signedness decides the widening: int -1 stays all ones,
        // unsigned 0xFFFFFFFF gains zero bytes in 64 bits.
        EXPECT_TRUE(c.type == VT_UINT64 ? op.SetSsOpData(0xFFFFFFFFu, c.type)
                                        : op.SetSsOpData(static_cast<signed char>(-1), c.type));
        EXPECT_EQ(op.GetRawData(), c.expected) << "type " << c.type;
    }
    SsOp op;
    EXPECT_TRUE(op.SetSsOpData(TestLevel_e::High, VT_UINT8));
    EXPECT_EQ(op.GetRawData(), Bytes{200});
    EXPECT_TRUE(op.SetSsOpData(static_cast<unsigned short>(0x1234), VT_UINT32));
    EXPECT_EQ(op.GetRawData(), (Bytes{0, 0, 0x12, 0x34}));
}

TEST(SsOpSetSsOpData, RefusesTypesThatCarryNoNumber) {
    const int refused[] = {6, 7, 9, 10, 11, 12, 13, 14, 15, 18, 100};
    for (int code : refused) {
        PrintCapture prints;
        SsOp op;
        op.SetDataU8(7);
        EXPECT_FALSE(op.SetSsOpData(1u, static_cast<DataVarType_e>(code)));
        EXPECT_EQ(op.GetRawData(), Bytes{7});
        EXPECT_EQ(prints.Lines(), std::vector<std::string>{"Unexpected datatype received: " + std::to_string(code)});
    }
}

TEST(SsOpSetSsOpData, TextOnlyAsStringType) {
    PrintCapture prints;
    SsOp op;
    EXPECT_TRUE(op.SetSsOpData(std::string("v1.2"), VT_STRING));
    EXPECT_EQ(op.GetDataString(), "v1.2");
    EXPECT_FALSE(op.SetSsOpData(std::string("x"), VT_UINT8));
    EXPECT_EQ(op.GetDataString(), "v1.2");
    EXPECT_EQ(prints.Lines(), (std::vector<std::string>{"SetSsOpData string", "SetSsOpData string",
                                                        "Unexpected datatype received: 3"}));
}

TEST(SsOpDeserialize, CornerCases) {
    const struct {
        const char* name;
        Bytes buf;     // what is readable
        unsigned len;  // what the caller says
        unsigned consumed;
        Bytes index, data;
        std::vector<std::string> prints;
    } cases[] = {
        {"empty index and data", {0x00, 0x10, 0x00, 0x00, 0x00}, 5, 5, {}, {}, {}},
        {"type, id, index and value", {0x00, 0x0F, 0x01, 0x01, 0x02, 0x02, 0x07, 0x80}, 8, 8, {2}, {7, 0x80}, {}},
        {"trailing bytes ignored", {0x06, 0x01, 0x01, 0x01, 0x09, 0x02, 0xAA, 0xBB, 0x00, 0x55}, 10, 8, {9},
         {0xAA, 0xBB}, {}},
        {"index length past the end", {0x00, 0x01, 0x00, 0x05, 0x01}, 5, 0, {}, {},
         {"DeserializeArray failed! offset=3, dataLength=5; arrayLength=5"}},
        {"data length byte missing", {0x00, 0x01, 0x00, 0x01, 0x07}, 5, 0, {}, {},
         {"DeserializeArray failed! offset=5, dataLength=5"}},
        {"data length past the end", {0x00, 0x01, 0x00, 0x00, 0x03, 0x01, 0x02}, 7, 0, {}, {},
         {"DeserializeArray failed! offset=4, dataLength=7; arrayLength=3"}},
        {"header only", {0x00, 0x01, 0x00, 0x00}, 2, 0, {}, {},
         {"DeserializeArray failed! offset=3, dataLength=2"}},
        {"too short", {0x00, 0x01}, 1, 0, {}, {}, {}},
    };
    for (const auto& c : cases) {
        PrintCapture prints;
        SsOp op;
        op.SetIndexList({1, 2});
        op.SetDataU8(std::string("stale"));
        EXPECT_EQ(op.DeserializeOp(c.buf.data(), c.len), c.consumed) << c.name;
        EXPECT_EQ(op.GetIndexList(), c.index) << c.name;
        EXPECT_EQ(op.GetRawData(), c.data) << c.name;
        EXPECT_EQ(prints.Lines(), c.prints) << c.name;
        if (c.consumed > 0) {
            EXPECT_EQ(ImageOf(op), Bytes(c.buf.begin(), c.buf.begin() + c.consumed)) << "rebuilt from what it consumed";
        }
    }
    SsOp op;
    EXPECT_EQ(op.DeserializeOp(nullptr, 10), 0u);
}

// Random operations of every size survive image -> parse, chunk by chunk.
TEST(SsOpRoundTrip, SeededRandomOperations) {
    std::mt19937 rng(20240611);
    auto byte = [&] { return static_cast<unsigned char>(rng() & 0xFF); };
    for (int iter = 0; iter < 5000; ++iter) {
        SsOp op(static_cast<OpType_e>(byte()), rng() & 0xFFFF);
        Bytes index(rng() % 9);
        for (auto& b : index) b = byte();
        Bytes data(iter % 10 == 0 ? rng() % 700 : rng() % 241);
        for (auto& b : data) b = byte();
        op.SetIndexList(index);
        op.SetDataU8(data.data(), static_cast<unsigned>(data.size()));

        Bytes reassembled;
        unsigned int offset = 0;
        do {
            unsigned char* ptr = nullptr;
            unsigned int len = 0;
            op.GetSerializedOp(ptr, len, offset);
            Bytes image(ptr, ptr + len);
            image.push_back(0);  // the receiver's spare byte
            SsOp back;
            ASSERT_EQ(back.DeserializeOp(image.data(), len), len) << iter;
            ASSERT_EQ(back.GetOpType(), op.GetOpType());
            ASSERT_EQ(back.GetOpId(), op.GetOpId());
            ASSERT_EQ(back.GetIndexList(), index);
            Bytes chunk = back.GetRawData();
            ASSERT_LE(chunk.size(), SsOp::kMaxChunk);
            reassembled.insert(reassembled.end(), chunk.begin(), chunk.end());
        } while (offset < data.size());
        ASSERT_EQ(reassembled, data) << iter;
    }
}
