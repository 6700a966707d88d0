// The demux against the virtual board: the player restarts only when the
// programme settings changed, codec mappings, PID read-back, and every platform
// failure path by fault injection.
#include "platform/stb_demux.h"

#include <cstring>
#include <iterator>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;

// The settings read, then the player restarted with the new ones.
const std::vector<std::string> kReadThenRestart = {"av_get_config", "av_stop", "av_set_config", "av_start_audio",
                                                   "av_start_video"};

// Each setter with a value, under the name its log lines carry.
const struct {
    const char* name;
    std::function<bool(StbDemux&)> set;
} kSetters[] = {
    {"SetPid", [](StbDemux& d) { return d.SetPid(0x100, ES_TYPE_VIDEO); }},
    {"SetPid", [](StbDemux& d) { return d.SetPid(0x101, ES_TYPE_AUDIO, 3); }},
    {"SetPid", [](StbDemux& d) { return d.SetPid(0x100, ES_TYPE_PCR); }},
    {"SetServiceId", [](StbDemux& d) { return d.SetServiceId(7); }},
    {"SetServiceName", [](StbDemux& d) { return d.SetServiceName("News"); }},
    {"SetServiceVideoCodecType", [](StbDemux& d) { return d.SetServiceVideoCodecType(VIDEO_TYPE_H264); }},
    {"SetServiceAudioCodecType", [](StbDemux& d) { return d.SetServiceAudioCodecType(AUDIO_TYPE_AC3); }},
};

class DemuxTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        BringUpByHand();
        m_Demux.BondAvHandle(m_Handles.av);
    }

    LogCapture m_Log{"stbav.stbdemux"};
    StbDemux m_Demux;
};

TEST_F(DemuxTest, EverySetterRestartsThePlayerOnlyForANewValue) {
    for (size_t i = 0; i < std::size(kSetters); ++i) {
        SCOPED_TRACE(testing::Message() << i << " " << kSetters[i].name);
        stbsim::ClearJournal();
        ASSERT_TRUE(kSetters[i].set(m_Demux));
        EXPECT_EQ(Calls(), kReadThenRestart);
        EXPECT_EQ(m_Log.Count("DEBUG", "UpdateProgSettings progSettings is changed"), i + 1);
        stbsim::ClearJournal();
        ASSERT_TRUE(kSetters[i].set(m_Demux));
        EXPECT_EQ(Calls(), std::vector<std::string>{"av_get_config"});
        EXPECT_EQ(m_Log.Count("DEBUG", "UpdateProgSettings progSettings is not changed"), i + 1);
    }
    EXPECT_EQ(m_Log.Count("DEBUG", "Send STOP_REQUIRED"), 3u);  // once per changed PID, never for a repeat
    EXPECT_TRUE(m_Log.Has("INFO", "StbVideoDecoder::GetCodec: pcrPid: 0, vidPid: 256, audPid: 0, video type: 0, "
                                  "audio type: 0, "));
    const auto s = stbsim::State().player.settings;
    EXPECT_EQ((std::vector<uint32_t>{s.video_pid, s.audio_pid, s.pcr_pid, uint32_t(s.service_id), s.video_type,
                                     s.audio_type}),
              (std::vector<uint32_t>{0x100, 0x101, 0x100, 7, 5, 4}));
    EXPECT_EQ(m_Demux.GetServiceId(), 7);
}

TEST_F(DemuxTest, SettingsChangedOnThePlayerRestartEvenForARememberedPid) {
    ASSERT_TRUE(m_Demux.SetPid(0x101, ES_TYPE_AUDIO));
    _AV_SETTING_S s;
    ASSERT_EQ(av_get_config(m_Handles.av, &s), 0);
    s.service_id = 99;
    ASSERT_EQ(av_set_config(m_Handles.av, &s), 0);
    stbsim::ClearJournal();
    ASSERT_TRUE(m_Demux.SetPid(0x101, ES_TYPE_AUDIO));
    EXPECT_EQ(Calls(), kReadThenRestart);
}

TEST_F(DemuxTest, ExtraStreamsTypeTwoAndBadIndexesNeverRestartThePlayer) {
    for (EsType_e type : {ES_TYPE_EXTRA, ES_TYPE_EXTRA_INDEXED, ES_TYPE_NONE, static_cast<EsType_e>(9)}) {
        SCOPED_TRACE(type);
        stbsim::ClearJournal();
        EXPECT_TRUE(m_Demux.SetPid(0x300, type, 2));
        EXPECT_EQ(Calls(), std::vector<std::string>{"av_get_config"});
    }
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_EXTRA), 0x300);
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_EXTRA_INDEXED, 2), 0x300);
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_EXTRA_INDEXED, 1), 0);
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_NONE), 0);
    // An index out of range is refused after only the settings read.
    for (EsType_e type : {ES_TYPE_AUDIO, ES_TYPE_EXTRA_INDEXED}) {
        SCOPED_TRACE(type);
        stbsim::ClearJournal();
        EXPECT_FALSE(m_Demux.SetPid(0x101, type, 4));
        EXPECT_EQ(Calls(), std::vector<std::string>{"av_get_config"});
    }
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_EXTRA_INDEXED, 4), 0);
    EXPECT_TRUE(m_Log.Has("ERROR", "Index 4 is invalid"));
}

TEST_F(DemuxTest, CodecTypesMapOntoThePlatformCodes) {
    const struct {
        bool video;
        int type;
        uint32_t platform;
        const char* text;
    } cases[] = {
        {true, 1, 0, "\tVideo Stream Type MPEG2\n"},  {true, 2, 5, "\tVideo Stream Type H264\n"},
        {true, 3, 38, "\tVideo Stream Type HEVC\n"},  {true, 4, 0, "\tVideo Stream Type error\n"},
        {true, 5, 2, "\tVideo Stream Type AVS\n"},    {true, 6, 44, "\tVideo Stream Type AVS2\n"},
        {true, 0, 0, "\tVideo Stream Type error\n"},  {false, 1, 0, "\tAudio Stream Type MPGE1\n"},
        {false, 2, 1, "\tAudio Stream Type MPGE2\n"}, {false, 3, 4, "\tAudio Stream Type AC3\n"},
        {false, 4, 1, "\tAudio Stream Type error\n"}, {false, 5, 5, "\tAudio Stream Type EAC3\n"},
        {false, 6, 2, "\tAudio Stream Type AAC\n"},   {false, 7, 3, "\tAudio Stream Type AAC\n"},
        {false, 8, 53, "\tAudio Stream Type DRA\n"},  {false, 0, 1, "\tAudio Stream Type error\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.video ? "video " : "audio ") << c.type);
        m_Log.Clear();
        ASSERT_TRUE(c.video ? m_Demux.SetServiceVideoCodecType(static_cast<VideoType_e>(c.type))
                            : m_Demux.SetServiceAudioCodecType(static_cast<AudioType_e>(c.type)));
        const auto s = stbsim::State().player.settings;
        EXPECT_EQ(c.video ? s.video_type : s.audio_type, c.platform);
        EXPECT_TRUE(m_Log.Has("DEBUG", c.text));
    }
}

TEST_F(DemuxTest, PidsReadBackAreThePlayersPidsInUse) {
    PlayDefaultService(m_Handles.av);
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_VIDEO), 0x100);
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_AUDIO, 3), 0x101);  // the index does not matter
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_PCR), 0x100);
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetPid: EsType - 0, Index - 3"));
}

// A shorter name keeps the player's bytes behind it; a longer one is cut at the
// end of the record.
TEST_F(DemuxTest, ServiceNameOverwritesOnlyItsOwnBytes) {
    ASSERT_TRUE(m_Demux.SetServiceName("Channel Nine"));
    EXPECT_EQ(m_Demux.GetServiceName(), "Channel Nine");
    ASSERT_TRUE(m_Demux.SetServiceName("BBC"));
    EXPECT_EQ(m_Demux.GetServiceName(), "BBCnnel Nine");
    ASSERT_TRUE(m_Demux.SetServiceName(std::string(50, 'x')));
    EXPECT_EQ(m_Demux.GetServiceName(), std::string(34, 'x'));
}

TEST_F(DemuxTest, FailedSettingsReadFailsTheSetterAndGivesTheGettersDefaults) {
    for (const auto& c : kSetters) {
        SCOPED_TRACE(c.name);
        stbsim::ClearJournal();
        Fail("av_get_config");
        EXPECT_FALSE(c.set(m_Demux));
        EXPECT_TRUE(m_Log.Has("ERROR", std::string(c.name) + " av_get_config error"));
        EXPECT_EQ(Calls(), std::vector<std::string>{"av_get_config"});
    }
    _AV_SETTING_S zero;
    memset(&zero, 0, sizeof zero);
    auto s = stbsim::State().player.settings;
    EXPECT_EQ(memcmp(&s, &zero, sizeof s), 0);

    // The getters give their defaults.
    Fail("av_get_config", 2);
    EXPECT_EQ(m_Demux.GetServiceName(), "Undefined");
    EXPECT_EQ(m_Demux.GetServiceId(), 0);
    EXPECT_TRUE(m_Log.Has("ERROR", "GetServiceName av_get_config error"));
    EXPECT_TRUE(m_Log.Has("ERROR", "GetServiceId av_get_config error"));
    PlayDefaultService(m_Handles.av);
    Fail("av_get_status_info");
    EXPECT_EQ(m_Demux.GetPid(ES_TYPE_VIDEO), 0);
    EXPECT_TRUE(m_Log.Has("ERROR", "GetPid: av_get_status_info failed"));
}

// A failed stop or configuration is logged but reported as success, and the
// settings count as applied: the next setter then finds the player's own
// (older) settings different and applies those. A failed start is reported.
TEST_F(DemuxTest, RestartFailures) {
    struct Case {
        const char* function;
        const char* text;
        bool result;
        std::vector<std::string> calls;
        bool nextRestarts;
    };
    const Case cases[] = {
        {"av_stop", "UpdateProgSettings stop av failed", true, {"av_get_config", "av_stop"}, true},
        {"av_set_config", "UpdateProgSettings av set config error", true,
         {"av_get_config", "av_stop", "av_set_config"}, true},
        {"av_start_audio", "UpdateProgSettings av start error", false, kReadThenRestart, false},
        {"av_start_video", "UpdateProgSettings av start error", false, kReadThenRestart, false},
    };
    uint16_t pid = 0x200;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.function);
        stbsim::ClearJournal();
        Fail(c.function);
        EXPECT_EQ(m_Demux.SetPid(++pid, ES_TYPE_VIDEO), c.result);
        EXPECT_TRUE(m_Log.Has("ERROR", c.text));
        EXPECT_EQ(Calls(), c.calls);
        uint16_t onPlayer = stbsim::State().player.settings.video_pid;
        stbsim::ClearJournal();
        EXPECT_TRUE(m_Demux.SetPid(pid, ES_TYPE_VIDEO));
        EXPECT_EQ(Calls(), c.nextRestarts ? kReadThenRestart : std::vector<std::string>{"av_get_config"});
        EXPECT_EQ(stbsim::State().player.settings.video_pid, onPlayer);
    }
}

TEST_F(DemuxTest, ClearBufferAlwaysStopsResetsAndRestarts) {
    ASSERT_TRUE(m_Demux.SetPid(0x100, ES_TYPE_VIDEO));
    stbsim::ClearJournal();
    EXPECT_TRUE(m_Demux.ClearBuffer());
    EXPECT_EQ(Calls(),
              (std::vector<std::string>{"av_stop", "av_reset", "av_stop", "av_set_config", "av_start_audio",
                                        "av_start_video"}));
    Fail("av_reset");
    EXPECT_TRUE(m_Demux.ClearBuffer());  // the reset's result is not looked at
}

}  // namespace
