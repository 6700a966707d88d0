// The assembled subsystem end to end: the decoder doubles below, a real pty
// above with the test playing the host through the project's own protocol code,
// and a hand-moved clock under the schedule (real time for the tear-down test).
#include "control/stb_av_subsystem.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tests/doubles/fake_decoder_set.h"
#include "tests/e2e/e2e_support.h"
#include "tests/e2e/host_line.h"
#include "tests/protocol/print_capture.h"
#include "tests/status/status_test_support.h"
#include "tests/support/log_capture.h"
#include "tests/support/thread_names.h"
#include "toolkit/fixed_paths.h"

using stbav_test::FakeClock;
using stbav_test::LogCapture;
using stbav_test::OpIds;
using stbav_test::WaitUntil;
using Ids = std::vector<unsigned int>;
using Calls = std::vector<std::string>;

namespace {

// Threads of ours still alive ("UART Rx", "UART Px", "poller").
size_t ThreadCount() {
    const auto names = stbav_test::ThreadNames();
    return names.count("UART Rx") + names.count("UART Px") + names.count("poller");
}

class SubsystemTest : public ::testing::Test {
protected:
    SubsystemTest() { stbav::paths::SetRoot(m_Root.Path()); }
    ~SubsystemTest() override {
        sub.reset();
        stbav::paths::SetRoot("");
    }

    std::unique_ptr<StbAvSubsystem> Make(KT::IClock* schedClock) {
        return std::make_unique<StbAvSubsystem>(d.chip, d.demux, d.audioDecoders, d.videoDecoder, d.videoOutput,
                                                 d.audioOutput, d.closedCaption, host.DeviceName(), schedClock);
    }
    // Starts the subsystem; the host hears the version, then readiness.
    void Start(KT::IClock* schedClock, const std::string& version = "unknown") {
        ASSERT_TRUE(host.IsOpen());
        sub = Make(schedClock);
        sub->StartProcess();
        ExpectVersionAndReady(version);
    }
    void ExpectVersionAndReady(const std::string& version) {
        ASSERT_TRUE(host.WaitForOp(3));  // ready: reception is on
        auto ops = host.Take();
        ASSERT_EQ(OpIds(ops), (Ids{2, 3}));
        EXPECT_EQ(ops[0].Text(), version);
        EXPECT_EQ(ops[1].Text(), "stbav_ready");
    }
    void Start() { Start(&clock); }
    // Moves the schedule's clock and lets the poller see it.
    void Tick(uint64_t ms) {
        clock.Advance(ms);
        sub->Schedule().Wake();
    }
    bool WaitCall(const std::string& call) {
        return WaitUntil([&] { return d.log.Count(call) > 0; });
    }
    // Returns once every operation sent before has been processed: service
    // number 0 (the doubles' own, so no status changes) goes through its own run.
    void Fence() {
        const size_t before = d.log.Count(kFenceCall);
        host.SendU16(250, 0);
        host.SendApply();
        ASSERT_TRUE(WaitUntil([&] { return d.log.Count(kFenceCall) > before; }));
    }
    // A one-byte value and the apply trigger (4: stbsystemStatusEnable, 7: the
    // ready check, 8: the status clear).
    void SendAndApply(unsigned int opId, unsigned char value = 1) {
        host.SendU8(opId, value);
        host.SendApply();
    }

    PrintCapture prints;  // read diagnostics of the operation record
    FakeClock clock;
    LogCapture logs{{"stbav.configmanager", "stbav.opreceiver", "stbav.subsystem"}};
    e2e::HostLine host;
    stbav_test::FakeDecoderSet d;
    std::unique_ptr<StbAvSubsystem> sub;

    const std::string kFenceCall = "IDemux::SetServiceId(0)";
    e2e::TempDir m_Root;
};

}  // namespace

TEST_F(SubsystemTest, BatchReachesTheDoublesInOrderEndingInOneApplyPass) {
    Start();
    host.SendU16(245, 0x100);
    host.SendU16(246, 0x101);
    host.SendU16(247, 0x102);
    host.SendU16(248, 0x103);  // the second audio PID is not applied
    host.SendText(249, "News");
    host.SendU16(250, 7);
    host.SendU8(242, VIDEO_TYPE_H264);
    host.SendU8(243, AUDIO_TYPE_AC3);
    host.SendU8(261, VIDEO_OUTPUT_INTERFACE_HD);
    host.SendU8(262, FORMAT_MODE_MANUAL);
    host.SendU32(266, 0x330C0000);  // 1920x1080i 16:9 25 fps
    host.SendU8(115, COMPOSITE_625_PAL);
    host.SendU8(18, ANALOG_AUDIO_ON);
    host.SendU8(155, 2);  // overlay on
    host.SendU8(156, OVERLAY_CC_TYPE_NTSC);
    host.SendU8(157, OVERLAY_NTSC_CC2);
    host.SendU8(254, ENABLE_STATE_ENABLE);
    host.SendApply();
    ASSERT_TRUE(WaitCall("IClosedCaption::SetVbiLine21CcState(true)"));
    const Calls expected = {
        "IDemux::SetPid(256,1,0)",
        "IDemux::SetPid(257,3,0)",
        "IDemux::SetPid(258,0,0)",
        "IDemux::SetServiceName(\"News\")",
        "IDemux::SetServiceId(7)",
        "IDemux::SetServiceVideoCodecType(2)",
        "IDemux::SetServiceAudioCodecType(3)",
        // the apply pass: video, audio, captions
        "IVideoOutput::SetFormat(1920,1080,1,3,1,2,1)",
        "IAudioOutput::SetMute(false)",
        "IAudioOutput::SetAnalogVolume(0)",
        "IClosedCaption::SetOverlayCc(1,2)",
        "IClosedCaption::SetOverlayCcState(true)",
        "IClosedCaption::SetVbiLine21CcState(true)",
    };
    EXPECT_EQ(d.log.Calls(), expected);
    d.log.Clear();
    Fence();  // a later run finds nothing dirty: the batch was applied once
    EXPECT_EQ(d.log.Calls(), (Calls{kFenceCall}));
}

TEST_F(SubsystemTest, BurstOfTriggersGivesOneRunAndOtherTypesAreNotQueued) {
    Start();
    std::atomic<bool> entered{false}, released{false};  // the poller held in a run of its own
    sub->Schedule().Add(KT::CSchedule::Action([&] {
                            entered = true;
                            WaitUntil([&] { return released.load(); });
                        }),
                        0, false);
    ASSERT_TRUE(WaitUntil([&] { return entered.load(); }));
    const size_t before = sub->Schedule().PendingCount();  // the two one-second reports
    host.SendU16(250, 42);
    for (int i = 0; i < 5; ++i) host.SendApply();
    host.SendBytes(251, {1}, static_cast<OpType_e>(8));  // above 7: dropped without a word
    host.SendBytes(250, {0, 43}, OP_TYPE_RESERVED_3);   // not a value: never applied
    ASSERT_TRUE(WaitUntil([&] { return logs.Contains("WARN stbav.opreceiver: HandleCommOp: Unhandled OpType=3"); }));
    EXPECT_EQ(sub->Schedule().PendingCount(), before + 1);
    released = true;
    Fence();
    EXPECT_EQ(d.log.Count("IDemux::SetServiceId(42)"), 1u);
    EXPECT_EQ(d.log.Count("IDemux::SetServiceId(43)"), 0u);
    EXPECT_EQ(logs.CountPrefix("HandleCommOp: Unhandled OpType"), 1u);  // type 8 goes without one
}

TEST_F(SubsystemTest, UnknownOpIdsAndUnfitValuesAreHandledAndTheRestApplies) {
    Start();
    host.SendU8(999, 1);
    host.SendBytes(245, {0x55});  // one byte where two belong: read as 0
    host.SendU8(20, 0xF6);        // -10 dBV, but the dictionary types it signed: the read fails, 0 applies
    host.SendU8(18, ANALOG_AUDIO_ON);
    host.SendU8(5, 1);
    host.SendU8(244, 3);
    host.SendText(249, "");
    host.SendU16(248, 0x300);
    host.SendU16(246, 0x200);
    host.SendApply();
    ASSERT_TRUE(WaitCall("IAudioOutput::SetAnalogVolume(0)"));
    EXPECT_EQ(d.log.Calls(), (Calls{"IDemux::SetPid(0,1,0)", "IDemux::SetPid(512,3,0)", "IAudioOutput::SetMute(false)",
                                    "IAudioOutput::SetAnalogVolume(0)"}));
    for (const char* line : {
             "WARN stbav.configmanager: ProcessConfiguration: Unable to find OpId=999 in map!",
             "DEBUG stbav.configmanager: AV_OP_SERVICESELECTION_PCR opId = 245, value = 0",
             "DEBUG stbav.configmanager: AV_OP_ANALOGAUDIO_OUTPUT_LEVEL opId = 20, value = 0",
             "DEBUG stbav.configmanager: unhandled opId = 5, data type = 3",
             "DEBUG stbav.configmanager: unhandled opId = 244, data type = 3",
             "DEBUG stbav.configmanager: AV_OP_SERVICESELECTION_SERVICE_NAME opId = 249, value = ",
             "DEBUG stbav.configmanager: AV_OP_SERVICESELECTION_AUDIO2 opId = 248, value = 768",
         })
        EXPECT_TRUE(logs.Contains(line)) << line;
    EXPECT_TRUE(prints.Contains("GetData wrong size (2 != 1)"));
}

TEST_F(SubsystemTest, StatusEnableInitialisesTheChipOnceAndRestartsReporting) {
    Start();
    for (unsigned char value : {1, 1, 2, 2, 0, 3, 1}) SendAndApply(4, value);
    Fence();
    ASSERT_TRUE(host.WaitForCount(0, 2));  // stbsystemReset goes only in a forced report
    EXPECT_EQ(d.chip.Snapshot().initializeCount, 1);
    EXPECT_EQ(host.Count(0), 2u);
    EXPECT_EQ(logs.Count("DEBUG stbav.configmanager: ProcessConfiguration: m_StatusMonitor.StartReporting() Enable"), 3u);
    EXPECT_EQ(logs.Count("DEBUG stbav.configmanager: ProcessConfiguration: m_StatusMonitor.StopReporting() Disable"),
              2u);
}

TEST_F(SubsystemTest, ReportingSendsTheFullReportThenChangesAndTheHeartbeatEvery2s) {
    d.PlayStream();
    Start();
    SendAndApply(4);
    ASSERT_TRUE(host.WaitForOp(279));  // the last video item
    Ids fullReport = stbav_test::kAudioItems;
    fullReport.insert(fullReport.end(), {0, 1});  // the chip's
    fullReport.insert(fullReport.end(), stbav_test::kVideoItems.begin(), stbav_test::kVideoItems.end());
    EXPECT_EQ(OpIds(host.Take()), fullReport);
    Fence();  // the next poll is armed once the enabling run is over

    d.audioDecoder->Configure([](stbav_test::FakeAudioDecoderState& s) { s.bitRate = 128000; });
    Tick(2000);
    ASSERT_TRUE(host.WaitForOp(1));
    Fence();     // the poll has armed the next one
    Tick(1999);  // not yet
    Fence();
    Tick(1);
    ASSERT_TRUE(host.WaitForCount(1, 2));
    Fence();  // any video item of the second poll would be on the line by now
    auto ops = host.Take();
    EXPECT_EQ(OpIds(ops), (Ids{74, 1, 1}));
    EXPECT_EQ(ops[0].Value(), 128000u);
}

TEST_F(SubsystemTest, ReadyCheckAndStatusClearAreAnsweredOnTheNextSecond) {
    e2e::WriteFile(m_Root / "vendor/etc/version", "# board\nversion = 2.4.1\n");
    Start(&clock, "2.4.1");
    SendAndApply(7);
    SendAndApply(7);
    Fence();
    Tick(1000);
    ExpectVersionAndReady("2.4.1");

    SendAndApply(8);
    Fence();
    Tick(1000);  // the ready report runs first in this tick: it must stay quiet
    ASSERT_TRUE(host.WaitForOp(9));
    const auto ops = host.Take();
    ASSERT_EQ(OpIds(ops), (Ids{9}));
    EXPECT_EQ(ops[0].Text(), "Stbav status clear done!");
    EXPECT_EQ(d.log.Count("IDemux::ClearBuffer"), 1u);
}

TEST_F(SubsystemTest, DestructionWhileReceivingAndReportingIsQuickAndLeavesNoThread) {
    const size_t threadsBefore = ThreadCount();
    d.PlayStream();
    Start(nullptr);  // the monotonic clock: the one-second reports really tick
    SendAndApply(4);
    ASSERT_TRUE(host.WaitForOp(279));
    EXPECT_GT(ThreadCount(), threadsBefore);
    SendAndApply(7);
    const auto start = std::chrono::steady_clock::now();
    sub.reset();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    std::cout << "[ measure ] subsystem destruction took " << ms.count() << " ms" << std::endl;
    EXPECT_LT(ms.count(), 1000);
    // Joined threads can still show in /proc for a moment.
    EXPECT_TRUE(WaitUntil([&] { return ThreadCount() == threadsBefore; })) << ThreadCount() << " threads left";
}

TEST_F(SubsystemTest, SambaCheckWithoutSmbdIsFalseAndRemovesItsFlagFile) {
    ASSERT_TRUE(e2e::WriteFile(m_Root / "data/smbdstartflag", "smbd"));  // a stale flag
    EXPECT_FALSE(Make(&clock)->ReportSambaServiceReady());
    EXPECT_TRUE(logs.Contains("DEBUG stbav.subsystem: ReportSambaServiceReady The Samba service startup failed!"));
    EXPECT_FALSE(e2e::FileExists(m_Root / "data/smbdstartflag"));
}
