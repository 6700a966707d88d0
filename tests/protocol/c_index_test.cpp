// CIndex: field sizes, encoding and decoding of index streams.
#include "protocol/c_index.h"

#include <gtest/gtest.h>

#include <vector>

using Bytes = std::vector<unsigned char>;

// Each field takes its type's size; a type without bytes repeats the value before
// it (0 when it comes first); a stream of another length than the types' is refused.
TEST(CIndex, DeserializesEachFieldInItsSizeAndInOrder) {
    const struct {
        Bytes stream;
        std::vector<DataVarType_e> types;
        std::vector<unsigned int> values;  // empty: refused
    } cases[] = {
        {{0xAB, 0xCD}, {VT_UINT16}, {0xABCD}},
        {{1, 2, 3}, {VT_UINT16}, {}},
        {{1, 2, 3, 4, 5, 6, 7}, {VT_BOOL, VT_UINT32, VT_UINT8, VT_STRING, VT_UINT16}, {0, 0x01020304, 5, 5, 0x0607}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stream.size());
        CIndex index(c.stream, c.types);
        EXPECT_EQ(index.VerifyTypeListIsFullyLoaded(), !c.values.empty());
        EXPECT_EQ(index.Deserialize(), !c.values.empty());
        std::vector<unsigned int> values;
        unsigned int v = 0;
        for (unsigned i = 0; index.GetIndex(i, v); ++i) values.push_back(v);
        EXPECT_EQ(values, c.values);
        EXPECT_EQ(index.GetIndexCount(), c.values.size());
    }
}

TEST(CIndex, SerializeWritesEachFieldInItsSize) {
    CIndex index;
    index.AddIndex(0x11223344u);
    index.AddIndex(static_cast<unsigned short>(0xAABBCCDD & 0xFFFF));
    index.AddIndex(static_cast<unsigned char>(0x7F));
    index.PushIndexType(VT_INT8);  // a type without value adds nothing
    ASSERT_TRUE(index.Serialize());
    EXPECT_EQ(index.GetIndexStream(), (Bytes{0x11, 0x22, 0x33, 0x44, 0xCC, 0xDD, 0x7F}));

    DataVarType_e types[] = {VT_UINT8, VT_UINT8};
    CIndex pair(types, 2);
    unsigned int values[] = {0x1FF, 2};
    EXPECT_FALSE(pair.FillIndexes(values, 1));
    ASSERT_TRUE(pair.FillIndexes(values, 2));
    pair.Serialize();
    EXPECT_EQ(pair.GetIndexStream(), (Bytes{0xFF, 0x02}));

    CIndex one(1, VT_UINT16);
    ASSERT_TRUE(one.SetIndex(0, 0x1234));
    EXPECT_TRUE(one.Serialize());
    EXPECT_EQ(one.GetIndexStream(), (Bytes{0x12, 0x34}));
}

TEST(CIndex, EmptyValuesLeaveTheStream) {
    CIndex index(Bytes{9, 9}, {VT_UINT16});
    EXPECT_TRUE(index.Serialize());
    EXPECT_EQ(index.GetIndexStream(), (Bytes{9, 9}));

    CIndex none;
    unsigned char* ptr = nullptr;
    unsigned int len = 0;
    EXPECT_FALSE(none.GetIndexStream(ptr, len));
    EXPECT_FALSE(none.SetIndex(0, 1));
    unsigned int v = 5;
    EXPECT_FALSE(none.GetIndex(0, v));
    EXPECT_EQ(v, 5u);
}
