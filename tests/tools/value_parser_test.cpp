// What a person types for an operation, down to the op image the daemon receives.
#include "tools/value_parser.h"

#include <gtest/gtest.h>

#include "output/uhd_vid_format.h"
#include "tools/line_decoder.h"

namespace avhost {
namespace {

// An accepted text gives its image; a rejected one a message that names the problem.
TEST(ParseAssignment, BuildsTheImageByTheEntrysValueAndIndexTypeOrSaysWhatIsWrong) {
    const OpCatalog catalog;
    const struct {
        const char* text;
        const char* image;  // nullptr: rejected
        const char* error;
    } cases[] = {
        {"videooutputInterface=3@1", "00 05 01 01 01 01 03", nullptr},
        {"analogaudioOutputLevel=-6", "00 14 00 01 00 01 FA", nullptr},              // VT_INT8
        {"analogaudioOutputLevel=0xFA", "00 14 00 01 00 01 FA", nullptr},            // hex bit pattern
        {"selectedaudioPid=-1", "00 D5 00 01 00 02 FF FF", nullptr},                 // VT_INT16
        {"serviceselectionPcr=0x1FFF", "00 F5 00 01 00 02 1F FF", nullptr},          // VT_UINT16
        {"avssHeartBeat=4294967295", "00 70 00 01 00 04 FF FF FF FF", nullptr},     // VT_UINT32
        {"avssconfigGenlockAvail=true", "00 68 00 01 00 01 01", nullptr},            // VT_BOOL
        {"avssconfigGenlockAvail=1", "00 68 00 01 00 01 01", nullptr},
        {"stbsystemSoftwareVersion=7@0x01020304", "00 02 00 04 01 02 03 04 04 00 00 00 07", nullptr},  // 4-byte index
        {"serviceselectionServiceName=My TV", "00 F9 00 01 00 05 4D 79 20 54 56", nullptr},
        {"serviceselectionServiceName=a=b@c@2", "00 F9 00 01 02 05 61 3D 62 40 63", nullptr},  // '=' and '@' in text
        // a video format as text (SD defaults to 4:3; the last is the form the monitor prints) or as a number
        {"videooutputManualFormat=1920x1080p50", "00 0A 01 01 00 04 63 0D 00 00", nullptr},
        {"videooutputManualFormatCvbs=720x480i29.97/4:3@1", "00 0C 01 01 01 04 42 00 00 00", nullptr},
        {"videooutputManualFormat=720x480i29.97", "00 0A 01 01 00 04 42 00 00 00", nullptr},
        {"videooutputManualFormat=4096x2160p60/1.9:1", "00 0A 01 01 00 04 85 15 00 00", nullptr},
        {"videooutputManualFormat=1920x1080psf23.976/2.21x1", "00 0A 01 01 00 04 14 0E 00 00", nullptr},
        {"videooutputManualFormat=1920x1080p 16x9 50.00fps", "00 0A 01 01 00 04 63 0D 00 00", nullptr},
        {"videooutputManualFormat=0x630D0000", "00 0A 01 01 00 04 63 0D 00 00", nullptr},
        {"videooutputInterface=256", nullptr, "videooutputInterface: value 256 out of range for VT_UINT8 (0..255)"},
        {"analogaudioOutputLevel=128", nullptr, "out of range for VT_INT8 (-128..127, or 0x0..0xFF)"},
        {"selectedaudioPid=32768", nullptr, "out of range for VT_INT16 (-32768..32767, or 0x0..0xFFFF)"},
        {"avssHeartBeat=4294967296", nullptr, "out of range for VT_UINT32 (0..4294967295)"},
        {"avssHeartBeat=99999999999999999999999", nullptr, "malformed value"},
        {"videoWidth=12abc", nullptr, "videoWidth: malformed value \"12abc\" for VT_UINT16"},
        {"videoWidth=1.5", nullptr, "malformed value"},
        {"avssconfigGenlockAvail=2", nullptr, "malformed value \"2\" for VT_BOOL (0, 1, true or false)"},
        {"videoWidth=1@256", nullptr, "videoWidth: bad index \"256\" (0..255)"},
        {"VIDEOWIDTH=1", nullptr, "(did you mean videoWidth?)"},
        {"videoWidth", nullptr, "expected NAME=VALUE[@INDEX], got \"videoWidth\""},
        {"videooutputManualFormat=1920x1080p51", nullptr, "unknown frame rate \"51\""},
        {"videooutputManualFormat=1920x1080p", nullptr, "unknown frame rate \"\""},
        {"videooutputManualFormat=1920x1081p50", nullptr, "unknown picture size 1920x1081"},
        {"videooutputManualFormat=1920x1080q50", nullptr, "unknown scan type \"q\""},
        {"videooutputManualFormat=1920x1080p50/5:4", nullptr, "unknown aspect ratio \"5:4\""},
        {"videooutputManualFormat=1920x", nullptr, "malformed video format"},
    };
    for (const auto& c : cases) {
        SsOp op;
        std::string error;
        ASSERT_EQ(ParseAssignment(catalog, c.text, op, error), c.image != nullptr) << c.text << ": " << error;
        if (c.image != nullptr) {
            Bytes image;
            op.GetSerializedOp(image);
            EXPECT_EQ(op.GetOpType(), OP_TYPE_DATA);
            EXPECT_EQ(HexString(image), c.image) << c.text;
        } else {
            EXPECT_NE(error.find(c.error), std::string::npos) << c.text << " gave: " << error;
        }
    }
}

TEST(ParseFormatCode, ReadsBackEveryFormatItPrints) {
    for (uint32_t res = 0; res <= 5; ++res)
        for (uint32_t scan = 0; scan <= 2; ++scan)
            for (uint32_t rate = 1; rate <= 8; ++rate)
                for (uint32_t aspect = 1; aspect <= 5; ++aspect) {
                    UhdVidFormat f(static_cast<VideoFormatBase::Resolution_e>(res),
                                   static_cast<VideoFormatBase::ScanType_e>(scan),
                                   static_cast<VideoFormatBase::AspectRatio_e>(aspect),
                                   static_cast<VideoFormatBase::FrameRate_e>(rate));
                    uint32_t code = 0;
                    std::string error;
                    ASSERT_TRUE(ParseFormatCode(f.GetFormatString(), code, error)) << f.GetFormatString();
                    EXPECT_EQ(code, f.GetId()) << f.GetFormatString();
                }
}

TEST(ParseHexBytes, AcceptsTheUsualSpellings) {
    const struct {
        const char* text;
        const char* bytes;  // empty: rejected
    } cases[] = {
        {"0F 00 05 10", "0F 00 05 10"}, {"0x0f,0x10", "0F 10"}, {"0f0005", "0F 00 05"},
        {"0F:10\n12 2F", "0F 10 12 2F"}, {"0F 0", ""}, {"zz", ""}, {"  ", ""},
    };
    for (const auto& c : cases) {
        Bytes bytes;
        std::string error;
        bool ok = ParseHexBytes(c.text, bytes, error);
        EXPECT_EQ(ok, *c.bytes != '\0') << c.text;
        if (ok) {
            EXPECT_EQ(HexString(bytes), c.bytes) << c.text;
        } else {
            EXPECT_FALSE(error.empty()) << c.text;
        }
    }
}

}  // namespace
}  // namespace avhost
