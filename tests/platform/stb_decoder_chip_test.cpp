// The decoder chip's bring-up, start and tear-down against the virtual board:
// call order read back from the board's journal, every failing step driven by
// fault injection, the handles reaching the adapters.
#include "platform/stb_decoder_chip.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/e2e/e2e_support.h"
#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"
#include "toolkit/fixed_paths.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;
using stbav_test::WaitUntil;

const std::vector<std::string> kBringUpCalls = {
    "system_init",     "av_init",           "av_create",          "aout_init",          "aout_open",
    "vout_init",       "vout_open_channel", "vout_display_get",   "vout_display_set",   "vout_window_create",
    "vout_window_attach_input", "vout_window_open", "aout_track_create", "aout_track_attach_input",
    "cc_init",         "cc_creat",          "cc_set_window",      "cc_start",           "cc_getAttr",
    "cc_setAttr"};

const std::vector<std::string> kTearDownCalls = {
    "av_stop",          "aout_track_detach_input", "aout_track_destroy", "vout_window_close",
    "vout_window_detach_input", "av_destory",      "av_deinit",          "vout_window_destroy",
    "vout_close_channel", "vout_deinit",           "aout_close",         "aout_deinit",
    "system_deinit",    "cc_deinit",               "cc_stop",            "cc_destroy"};

// Every adapter the chip wires, owned here as the subsystem assembly would.
struct Adapters {
    explicit Adapters(uint32_t audioCount = 2, size_t audioDecoders = 2) {
        for (size_t i = 0; i < audioDecoders; ++i) audio.push_back(KT::MakeShared<StbAudioDecoder>(probe));
        chip = std::make_unique<StbDecoderChip>(demux, audio, audioCount, videoDecoder, videoOutput, audioOutput,
                                                 captions, probe);
    }
    FfAvProbe probe;
    StbDemux demux;
    StbVideoDecoder videoDecoder{probe};
    StbVideoOutput videoOutput;
    StbAudioOutput audioOutput;
    StbClosedCaption captions;
    std::vector<KT::CSharedPtr<StbAudioDecoder>> audio;
    std::unique_ptr<StbDecoderChip> chip;  // destroyed first
};

class DecoderChipTest : public BoardTest {
protected:
    LogCapture m_Log{"stbav.decoderchip"};
};

TEST_F(DecoderChipTest, BringUpCallsTheSixteenStepsInOrder) {
    Adapters a;
    ASSERT_EQ(a.chip->StbControlInit(), 0);
    EXPECT_EQ(Calls(), kBringUpCalls);
    EXPECT_TRUE(m_Log.Has("DEBUG", "StbControlInit: Finish Stb control init"));
    EXPECT_TRUE(m_Log.Has("DEBUG", "Finish getting video output dispaly"));
    auto s = stbsim::State();
    EXPECT_EQ(std::make_tuple(s.display.attr.format, s.display.attr.rate, s.display.windowOpen, s.audio.trackExists),
              std::make_tuple(11u, 64u, true, true));
}

TEST_F(DecoderChipTest, FailingBringUpStepStopsAtOnceAndReleasesNothing) {
    struct Case {
        const char* function;
        const char* text;
    };
    const Case cases[] = {
        {"system_init", "system_init failed: 0x1234."},
        {"av_init", "call av_init failed 0x1234"},
        {"av_create", "av_create failed 0x1234"},
        {"aout_init", "call aout_init failed: 0x1234."},
        {"aout_open", "call aout_open failed: 0x1234."},
        {"vout_init", "call vout_init failed: 0x1234."},
        {"vout_open_channel", "call vout_open_channel failed: 0x1234."},
        {"vout_display_get", "call vout_display_get failed: 0x1234."},
        {"vout_display_set", "call vout_display_set failed: 0x1234."},
        {"vout_window_create", "call vout_window_create failed: 0x1234."},
        {"vout_window_attach_input", "call vout_window_attach_input failed: 0x1234."},
        {"vout_window_open", "call vout_window_open failed: 0x1234."},
        {"aout_track_create", "call aout_track_create failed 0x1234"},
        {"aout_track_attach_input", "call aout_track_attach_input failed 0x1234"},
        {"cc_init", "call Initialize failed 0x1234"},
        {"cc_setAttr", "call Initialize failed 0x1234"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.function);
        stbsim::Reset();
        m_Log.Clear();
        {
            Adapters a;
            Fail(c.function);
            EXPECT_EQ(a.chip->StbControlInit(), -1);
            EXPECT_TRUE(m_Log.Has("ERROR", c.text));
            EXPECT_FALSE(m_Log.Has("DEBUG", "StbControlInit: Finish Stb control init"));
            // Every step up to the failing one and nothing after it: no tear-down either.
            auto at = [](const std::string& f) { return std::find(kBringUpCalls.begin(), kBringUpCalls.end(), f); };
            EXPECT_EQ(Calls(), std::vector<std::string>(kBringUpCalls.begin(), at(c.function) + 1));
            // What was obtained is still there.
            auto s = stbsim::State();
            EXPECT_EQ(s.systemInitialised, std::string(c.function) != "system_init");
            EXPECT_EQ(s.audio.open, at(c.function) > at("aout_open"));
            EXPECT_EQ(s.display.channelOpen, at(c.function) > at("vout_open_channel"));
            EXPECT_EQ(s.display.windowExists, at(c.function) > at("vout_window_create"));
        }
    }
}

// Tear-down goes on past every failure; only the captions decide its result.
TEST_F(DecoderChipTest, TearDownCallsEverythingInItsOwnOrder) {
    std::vector<std::string> failing = {""};
    failing.insert(failing.end(), kTearDownCalls.begin(), kTearDownCalls.begin() + 13);
    failing.push_back("cc_deinit");
    for (const std::string& function : failing) {
        SCOPED_TRACE(function);
        stbsim::Reset();
        m_Log.Clear();
        Adapters a;
        ASSERT_EQ(a.chip->StbControlInit(), 0);
        stbsim::ClearJournal();
        if (!function.empty()) Fail(function);
        EXPECT_EQ(a.chip->StbControlDeinit(), function == "cc_deinit" ? -1 : 0);
        const size_t skipped = function == "cc_deinit" ? 2 : 0;  // the captions stop at their first failure
        EXPECT_EQ(Calls(), std::vector<std::string>(kTearDownCalls.begin(), kTearDownCalls.end() - skipped));
        EXPECT_EQ(m_Log.Has("DEBUG", "Deinit oK 0x0"), function != "cc_deinit");
        const std::string step = function == "cc_deinit" ? "call Deinitialize" : function;  // the captions' own name
        EXPECT_TRUE(function.empty() || m_Log.Has("ERROR", step + " failed 0x1234"));
        EXPECT_EQ(stbsim::State().systemInitialised, function == "system_deinit");
    }
}

TEST_F(DecoderChipTest, InputAddressIsWrittenMostSignificantByteFirstAndClearedByBringUp) {
    Adapters a;
    const uint32_t ip = (10u << 24) | (1u << 16) | (2u << 8) | 3u;
    EXPECT_EQ(a.chip->SetIpInputParam(ip, 1234), stbsim::kErrNotInitialised);  // nothing is up yet
    const IpInputParams& p = a.chip->InputParams();
    const auto params = [&p] { return std::make_tuple(p.ip, p.port, std::string(p.address), p.port_copy); };
    EXPECT_EQ(params(), std::make_tuple(ip, 1234, "10.1.2.3", 1234));

    ASSERT_EQ(a.chip->StbControlInit(), 0);
    EXPECT_EQ(params(), std::make_tuple(ip, 1234, "", 0));
    EXPECT_EQ(a.chip->SetIpInputParam(ip, 1234), 0);
    EXPECT_EQ(stbsim::State().player.preparedAddress, "10.1.2.3");
}

TEST_F(DecoderChipTest, InitializePreparesTheMulticastInputStartsDisplayAndBindsEveryAdapter) {
    Adapters a(2, 3);  // the third decoder is beyond the count
    ASSERT_EQ(a.chip->StbControlInit(), 0);
    stbsim::ClearJournal();
    ASSERT_TRUE(a.chip->Initialize());
    const std::vector<std::string> start = {"av_prepare", "av_set_event_config", "av_start_video", "av_start_audio"};
    EXPECT_EQ(CallsMatching(start), start);
    auto s = stbsim::State();
    EXPECT_EQ(std::make_tuple(s.player.preparedAddress, a.chip->InputParams().port), std::tuple("239.1.1.1", 1234));
    EXPECT_TRUE(s.player.eventsEnabled);
    EXPECT_TRUE(s.player.videoStarted && s.player.audioStarted);
    EXPECT_EQ(std::make_pair(StbVideoDecoder::m_AvHandle.load(), StbVideoDecoder::m_WindowHandle.load()),
              std::make_pair(s.player.handle, s.display.windowHandle));

    // The demux, outputs, probe and the first two audio decoders reach the board.
    ASSERT_TRUE(a.demux.SetServiceAudioCodecType(AUDIO_TYPE_MPEG2));
    ASSERT_TRUE(a.demux.SetPid(0x101, ES_TYPE_AUDIO));
    EXPECT_EQ(stbsim::State().player.settings.audio_pid, 0x101);
    EXPECT_TRUE(a.videoOutput.SetFormat(1280, 720, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50,
                                        VIDEO_ASPECT_RATIO_16X9, VOUT_FORMAT_PAL, VIDEO_OUTPUT_INTERFACE_HD));
    EXPECT_EQ(stbsim::State().display.attr.format, 10u);
    EXPECT_TRUE(a.audioOutput.SetMute(true));
    EXPECT_TRUE(stbsim::State().audio.mute);
    ASSERT_TRUE(WaitUntil([&] { return a.audio[0]->GetSamplingRate() == 48000; }));
    EXPECT_EQ(std::make_pair(a.audio[1]->GetSamplingRate(), a.audio[2]->GetSamplingRate()), std::make_pair(48000u, 0u));
}

TEST_F(DecoderChipTest, WithoutAudioDecodersTheProbeStillStarts) {
    Adapters a(0, 1);
    LogCapture probeLog("stbav.ffavprobe");
    ASSERT_EQ(a.chip->StbControlInit(), 0);
    ASSERT_TRUE(a.chip->Initialize());
    EXPECT_TRUE(probeLog.Has("DEBUG", "StartProbe"));
    ASSERT_TRUE(WaitUntil([&] { return a.probe.GetServiceName(1) == "stbsim HD"; }));
    EXPECT_EQ(a.audio[0]->GetFrameCount(), 0u);
}

TEST_F(DecoderChipTest, DisplayStartFailuresAreLoggedAndStartUpGoesOn) {
    Adapters a;
    ASSERT_EQ(a.chip->StbControlInit(), 0);
    Fail("av_set_event_config");
    Fail("av_start_video");
    Fail("av_start_audio");
    EXPECT_TRUE(a.chip->Initialize());
    EXPECT_TRUE(m_Log.Has("ERROR", "av_set_event_config failed 0x1234"));
    EXPECT_EQ(m_Log.Count("WARN", "DisplayStart av_start failed"), 1u);
    EXPECT_EQ(StbVideoDecoder::m_AvHandle.load(), stbsim::State().player.handle);
}

TEST_F(DecoderChipTest, UpgradeHandsOverThePackageUnderTheRoot) {
    const e2e::TempDir root;
    ASSERT_TRUE(e2e::WriteFile(root / "sdcard/update.zip", "package"));
    stbav::paths::SetRoot(root.Path());
    {
        Adapters a;
        ASSERT_EQ(a.chip->StbControlInit(), 0);
        EXPECT_TRUE(a.chip->Upgrade());
        Fail("system_upgrade");
        EXPECT_TRUE(a.chip->Upgrade());  // the platform's answer does not matter
    }
    stbav::paths::SetRoot("");
    auto upgrades = stbsim::State().upgrades;
    ASSERT_FALSE(upgrades.empty());
    EXPECT_EQ(upgrades[0], root / "sdcard/update.zip");
}

TEST_F(DecoderChipTest, SearchProgInfoFillsTheSettingsThatSetServiceConfigApplies) {
    Adapters a;
    ASSERT_EQ(a.chip->StbControlInit(), 0);
    EXPECT_EQ(a.chip->SearchProgInfo(), 0);
    EXPECT_TRUE(m_Log.Has("INFO", "SearchProgInfo video pid: 256, video_type: 5, serviceId: 1"));
    EXPECT_EQ(a.chip->Settings().audio_pid, 0x101);
    EXPECT_EQ(a.chip->SetServiceConfig(), 0);
    EXPECT_EQ(stbsim::State().player.settings.video_pid, 0x100);

    _AV_SETTING_S other = a.chip->Settings();
    other.service_id = 42;
    EXPECT_EQ(a.chip->SetServiceConfig(&other), 0);
    EXPECT_EQ(a.chip->Settings().service_id, 42);

    Fail("av_set_config");
    EXPECT_NE(a.chip->SetServiceConfig(), 0);
    EXPECT_TRUE(m_Log.Has("WARN", "SetServiceConfig av_set_config failed"));

    Fail("av_search_progInfo");
    EXPECT_EQ(a.chip->SearchProgInfo(), stbav_test::kInjected);
    EXPECT_TRUE(m_Log.Has("WARN", "SearchProgInfo av_search_progInfo failed"));
    EXPECT_EQ(a.chip->Settings().video_pid, 0);  // zeroed before the search
}

}  // namespace
