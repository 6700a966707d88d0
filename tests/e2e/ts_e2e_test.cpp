// Real MPEG-TS files through the whole chain: stbavd on the virtual board with a
// stream made by ffmpeg as its input, the test playing the host over a pty. The
// host selects the file's service and must be sent the stream's true attributes;
// with the output automatic, switching the board's input file moves the display.
// Test thread only; every daemon ends with SIGTERM and a clean exit.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "platform/decoder_types.h"
#include "tests/e2e/daemon_rig.h"
#include "tests/sim/ts_streams.h"

using namespace e2e;  // the rig, its support and the operations' numbers

namespace {

// Operations the host receives, besides those of the rig.
enum : unsigned {
    kSamplingRate = 75, kVideoAspect = 273, kVideoFrameRate = 274, kVideoProfile = 276, kVideoLevel = 277,
    kVideoChroma = 280, kVideoBitDepth = 283,
};
constexpr unsigned kOutputInterface = 261;  // sent by the host

// Generous: a 2 s status poll and a 1 s stream-information refresh stand between
// a selection and the values it brings.
constexpr int kDeadlineMs = 10000;

// One generated file: the service the host selects (PCR on the video PID) and
// what the host must be sent, each value worked out from the file's true
// attributes through the daemon's enumerations; then the board's display words
// with the output automatic on the HD interface.
struct TsCase {
    const tstest::TsStream* stream;
    uint16_t serviceNum;
    const char* serviceName;
    uint16_t videoPid, audioPid;
    VideoType_e videoType;
    AudioType_e audioType;
    uint32_t width, height;
    VideoScanType_e scan;
    VideoFrameRate_e rate;
    VideoAspectRatio_e aspect;
    VideoProfile_e profile;
    VideoLevel_e level;
    VideoChromaFormat_e chroma;
    ChromaBitDepth_e depth;
    uint32_t samplingRate;
    long long displayFormat, displayRate;
};

const TsCase kSd = {&tstest::kMpeg2Sd, 101, "SD MPEG-2", 0x101, 0x102, VIDEO_TYPE_MPEG2,
                    AUDIO_TYPE_MPEG1,  // Layer II at 48 kHz
                    720, 576, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_4X3,
                    VIDEO_PROFILE_MPEG2_MAIN, VIDEO_LEVEL_MPEG2_MAIN, VIDEO_CHROMA_FORMAT_420, CHROMA_BIT_DEPTH_8,
                    48000, 9, 64};  // 576i, 50 fields
// x264 "superfast" codes High; its automatic level is 4 for 1080i25, 3.2 for 720p59.94.
const TsCase kHd1080i = {&tstest::kH264Interlaced, 202, "HD H.264", 0x201, 0x202, VIDEO_TYPE_H264,
                         AUDIO_TYPE_AC3, 1920, 1080, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25,
                         VIDEO_ASPECT_RATIO_16X9, VIDEO_PROFILE_H264_HIGH, VIDEO_LEVEL_4, VIDEO_CHROMA_FORMAT_420,
                         CHROMA_BIT_DEPTH_8, 48000, 11, 64};  // 1080i, 50 fields
const TsCase kHd720p = {&tstest::kH264Progressive, 303, "HD 720p", 0x301, 0x302, VIDEO_TYPE_H264,
                        AUDIO_TYPE_AAC_ADTS, 1280, 720, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_59_94,
                        VIDEO_ASPECT_RATIO_16X9, VIDEO_PROFILE_H264_HIGH, VIDEO_LEVEL_3_2, VIDEO_CHROMA_FORMAT_420,
                        CHROMA_BIT_DEPTH_8, 44100, 10, 128};  // 720p, 59.94
// x265 codes Main 10 (general_profile_idc 2) at level 5.1 (general_level_idc 153) for 2160p50.
const TsCase kUhd = {&tstest::kHevcUhd, 404, "UHD HEVC", 0x401, 0x402, VIDEO_TYPE_HEVC,
                     AUDIO_TYPE_EAC3, 3840, 2160, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50,
                     VIDEO_ASPECT_RATIO_16X9, VIDEO_PROFILE_HEVC_MAIN10, VIDEO_LEVEL_5_1, VIDEO_CHROMA_FORMAT_420,
                     CHROMA_BIT_DEPTH_10, 48000, 13, 64};  // 2160p 3840, 50

// "" when the last value the host received of every operation is c's, else
// one line per difference.
std::string Mismatches(const e2e::HostLine& host, const TsCase& c) {
    const struct {
        unsigned opId;
        const char* name;
        uint64_t value;
    } expected[] = {{kVideoWidth, "videoWidth", c.width},
                    {kVideoHeight, "videoHeight", c.height},
                    {kVideoScanType, "videoScanType", static_cast<uint64_t>(c.scan)},
                    {kVideoFrameRate, "videoFrameRate", static_cast<uint64_t>(c.rate)},
                    {kVideoAspect, "videoAspectRatio", static_cast<uint64_t>(c.aspect)},
                    {kVideoProfile, "videoProfile", static_cast<uint64_t>(c.profile)},
                    {kVideoLevel, "videoLevel", static_cast<uint64_t>(c.level)},
                    {kVideoChroma, "videoChromaFormat", static_cast<uint64_t>(c.chroma)},
                    {kVideoBitDepth, "videoChromaBitDepth", static_cast<uint64_t>(c.depth)},
                    {kSelServiceNum, "selectedserviceServiceNum", c.serviceNum},
                    {kSamplingRate, "audiosrvSamplingRate", c.samplingRate},
                    {kSelVideoPid, "selectedserviceVideoPid", c.videoPid},
                    {kSelAudioPid, "selectedaudioPid", c.audioPid},
                    {kSelVideoType, "selectedserviceVideoType", static_cast<uint64_t>(c.videoType)}};
    std::ostringstream out;
    for (const auto& e : expected) {
        const HostOp* last = host.Last(e.opId);
        if (last == nullptr || last->Value() != e.value)
            out << e.name << ": " << (last ? std::to_string(last->Value()) : "none") << ", want " << e.value << "\n";
    }
    const HostOp* name = host.Last(kSelServiceName);
    if (name == nullptr || name->Text() != c.serviceName)
        out << "selectedserviceServiceName: " << (name ? "\"" + name->Text() + "\"" : "none") << ", want \""
            << c.serviceName << "\"\n";
    return out.str();
}

class TsDaemonTest : public ::testing::Test, protected e2e::DaemonRig {
protected:
    TsDaemonTest() : DaemonRig("version=ts-e2e\n") {}
    void SetUp() override {
        if (!tstest::HaveFfmpeg())
            GTEST_SKIP() << "the ffmpeg command-line tool is not installed; these tests make their MPEG-TS files "
                            "with it (make deps installs it)";
    }
};

// One daemon, every file in turn: the first as the board's input from the start,
// the others switched in with "stream FILE" while the output follows the input.
// Once its service is selected the host is sent each stream's true attributes.
// The new file carries other PIDs and codecs, so the host selects its service
// right after the switch, as an integrator would; the display words must follow
// within a status poll.
TEST_F(TsDaemonTest, EachFileReachesTheHostAndTheDisplay) {
    const TsCase* const order[] = {&kHd1080i, &kHd720p, &kUhd, &kSd, &kHd1080i};
    std::vector<std::string> files;  // in this build's cache, made by ffmpeg the first time
    for (const TsCase* c : order) {
        std::string why;
        double seconds = 0;
        files.push_back(tstest::MakeTsFile(*c->stream, STBAV_TS_STREAM_DIR, &why, &seconds));
        ASSERT_FALSE(files.back().empty()) << why;
        if (seconds > 0) printf("[ ffmpeg   ] %s made in %.2f s\n", c->stream->name, seconds);
    }

    LaunchReady(files[0]);
    // The integrator's set-up: status on, HD interface, output following the input.
    m_Host.SendU8(kStatusEnable, 1);
    m_Host.SendU8(kOutputInterface, VIDEO_OUTPUT_INTERFACE_HD);
    m_Host.SendU8(kFormatMode, FORMAT_MODE_AUTO);
    m_Host.SendApply();
    for (size_t i = 0; i < files.size(); ++i) {
        const TsCase& c = *order[i];
        SCOPED_TRACE(c.stream->name);
        if (i > 0) {
            ASSERT_EQ("ok\n", BoardCommand(Socket(), "stream " + files[i])) << StderrTail();
        }
        const uint64_t switched = MonotonicUs();
        SendService(c.videoPid, c.videoPid, c.audioPid, c.videoType, c.audioType, c.serviceNum, c.serviceName);
        m_Host.SendApply();

        EXPECT_TRUE(DisplayIs(c.displayFormat, c.displayRate)) << BoardCommand(Socket(), "state");
        // One 2 s poll notices the new picture (the stream information it reads
        // is at most 1 s old); the rest is slack for sanitizer builds.
        EXPECT_LT((MonotonicUs() - switched) / 1000, 4500u);
        m_Host.WaitFor([&](const HostOp&) { return Mismatches(m_Host, c).empty(); }, kDeadlineMs);
        EXPECT_EQ("", Mismatches(m_Host, c)) << StderrTail();
    }
}

}  // namespace
