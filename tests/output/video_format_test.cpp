// Format codes: packing independent of the host, decoding, display strings.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "output/uhd_vid_format.h"

namespace {

using VFB = VideoFormatBase;

struct CodeCase {
    VFB::Resolution_e resolution;
    uint32_t scan, aspect, rate;
    uint32_t code;
    uint32_t height, width;
    const char* text;
};

// Codes worked out by hand: B = res<<10 | scan<<8 | rate<<4 | aspect, bytes reversed.
const CodeCase kCodes[] = {
    {VFB::RESOLUTION_1920X1080, 1, 3, 6, 0x630D0000u, 1080, 1920, "1920x1080p 16x9 50.00fps"},
    {VFB::RESOLUTION_720X480, 0, 2, 4, 0x42000000u, 480, 720, "720x480i 4x3 29.97fps"},
    {VFB::RESOLUTION_720X576, 0, 3, 3, 0x33040000u, 576, 720, "720x576i 16x9 25.00fps"},
    {VFB::RESOLUTION_3840X2160, 1, 3, 8, 0x83110000u, 2160, 3840, "3840x2160p 16x9 60.00fps"},
    {VFB::RESOLUTION_4096X2160, 1, 1, 1, 0x11150000u, 2160, 4096, "4096x2160p 1x1 23.98fps"},
    {VFB::RESOLUTION_1920X1080, 2, 5, 3, 0x350E0000u, 1080, 1920, "1920x1080psF 1.9x1 25.00fps"},
    {VFB::RESOLUTION_1280X720, 1, 4, 7, 0x74090000u, 720, 1280, "1280x720p 2.21x1 59.94fps"},
    // An unknown resolution has no size.
    {VFB::Resolution_e(6), 0, 0, 0, 0x00180000u, 0, 0, "(n/a)i (n/a) (n/a)fps"},
};

TEST(UhdVidFormat, PacksMasksAndUnpacksCodes) {
    for (const auto& c : kCodes) {
        SCOPED_TRACE(c.text);
        UhdVidFormat built(c.resolution, static_cast<VFB::ScanType_e>(c.scan), static_cast<VFB::AspectRatio_e>(c.aspect),
                           static_cast<VFB::FrameRate_e>(c.rate));
        EXPECT_EQ(built.GetId(), c.code);
        if (c.height != 0) {  // built from its size
            EXPECT_EQ(UhdVidFormat(c.height, c.width, static_cast<VFB::ScanType_e>(c.scan),
                                   static_cast<VFB::AspectRatio_e>(c.aspect), static_cast<VFB::FrameRate_e>(c.rate))
                          .GetId(),
                      c.code);
        }
        UhdVidFormat read(c.code);
        EXPECT_EQ(std::make_tuple(read.GetHeight(), read.GetWidth(), uint32_t(read.GetScanType()),
                                  uint32_t(read.GetAspectRatio()), uint32_t(read.GetFrameRate()),
                                  read.GetFormatString()),
                  std::make_tuple(c.height, c.width, c.scan, c.aspect, c.rate, std::string(c.text)));
    }
    // Every field is masked to its width: the first row again.
    UhdVidFormat masked(static_cast<VFB::Resolution_e>((1u << 22) | 3u), static_cast<VFB::ScanType_e>(5),
                        static_cast<VFB::AspectRatio_e>(0x13), static_cast<VFB::FrameRate_e>(0x16));
    EXPECT_EQ(masked.GetId(), 0x630D0000u);
}

class OtherFormat : public VideoFormatBase {
public:
    explicit OtherFormat(uint32_t code) : VideoFormatBase(code) {}
    uint32_t GetHeight() const override { return 0; }
    uint32_t GetWidth() const override { return 0; }
    ScanType_e GetScanType() const override { return SCAN_TYPE_INTERLACED; }
    FrameRate_e GetFrameRate() const override { return FRAME_RATE_24; }
    AspectRatio_e GetAspectRatio() const override { return ASPECT_RATIO_1X1; }
    std::string GetFormatString() const override { return "other"; }
};

TEST(VideoFormatBase, EqualityAndAssignmentUseTheCodeAlone) {
    UhdVidFormat a(0x630D0000u);
    OtherFormat b(0x630D0000u);
    EXPECT_TRUE(static_cast<const VideoFormatBase&>(a) == b);
    OtherFormat c(0x42000000u);
    EXPECT_FALSE(static_cast<const VideoFormatBase&>(a) == c);
    static_cast<VideoFormatBase&>(a) = c;
    EXPECT_EQ(a.GetId(), 0x42000000u);
    EXPECT_EQ(a.GetHeight(), 480u);
    VideoFormatBase& self = a;
    self = a;
    EXPECT_EQ(a.GetId(), 0x42000000u);
}

TEST(VideoFormatStrings, SizeToResolutionDecidesByWidth) {
    struct {
        uint32_t height, width;
        VFB::Resolution_e resolution;
        const char* text;
    } const cases[] = {
        {480, 720, VFB::RESOLUTION_720X480, "720x480"},   {576, 720, VFB::RESOLUTION_720X576, "720x576"},
        {600, 720, VFB::RESOLUTION_720X480, "720x480"},   {1000, 1920, VFB::RESOLUTION_1920X1080, "1920x1080"},
        {720, 1280, VFB::RESOLUTION_1280X720, "1280x720"}, {480, 3840, VFB::RESOLUTION_3840X2160, "3840x2160"},
        {2160, 4096, VFB::RESOLUTION_4096X2160, "4096x2160"}, {1080, 1440, VFB::RESOLUTION_720X480, "(n/a)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.height) + "x" + std::to_string(c.width));
        EXPECT_EQ(SizeToResolution(c.height, c.width), c.resolution);
        std::string text;
        EXPECT_TRUE(GetResolutionString(c.height, c.width, text));
        EXPECT_EQ(text, c.text);
    }
}

TEST(VideoFormatStrings, UnlistedValuesAreNotAvailable) {
    EXPECT_EQ((std::vector<std::string>{
                  GetAspectRatioString(VFB::AspectRatio_e(0)), GetAspectRatioString(VFB::AspectRatio_e(6)),
                  GetFrameRateString(VFB::FrameRate_e(0)), GetFrameRateString(VFB::FrameRate_e(9)),
                  GetFrameRateString(VFB::FRAME_RATE_23_98), GetScanTypeString(VFB::ScanType_e(3)),
                  GetResolutionString(VFB::Resolution_e(0xFFFFFFFFu))}),
              (std::vector<std::string>{"(n/a)", "(n/a)", "(n/a)", "(n/a)", "23.98", "(n/a)", "(n/a)"}));
}

TEST(VideoFormatStrings, ScanTypeFromFlags) {
    const struct {
        bool psf, progressive;
        const char* text;
    } cases[] = {{true, false, "psF"}, {true, true, "psF"}, {false, true, "p"}, {false, false, "i"}};
    for (const auto& c : cases) {
        std::string s;
        EXPECT_TRUE(GetScanTypeString(c.psf, c.progressive, s));
        EXPECT_EQ(s, c.text);
    }
}

}  // namespace
