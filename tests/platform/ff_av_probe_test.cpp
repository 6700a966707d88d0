// The stream probe's thread against the virtual board: what a pass caches, what
// a failed pass keeps, when stale entries go, and how fast the thread stops.
// Passes are 1 s apart, so the tests that need a second pass take that long.
#include "platform/ff_av_probe.h"

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;
using stbav_test::WaitUntil;

class ProbeTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        BringUpByHand();
        m_Probe->BondAvHandle(m_Handles.av);
    }
    void StartAndWaitFor(const char* serviceName) {
        m_Probe->StartProbe();
        ASSERT_TRUE(WaitUntil([&] { return m_Probe->GetServiceName(1) == serviceName; }));
    }

    LogCapture m_Log{"stbav.ffavprobe"};
    std::unique_ptr<FfAvProbe> m_Probe = std::make_unique<FfAvProbe>();
};

// Each getter on a stream of the default input and on a PID it does not carry.
TEST_F(ProbeTest, EntriesOfTheDefaultInputAndDefaultsForUnknownKeys) {
    StartAndWaitFor("stbsim HD");
    EXPECT_TRUE(m_Log.Has("DEBUG", "StartProbe"));
    FfAvProbe& p = *m_Probe;
    struct Case {
        const char* name;
        uint16_t pid;
        std::function<int64_t(uint16_t)> get;
        int64_t known, unknown;
    };
    const std::vector<Case> cases = {
        {"frame rate", 0x100, [&](uint16_t k) { uint32_t n = 5, d = 5; p.GetVideoFrameRate(k, n, d); return n * 1000 + d; },
         25001, 0},
        {"aspect", 0x100, [&](uint16_t k) { int32_t a = 77, b = 88; p.GetVideoAspectRatio(k, a, b); return a * 1000 + b; },
         1001, 77088},
        {"field order", 0x100, [&](uint16_t k) { return p.GetVideoFieldOrder(k); }, 2, 0},
        {"profile", 0x100, [&](uint16_t k) { return p.GetVideoProfile(k); }, 100, 0},
        {"level", 0x100, [&](uint16_t k) { return p.GetVideoLevel(k); }, 40, 0},
        {"chroma", 0x100, [&](uint16_t k) { return p.GetVideoChromaFormat(k); }, 1, 19},
        {"bit depth", 0x100, [&](uint16_t k) { return p.GetVideoBitDepth(k); }, 0, 3},
        {"channels", 0x101, [&](uint16_t k) { return p.GetAudioChannels(k); }, 2, 0},
        {"audio format", 0x101, [&](uint16_t k) { return p.GetAudioEnFormat(k); }, 0, -1},
        {"sample rate", 0x101, [&](uint16_t k) { return p.GetAudioSampleRate(k); }, 48000, 0},
        {"bit rate", 0x101, [&](uint16_t k) { return p.GetAudioBitRate(k); }, 192000, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.get(c.pid), c.known) << c.name;
        EXPECT_EQ(c.get(0x1234), c.unknown) << c.name;
    }
    EXPECT_EQ(m_Probe->GetServiceName(7), "");
}

// A failed pass keeps the cache and the next pass still runs; a section the
// input no longer has (count 0) keeps its old entries until the cache is cleared.
TEST_F(ProbeTest, FailedPassKeepsTheCacheAndStaleSectionsStayUntilCleared) {
    StartAndWaitFor("stbsim HD");
    // Every pass fails until the fault is withdrawn, however slowly this thread runs.
    Fail("av_get_stream_info", 1000000);
    SetInput("service 1 name=Later\nvideo pid=0x200\n");
    ASSERT_TRUE(m_Log.WaitFor("WARN", "ProbeAvInfo get stream info failed: 0x1234"));
    EXPECT_EQ(m_Probe->GetServiceName(1), "stbsim HD");
    EXPECT_EQ(m_Probe->GetVideoProfile(0x100), 100u);
    Fail("av_get_stream_info", 0);
    ASSERT_TRUE(WaitUntil([&] { return m_Probe->GetServiceName(1) == "Later"; }));
    EXPECT_EQ(m_Probe->GetAudioSampleRate(0x101), 48000u);
    // The clearing pass zeroes the cache before it refills it: wait for the refilled one.
    m_Probe->ClearStreamInfo();
    EXPECT_TRUE(
        WaitUntil([&] { return m_Probe->GetAudioSampleRate(0x101) == 0 && m_Probe->GetServiceName(1) == "Later"; }));
}

// The thread sleeps between passes; a cancel must cut that short.
TEST_F(ProbeTest, DestructionStopsTheThreadPromptly) {
    StartAndWaitFor("stbsim HD");
    auto start = std::chrono::steady_clock::now();
    m_Probe.reset();
    auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    std::printf("probe destruction took %lld ms\n", static_cast<long long>(ms));
    EXPECT_LT(ms, 500);  // the goal is well under that; the bound only catches a full pass interval
}

}  // namespace
