// Output format selection: scaler table outcomes (regular, irregular and
// fall-back rows), output modes, SD companion formats, display strings, and
// the supported-format list.
#include <gtest/gtest.h>

#include <string>

#include "output/uhd_vid_format_helper.h"
#include "output/video_output_format_generator.h"
#include "tests/doubles/fake_base.h"
#include "tests/support/log_capture.h"

namespace {

using Fmt = stbav_test::VideoFormatState;  // {width, height, scan, rate, aspect}

std::string Describe(const Fmt& f) {
    return std::to_string(f.width) + "x" + std::to_string(f.height) + " scan " + std::to_string(f.scanType) +
           " rate " + std::to_string(f.frameRate) + " aspect " + std::to_string(f.aspectRatio);
}

Fmt Scale(Fmt f, unsigned videoIndex = 0) {
    GetValidScalerSettings(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, videoIndex);
    return f;
}

TEST(GetValidScalerSettings, MapsInputsOntoScalerOutputsOrFallsBackToStandardDefinition) {
    struct {
        const char* why;
        Fmt in, out;
    } const cases[] = {
        {"1080p29.97 passes unchanged", {1920, 1080, 2, 4, 2}, {1920, 1080, 2, 4, 1}},
        {"1440-wide 1080i: interlaced row wins over the progressive one", {1440, 1080, 1, 4, 1}, {1920, 1080, 1, 4, 1}},
        {"1088-line input is cropped to 1080", {1920, 1088, 1, 3, 1}, {1920, 1080, 1, 3, 1}},
        {"1100 lines use the 1088 rows", {1920, 1100, 2, 6, 1}, {1920, 1080, 2, 6, 1}},
        {"2160p 3840 at 59.94 goes up to 60", {3840, 2160, 2, 7, 1}, {3840, 2160, 2, 8, 1}},
        {"2160p 4096 at 29.97 goes up to 30", {4096, 2160, 2, 4, 1}, {4096, 2160, 2, 5, 1}},
        {"2160i has no interlaced row: first progressive candidate", {3840, 2160, 1, 3, 1}, {3840, 2160, 2, 3, 1}},
        {"720p25 becomes 720p50", {1280, 720, 2, 3, 1}, {1280, 720, 2, 6, 1}},
        {"720p23.976 becomes 720p59.94", {1280, 720, 2, 1, 1}, {1280, 720, 2, 7, 1}},
        {"720p29.97 becomes 720p59.94", {1280, 720, 2, 4, 1}, {1280, 720, 2, 7, 1}},
        {"960-wide 720p25 is widened", {960, 720, 2, 3, 2}, {1280, 720, 2, 6, 1}},
        {"720i has no interlaced row", {1280, 720, 1, 3, 1}, {1280, 720, 2, 6, 1}},
        {"no 1080 row fits 800 pixels: next lower height", {800, 1080, 2, 6, 1}, {1280, 720, 2, 6, 1}},
        {"576p25 becomes 576p50", {720, 576, 2, 3, 1}, {720, 576, 2, 6, 1}},
        {"576i50 becomes 576i25", {720, 576, 1, 6, 1}, {720, 576, 1, 3, 1}},
        {"704-wide 576i25 is widened", {704, 576, 1, 3, 1}, {720, 576, 1, 3, 1}},
        {"480i29.97 comes out at 30", {720, 480, 1, 4, 2}, {720, 480, 1, 5, 1}},
        {"480p8: row 135 answers before the odd row 141", {720, 480, 2, 8, 1}, {720, 480, 2, 8, 1}},
        {"480i8: no interlaced row, first candidate progressive", {720, 480, 1, 8, 1}, {720, 480, 2, 8, 1}},
        {"640-wide 480i25: row 168 gives 576 lines at 30", {640, 480, 1, 3, 1}, {720, 576, 1, 5, 1}},
        {"640-wide 480i29.97", {640, 480, 1, 4, 1}, {720, 480, 1, 5, 1}},
        {"528-wide 480p23.976", {528, 480, 2, 1, 1}, {720, 480, 2, 8, 1}},
        {"frame rate 0 is logged but still matched", {1920, 1080, 2, 0, 1}, {1920, 1080, 2, 1, 1}},
        // No row fits: a standard-definition fall-back.
        {"1080p at rate 9: no row anywhere", {1920, 1080, 2, 9, 2}, {720, 480, 1, 4, 1}},
        {"576p at rate 9", {720, 576, 2, 9, 1}, {720, 480, 1, 4, 1}},
        {"300 lines at 50: 576i25, 4:3 kept", {720, 300, 2, 6, 2}, {720, 576, 1, 3, 2}},
        {"300 lines at 25: 576i25, 16:9 kept", {720, 300, 2, 3, 1}, {720, 576, 1, 3, 1}},
        {"300 lines at 50: unknown aspect becomes 16:9", {720, 300, 2, 6, 0}, {720, 576, 1, 3, 1}},
        {"300 lines at 29.97: 480i", {720, 300, 2, 4, 5}, {720, 480, 1, 4, 1}},
        {"narrower than 352 pixels", {300, 576, 1, 3, 2}, {720, 576, 1, 3, 2}},
        {"negative frame rate", {1920, 1080, 2, -1, 2}, {720, 480, 1, 4, 2}},
        {"zero height", {1920, 0, 2, 6, 0}, {720, 576, 1, 3, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Describe(Scale(c.in)), Describe(c.out));
    }
}

TEST(GetValidScalerSettings, LogsBadInputAndIgnoresOtherOutputs) {
    stbav_test::LogCapture log("UhdVidFormatHelper");
    Fmt in{1920, 1080, 2, 6, 2};
    EXPECT_EQ(Describe(Scale(in, 1)), Describe(in));
    EXPECT_TRUE(log.Has("ERROR", "OutputManager::GetValidScalerSettings, videoIndex is out of range (0), actual: 1"));
    Scale({1920, 1080, 2, 0, 1});
    EXPECT_TRUE(log.Has("ERROR",
                        "OutputManager::GetValidScalerSettings invalid input: height: 1080, width: 1920, frameRate: 0, "
                        "videoIndex: 0"));
}

TEST(GetVideoMode, NumbersEveryFamily) {
    struct {
        Fmt f;
        int mode;
    } const cases[] = {
        {{4096, 2160, 2, 1, 1}, 7},  {{4096, 2160, 2, 8, 1}, 0},  {{4096, 2160, 2, 9, 1}, 3},
        {{3840, 2160, 2, 1, 1}, 15}, {{3840, 2160, 2, 8, 1}, 8},  {{3840, 2160, 2, 0, 1}, 11},
        {{2000, 2160, 2, 6, 1}, 40}, {{1920, 1080, 2, 1, 1}, 23}, {{1920, 1080, 2, 8, 1}, 16},
        {{1920, 1080, 2, 0, 1}, 19}, {{1920, 1080, 3, 6, 1}, 40}, {{1920, 1080, 1, 3, 1}, 26},
        {{1920, 1080, 1, 4, 1}, 25}, {{1920, 1080, 1, 5, 1}, 24}, {{1920, 1080, 0, 6, 1}, 24},
        {{1280, 720, 2, 6, 1}, 31},  {{1280, 720, 2, 7, 1}, 30},  {{1280, 720, 2, 8, 1}, 29},
        {{720, 576, 1, 3, 1}, 33},   {{720, 576, 1, 3, 2}, 37},   {{720, 576, 1, 3, 0}, 37},
        {{720, 480, 1, 4, 1}, 35},   {{720, 480, 1, 4, 2}, 39},   {{1920, 1000, 2, 6, 1}, 8},
        {{0, 0, 0, 0, 0}, 8},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(getVideoMode(c.f.height, c.f.width, c.f.scanType, c.f.frameRate, c.f.aspectRatio, 0), c.mode)
            << Describe(c.f);
    }
}

TEST(GetSDFormatSimultaneousHD, PicksTheSdFamily) {
    const Fmt pal{720, 576, 1, 3, 1};
    const Fmt ntsc{720, 480, 1, 4, 1};
    struct {
        Fmt hd, sd;
    } const cases[] = {
        {{1920, 1080, 2, 6, 2}, pal},  {{1920, 1080, 2, 3, 1}, pal},  {{1920, 1080, 1, 3, 1}, pal},
        {{1280, 720, 2, 6, 1}, pal},   {{1920, 1080, 2, 8, 1}, ntsc}, {{1920, 1080, 2, 1, 1}, ntsc},
        {{1920, 1080, 2, 0, 1}, ntsc}, {{1920, 1080, 1, 5, 2}, ntsc}, {{1280, 720, 2, 7, 1}, ntsc},
        // UHD, SD, invalid and unknown formats stay as they are ({}).
        {{3840, 2160, 2, 6, 1}, {}},   {{720, 576, 1, 3, 2}, {}},     {{720, 480, 2, 8, 2}, {}},
        {{1920, 1080, 3, 6, 1}, {}},   {{1920, 1000, 2, 6, 1}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Describe(c.hd));
        Fmt f = c.hd;
        EXPECT_TRUE(GetSDFormatSimultaneousHD(f.width, f.height, f.scanType, f.frameRate, f.aspectRatio));
        EXPECT_EQ(Describe(f), Describe(c.sd.height == 0 ? c.hd : c.sd));
    }
}

TEST(TransVideoFormatString, PrintsAndNamesTheBroadcastStandards) {
    struct {
        int width, height, scan, rate;
        const char* text;
    } const cases[] = {
        {720, 576, 1, 3, "720x576-25I-PAL-BDGI"}, {720, 480, 1, 4, "720x480-29I-NTSC"}, {720, 576, 2, 3, "720x576-25P"},
        {1280, 720, 2, 6, "1280x720-50P"}, {1920, 1080, 1, 1, "1920x1080-23I"}, {3840, 2160, 2, 7, "3840x2160-59P"},
        {1920, 1080, 3, 8, "1920x1080-60"}, {1920, 1080, 2, 0, ""}, {1920, 1080, 2, 9, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TransVideoFormatString(c.width, c.height, static_cast<VideoScanType_e>(c.scan),
                                         static_cast<VideoFrameRate_e>(c.rate)),
                  c.text);
    }
}

TEST(CodeConverters, MapDecoderAttributesToCodeAttributes) {
    const int scans[][2] = {{0, 0}, {1, 0}, {2, 1}, {3, 2}, {4, 0}};
    for (auto& p : scans) EXPECT_EQ(GetUhdScanType(static_cast<VideoScanType_e>(p[0])), p[1]) << p[0];
    const int rates[][2] = {{0, 1}, {1, 1}, {4, 4}, {8, 8}, {9, 1}, {-1, 1}};
    for (auto& p : rates) EXPECT_EQ(GetUhdFrameRate(static_cast<VideoFrameRate_e>(p[0])), p[1]) << p[0];
    const int aspects[][2] = {{0, 1}, {1, 3}, {2, 2}, {3, 1}};
    for (auto& p : aspects) EXPECT_EQ(GetUhdAspectRatio(static_cast<VideoAspectRatio_e>(p[0])), p[1]) << p[0];
}

TEST(VideoOutputFormatGenerator, ChecksTheSupportedList) {
    VideoOutputFormatGenerator gen;
    ASSERT_EQ(gen.Formats().size(), 34u);
    struct {
        Fmt f;
        bool valid;
        uint32_t code;
    } const cases[] = {
        {{1920, 1080, 2, 4, 1}, true, 0x430D0000u},  {{1920, 1080, 2, 4, 2}, false, 0x420D0000u},
        {{1920, 1080, 1, 3, 1}, true, 0x330C0000u},  {{1920, 1080, 1, 6, 1}, false, 0x630C0000u},
        {{720, 576, 1, 3, 1}, true, 0x33040000u},    {{720, 576, 1, 3, 2}, true, 0x32040000u},
        {{720, 480, 1, 4, 2}, true, 0x42000000u},    {{720, 480, 2, 4, 1}, false, 0x43010000u},
        {{1280, 720, 2, 6, 1}, true, 0x63090000u},   {{1280, 720, 2, 5, 1}, false, 0x53090000u},
        {{4096, 2160, 2, 1, 1}, true, 0x13150000u},  {{3840, 2160, 2, 8, 1}, true, 0x83110000u},
        {{3840, 2160, 1, 8, 1}, false, 0x83100000u}, {{1920, 1080, 2, 0, 1}, false, 0x130D0000u},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Describe(c.f));
        ValueState_t r = gen.GetFormat(c.f.height, c.f.width, c.f.scanType, c.f.frameRate, c.f.aspectRatio);
        EXPECT_EQ(r.valid, c.valid);
        EXPECT_EQ(r.format.GetId(), c.code);
    }
}

}  // namespace
