// The example host of the C library (host/examples/host_loop.c) against stbavd
// on the virtual board: socat links two ptys, the daemon takes one end, the
// example the other. The example must finish its session (ready, status,
// service, manual format confirmed) and the board must show what it asked for.
// Test thread only; the children are killed if the test ends early (the
// daemon stopped with SIGTERM by the rig).
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "tests/e2e/daemon_rig.h"

namespace {

const char kScenario[] =
    "service 1 name=\"host example\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n";

// The daemon's root, board socket and stop come from the rig; its line is socat's.
class HostExample : public ::testing::Test, public e2e::DaemonRig {
protected:
    HostExample() : DaemonRig("version=host-example-1\n") {}
};

TEST_F(HostExample, DemoSessionAgainstTheDaemonOnTheVirtualBoard) {
    ASSERT_TRUE(e2e::WriteFile(m_Tmp / "input.scn", kScenario));

    e2e::ChildProcess socat, host;
    ASSERT_TRUE(socat.Start("/usr/bin/socat",
                            {"pty,raw,echo=0,link=" + m_Tmp / "host", "pty,raw,echo=0,link=" + m_Tmp / "board"}, {},
                            m_Tmp / "socat.out", m_Tmp / "socat.err"));
    ASSERT_TRUE(e2e::WaitUntil([&] { return e2e::FileExists(m_Tmp / "host") && e2e::FileExists(m_Tmp / "board"); }));
    // The host first, so that it sees the daemon's start-up reports.
    ASSERT_TRUE(host.Start(HOST_EXAMPLE_PATH, {m_Tmp / "host"}, e2e::SanitizerEnvironment(), m_Tmp / "host.out",
                           m_Tmp / "host.err"));
    std::vector<std::string> env = e2e::SanitizerEnvironment();
    env.insert(env.end(), {"STBSIM_STREAM=" + m_Tmp / "input.scn", "STBSIM_CONTROL=" + Socket()});
    ASSERT_TRUE(m_Daemon.Start(STBAVD_PATH, {"-d", m_Tmp / "board", "-R", Root(""), "-v", "2"}, env,
                               m_Tmp / "daemon.out", m_Tmp / "daemon.err"));

    int status = -1;
    ASSERT_TRUE(host.Wait(60000, status)) << "the example host did not finish";
    std::string out, err;
    e2e::ReadFile(m_Tmp / "host.out", out);
    e2e::ReadFile(m_Tmp / "host.err", err);
    std::printf("--- the example host's session ---\n%s", out.c_str());
    EXPECT_EQ(e2e::DescribeStatus(status), "exit 0") << err;
    for (const char* line : {"< stbsystemSoftwareVersion[0]=\"host-example-1\"", "< stbsystemReady[0]=\"stbav_ready\"",
                             "< stbsystemHeartBeatCount[0]=0", "< videoWidth[0]=1920",
                             "< videooutputCurrentOutputFormat[0]=0x630D0000 (1920x1080p, rate 6, aspect 3)",
                             ", 0 bad frames, 0 bytes outside frames"})
        EXPECT_NE(out.find(line), std::string::npos) << line;

    const e2e::FlatJson state = State();
    EXPECT_EQ(state.Num("display.format"), 12);  // 1080p
    EXPECT_EQ(state.Num("display.rate"), 64);    // 50 Hz
    EXPECT_EQ(state.Num("player.video_pid"), 0x100);
    EXPECT_EQ(state.Num("player.audio_pid"), 0x101);
    EXPECT_EQ(state.Get("player.video_decoding"), "true");

    StopCleanly();  // exit 0 on SIGTERM, no sanitizer report
    socat.Stop(SIGTERM, 5000, status);
}

}  // namespace
