// The stream probe's thread against the virtual board: what a pass caches, what
// a failed pass keeps, when stale entries go, and how fast the thread stops.
// Passes are 1 s apart, so the tests that need a second pass take that long.
#include "platform/ff_av_probe.h"

#include <chrono>
#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using hisiav_test::BoardTest;
using hisiav_test::LogCapture;
using hisiav_test::WaitUntil;

class ProbeTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        m_Handles = BringUpByHand();
        m_Probe.BondAvHandle(m_Handles.av);
    }
    void StartAndWaitFor(const char* serviceName) {
        m_Probe.StartProbe();
        ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetServiceName(1) == serviceName; }));
    }

    LogCapture m_Log{"hisiav.ffavprobe"};
    hisiav_test::BoardHandles m_Handles;
    FfAvProbe m_Probe;
};

TEST_F(ProbeTest, UnknownKeysGiveTheDefaults) {
    StartAndWaitFor("stbsim HD");
    EXPECT_TRUE(m_Log.Has("DEBUG", "StartProbe"));
    const uint16_t none = 0x1234;
    EXPECT_EQ(m_Probe.GetVideoChromaFormat(none), 19u);
    EXPECT_EQ(m_Probe.GetVideoBitDepth(none), 3u);
    EXPECT_EQ(m_Probe.GetVideoProfile(none), 0u);
    EXPECT_EQ(m_Probe.GetVideoLevel(none), 0u);
    EXPECT_EQ(m_Probe.GetVideoFieldOrder(none), 0u);
    int32_t a = 77, b = 88;
    m_Probe.GetVideoAspectRatio(none, a, b);
    EXPECT_EQ(a, 77);
    EXPECT_EQ(b, 88);
    uint32_t num = 5, den = 5;
    m_Probe.GetVideoFrameRate(none, num, den);
    EXPECT_EQ(num, 0u);
    EXPECT_EQ(den, 0u);
    EXPECT_EQ(m_Probe.GetAudioChannels(none), 0u);
    EXPECT_EQ(m_Probe.GetAudioEnFormat(none), -1);
    EXPECT_EQ(m_Probe.GetAudioSampleRate(none), 0u);
    EXPECT_EQ(m_Probe.GetAudioBitRate(none), 0u);
    EXPECT_EQ(m_Probe.GetServiceName(7), "");
}

TEST_F(ProbeTest, EntriesOfTheDefaultInput) {
    StartAndWaitFor("stbsim HD");
    uint32_t num = 0, den = 0;
    m_Probe.GetVideoFrameRate(0x100, num, den);
    EXPECT_EQ(num, 25u);
    EXPECT_EQ(den, 1u);
    EXPECT_EQ(m_Probe.GetVideoFieldOrder(0x100), 2u);
    EXPECT_EQ(m_Probe.GetVideoProfile(0x100), 100u);
    EXPECT_EQ(m_Probe.GetVideoLevel(0x100), 40u);
    EXPECT_EQ(m_Probe.GetVideoChromaFormat(0x100), 1u);
    EXPECT_EQ(m_Probe.GetVideoBitDepth(0x100), 0u);
    EXPECT_EQ(m_Probe.GetAudioChannels(0x101), 2u);
    EXPECT_EQ(m_Probe.GetAudioEnFormat(0x101), 0);
    EXPECT_EQ(m_Probe.GetAudioSampleRate(0x101), 48000u);
    EXPECT_EQ(m_Probe.GetAudioBitRate(0x101), 192000u);
}

TEST_F(ProbeTest, FailedPassKeepsTheCacheAndTheNextPassStillRuns) {
    StartAndWaitFor("stbsim HD");
    Fail("av_get_stream_info");
    SetInput("service 1 name=Later\nvideo pid=0x200\n");
    ASSERT_TRUE(m_Log.WaitFor("WARN", "ProbeAvInfo get stream info failed: 0x1234"));
    EXPECT_EQ(m_Probe.GetServiceName(1), "stbsim HD");
    EXPECT_EQ(m_Probe.GetVideoProfile(0x100), 100u);
    ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetServiceName(1) == "Later"; }));
}

// A section the input no longer has (count 0) keeps its old entries until the
// cache is cleared.
TEST_F(ProbeTest, StaleSectionStaysUntilCleared) {
    StartAndWaitFor("stbsim HD");
    SetInput("service 1 name=VideoOnly\nvideo pid=0x100\n");
    ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetServiceName(1) == "VideoOnly"; }));
    EXPECT_EQ(m_Probe.GetAudioSampleRate(0x101), 48000u);
    m_Probe.ClearStreamInfo();
    ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetAudioSampleRate(0x101) == 0; }));
    EXPECT_EQ(m_Probe.GetServiceName(1), "VideoOnly");
}

// The thread sleeps between passes; a cancel must cut that short.
TEST_F(ProbeTest, DestructionStopsTheThreadPromptly) {
    auto probe = std::make_unique<FfAvProbe>();
    probe->BondAvHandle(m_Handles.av);
    probe->StartProbe();
    ASSERT_TRUE(WaitUntil([&] { return probe->GetServiceName(1) == "stbsim HD"; }));
    auto start = std::chrono::steady_clock::now();
    probe.reset();
    auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    std::printf("probe destruction took %lld ms\n", static_cast<long long>(ms));
    EXPECT_LT(ms, 500);  // the goal is well under that; the bound only catches a full pass interval
}

}  // namespace
