// How received frames are shown: fixed images to exact text and JSON lines.
#include "tools/op_formatter.h"

#include <gtest/gtest.h>

#include "tests/tools/op_text.h"

namespace avhost {
namespace {

class OpFormatterTest : public ::testing::Test {
protected:
    const OpCatalog catalog;
    const OpFormatter formatter{catalog};
};

TEST_F(OpFormatterTest, ShowsEachValueByItsDictionaryType) {
    const struct {
        const char* image;
        const char* text;
        const char* json;
    } cases[] = {
        {"00 0F 01 01 00 02 07 80", "   1.234 < videoWidth[0] = 1920",
         R"({"t":1.234,"dir":"<","op":"videoWidth","opId":271,"opType":0,"type":"VT_UINT16","index":0,"value":1920})"},
        {"00 0B 01 01 01 04 63 0D 00 00",
         "   1.234 < videooutputCurrentOutputFormat[1] = 0x630D0000 (1920x1080p 16x9 50.00fps)",
         R"({"t":1.234,"dir":"<","op":"videooutputCurrentOutputFormat","opId":267,"opType":0,"type":"VT_UINT32",)"
         R"("index":1,"value":1661796352,"text":"1920x1080p 16x9 50.00fps"})"},
        // status texts travel under numeric types: shown as text
        {"00 03 00 01 00 0B 73 74 62 61 76 5F 72 65 61 64 79", "   1.234 < stbsystemReady[0] = \"stbav_ready\"",
         R"({"t":1.234,"dir":"<","op":"stbsystemReady","opId":3,"opType":0,"type":"VT_INT8","index":0,)"
         R"("value":"stbav_ready"})"},
        {"00 02 00 04 00 00 00 00 03 31 2E 30", "   1.234 < stbsystemSoftwareVersion[0] = \"1.0\"",
         R"({"t":1.234,"dir":"<","op":"stbsystemSoftwareVersion","opId":2,"opType":0,"type":"VT_UINT32",)"
         R"("index":0,"value":"1.0"})"},
        {"00 14 00 01 02 01 FA", "   1.234 < analogaudioOutputLevel[2] = -6", nullptr},
        {"00 D5 00 01 00 02 FF FF", "   1.234 < selectedaudioPid[0] = -1", nullptr},
        {"00 68 00 01 00 01 02", "   1.234 < avssconfigGenlockAvail[0] = true",
         R"({"t":1.234,"dir":"<","op":"avssconfigGenlockAvail","opId":104,"opType":0,"type":"VT_BOOL","index":0,)"
         R"("value":true})"},
        {"00 E2 00 01 00 05 61 22 5C 0A 01", R"(   1.234 < selectedserviceServiceName[0] = "a\"\\\n\x01")",
         R"({"t":1.234,"dir":"<","op":"selectedserviceServiceName","opId":226,"opType":0,"type":"VT_STRING",)"
         R"("index":0,"value":"a\"\\\n\u0001"})"},
        {"00 0F 01 01 00 01 07", "   1.234 < videoWidth[0] = [07]", nullptr},  // wrong length, not text
        {"00 0F 01 00 00", "   1.234 < videoWidth = []",
         R"({"t":1.234,"dir":"<","op":"videoWidth","opId":271,"opType":0,"type":"VT_UINT16","index":null,)"
         R"("value":null})"},
        {"00 90 01 01 01 02 01 02", "   1.234 < #400[1] = \"\\x01\\x02\"",
         R"({"t":1.234,"dir":"<","op":null,"opId":400,"opType":0,"type":null,"index":1,"value":"\u0001\u0002"})"},
        {"06 00 00 00 00", "   1.234 < apply", R"({"t":1.234,"dir":"<","op":"apply","opId":0,"opType":6})"},
        {"03 0F 01 01 00 02 07 80", "   1.234 < videoWidth[0] = 1920 (op type 3)", nullptr},
    };
    for (const auto& c : cases) {
        LineFrame frame = FrameOf(c.image);
        ASSERT_EQ(frame.kind, LineFrame::kOp) << c.image;
        EXPECT_EQ(formatter.Text(1.2344, '<', frame), c.text) << c.image;
        if (c.json != nullptr) {
            EXPECT_EQ(formatter.Json(1.2344, '<', frame), c.json) << c.image;
        }
    }
}

TEST_F(OpFormatterTest, ReportsFramesThatAreNoOperation) {
    const std::vector<LineFrame> frames = FramesOf(Hex("41 0F 00 01 10 0F 00"));
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(formatter.Text(0, '<', frames[0]), "   0.000 < stray bytes: 41");
    EXPECT_EQ(formatter.Text(0, '<', frames[1]), "   0.000 < decode failed: 0F 00 01 10");
    EXPECT_EQ(formatter.Text(0, '<', frames[2]), "   0.000 < incomplete frame: 0F 00");
    EXPECT_EQ(formatter.Json(2.5, '>', frames[1]),
              R"({"t":2.500,"dir":">","error":"decode failed","bytes":"0F 00 01 10"})");
}

TEST_F(OpFormatterTest, PlainValueIsWhatOneWouldType) {
    EXPECT_EQ(formatter.PlainValue(FrameOf("00 14 00 01 02 01 FA").op), "-6");
    EXPECT_EQ(formatter.PlainValue(FrameOf("00 03 00 01 00 02 6F 6B").op), "ok");
    EXPECT_EQ(formatter.PlainValue(FrameOf("00 0B 01 01 01 04 63 0D 00 00").op), "1661796352");
}

// Names beside codes in all three styles; service names always valid UTF-8 in
// JSON (UTF-8 kept, Latin-1 converted); absolute UTC stamps with microseconds.
TEST_F(OpFormatterTest, NamesUtf8AndUtcInEveryStyle) {
    // Text style, UTC stamps, t = 0 at 2024-05-01T12:00:00Z.
    const OpFormatter utc(catalog, OpFormatter::Output{OpFormatter::kText, true, 1714564800.0});
    const LineFrame rate = FrameOf("00 12 01 01 00 02 00 03");  // videoFrameRate[0] = 3
    EXPECT_EQ(utc.Text(1.000123, '<', rate), "2024-05-01T12:00:01.000123Z < videoFrameRate[0] = 3 (25 fps)");
    EXPECT_EQ(utc.Json(1.5, '<', rate),
              R"({"t":1.500,"dir":"<","utc":"2024-05-01T12:00:01.500000Z","op":"videoFrameRate","opId":274,)"
              R"("opType":0,"type":"VT_UINT16","index":0,"value":3,"meaning":"25 fps"})");
    EXPECT_EQ(utc.Csv(1.5, '<', rate),
              "2024-05-01T12:00:01.500000Z,<,videoFrameRate,274,0,VT_UINT16,0,3,25 fps,");
    EXPECT_EQ(utc.Meaning(FrameOf("00 14 01 01 00 01 0A").op), "H.264 High");  // videoProfile
    EXPECT_EQ(utc.Meaning(FrameOf("00 14 01 01 00 01 63").op), "");            // 99: no name
    const struct {
        const char* image;
        const char* value;
    } names[] = {
        {"00 E2 00 01 00 0B 43 61 66 C3 A9 20 D0 A2 D0 92 20", "\"Café ТВ \""},  // UTF-8 as is
        {"00 E2 00 01 00 07 43 61 66 E9 20 54 56", R"("Café TV")"},                                // Latin-1 é
        {"00 E2 00 01 00 03 41 2C 22", R"("A,\"")"},
    };
    for (const auto& n : names) {
        const std::string json = formatter.Json(0, '<', FrameOf(n.image));
        EXPECT_NE(json.find(std::string("\"value\":") + n.value + "}"), std::string::npos) << json;
    }
    EXPECT_EQ(formatter.Describe(FrameOf(names[0].image)), "selectedserviceServiceName[0] = \"Café ТВ \"");
    EXPECT_EQ(formatter.Describe(FrameOf(names[1].image)), "selectedserviceServiceName[0] = \"Caf\\xE9 TV\"");
    EXPECT_EQ(formatter.Csv(0, '<', FrameOf("00 E2 00 01 00 03 41 2C 22")),
              "0.000,<,selectedserviceServiceName,226,0,VT_STRING,0,\"A,\"\"\",,");
}

}  // namespace
}  // namespace avhost
