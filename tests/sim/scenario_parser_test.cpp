// Scenario files of the virtual board: what a valid file describes, and the
// message a malformed line gets.
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "sim/scenario_parser.h"
#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

using stbsim::ParseScenario;
using stbsim::StreamInput;

TEST(ScenarioParserTest, ReadsServicesStreamsAndTimedChanges) {
    const char* text = R"(# two services
service 0x10 name="News 24" pcr=0x1ff   # trailing comment
video pid=0x100 codec=hevc width=3840 height=2160 scan=progressive fps=29.97 depth=10
video pid=0x110 width=720 height=576 aspect=16:9
video pid=0x111 width=1440 height=1080 sar=4:3
audio pid=257 codec=eac3 rate=44100 channels=5.1 bits=24 bitrate=640000 pts=900000

service 2
audio pid=0x300 codec=mpeg1
at 2.5 video height=720 width=1280
at 1 audio pid=0x300 rate=32000
)";
    StreamInput in;
    std::string error;
    ASSERT_TRUE(ParseScenario(text, &in, &error)) << error;
    ASSERT_EQ(in.services.size(), 2u);
    const auto& s = in.services[0];
    EXPECT_EQ(std::make_tuple(s.id, s.name, s.pcrPid), std::make_tuple(0x10, "News 24", 0x1ff));
    const auto& v = s.video.at(0);
    // HEVC defaults: Main profile, level 4.1 (123).
    EXPECT_EQ(std::make_tuple(v.codec, v.profile, v.level, v.fps.num, v.fps.den, v.field, v.bitDepth),
              std::make_tuple(stbsim::VideoCodec::Hevc, 1u, 123u, 30000u, 1001u, stbsim::FieldOrder::Progressive, 10u));
    // An aspect ratio gives the sample aspect ratio, and a sample aspect ratio the aspect ratio.
    EXPECT_EQ(std::make_pair(s.video.at(1).sar.num, s.video.at(1).sar.den), std::make_pair(64u, 45u));
    EXPECT_EQ(std::make_pair(s.video.at(2).dar.num, s.video.at(2).dar.den), std::make_pair(16u, 9u));
    const auto& a = s.audio.at(0);
    EXPECT_EQ(std::make_tuple(a.pid, a.channels, a.lfe, a.ptsStart), std::make_tuple(257, 5u, true, 900000u));
    // No pcr= and no video: the PCR rides on the first audio stream.
    EXPECT_EQ(in.services[1].pcrPid, 0x300);
    ASSERT_EQ(in.changes.size(), 2u);
    // Sorted by time.
    EXPECT_EQ(std::make_tuple(in.changes[0].atUs, in.changes[0].video, in.changes[1].atUs),
              std::make_tuple(1000000, false, 2500000));
}

TEST(ScenarioParserTest, MalformedLinesAreReportedWithTheirLineNumber) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"service 1\nvidoe pid=1\n", "line 2: unknown keyword 'vidoe'"},
        {"video pid=0x100\n", "line 1: video before any service"},
        {"service 1\nvideo width=720\n", "line 2: video needs pid="},
        {"service 1\nvideo pid=0x100 width=abc\n", "line 2: bad value 'abc' for width"},
        {"service 1\nvideo pid=0x100\naudio pid=0x100\n", "line 3: PID 0x100 is already used"},
        {"service 1 name=\"open\n", "line 1: unterminated quote"},
        {"service\n", "line 1: service needs a service id (0..65535)"},
        {"at soon video height=720\n", "line 1: at needs a time in seconds"},
        {"service 1\naudio pid=0x101\nat 1 video height=720\n", "line 3: the input has no video stream"},
        {"service 1\nvideo pid=0x100\nat 1 video height\n", "line 3: expected key=value, got 'height'"},
    };
    for (const auto& c : cases) {
        StreamInput in;
        std::string error;
        EXPECT_FALSE(ParseScenario(c.text, &in, &error)) << c.text;
        EXPECT_EQ(error, c.error) << c.text;
    }
}

TEST_F(SimTest, ABadScenarioLeavesTheInputAsItWas) {
    std::string error;
    EXPECT_FALSE(stbsim::SetInputText("service 1\nvideo pid=1 scan=sideways\n", &error));
    EXPECT_EQ(error, "line 2: bad value 'sideways' for scan");
    EXPECT_NE(stbsim::StateJson().find("\"source\":\"default\""), std::string::npos);
}

}  // namespace
}  // namespace simtest
