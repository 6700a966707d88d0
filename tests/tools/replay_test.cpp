// The recorded host sessions of tests/tools/replay replayed by `avhost replay
// --fast` against the real daemon on the virtual board: each must give the
// daemon frames of its NAME.chk. A changed expected file must fail with a
// readable difference.
#include <dirent.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/e2e_support.h"
#include "tests/tools/child_process.h"

namespace {

const std::string kDir = TOOLS_TEST_DATA "/replay";

std::vector<std::string> Sessions() {
    std::vector<std::string> names;
    if (DIR* d = opendir(kDir.c_str())) {
        while (dirent* e = readdir(d)) {
            const std::string n = e->d_name;
            if (n.size() > 4 && n.compare(n.size() - 4, 4, ".cap") == 0) names.push_back(n.substr(0, n.size() - 4));
        }
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// avhost replay on its own pty, with the daemon started on that pty once announced.
struct Replay {
    explicit Replay(std::vector<std::string> args) : host(WithBinary(args)) {}

    static std::vector<std::string> WithBinary(std::vector<std::string> args) {
        args.insert(args.begin(), {AVHOST_BINARY, "replay", "--pty", "--fast"});
        return args;
    }
    // The avhost exit status, the daemon stopped cleanly afterwards.
    int Run() {
        e2e::WriteFile(tmp / "root/vendor/etc/version", "version=stbav-replay\n");
        std::string log;
        e2e::ReadFile(std::string(STBAV_ETC_DIR) + "/tevrin-log4cpp.init", log);
        e2e::WriteFile(tmp / "root/vendor/etc/tevrin-log4cpp.init", log);
        if (!host.WaitForOutput("\n")) return -2;
        const std::string out = host.Stdout();
        const std::string pty = out.substr(5, out.find('\n') - 5);
        std::vector<std::string> env = e2e::SanitizerEnvironment();
        env.push_back("STBSIM_STREAM=" + kDir + "/board.scn");
        env.push_back("STBSIM_CONTROL=" + tmp / "board.sock");
        if (!daemon.Start(STBAVD_PATH, {"-d", pty, "-R", tmp / "root"}, env, tmp / "d.out", tmp / "d.err")) return -3;
        const int status = host.Wait();
        int daemonStatus = -1;
        EXPECT_TRUE(daemon.Stop(SIGTERM, 20000, daemonStatus));
        EXPECT_EQ(e2e::DescribeStatus(daemonStatus), "exit 0");
        return status;
    }

    e2e::TempDir tmp;
    ChildProcess host;
    e2e::ChildProcess daemon;
};

class RecordedSession : public ::testing::TestWithParam<std::string> {};

TEST_P(RecordedSession, ReplaysToItsExpectedFrames) {
    Replay replay({kDir + "/" + GetParam() + ".cap"});
    EXPECT_EQ(replay.Run(), 0) << replay.host.Stdout() << replay.host.Stderr();
    EXPECT_NE(replay.host.Stdout().find(" compared: same as " + kDir + "/" + GetParam() + ".chk\n"),
              std::string::npos) << replay.host.Stdout();
}

INSTANTIATE_TEST_SUITE_P(Replay, RecordedSession, ::testing::ValuesIn(Sessions()));

TEST(Replay, AChangedExpectedFileFailsWithTheDifference) {
    ASSERT_GE(Sessions().size(), 3u);
    std::string expected;
    ASSERT_TRUE(e2e::ReadFile(kDir + "/status_clear.chk", expected));
    const std::string was = "\"Stbav status clear done!\"";
    ASSERT_NE(expected.find(was), std::string::npos);
    expected.replace(expected.find(was), was.size(), "\"done\"");
    const e2e::TempDir dir;
    ASSERT_TRUE(e2e::WriteFile(dir / "changed.chk", expected));
    Replay replay({kDir + "/status_clear.cap", "--expected=" + dir / "changed.chk"});
    EXPECT_EQ(replay.Run(), 1);
    EXPECT_NE(replay.host.Stdout().find("@@ expected line 3 @@\n"
                                        "- < stbsystemStatusClearDone[0] = \"done\"\n"
                                        "+ < stbsystemStatusClearDone[0] = \"Stbav status clear done!\"\n"),
              std::string::npos) << replay.host.Stdout();
    EXPECT_EQ(replay.host.Stderr(), "avhost: replay of " + kDir + "/status_clear.cap differs from " +
                                        dir / "changed.chk" + "\n");
}

}  // namespace
