// The video decoder against the virtual board: the attribute mappings for an
// input of many video streams (one probe pass reads them all; the test switches
// the player between them), the failure paths, and the event callback arriving
// on the board's own thread.
#include "platform/stb_video_decoder.h"

#include <functional>
#include <utility>
#include <vector>
#include <string>

#include <gtest/gtest.h>

#include "platform/ff_av_probe.h"
#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;
using stbav_test::WaitUntil;

const char* const kManyVideos =
    "service 1 name=Probe pcr=0x100\n"
    "video pid=0x100 codec=mpeg2 width=720 height=576 scan=tff fps=25 sar=16:15 profile=4 level=8 "
    "chroma=4:2:0 depth=8\n"
    "video pid=0x110 codec=h264 width=1920 height=1080 scan=tff fps=29.97 sar=1:1 profile=100 level=40 "
    "chroma=4:2:2 depth=10\n"
    "video pid=0x120 codec=hevc width=3840 height=2160 scan=progressive fps=59.94 sar=1:1 profile=2 level=153 "
    "chroma=4:4:4 depth=12\n"
    "video pid=0x130 codec=h264 width=1280 height=720 scan=progressive fps=23.976 sar=1:1 profile=77 level=31 "
    "chroma=4:0:0 depth=8\n"
    "video pid=0x140 codec=mpeg2 width=720 height=480 scan=unknown fps=30 aspect=unknown profile=5 level=10 "
    "chroma=4:2:0 depth=8\n"
    "video pid=0x150 codec=hevc width=1920 height=1080 scan=bff fps=50 sar=1:1 profile=1 level=186 "
    "chroma=4:2:0 depth=10\n"
    "video pid=0x160 codec=h264 width=1920 height=1080 scan=progressive fps=60 sar=1:1 profile=144 level=51 "
    "chroma=4:2:0 depth=8\n"
    "video pid=0x170 codec=h264 width=1920 height=1080 scan=progressive fps=24 sar=1:1 profile=66 level=9 "
    "chroma=4:2:0 depth=8\n"
    "video pid=0x180 codec=mpeg2 width=352 height=288 scan=progressive fps=12.5 sar=1:1 profile=7 level=6 "
    "chroma=4:2:0 depth=8\n"
    "audio pid=0x101 codec=mpeg2\n";

class VideoDecoderTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        SetInput(kManyVideos);
        BringUpByHand();
        m_Decoder.BondAvHandle(m_Handles.av);
        m_Decoder.BondWindowHandle(m_Handles.window);
        m_Probe.BondAvHandle(m_Handles.av);
        m_Probe.StartProbe();
        ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetVideoProfile(0x180) == 7; }));
    }

    LogCapture m_Log{"stbav.stbvideodecoder"};
    FfAvProbe m_Probe;
    StbVideoDecoder m_Decoder{m_Probe};
};

TEST_F(VideoDecoderTest, AttributesMapFromStatusAndProbe) {
    struct Case {
        uint16_t pid;
        uint32_t platform;
        VideoType_e codec;
        std::vector<int> got;  // width, height, profile, level, chroma, depth, scan, aspect, rate
    };
    const Case cases[] = {
        {0x100, 0, VIDEO_TYPE_MPEG2, {720, 576, 2, 2, 1, 1, 1, 2, 3}},
        {0x110, 5, VIDEO_TYPE_H264, {1920, 1080, 10, 16, 2, 3, 1, 1, 4}},
        {0x120, 38, VIDEO_TYPE_HEVC, {3840, 2160, 14, 20, 3, 0, 2, 1, 7}},
        {0x130, 5, VIDEO_TYPE_H264, {1280, 720, 8, 14, 0, 1, 2, 1, 1}},
        {0x140, 0, VIDEO_TYPE_MPEG2, {720, 480, 1, 1, 1, 1, 0, 0, 5}},
        {0x150, 38, VIDEO_TYPE_HEVC, {1920, 1080, 8, 24, 1, 3, 1, 1, 6}},
        {0x160, 5, VIDEO_TYPE_H264, {1920, 1080, 13, 20, 1, 1, 2, 1, 8}},
        {0x170, 5, VIDEO_TYPE_H264, {1920, 1080, 7, 0, 1, 1, 2, 1, 2}},
        {0x180, 0, VIDEO_TYPE_MPEG2, {352, 288, 0, 3, 1, 1, 2, 1, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "pid 0x" << std::hex << c.pid);
        Select(true, c.pid, c.platform);
        m_Decoder.SetCodec(c.codec);
        EXPECT_EQ(m_Decoder.GetCodec(), c.codec);
        uint32_t w = 0, h = 0;
        VideoScanType_e scan = VIDEO_SCAN_TYPE_PSF;
        VideoFrameRate_e rate = VIDEO_FRAME_RATE_UNKNOWN;
        VideoAspectRatio_e aspect = VIDEO_ASPECT_RATIO_UNKNOWN;
        ASSERT_TRUE(m_Decoder.GetFormat(w, h, scan, rate, aspect));
        EXPECT_EQ((std::vector<int>{int(w), int(h), m_Decoder.GetProfile(), m_Decoder.GetLevel(),
                                    m_Decoder.GetChromaFormat(), m_Decoder.GetBitDepth(), scan, aspect, rate}),
                  c.got);
    }
}

TEST_F(VideoDecoderTest, WithoutCodecOrStreamTheProbeAttributesAreUnknownSetCodecReportsAChange) {
    Select(true, 0x110, 5);
    // No codec set: chroma format, bit depth, profile and level unknown.
    EXPECT_EQ((std::vector<int>{m_Decoder.GetChromaFormat(), m_Decoder.GetBitDepth(), m_Decoder.GetProfile(),
                                m_Decoder.GetLevel()}),
              std::vector<int>(4, 0));
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetProfile profile is 100"));
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetLevel level is 40"));

    m_Log.Clear();
    EXPECT_TRUE(m_Decoder.SetCodec(VIDEO_TYPE_H264));  // only a change is reported
    EXPECT_TRUE(m_Log.Has("DEBUG", "SetCodec: codec - 2"));
    EXPECT_TRUE(m_Log.Has("DEBUG", "Send STOP_REQUIRED"));
    m_Log.Clear();
    EXPECT_FALSE(m_Decoder.SetCodec(VIDEO_TYPE_H264));
    EXPECT_TRUE(m_Log.Lines().empty());
    Select(true, 0x1FF0, 5);  // a PID the input does not carry: no entry in the cache
    // Chroma format (default code 19), bit depth (default code 3), scan type and aspect ratio unknown.
    EXPECT_EQ((std::vector<int>{m_Decoder.GetChromaFormat(), m_Decoder.GetBitDepth(), m_Decoder.GetVideoScanType(),
                                m_Decoder.GetVideoAspectRatio()}),
              std::vector<int>(4, 0));
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetChromaFormat chromaFormat is 0"));
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetBitDepth bitDepth is 0"));
}

TEST_F(VideoDecoderTest, ServiceNameAndFrameCount) {
    EXPECT_EQ(m_Decoder.GetServiceName(1), "Probe");
    EXPECT_TRUE(m_Log.Has("DEBUG", "GetServiceName serviceName is Probe"));
    EXPECT_EQ(m_Decoder.GetServiceName(2), "");
    Select(true, 0x110, 5);
    EXPECT_TRUE(WaitUntil([&] { return m_Decoder.GetFrameCount() > 0; }));
}

TEST_F(VideoDecoderTest, StatusFailuresGiveZeroWithTheirLogLine) {
    Select(true, 0x110, 5);
    m_Decoder.SetCodec(VIDEO_TYPE_H264);
    struct Case {
        const char* name;
        const char* level;
        std::function<int(StbVideoDecoder&)> get;
    };
    const std::vector<Case> cases = {
        {"GetChromaFormat", "ERROR", [](StbVideoDecoder& d) { return int(d.GetChromaFormat()); }},
        {"GetVideoScanType", "ERROR", [](StbVideoDecoder& d) { return int(d.GetVideoScanType()); }},
        {"GetVideoAspectRatio", "WARN", [](StbVideoDecoder& d) { return int(d.GetVideoAspectRatio()); }},
        {"GetProfile", "ERROR", [](StbVideoDecoder& d) { return int(d.GetProfile()); }},
        {"GetLevel", "ERROR", [](StbVideoDecoder& d) { return int(d.GetLevel()); }},
        {"GetBitDepth", "WARN", [](StbVideoDecoder& d) { return int(d.GetBitDepth()); }},
        {"GetFrameCount", "WARN", [](StbVideoDecoder& d) { return int(d.GetFrameCount()); }},
    };
    // One failing status read for each getter and then for GetFormat.
    Fail("av_get_status_info", static_cast<unsigned>(cases.size()) + 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.get(m_Decoder), 0);
        EXPECT_TRUE(m_Log.Has(c.level, std::string(c.name) + " get status info error"));
    }

    uint32_t w = 7, h = 7;
    VideoScanType_e scan = VIDEO_SCAN_TYPE_PSF;
    VideoFrameRate_e rate = VIDEO_FRAME_RATE_60;
    VideoAspectRatio_e aspect = VIDEO_ASPECT_RATIO_4X3;
    EXPECT_FALSE(m_Decoder.GetFormat(w, h, scan, rate, aspect));
    EXPECT_TRUE(m_Log.Has("ERROR", "av_get_status_info error"));
    EXPECT_EQ((std::vector<int>{int(w), int(h), scan, rate, aspect}),
              (std::vector<int>{7, 7, VIDEO_SCAN_TYPE_PSF, VIDEO_FRAME_RATE_60, VIDEO_ASPECT_RATIO_4X3}));

    Fail("av_get_config");
    EXPECT_EQ(m_Decoder.GetCodec(), VIDEO_TYPE_NONE);
    EXPECT_TRUE(m_Log.Has("WARN", "av_get_config error\n"));
}

TEST_F(VideoDecoderTest, CodecIsReadBackFromThePlayer) {
    const std::pair<uint32_t, VideoType_e> cases[] = {
        {0, VIDEO_TYPE_MPEG2}, {5, VIDEO_TYPE_H264}, {38, VIDEO_TYPE_HEVC}, {2, VIDEO_TYPE_AVS}, {44, VIDEO_TYPE_AVS2}};
    for (const auto& c : cases) {
        Select(true, 0x100, c.first);
        EXPECT_EQ(m_Decoder.GetCodec(), c.second) << c.first;
    }
}

// The board calls back from its own thread whenever the decoded format changes;
// the window is reopened once per new source height.
TEST_F(VideoDecoderTest, FormatEventsReopenTheWindowOncePerNewHeight) {
    AvEventConfig events{2, &StbVideoDecoder::AvEventCallback, 1};
    ASSERT_EQ(av_set_event_config(m_Handles.av, &events, 2), 0);
    auto opens = [] { return stbsim::State().display.windowOpenCount; };
    const uint32_t before = opens();

    // The callback stores the chroma last (after the window is reopened): once the
    // chroma of an event is seen, the whole event has been handled.
    Select(true, 0x110, 5);  // 1080 lines, 4:2:2
    ASSERT_TRUE(WaitUntil([] { return StbVideoDecoder::m_ChromaFormat == 2; }));
    EXPECT_EQ(opens(), before + 1);
    EXPECT_EQ(StbVideoDecoder::m_NewSrcHeight.load(), 1080u);
    EXPECT_EQ(StbVideoDecoder::m_OldSrcHeight.load(), 1080u);
    EXPECT_EQ(StbVideoDecoder::m_AspectRatio.load(), 1u);

    ASSERT_TRUE(stbsim::ChangeVideo("pid=0x110 width=3840 height=2160 chroma=4:2:0"));
    ASSERT_TRUE(WaitUntil([] { return StbVideoDecoder::m_ChromaFormat == 1; }));
    EXPECT_EQ(StbVideoDecoder::m_NewSrcHeight.load(), 2160u);
    EXPECT_EQ(opens(), before + 2);

    // Same height, other chroma and aspect: recorded, no reopen.
    ASSERT_TRUE(stbsim::ChangeVideo("pid=0x110 chroma=4:4:4 aspect=4:3"));
    ASSERT_TRUE(WaitUntil([] { return StbVideoDecoder::m_ChromaFormat == 3; }));
    EXPECT_EQ(StbVideoDecoder::m_AspectRatio.load(), 2u);
    EXPECT_EQ(opens(), before + 2);
}

TEST_F(VideoDecoderTest, CallbackIgnoresOtherEventsAndMissingData) {
    uint32_t words[32] = {};
    words[15] = 576;
    EXPECT_EQ(StbVideoDecoder::AvEventCallback(1, AV_EVENT_NONE, words), 0);
    EXPECT_EQ(StbVideoDecoder::AvEventCallback(1, AV_EVENT_VIDEO_FORMAT_CHANGED, nullptr), 0);
    EXPECT_EQ(StbVideoDecoder::m_NewSrcHeight.load(), 0u);
    words[1] = 7;  // unknown chroma code
    words[20] = 5;
    words[21] = 4;
    EXPECT_EQ(StbVideoDecoder::AvEventCallback(1, AV_EVENT_VIDEO_FORMAT_CHANGED, words), 0);
    EXPECT_EQ(StbVideoDecoder::m_NewSrcHeight.load(), 576u);
    EXPECT_EQ(StbVideoDecoder::m_ChromaFormat.load(), 0u);
    EXPECT_EQ(StbVideoDecoder::m_AspectRatio.load(), 0u);
}

}  // namespace
