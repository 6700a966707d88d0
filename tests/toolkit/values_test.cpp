// Tests of the toolkit's value helpers: KT::CEnvBlock, KT::CIpAddress,
// KT::CMacAddress and KT::Endian, with fixed vectors.
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "toolkit/kt_address.h"
#include "toolkit/kt_endian.h"
#include "toolkit/kt_env_block.h"

namespace {

TEST(CEnvBlock, ReadsNameValueLinesAMissingFileGivesTheDefault) {
    char path[] = "/tmp/kt-values-XXXXXX";
    ::close(mkstemp(path));
    std::ofstream(path) << "# build information\n"
                           "\n"
                           "  version = 2.4.1-rc1  \r\n"
                           "board=hi3798\n"
                           "no separator here\n"
                           "=no name\n"
                           "url=http://x/?a=b\n"
                           "empty=\n"
                           "board=hi3796\n"
                           "\tquoted = \"x y\"\n";
    KT::CEnvBlock env(path);
    ::unlink(path);
    ASSERT_TRUE(env.IsLoaded());
    const struct {
        const char* name;
        const char* expected;
    } cases[] = {
        {"version", "2.4.1-rc1"}, {"board", "hi3796"},   {"url", "http://x/?a=b"}, {"empty", ""},
        {"quoted", "\"x y\""},    {"no separator here", "-"}, {"", "-"}, {"# build information", "-"},
    };
    for (const auto& c : cases) EXPECT_EQ(env.Get(c.name, "-"), c.expected) << c.name;

    KT::CEnvBlock missing(path);
    EXPECT_FALSE(missing.IsLoaded());
    EXPECT_EQ(missing.Get("version", "unknown"), "unknown");
}

// A refused text leaves the address as it was (127.0.0.1).
TEST(CIpAddress, DottedTextAndNumber) {
    const struct {
        const char* text;
        bool ok;
        uint32_t value;
        const char* shown = nullptr;  // ToString afterwards, when accepted
    } cases[] = {
        {"10.0.0.1", true, 0x0A000001u, "10.0.0.1"}, {"0.0.0.0", true, 0, "0.0.0.0"},
        {"255.255.255.255", true, 0xFFFFFFFFu, "255.255.255.255"}, {"001.002.003.004", true, 0x01020304u, "1.2.3.4"},
        {"256.1.1.1", false, 0},          {"1.2.3", false, 0},            {"1.2.3.4.5", false, 0},
        {"1.2.3.4 ", false, 0},           {" 1.2.3.4", false, 0},         {"1..3.4", false, 0},
        {"1.2.3.-4", false, 0},           {"0001.2.3.4", false, 0},       {"", false, 0},
        {"a.b.c.d", false, 0},
    };
    for (const auto& c : cases) {
        KT::CIpAddress addr;
        addr.SetIpInt(0x7F000001u);
        EXPECT_EQ(addr.Set(c.text), c.ok) << c.text;
        EXPECT_EQ(addr.GetIpInt(), c.ok ? c.value : 0x7F000001u) << c.text;
        EXPECT_EQ(addr.ToString(), c.ok ? c.shown : "127.0.0.1") << c.text;
    }
}

TEST(CMacAddress, RawBytesOrText) {
    const struct {
        std::string value;
        bool ok;
        const char* text;
    } cases[] = {
        {std::string("\x00\x11\x13\xAB\xCD\xEF", 6), true, "00:11:13:ab:cd:ef"},
        {"00:1A:2b:3C:4d:5E", true, "00:1a:2b:3c:4d:5e"},
        {"00-1a-2b-3c-4d-5e", true, "00:1a:2b:3c:4d:5e"},
        {"00:1a-2b:3c:4d:5e", false, ""},
        {"00:1a:2b:3c:4d:5g", false, ""},
        {"00:1a:2b:3c:4d", false, ""},
        {"001a2b3c4d5e", false, ""},
        {"", false, ""},
    };
    for (const auto& c : cases) {
        KT::CMacAddress mac;
        EXPECT_EQ(mac.Set(c.value), c.ok) << c.value;
        EXPECT_EQ(mac.ToString(), c.ok ? c.text : "00:00:00:00:00:00") << c.value;
    }
}

// The bytes of v as they lie in memory, read first to last as one number.
template <typename T>
uint64_t MemoryOrder(T v) {
    unsigned char b[sizeof(T)];
    std::memcpy(b, &v, sizeof(T));
    uint64_t n = 0;
    for (unsigned char c : b) n = n << 8 | c;
    return n;
}

TEST(Endian, BigEndianImagesWhateverTheHost) {
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<uint16_t>(0x1234)), 0x1234u);
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<uint32_t>(0x01020304u)), 0x01020304u);
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<uint64_t>(0x0102030405060708ull)), 0x0102030405060708u);
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<int16_t>(-2)), 0xFFFEu);
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<int32_t>(-0x12345678)), 0xEDCBA988u);
    EXPECT_EQ(MemoryOrder(KT::Endian::HostToBig<int64_t>(INT64_MIN)), 0x8000000000000000u);

    const int32_t negatives[] = {-1, -2, INT32_MIN, INT32_MAX, 0};
    for (int32_t v : negatives) EXPECT_EQ(KT::Endian::BigToHost(KT::Endian::HostToBig(v)), v);
    EXPECT_EQ(KT::Endian::BigToHost(KT::Endian::HostToBig<int64_t>(INT64_MIN + 5)), INT64_MIN + 5);

    unsigned char buf[4] = {};
    KT::Endian::StoreBig32(buf, 0xA1B2C3D4u);
    EXPECT_EQ(std::vector<unsigned char>(buf, buf + 4), (std::vector<unsigned char>{0xA1, 0xB2, 0xC3, 0xD4}));
    EXPECT_EQ(KT::Endian::LoadBig32(buf), 0xA1B2C3D4u);
    KT::Endian::StoreBig16(buf, 0xBEEF);
    EXPECT_EQ(buf[0], 0xBE);
    EXPECT_EQ(KT::Endian::LoadBig16(buf), 0xBEEF);
}

}  // namespace
