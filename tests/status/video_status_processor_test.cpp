// VideoStatusProcessor over the decoder doubles: what goes to the host, and how a
// change of the decoded format reaches the output.
#include "status/video_status_processor.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/status/status_fixture.h"

using e2e::HostOp;
using stbav_test::kVideoItems;
using stbav_test::LogCapture;
using stbav_test::OpIds;
using stbav_test::StatusFixture;
using Ids = std::vector<unsigned int>;

namespace {

std::map<unsigned int, uint64_t> ValuesById(const std::vector<HostOp>& ops) {
    std::map<unsigned int, uint64_t> v;
    for (const HostOp& op : ops) v[op.opId] = op.Value();
    return v;
}

class VideoStatusTest : public StatusFixture {
protected:
    VideoStatusTest() {
        d.PlayStream();  // 1080p50 16:9 in and out
        d.demux.SetServiceId(7);
        d.videoDecoder.SetCodec(VIDEO_TYPE_H264);
        d.videoDecoder.Configure([](stbav_test::FakeVideoDecoderState& s) {
            s.serviceNames[7] = "News";
            s.profile = VIDEO_PROFILE_H264_HIGH;
            s.level = VIDEO_LEVEL_4;
            s.chromaFormat = VIDEO_CHROMA_FORMAT_420;
            s.bitrate = 8000000;
            s.bitDepth = CHROMA_BIT_DEPTH_8;
            s.frameCount = 25;
        });
        d.log.Clear();
    }
    int SetFormatCalls() { return d.videoOutput.Snapshot().setFormatCount; }

    LogCapture logs{"tevrin.videoStatusProcess"};
    VideoStatusProcessor video{sender, config, output, d.videoDecoder, d.videoOutput, d.demux};
    const uint32_t k1080p50 = 0x630D0000;  // 1920x1080p 16x9 50.00fps
};

}  // namespace

TEST_F(VideoStatusTest, UnrecognisedInputSendsOnlyOutputFormatAndDecodeStatus) {
    d.videoDecoder.SetReportedFormat({1920, 1080, 2, 0, 1});  // frame rate unknown
    video.Process(true);
    auto sent = adapter.Take();
    EXPECT_EQ(OpIds(sent), kVideoItems);  // no service name
    auto v = ValuesById(sent);
    for (unsigned int id : {276u, 277u, 278u, 280u, 281u, 283u, 282u, 269u}) EXPECT_EQ(v[id], 0u) << id;
    EXPECT_EQ((std::vector<uint64_t>{v[267], v[270]}), (std::vector<uint64_t>{k1080p50, 1}));
    EXPECT_EQ(d.log.Count("IVideoDecoder::GetProfile") + d.log.Count("IVideoDecoder::GetServiceName"), 0u);
    EXPECT_TRUE(logs.Contains(
        "DEBUG tevrin.videoStatusProcess: Process(87) The input source cannot be fully recognized. Keep the last setting"));
    EXPECT_EQ(schedule.PendingCount(), 0u);  // the output settings are not touched
}

TEST_F(VideoStatusTest, AbnormalPidKeepsOnlyServiceIdentityAndOutputFormat) {
    struct Case {
        uint16_t pid;
        std::string name;
    } cases[] = {{8191, "News"}, {0, "News"}, {0, ""}};
    for (const auto& c : cases) {
        d.demux.SetPid(c.pid, ES_TYPE_VIDEO, 0);
        d.videoDecoder.Configure([&](stbav_test::FakeVideoDecoderState& s) { s.serviceNames[7] = c.name; });
        video.Process(true);
        auto sent = adapter.Take();
        ASSERT_FALSE(sent.empty());
        EXPECT_EQ(sent[0].opId, 226u) << "the name goes even when empty";
        EXPECT_EQ(sent[0].Text(), c.name);
        for (const HostOp& op : sent) {
            if (op.opId == 226) continue;
            const uint64_t kept = op.opId == 225 ? 7u : op.opId == 267 ? k1080p50 : 0u;  // service number, format
            EXPECT_EQ(op.Value(), kept) << "opId " << op.opId << " pid " << c.pid;
        }
    }
}

TEST_F(VideoStatusTest, AutomaticModeFollowsAHeightChangeOnce) {
    output.SetVideoFormatMode(0, FORMAT_MODE_AUTO);
    video.Process(false);  // first sight of the input: a change from nothing
    EXPECT_EQ(schedule.PendingCount(), 1u);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(SetFormatCalls(), 1);  // the configuration run

    video.Process(false);  // same input
    EXPECT_EQ(schedule.PendingCount(), 0u);

    d.videoDecoder.SetReportedFormat({1920, 1088, 2, 6, 1});  // 1088 lines
    video.Process(false);
    EXPECT_EQ(schedule.PendingCount(), 1u);
    video.Process(false);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(SetFormatCalls(), 2);
    video.Process(false);
    EXPECT_EQ(schedule.RunDue(), 0u);
    EXPECT_EQ(SetFormatCalls(), 2);
}

TEST_F(VideoStatusTest, ManualModeLogsAResolutionChangeAndLeavesTheOutput) {
    output.SetVideoFormatMode(0, FORMAT_MODE_MANUAL);
    video.Process(false);
    EXPECT_TRUE(logs.Contains("ERROR tevrin.videoStatusProcess: CheckFormatChange 1920, 1080 ,1"));
    EXPECT_EQ(schedule.PendingCount(), 0u);
    logs.Clear();
    // Frame rate and scan alone do not count in manual mode.
    d.videoDecoder.SetReportedFormat({1920, 1080, 1, 3, 1});  // interlaced, 25 fps
    video.Process(false);
    EXPECT_EQ(logs.Count("ERROR tevrin.videoStatusProcess: CheckFormatChange 1920, 1080 ,1"), 0u);
    EXPECT_EQ(SetFormatCalls(), 0);
}

TEST_F(VideoStatusTest, ForcedPollSendsEveryItemInOrderAndClearResendsEveryNonDefaultValue) {
    video.Process(true);
    auto forced = adapter.Take();
    Ids all = {226};
    all.insert(all.end(), kVideoItems.begin(), kVideoItems.end());
    EXPECT_EQ(OpIds(forced), all);
    EXPECT_EQ(forced[0].Text(), "News");
    auto v = ValuesById(forced);
    // Frames moved since the start; the height; the format; HD.
    EXPECT_EQ((std::vector<uint64_t>{v[270], v[272], v[267], v[282]}), (std::vector<uint64_t>{1, 1080, k1080p50, 1}));
    EXPECT_EQ(d.log.Count("IVideoDecoder::SetCodec(2)"), 1u);
    video.Process(false);
    EXPECT_EQ(OpIds(adapter.Take()), (Ids{270}));  // only the decode status: frames stopped
    video.Clear();
    video.Process(false);
    auto resent = adapter.Take();
    Ids nonDefault;
    for (const HostOp& op : forced)
        if (op.opId == 226 || op.Value() != 0) nonDefault.push_back(op.opId);
    EXPECT_EQ(OpIds(resent), nonDefault);
}

TEST_F(VideoStatusTest, AutoFormatStatusJudgesTheSdCompanionOfTheOutput) {
    video.Process(true);
    EXPECT_EQ(ValuesById(adapter.Take())[269], 0u);  // mode never set: no status
    output.SetVideoFormatMode(0, FORMAT_MODE_AUTO);
    // 1080p50 4:3 is no supported output, but the 576i25 16:9 that goes out beside it is.
    d.videoOutput.SetFormat(1920, 1080, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, VIDEO_ASPECT_RATIO_4X3,
                            VOUT_FORMAT_UNSET, VIDEO_OUTPUT_INTERFACE_HD);
    video.Process(true);
    EXPECT_EQ(ValuesById(adapter.Take())[269], 1u);
    EXPECT_TRUE(video.IsNormalVideoPid(0x1FFE));
    EXPECT_FALSE(video.IsNormalVideoPid(0x1FFF));
}
