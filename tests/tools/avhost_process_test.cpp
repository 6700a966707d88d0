// avhost run as a process, where exit statuses, messages and the bytes put on
// a real pty line are the behaviour under test.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/e2e/e2e_support.h"
#include "tests/tools/child_process.h"
#include "tests/tools/daemon_double.h"
#include "tools/capture_reader.h"
#include "tools/line_decoder.h"
#include "tools/pty_line.h"

namespace {

using avhost::Bytes;

ChildProcess Avhost(std::vector<std::string> args) {
    args.insert(args.begin(), AVHOST_BINARY);
    return ChildProcess(args);
}

TEST(AvhostProcess, UsageAndRuntimeErrorsHaveTheirStatusAndMessage) {
    const std::string port = std::to_string(e2e::FreeTcpPort());  // nothing listens there
    const e2e::TempDir dir;
    const std::string file = dir / "payload";
    ASSERT_TRUE(e2e::WriteFile(file, "payload"));
    const struct {
        std::vector<std::string> args;
        int status;
        std::string err;
    } cases[] = {
        {{}, 2, "avhost: missing command\nTry 'avhost --help'.\n"},
        {{"frobnicate"}, 2, "avhost: unknown command \"frobnicate\"\nTry 'avhost --help'.\n"},
        {{"send", "-d", "/dev/null", "videoWidht=1"}, 2,
         "avhost: unknown operation name \"videoWidht\"; 'avhost list' shows the dictionary\n"},
        {{"send", "videoWidth=1"}, 2, "avhost: send: missing -d DEVICE\nTry 'avhost --help'.\n"},
        {{"send", "-d", "/dev/avhost-no-such-tty", "videoWidth=1"}, 1,
         "avhost: cannot open /dev/avhost-no-such-tty: No such file or directory\n"},
        {{"monitor", "--json"}, 2, "avhost: monitor: give either -d DEVICE or --pty\nTry 'avhost --help'.\n"},
        {{"monitor", "--pty", "--apply"}, 2, "avhost: monitor does not take --apply\nTry 'avhost --help'.\n"},
        {{"upload", file, "--port", port}, 1,
         "avhost: cannot connect to 127.0.0.1:" + port + ": Connection refused\n"},
        {{"upload", file, "--port", "70000"}, 2, "avhost: upload: bad --port \"70000\" (1..65535)\nTry 'avhost --help'.\n"},
        {{"upload", "/avhost-no-such-file"}, 1, "avhost: cannot read /avhost-no-such-file: No such file or directory\n"},
    };
    for (const auto& c : cases) {
        ChildProcess child = Avhost(c.args);
        EXPECT_EQ(child.Wait(), c.status) << (c.args.empty() ? "" : c.args[0]) << " " << child.Stderr();
        EXPECT_EQ(child.Stderr(), c.err);
    }
    ChildProcess help = Avhost({"--help"});
    EXPECT_EQ(help.Wait(), 0);
    EXPECT_EQ(help.Stdout().rfind("Usage: avhost", 0), 0u);
}

// By default every frame starts with a doubled start marker; --single-start sends
// one; raw writes the bytes as given.
TEST(AvhostProcess, SendAndRawPutExactlyTheirBytesOnTheLine) {
    const std::vector<std::string> send = {"send", "videooutputManualFormat=1920x1080p50", "videooutputInterface=3@1",
                                           "serviceselectionServiceName=BBC", "--apply"};
    const std::string echo = "> videooutputManualFormat[0] = 0x630D0000 (1920x1080p 16x9 50.00fps)\n"
                             "> videooutputInterface[1] = 3\n"
                             "> serviceselectionServiceName[0] = \"BBC\"\n"
                             "> apply\n";
    const auto line = [](const std::string& s) {
        return s + "00 0A 01 01 00 04 63 0D 00 00 10 " +  // videooutputManualFormat[0]
               s + "00 05 01 01 01 01 03 10 " +           // videooutputInterface[1] = 3
               s + "00 F9 00 01 00 03 42 42 43 10 " +     // serviceselectionServiceName
               s + "06 00 00 00 00 10";                   // apply
    };
    std::vector<std::string> single = send;
    single.push_back("--single-start");
    const struct {
        std::vector<std::string> args;  // without -d
        std::string bytes, out;
    } cases[] = {
        {send, line("0F 0F "), echo},
        {single, line("0F "), echo},
        {{"raw", "0F", "10", "0x12,0x2f"}, "0F 10 12 2F", ""},
    };
    for (const auto& c : cases) {
        avhost::PtyLine pty;
        std::string error;
        ASSERT_TRUE(pty.Open(error)) << error;
        std::vector<std::string> args = c.args;
        args.insert(args.begin() + 1, "-d" + pty.SlaveName());
        ChildProcess child = Avhost(args);
        ASSERT_EQ(child.Wait(), 0) << child.Stderr();
        // What the daemon's end (the tool's own pty pair; avhost opens the slave) reads: at least
        // the expected bytes (each read waiting up to 10 s) and whatever follows within 200 ms.
        Bytes got;
        unsigned char buf[4096];
        for (int n; (n = pty.Read(buf, sizeof buf, got.size() * 3 + 1 >= c.bytes.size() ? 200 : 10000)) > 0;)
            got.insert(got.end(), buf, buf + n);
        EXPECT_EQ(avhost::HexString(got), c.bytes);
        // What it printed, each line without its leading time column.
        std::istringstream printed(child.Stdout());
        std::string line, echoed;
        while (std::getline(printed, line)) {
            const size_t dir = line.find_first_of("<>");
            echoed += (dir == std::string::npos ? line : line.substr(dir)) + "\n";
        }
        EXPECT_EQ(echoed, c.out);
    }
}

TEST(AvhostProcess, SessionOnItsOwnPtyExpectsWhatTheDaemonSendsAndFailsOnATimeOut) {
    const e2e::TempDir dir;
    const std::string script = dir / "script";
    ASSERT_TRUE(e2e::WriteFile(script, "send videooutputFormatMode=2\napply\nexpect videoWidth=1920 10\n"
                                       "expect videoHeight 0.05\n"));
    ChildProcess child = Avhost({"session", "--pty", script});
    const std::string slave = child.AnnouncedPty();
    ASSERT_FALSE(slave.empty()) << child.Stdout() << child.Stderr();
    DaemonSide daemon(slave);
    daemon.AnswerApplyWith(OpFrom("videoWidth=1920"));
    ASSERT_TRUE(daemon.Start());
    EXPECT_EQ(child.Wait(), 1) << child.Stderr();  // the last expect times out
    EXPECT_EQ(child.Stderr(),
              "avhost: " + script + ":4: expect videoHeight 0.05: nothing matching received within 0.05 s\n");
    EXPECT_NE(child.Stdout().find(" < videoWidth[0] = 1920\n"), std::string::npos) << child.Stdout();
    EXPECT_EQ(daemon.Received(2), (std::vector<std::string>{"00 06 01 01 00 01 02", "06 00 00 00 00"}));
}

TEST(AvhostProcess, MonitorPrintsJsonAndCapturesUntilTerminated) {
    const e2e::TempDir dir;
    const std::string capture = dir / "capture.txt";
    ChildProcess child = Avhost({"monitor", "--pty", "--json", "--capture", capture});
    const std::string slave = child.AnnouncedPty();
    ASSERT_FALSE(slave.empty()) << child.Stderr();
    DaemonSide daemon(slave);
    ASSERT_TRUE(daemon.Start());
    ASSERT_TRUE(daemon.Send(FrameOf("00 03 00 01 00 0B 73 74 62 61 76 5F 72 65 61 64 79").op));  // stbav_ready
    ASSERT_TRUE(daemon.Send(OpFrom("videooutputCurrentOutputFormat=0x630D0000")));
    ASSERT_TRUE(child.WaitForOutput("\"text\":\"1920x1080p 16x9 50.00fps\"}\n")) << child.Stdout();
    child.Signal(SIGTERM);
    EXPECT_EQ(child.Wait(), 0) << child.Stderr();
    EXPECT_NE(child.Stdout().find(R"("dir":"<","op":"stbsystemReady","opId":3,"opType":0,"type":"VT_INT8",)"
                                  R"("index":0,"value":"stbav_ready"})"),
              std::string::npos)
        << child.Stdout();

    std::string text;
    ASSERT_TRUE(e2e::ReadFile(capture, text));
    EXPECT_NE(text.find("# line: " + slave + " 115200 8N1\n"), std::string::npos) << text;
    std::vector<avhost::CaptureChunk> chunks;
    std::string error;
    ASSERT_TRUE(avhost::CaptureReader::Read(text, '?', chunks, error)) << error;
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(avhost::HexString(chunks[1].bytes), "0F 00 0B 01 01 00 04 63 0D 00 00 10");
    EXPECT_EQ(chunks[1].dir, '<');
}

// A reader that goes away ends the monitor at once and cleanly, even while the
// line is quiet (nothing more to write that could fail).
TEST(AvhostProcess, MonitorEndsWhenItsReaderGoesAway) {
#ifdef STBAV_CHILD_LAUNCHER
    GTEST_SKIP() << "starts a program of the build machine (tmux, bash), which the emulator cannot run";
#endif
    ChildProcess shell({"/bin/bash", "-c",
                        std::string(AVHOST_BINARY) + " monitor --pty --json | head -n 1; echo \"status ${PIPESTATUS[0]}\""});
    EXPECT_EQ(shell.Wait(), 0);
    EXPECT_NE(shell.Stdout().find("\nstatus 0\n"), std::string::npos) << shell.Stdout() << shell.Stderr();
}

}  // namespace
