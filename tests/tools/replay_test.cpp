// avhost against the real daemon on the virtual board: the recorded host
// sessions of tests/tools/replay replayed by `avhost replay --fast` (each must
// give the daemon frames of its NAME.chk; a changed expected file must fail with
// a readable difference), and the terminal commands (session, top) driven
// through tmux as a person would.
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "tests/e2e/daemon_rig.h"
#include "tests/e2e/e2e_support.h"
#include "tests/tools/child_process.h"

namespace {

const std::string kDir = TOOLS_TEST_DATA "/replay";

std::vector<std::string> Sessions() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kDir)) {
        if (entry.path().extension() == ".cap") names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The daemon on the virtual board on a given pty (avhost's, not the rig's own
// host line), stopped cleanly by the rig's destructor.
struct Daemon : e2e::DaemonRig {
    Daemon() : DaemonRig("version=stbav-replay\n") {}
    bool Start(const std::string& pty) {
        std::vector<std::string> env = e2e::SanitizerEnvironment();
        env.push_back("STBSIM_STREAM=" + kDir + "/board.scn");
        env.push_back("STBSIM_CONTROL=" + Socket());
        return m_Daemon.Start(STBAVD_PATH, {"-d", pty, "-R", Root("")}, env, m_Tmp / "d.out", m_Tmp / "d.err");
    }
};

// A tmux server of the test's own, with one pane running a command.
class Tmux {
public:
    // A socket per instance: a server that is still shutting down is never reused.
    explicit Tmux(const std::string& command)
        : m_socket("avhost-test-" + std::to_string(getpid()) + "-" + std::to_string(++s_count)) {
        Run({"new-session", "-d", "-x", "110", "-y", "40", command});
    }
    ~Tmux() { Run({"kill-server"}); }
    void Keys(std::vector<std::string> keys) {
        keys.insert(keys.begin(), "send-keys");
        Run(keys);
    }
    std::string Pane() { return Run({"capture-pane", "-p"}); }
    // True once the pane shows needle (polled for up to 10 s).
    bool Shows(const std::string& needle) {
        return e2e::WaitUntil([&] { return Pane().find(needle) != std::string::npos; });
    }

private:
    std::string Run(std::vector<std::string> args) {
        args.insert(args.begin(), {TMUX_PROGRAM, "-L", m_socket});
        ChildProcess tmux(args);
        tmux.Wait();
        return tmux.Stdout();
    }
    static inline int s_count = 0;
    std::string m_socket;
};

// A pane running avhost, the daemon started on the pty that the pane announced after prefix.
class Terminal : public ::testing::Test {
protected:
    void SetUp() override {
#ifdef STBAV_CHILD_LAUNCHER
        GTEST_SKIP() << "starts a program of the build machine (tmux, bash), which the emulator cannot run";
#endif
    }
    void Start(const std::string& args, const std::string& prefix) {
        tmux.emplace(std::string(AVHOST_BINARY) + " " + args + "; echo avhost-exit-$?; sleep 60");
        ASSERT_TRUE(tmux->Shows(prefix + "/dev/pts/")) << tmux->Pane();
        const std::string pane = tmux->Pane();
        const size_t from = pane.find(prefix) + prefix.size();
        ASSERT_TRUE(daemon.Start(pane.substr(from, pane.find_first_of(" \n", from) - from)));
    }

    std::optional<Tmux> tmux;
    Daemon daemon;
};

// A mistake and a completion in an interactive session; received lines appear
// above the prompt; Ctrl-D ends it with status 0 and the history is kept.
TEST_F(Terminal, SessionForgivesMistakesAndCompletesNames) {
    const e2e::TempDir dir;
    Start("session --pty --history " + dir / "history", "pty: ");
    ASSERT_TRUE(tmux->Shows("< stbsystemReady[0] = \"stbav_ready\"")) << tmux->Pane();
    tmux->Keys({"sned videoWidth=1", "Enter"});
    ASSERT_TRUE(tmux->Shows("avhost: unknown command \"sned\" (send, apply, wait, expect, raw)\navhost>"))
        << tmux->Pane();
    tmux->Keys({"send stbsystemStatusEn", "Tab"});
    ASSERT_TRUE(tmux->Shows("avhost> send stbsystemStatusEnable=")) << tmux->Pane();
    tmux->Keys({"1", "Enter", "apply", "Enter", "expect videoPcrDisconStatus 10", "Enter", "send videoout"});
    ASSERT_TRUE(tmux->Shows("< videoPcrDisconStatus[0] = 0\n")) << tmux->Pane();
    ASSERT_TRUE(tmux->Shows("avhost> send videoout")) << tmux->Pane();  // what was typed survives the printing
    tmux->Keys({"C-u", "C-d"});
    ASSERT_TRUE(tmux->Shows("avhost-exit-0")) << tmux->Pane();
    std::string history;
    ASSERT_TRUE(e2e::ReadFile(dir / "history", history));
    EXPECT_NE(history.find("sned\\040videoWidth=1\n"), std::string::npos) << history;
}

// The live view fills with the status report after 's' and ends on 'q'.
TEST_F(Terminal, TopShowsEveryReportedItem) {
    Start("top --pty", "avhost top  ");
    ASSERT_TRUE(tmux->Shows("stbsystemReady[0]                    \"stbav_ready\"")) << tmux->Pane();
    tmux->Keys({"s"});
    ASSERT_TRUE(tmux->Shows("videoFrameRate[0]                    0 (unknown)")) << tmux->Pane();
    EXPECT_NE(tmux->Pane().find("errors 0  sent 2"), std::string::npos) << tmux->Pane();
    tmux->Keys({"q"});
    ASSERT_TRUE(tmux->Shows("avhost-exit-0")) << tmux->Pane();
}

// avhost replay on its own pty, with the daemon started on that pty once announced.
struct Replay {
    explicit Replay(std::vector<std::string> args)
        : host((args.insert(args.begin(), {AVHOST_BINARY, "replay", "--pty", "--fast"}), args)) {}
    // The avhost exit status, the daemon stopped cleanly afterwards.
    int Run() {
        const std::string pty = host.AnnouncedPty();
        return !pty.empty() && daemon.Start(pty) ? host.Wait() : -2;
    }

    ChildProcess host;
    Daemon daemon;
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
    EXPECT_NE(replay.host.Stdout().find("@@ expected frame 3 @@\n"
                                        "- < stbsystemStatusClearDone[0] = \"done\"\n"
                                        "+ < stbsystemStatusClearDone[0] = \"Stbav status clear done!\"\n"),
              std::string::npos) << replay.host.Stdout();
    EXPECT_EQ(replay.host.Stderr(), "avhost: replay of " + kDir + "/status_clear.cap differs from " +
                                        dir / "changed.chk" + "\n");
}

}  // namespace
