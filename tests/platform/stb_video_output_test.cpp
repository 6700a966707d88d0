// The video output and the closed captions against the virtual board: display
// format and rate codes read back from the board, the caption engine's call
// sequences, and every platform failure path.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/stb_closed_caption.h"
#include "platform/stb_video_output.h"
#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;

class VideoOutputTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        auto h = BringUpByHand();
        m_Output.BondOutHandle(h.vout);
        m_Output.BondWindowHandle(h.window);
    }
    bool Set(uint32_t w, uint32_t h, int scan, int rate, int std = VOUT_FORMAT_PAL,
             int iface = VIDEO_OUTPUT_INTERFACE_HD) {
        return m_Output.SetFormat(w, h, VideoScanType_e(scan), VideoFrameRate_e(rate), VIDEO_ASPECT_RATIO_16X9,
                                  _VOUT_FORMAT_E(std), VideoOutputInterface_e(iface));
    }
    // The display's format and rate codes.
    static std::pair<uint32_t, uint32_t> Display() {
        return {stbsim::State().display.attr.format, stbsim::State().display.attr.rate};
    }

    LogCapture m_Log{"stbav.stbvideooutput"};
    StbVideoOutput m_Output;
};

TEST_F(VideoOutputTest, FormatAndRateCodes) {
    struct Case {
        uint32_t width, height;
        int scan, rate, std, iface;
        uint32_t format, displayRate;
    };
    const int HD = VIDEO_OUTPUT_INTERFACE_HD, CVBS = VIDEO_OUTPUT_INTERFACE_CVBS;
    const Case cases[] = {
        {720, 576, 1, 3, VOUT_FORMAT_576I, CVBS, 9, 64},  // composite: the standard's code
        {720, 576, 1, 3, VOUT_FORMAT_PAL, CVBS, 1, 1},    // standards 1..4 run at rate 1
        {720, 576, 1, 3, VOUT_FORMAT_PAL_N, CVBS, 3, 1},
        {720, 576, 1, 3, VOUT_FORMAT_PAL, HD, 9, 64},
        {720, 576, 2, 3, VOUT_FORMAT_PAL, HD, 8, 64},     // 576p runs at 50 whatever the rate says
        {720, 480, 1, 4, VOUT_FORMAT_PAL, HD, 7, 128},
        {720, 480, 1, 4, VOUT_FORMAT_NTSC, CVBS, 2, 1},
        {720, 480, 1, 4, VOUT_FORMAT_NTSC_J, CVBS, 4, 1},
        {720, 480, 2, 7, VOUT_FORMAT_PAL, HD, 6, 256},    // 480p runs at 60
        {1280, 720, 2, 6, VOUT_FORMAT_PAL, HD, 10, 64},
        {1920, 1080, 1, 3, VOUT_FORMAT_PAL, HD, 11, 64},
        {1920, 1080, 1, 4, VOUT_FORMAT_PAL, HD, 11, 128},
        {1920, 1080, 1, 5, VOUT_FORMAT_PAL, HD, 11, 256},
        {1920, 1080, 2, 1, VOUT_FORMAT_PAL, HD, 12, 2},  // 1080p: rates 1..5 are one bit each
        {1920, 1080, 2, 5, VOUT_FORMAT_PAL, HD, 12, 32},
        {1920, 1080, 0, 8, VOUT_FORMAT_PAL, HD, 12, 256},
        {3840, 2160, 2, 8, VOUT_FORMAT_PAL, HD, 13, 256},
        {4096, 2160, 2, 6, VOUT_FORMAT_PAL, HD, 14, 64},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " scan " << c.scan << " rate " << c.rate
                                        << " std " << c.std << " iface " << c.iface);
        ASSERT_TRUE(Set(c.width, c.height, c.scan, c.rate, c.std, c.iface));
        EXPECT_EQ(Display(), std::make_pair(c.format, c.displayRate));
    }
}

TEST_F(VideoOutputTest, UnknownWidthOrRateKeepsTheDisplaysWord) {
    ASSERT_TRUE(Set(1920, 1080, 1, 3));
    ASSERT_TRUE(Set(1024, 768, 2, 8));  // no code for 1024: the format stays, the rate changes
    EXPECT_EQ(Display(), std::make_pair(11u, 256u));
    ASSERT_TRUE(Set(1280, 720, 2, 0));  // unknown rate: the rate stays
    EXPECT_EQ(Display(), std::make_pair(10u, 256u));
    EXPECT_TRUE(m_Log.Has("DEBUG", "SetFormat width: 1280, height: 720, scanType: 2, frameRate: 0, aspectRatio: 1, "
                                   "compositeStdFormat: 1, videoOutputInterface: 1"));
}

TEST_F(VideoOutputTest, FailedSetKeepsTheCurrentFormat) {
    ASSERT_TRUE(Set(1280, 720, 2, 6));
    Fail("vout_display_set");
    EXPECT_FALSE(Set(1920, 1080, 1, 3));
    EXPECT_TRUE(m_Log.Has("ERROR", "set vout format failed\n"));
    uint32_t w = 0, h = 0;
    VideoScanType_e scan;
    VideoFrameRate_e rate;
    VideoAspectRatio_e aspect;
    ASSERT_TRUE(m_Output.GetFormat(w, h, scan, rate, aspect));
    EXPECT_EQ(w * 10000 + h, 12800720u);
    EXPECT_EQ(Display().first, 10u);

    Fail("vout_display_get");  // not checked: the codes are still written
    EXPECT_TRUE(Set(1920, 1080, 1, 3));
    EXPECT_EQ(Display().first, 11u);
}

const std::vector<std::string> kCcInit = {"cc_init", "cc_creat", "cc_set_window", "cc_start", "cc_getAttr",
                                          "cc_setAttr"};
const std::vector<std::string> kCcDeinit = {"cc_deinit", "cc_stop", "cc_destroy"};
// Another source: the engine is stopped, destroyed and made again (no cc_init).
const std::vector<std::string> kCcRecreate = {"cc_stop",  "cc_destroy", "cc_creat",  "cc_set_window",
                                              "cc_start", "cc_getAttr", "cc_setAttr"};

class ClosedCaptionTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        BringUpByHand();
    }
    LogCapture m_Log{"stbav.stbclosedcaption"};
    StbClosedCaption m_Captions;
};

TEST_F(ClosedCaptionTest, InitializeBringsUpTheDigitalOverlayDeinitializeInItsOwnOrder) {
    ASSERT_EQ(m_Captions.Initialize(), 0);
    EXPECT_EQ(Calls(), kCcInit);
    const auto cc = stbsim::State().captions;
    EXPECT_EQ((std::vector<uint32_t>{cc.initMode, cc.createSource, cc.window[2], cc.window[3], cc.attr.source,
                                     cc.attr.data_type, cc.attr.digital_mode}),
              (std::vector<uint32_t>{2, 1, 1280, 720, 1, 1, 3}));
    EXPECT_TRUE(m_Log.Has("DEBUG", "call cc_setAttr successfully!"));

    stbsim::ClearJournal();
    EXPECT_EQ(m_Captions.Deinitialize(), 0);
    EXPECT_EQ(Calls(), kCcDeinit);
    EXPECT_TRUE(m_Log.Has("DEBUG", "Finish deinitializing ClosedCaption"));
}

// Initialize and Deinitialize stop at the first failing step and return its code.
TEST_F(ClosedCaptionTest, BringUpAndTearDownStopAtTheFirstFailure) {
    for (const auto* steps : {&kCcInit, &kCcDeinit}) {
        for (size_t i = 0; i < steps->size(); ++i) {
            const std::string& step = (*steps)[i];
            SCOPED_TRACE(step);
            stbsim::Reset();
            BringUpByHand();
            if (steps == &kCcDeinit) {
                ASSERT_EQ(m_Captions.Initialize(), 0);
            }
            stbsim::ClearJournal();
            Fail(step);
            EXPECT_EQ(steps == &kCcInit ? m_Captions.Initialize() : m_Captions.Deinitialize(), stbav_test::kInjected);
            EXPECT_TRUE(m_Log.Has("ERROR", "call " + step + " failed 0x1234"));
            EXPECT_EQ(Calls(), std::vector<std::string>(steps->begin(), steps->begin() + i + 1));
        }
    }
}

TEST_F(ClosedCaptionTest, OverlaySelectionRecreatesTheEngineForItsSource) {
    ASSERT_EQ(m_Captions.Initialize(), 0);
    stbsim::ClearJournal();
    EXPECT_TRUE(m_Captions.SetOverlayCc(OVERLAY_CC_TYPE_NTSC, OVERLAY_NTSC_CC1));
    EXPECT_EQ(Calls(), kCcRecreate);
    auto cc = stbsim::State().captions;
    // CC1 is data type 0 on the analog source
    EXPECT_EQ((std::vector<uint32_t>{cc.createSource, cc.attr.source, cc.attr.analog_mode, cc.attr.data_type}),
              (std::vector<uint32_t>{0, 0, 3, 0}));
    EXPECT_TRUE(m_Log.Has("DEBUG", "Finish Reinitializing ClosedCaption"));
    EXPECT_TRUE(m_Log.Has("DEBUG", "closed caption type = 1, data type = 1"));

    EXPECT_TRUE(m_Captions.SetOverlayCc(OVERLAY_CC_TYPE_DTV, OVERLAY_DTV_SERVICE3));
    cc = stbsim::State().captions;
    EXPECT_EQ((std::vector<uint32_t>{cc.createSource, cc.attr.source, cc.attr.digital_mode, cc.attr.data_type}),
              (std::vector<uint32_t>{1, 1, 3, 3}));
}

TEST_F(ClosedCaptionTest, FailedOverlaySelectionIsLoggedButReportedAsDone) {
    for (const std::string& step : kCcRecreate) {
        SCOPED_TRACE(step);
        ASSERT_EQ(m_Captions.Initialize(), 0);
        m_Log.Clear();
        Fail(step);
        EXPECT_TRUE(m_Captions.SetOverlayCc(OVERLAY_CC_TYPE_DTV, OVERLAY_DTV_SERVICE2));
        EXPECT_TRUE(m_Log.Has("ERROR", "call " + step + " failed 0x1234"));
        EXPECT_TRUE(m_Log.Has("ERROR", "call Reinitialize failed 0x1"));
        EXPECT_FALSE(m_Log.Has("DEBUG", "Finish Reinitializing ClosedCaption"));
        stbsim::Reset();
        BringUpByHand();
    }
}

TEST_F(ClosedCaptionTest, LineTwentyOneAndOverlaySwitches) {
    ASSERT_EQ(m_Captions.Initialize(), 0);
    EXPECT_TRUE(m_Captions.SetVbiLine21CcState(true));
    EXPECT_TRUE(m_Captions.SetOverlayCcState(true));
    EXPECT_TRUE(stbsim::State().captions.vbi && stbsim::State().captions.subtitles);
    Fail("cc_send_VBI_enable");
    EXPECT_FALSE(m_Captions.SetVbiLine21CcState(false));
    EXPECT_TRUE(m_Log.Has("ERROR", "Enable VBI line 21 Closed Caption failed: 0x1234."));
    Fail("cc_show_subtitle_enable");
    EXPECT_FALSE(m_Captions.SetOverlayCcState(false));
    EXPECT_TRUE(m_Log.Has("ERROR", "Enable Closed Caption Overlay failed: 0x1234."));
    EXPECT_TRUE(stbsim::State().captions.vbi && stbsim::State().captions.subtitles);
}

}  // namespace
