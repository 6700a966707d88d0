// The virtual board while playing: counters and PTS against the clock, PIDs
// in use, the codes of the status and stream information records, scenario
// changes over time and the format-change callback from the board's thread.
#include <mutex>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

class BoardPlaybackTest : public SimTest {};

TEST_F(BoardPlaybackTest, CountersAndPtsAdvanceWhilePlayingAndHoldWhenStopped) {
    const Handles h = BringUp();
    PlayDefaultService(h.av);
    const AvStatusInfo first = Status(h.av);
    ASSERT_TRUE(WaitUntil([&] {
        const AvStatusInfo now = Status(h.av);
        return now.video_frame_count > first.video_frame_count + 2 && now.audio_frame_count > first.audio_frame_count &&
               now.audio_pts > first.audio_pts;
    }));

    ASSERT_EQ(av_stop(h.av), 0);
    const AvStatusInfo stopped = Status(h.av);
    WaitClock(120);  // three frame periods at 25 frames per second
    const AvStatusInfo later = Status(h.av);
    EXPECT_EQ(std::make_tuple(later.video_frame_count, later.audio_frame_count, later.audio_pts, later.video_state),
              std::make_tuple(stopped.video_frame_count, stopped.audio_frame_count, stopped.audio_pts, 0u));

    // Clearing the buffers restarts the frame count.
    ASSERT_EQ(av_reset(h.av, 1), 0);
    EXPECT_EQ(Status(h.av).video_frame_count, 0u);
}

// A PID is in use only when the input carries it, and a stream of another
// codec is carried but not decoded.
TEST_F(BoardPlaybackTest, ConfiguredPidsAreInUseWhenCarriedAndDecodedOnlyInTheirCodec) {
    SetInput("service 7 pcr=0x200\nvideo pid=0x201\naudio pid=0x202\naudio pid=0x203 codec=ac3\n");
    const Handles h = BringUp();
    const struct {
        uint16_t video, audio, pcr;
        uint16_t wantVideo, wantAudio, wantPcr;
    } cases[] = {
        {0x201, 0x202, 0x200, 0x201, 0x202, 0x200},
        {0x201, 0x203, 0x200, 0x201, 0x203, 0x200},
        {0x301, 0x302, 0x300, 0, 0, 0},
        {0x202, 0x201, 0x201, 0, 0, 0},  // right PIDs, wrong kinds
        {0, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        Play(h.av, c.video, 5, c.audio, 1, c.pcr);
        const AvStatusInfo st = Status(h.av);
        EXPECT_EQ(st.video_pid, c.wantVideo) << std::hex << c.video;
        EXPECT_EQ(st.audio_pid, c.wantAudio) << std::hex << c.audio;
        EXPECT_EQ(st.pcr_pid, c.wantPcr) << std::hex << c.pcr;
    }
    Play(h.av, 0x201, 38, 0x202, 1, 0x200);  // HEVC configured, H.264 carried
    EXPECT_EQ(std::make_tuple(Status(h.av).video_pid, Status(h.av).width), std::make_tuple(0x201, 0u));
    WaitClock(120);
    EXPECT_EQ(Status(h.av).video_frame_count, 0u);
    EXPECT_FALSE(stbsim::State().player.videoDecoding);
    EXPECT_TRUE(stbsim::State().player.audioDecoding);
}

TEST_F(BoardPlaybackTest, StatusAndStreamRecordsCarryTheChosenCodes) {
    SetInput(R"(service 1 name="HD one" pcr=0x100
video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9 profile=100 level=40
audio pid=0x101 codec=ac3 rate=48000 channels=5.1 bitrate=384000
service 2 name="UHD"
video pid=0x200 codec=hevc width=3840 height=2160 scan=progressive fps=50 profile=2 level=153 depth=10 chroma=4:2:2
audio pid=0x201 codec=eac3
service 3 name="SD"
video pid=0x300 codec=mpeg2 width=720 height=576 fps=25 aspect=4:3
audio pid=0x301 codec=aac
service 4 name="Film"
video pid=0x400 width=1280 height=720 scan=progressive fps=23.976
service 5 name="Sport"
video pid=0x500 width=1280 height=720 scan=progressive fps=59.94
)");
    const Handles h = BringUp();
    AvStreamInfo info;
    ASSERT_EQ(av_get_stream_info(h.av, &info), 0);
    ASSERT_EQ(std::make_tuple(info.video_count, info.audio_count, info.service_count), std::make_tuple(5u, 3u, 5u));

    // Per video stream: codec code, sample aspect ratio, field order, profile, level, chroma format, bit depth.
    using Video = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t>;
    const Video video[] = {{5, 1, 1, 2, 100, 40, 1, 0}, {38, 1, 1, 1, 2, 153, 0, 1}, {0, 16, 15, 2, 4, 8, 1, 0},
                           {5, 1, 1, 1, 100, 40, 1, 0}, {5, 1, 1, 1, 100, 40, 1, 0}};
    for (size_t i = 0; i < 5; ++i) {
        const AvVideoStreamEntry& e = info.video[i];
        EXPECT_EQ(Video(e.video_type, e.aspect_first, e.aspect_second, e.field_order, e.profile, e.level,
                        e.chroma_format, e.bit_depth),
                  video[i])
            << i;
    }
    EXPECT_EQ(std::make_pair(info.video[3].frame_rate_num, info.video[3].frame_rate_den), std::pair(24000u, 1001u));
    EXPECT_EQ(std::make_tuple(info.audio[0].channels, info.audio[0].format, info.audio[0].bit_rate),
              std::make_tuple(5u, 1u, 384000u));
    EXPECT_EQ(std::make_tuple(info.audio[1].format, info.audio[2].format), std::make_tuple(3u, 5u));
    EXPECT_EQ(info.service[1].program_number, 2);
    EXPECT_STREQ(info.service[1].name, "UHD");
    // Service entries are 66 bytes apart from +1556.
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&info) + 1556 + 4 * 66 + 2), "Sport");

    // Frame-rate parts of the status record, per service.
    const struct {
        uint16_t pid, fpsInt, fpsDec;
        uint32_t type, width, bits;
    } status[] = {
        {0x100, 25, 0, 5, 1920, 8}, {0x200, 50, 0, 38, 3840, 10},
        {0x400, 23, 98, 5, 1280, 8}, {0x500, 59, 94, 5, 1280, 8},
    };
    for (const auto& s : status) {
        Play(h.av, s.pid, s.type, 0x101, 4, s.pid);
        const AvStatusInfo st = Status(h.av);
        EXPECT_EQ(std::make_tuple(st.frame_rate_int, st.frame_rate_dec, st.width, st.bit_width),
                  std::make_tuple(s.fpsInt, s.fpsDec, s.width, s.bits))
            << std::hex << s.pid;
        EXPECT_EQ(std::make_tuple(st.audio_format, st.audio_sample_rate, st.audio_bits_per_sample),
                  std::make_tuple(1u, 48000u, 16u));
    }

    _AV_SETTING_S found{};
    ASSERT_EQ(av_search_progInfo(&found, Temp(IpInputParams{})), 0);
    EXPECT_EQ(std::make_tuple(found.video_pid, found.video_type, found.audio_pid, found.audio_type, found.service_id),
              std::make_tuple(0x100, 5u, 0x101, 4u, 1));
    EXPECT_STREQ(found.service_name, "HD one");
}

// The audio PTS starts 591 ticks (6.6 ms) before the 33-bit wrap.
TEST_F(BoardPlaybackTest, AScenarioChangesTheFormatAtItsTimeAndPtsWrapsAt33Bits) {
    SetInput("service 1\nvideo pid=0x100\naudio pid=0x101 pts=8589934000\n"
             "at 0.2 video width=3840 height=2160 fps=50 scan=progressive\n");
    const Handles h = BringUp();
    PlayDefaultService(h.av);
    EXPECT_TRUE(WaitUntil([&] { return Status(h.av).audio_pts < 90000; }));
    ASSERT_TRUE(WaitUntil([&] { return Status(h.av).height == 2160; }));
    const AvStatusInfo st = Status(h.av);
    EXPECT_EQ(std::make_tuple(st.width, st.frame_rate_int), std::make_tuple(3840u, 50u));
}

// Records event callbacks for the test thread.
struct EventLog {
    std::mutex mutex;
    std::vector<AvVideoFormatEvent> events;
    std::vector<std::thread::id> threads;
    uint32_t window = 0;
};
EventLog g_log;

int RecordEvent(uint32_t, _AV_EVENT_E event, const void* data) {
    if (event != AV_EVENT_VIDEO_FORMAT_CHANGED) return 0;
    // Like the daemon: reopen the window from inside the callback.
    vout_window_open(g_log.window);
    std::lock_guard<std::mutex> lock(g_log.mutex);
    g_log.events.push_back(*static_cast<const AvVideoFormatEvent*>(data));
    g_log.threads.push_back(std::this_thread::get_id());
    return 0;
}

// Plays the default service with RecordEvent registered for the format change
// (the board of an earlier test, and its event thread, are gone).
class BoardEventTest : public SimTest {
protected:
    Handles PlayWithEvents() {
        const Handles h = BringUp();
        g_log.events.clear();
        g_log.threads.clear();
        g_log.window = h.window;
        AvEventConfig cfg{AV_EVENT_VIDEO_FORMAT_CHANGED, &RecordEvent, 1};
        EXPECT_EQ(av_set_event_config(h.av, &cfg, 2), 0);
        PlayDefaultService(h.av);
        return h;
    }
    size_t EventCount() {
        std::lock_guard<std::mutex> lock(g_log.mutex);
        return g_log.events.size();
    }
};

TEST_F(BoardEventTest, FormatChangesReachTheCallbackOnTheBoardsThread) {
    PlayWithEvents();
    ASSERT_TRUE(WaitUntil([&] { return EventCount() >= 1; }));  // the first picture
    std::string error;
    ASSERT_TRUE(stbsim::ChangeVideo("width=720 height=576 aspect=4:3 chroma=4:2:2", &error)) << error;
    ASSERT_TRUE(WaitUntil([&] { return EventCount() >= 2; }));

    std::lock_guard<std::mutex> lock(g_log.mutex);
    const auto fields = [](const AvVideoFormatEvent& e) {
        return std::make_tuple(e.source_height, e.aspect_first, e.aspect_second, e.chroma_format);
    };
    EXPECT_EQ(fields(g_log.events[0]), std::make_tuple(1080u, 16u, 9u, 1u));
    EXPECT_EQ(fields(g_log.events[1]), std::make_tuple(576u, 4u, 3u, 0u));
    const uint32_t* words = reinterpret_cast<const uint32_t*>(&g_log.events[1]);
    EXPECT_EQ(std::make_pair(words[15], words[20]), std::make_pair(576u, 4u));
    for (const auto& id : g_log.threads) EXPECT_NE(id, std::this_thread::get_id());
    EXPECT_GE(stbsim::State().display.windowOpenCount, 3u);  // bring-up and two callbacks
}

TEST_F(BoardEventTest, DeinitStopsTheEventThreadWhileEventsArrive) {
    const Handles h = PlayWithEvents();
    for (int i = 0; i < 20; ++i) ASSERT_TRUE(stbsim::ChangeVideo(i % 2 ? "height=1080" : "height=720"));
    EXPECT_EQ(av_destory(h.av), 0);
    EXPECT_EQ(system_deinit(), 0);
    const size_t seen = EventCount();
    WaitClock(50);
    EXPECT_EQ(EventCount(), seen);  // nothing after the player is gone
}

}  // namespace
}  // namespace simtest
