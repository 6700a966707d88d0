// Real MPEG-TS files through the whole chain: stbavd on the virtual board with a
// stream made by ffmpeg as its input, the test playing the host over a pty. The
// host selects the file's service and must be sent the stream's true attributes;
// with the output automatic, switching the board's input file moves the display.
// Test thread only; every daemon ends with SIGTERM and a clean exit.
#include <gtest/gtest.h>

#include <sstream>
#include <iterator>
#include <string>

#include "platform/decoder_types.h"
#include "tests/e2e/daemon_rig.h"
#include "tests/sim/ts_cases.h"

using namespace e2e;  // the rig, its support and the operations' numbers

namespace {

// "" when the last value the host received of every operation is c's, else
// one line per difference.
std::string Mismatches(const e2e::HostLine& host, const tstest::TsCase& c) {
    const auto& [serviceNum, videoPid, audioPid, videoCode, audioCode] = c.programme;
    const auto& [width, height, scan, rate, aspect] = c.format;
    const auto& [profile, level, chroma, depth] = c.coding;
    const struct {
        unsigned opId;
        const char* name;
        std::string value;  // the service name as text, the rest as numbers
    } expected[] = {{kVideoWidth, "videoWidth", std::to_string(width)},
                    {kVideoHeight, "videoHeight", std::to_string(height)},
                    {kVideoScanType, "videoScanType", std::to_string(scan)},
                    {kVideoFrameRate, "videoFrameRate", std::to_string(rate)},
                    {kVideoAspect, "videoAspectRatio", std::to_string(aspect)},
                    {kVideoProfile, "videoProfile", std::to_string(profile)},
                    {kVideoLevel, "videoLevel", std::to_string(level)},
                    {kVideoChroma, "videoChromaFormat", std::to_string(chroma)},
                    {kVideoBitDepth, "videoChromaBitDepth", std::to_string(depth)},
                    {kSelServiceNum, "selectedserviceServiceNum", std::to_string(serviceNum)},
                    {kSamplingRate, "audiosrvSamplingRate", std::to_string(std::get<0>(c.audio))},
                    {kSelVideoPid, "selectedserviceVideoPid", std::to_string(videoPid)},
                    {kSelAudioPid, "selectedaudioPid", std::to_string(audioPid)},
                    {kSelVideoType, "selectedserviceVideoType", std::to_string(c.videoType)},
                    {kSelServiceName, "selectedserviceServiceName", c.serviceName}};
    std::ostringstream out;
    for (const auto& e : expected) {
        const HostOp* last = host.Last(e.opId);
        std::string got = last ? std::to_string(last->Value()) : "none";
        if (last && e.opId == kSelServiceName) got = last->Text();
        if (got != e.value) out << e.name << ": " << got << ", want " << e.value << "\n";
    }
    return out.str();
}

class TsDaemonTest : public ::testing::Test, protected e2e::DaemonRig {
protected:
    TsDaemonTest() : DaemonRig("version=ts-e2e\n") {}
    void SetUp() override {
        if (!tstest::HaveFfmpeg()) GTEST_SKIP() << tstest::kNoFfmpeg;
    }
};

// One daemon, every file in turn: the first as the board's input from the start,
// the others switched in with "stream FILE" while the output follows the input.
// Once its service is selected the host is sent each stream's true attributes.
// The new file carries other PIDs and codecs, so the host selects its service
// right after the switch, as an integrator would; the display words must follow
// within a status poll.
TEST_F(TsDaemonTest, EachFileReachesTheHostAndTheDisplay) {
    // Each file with the board's display words while the output follows the input on the HD interface.
    const struct {
        const tstest::TsCase& c;
        long long displayFormat, displayRate;
    } order[] = {
        {tstest::kHd1080iCase, 11, 64},  // 1080i, 50 fields
        {tstest::kHd720pCase, 10, 128},  // 720p, 59.94
        {tstest::kUhdCase, 13, 64},      // 2160p 3840, 50
        {tstest::kSdCase, 9, 64},        // 576i, 50 fields
        {tstest::kHd1080iCase, 11, 64},
    };
    // The files are in this build's cache, made by ffmpeg the first time.
    LaunchReady(tstest::TsFile(*order[0].c.stream));
    // The integrator's set-up: status on, HD interface, output following the input.
    m_Host.SendU8(kStatusEnable, 1);
    m_Host.SendU8(kOutputInterface, VIDEO_OUTPUT_INTERFACE_HD);
    m_Host.SendU8(kFormatMode, FORMAT_MODE_AUTO);
    m_Host.SendApply();
    for (size_t i = 0; i < std::size(order); ++i) {
        const tstest::TsCase& c = order[i].c;
        const auto& [serviceNum, videoPid, audioPid, videoCode, audioCode] = c.programme;
        SCOPED_TRACE(c.stream->name);
        if (i > 0) {
            ASSERT_EQ("ok\n", BoardCommand(Socket(), "stream " + tstest::TsFile(*c.stream))) << StderrTail();
        }
        const uint64_t switched = MonotonicUs();
        SendService(videoPid, videoPid, audioPid, c.videoType, c.audioType, serviceNum, c.serviceName);
        m_Host.SendApply();

        EXPECT_TRUE(DisplayIs(order[i].displayFormat, order[i].displayRate)) << BoardCommand(Socket(), "state");
        // One 2 s poll notices the new picture (the stream information it reads
        // is at most 1 s old); the rest is slack for sanitizer builds.
        EXPECT_LT((MonotonicUs() - switched) / 1000, 4500u);
        // Generous: a 2 s status poll and a 1 s stream-information refresh stand
        // between a selection and the values it brings.
        m_Host.WaitFor([&](const HostOp&) { return Mismatches(m_Host, c).empty(); }, 10000);
        EXPECT_EQ("", Mismatches(m_Host, c)) << StderrTail();
    }
}

}  // namespace
