// ConfigManager driven directly on the test thread: the schedule is run by hand,
// and a dictionary with other value types shows the reads that drop an operation.
#include "control/config_manager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/status/status_fixture.h"

using stbav_test::LogCapture;
using stbav_test::StatusFixture;
using Calls = std::vector<std::string>;

namespace {

class ConfigManagerTest : public StatusFixture {
protected:
    void Queue(unsigned int opId, std::vector<unsigned char> bytes) {
        KT::CSharedPtr<SsOp> op(new SsOp(OP_TYPE_DATA, opId));
        op->SetDataU8(bytes.data(), static_cast<unsigned int>(bytes.size()));
        ASSERT_TRUE(config.QueueOperation(op));
    }
    LogCapture logs{"stbav.configmanager"};
};

}  // namespace

TEST_F(ConfigManagerTest, ARunWithAnEmptyQueueStillApplies) {
    output.SetAnalogAudioState(0, ANALOG_AUDIO_OFF);
    config.ScheduleConfiguration();
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(d.log.Calls(), (Calls{"IAudioOutput::SetMute(true)", "IAudioOutput::SetAnalogVolume(0)"}));
}

TEST_F(ConfigManagerTest, OverlayTypeTwoAloneTurnsCaptionsOn) {
    for (unsigned char value : {0, 1, 2, 3}) {
        d.log.Clear();
        Queue(155, {value});
        config.ProcessConfiguration();
        const std::string call = std::string("IClosedCaption::SetOverlayCcState") + (value == 2 ? "(true)" : "(false)");
        EXPECT_EQ(d.log.CallsWithPrefix("IClosedCaption::SetOverlayCcState"), (Calls{call})) << int(value);
    }
}

TEST_F(ConfigManagerTest, ReadsThatFailDropOrApplyZeroAsTheOperationSays) {
    // The same names under value types that do not fit their reads.
    COpSsData* odd[] = {new COpSsData("stbsystemStatusEnable", 4, CIndex(1, VT_UINT8), VT_UINT16),
                        new COpSsData("serviceselectionPcr", 245, CIndex(1, VT_UINT8), VT_UINT8),
                        new COpSsData("composite525Std", 114, CIndex(1, VT_UINT8), VT_UINT16),
                        new COpSsData("videooutputManualFormat", 266, CIndex(1, VT_UINT8), VT_UINT8),
                        nullptr};
    dictionary.FillMap(odd);
    Queue(4, {0, 1});
    Queue(245, {0x01, 0x00});
    Queue(114, {2});
    Queue(266, {0x42, 0, 0, 0});
    config.ProcessConfiguration();
    EXPECT_EQ(d.chip.Snapshot().initializeCount, 0);  // dropped
    EXPECT_EQ(d.log.Count("IDemux::SetPid"), 0u);      // dropped after its line
    EXPECT_TRUE(logs.Contains("DEBUG stbav.configmanager: AV_OP_SERVICESELECTION_PCR opId = 245, value = 0"));
    EXPECT_TRUE(logs.Contains("DEBUG stbav.configmanager: AV_OP_COMPOSITE_525_STD opId = 114, value = 0"));
    EXPECT_TRUE(logs.Contains("DEBUG stbav.configmanager: VIDEOOUTPUT_MANUAL_FORMAT opId = 266, value = 0"));
    EXPECT_EQ(output.GetVideoFormat(0), 0u);  // applied with the zeroed value
    for (COpSsData* e : odd) delete e;
}
