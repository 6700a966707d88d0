// The session language, and a live session over a real pty pair against the
// daemon's own serial adapter.
#include "tools/session_script.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>

#include "tests/e2e/e2e_support.h"
#include "tests/tools/daemon_double.h"
#include "tools/capture_reader.h"
#include "tools/pty_line.h"

namespace avhost {
namespace {

// A line that must parse.
SessionCommand Parsed(const OpCatalog& catalog, const std::string& line) {
    SessionCommand command;
    bool isCommand = false;
    std::string error;
    EXPECT_TRUE(ParseSessionLine(catalog, line, command, isCommand, error)) << line << ": " << error;
    return command;
}

TEST(ParseSessionLine, KnowsTheCommandsAndSaysWhatIsWrong) {
    const OpCatalog catalog;
    const struct {
        const char* line;
        bool ok;
        bool isCommand;
        const char* error;
    } cases[] = {
        {"send videoWidth=1 videoHeight=2@1", true, true, ""},
        {"send serviceselectionServiceName=\"My \\\"TV\\\"\"", true, true, ""},
        {"  apply  # go", true, true, ""},
        {"wait 0.5", true, true, ""},
        {"expect stbsystemReady=stbav_ready 3", true, true, ""},
        {"expect videoWidth", true, true, ""},
        {"raw 0F 06 00 00 00 00 10", true, true, ""},
        {"# a comment", true, false, ""},
        {"", true, false, ""},
        {"send", false, true, "usage: send NAME=VALUE[@INDEX] ..."},
        {"send videoWidth=70000", false, true, "videoWidth: value 70000 out of range for VT_UINT16 (0..65535)"},
        {"apply now", false, true, "usage: apply"},
        {"wait soon", false, true, "usage: wait SECONDS"},
        {"expect", false, true, "usage: expect NAME[=VALUE][@INDEX] [TIMEOUT]"},
        {"expect videoWidht", false, true, "unknown operation name \"videoWidht\"; 'avhost list' shows the dictionary"},
        {"expect videoWidth 1s", false, true, "bad time-out \"1s\""},
        {"raw 0F 1", false, true, "not a hex byte string: odd number of hex digits"},
        {"sned videoWidth=1", false, true, "unknown command \"sned\" (send, apply, wait, expect, raw)"},
        {"send serviceselectionServiceName=\"open", false, false, "unterminated quote"},
    };
    for (const auto& c : cases) {
        SessionCommand command;
        bool isCommand = false;
        std::string error;
        EXPECT_EQ(ParseSessionLine(catalog, c.line, command, isCommand, error), c.ok) << c.line;
        EXPECT_EQ(isCommand, c.isCommand) << c.line;
        EXPECT_EQ(error, c.error) << c.line;
    }
    EXPECT_EQ(Parsed(catalog, cases[1].line).ops.at(0).GetDataString(), "My \"TV\"");
}

TEST(ExpectSpec, MatchesByNameIndexAndValue) {
    const OpCatalog catalog;
    const OpFormatter formatter(catalog);
    const struct {
        const char* expect;
        const char* op;
        bool matches;
    } cases[] = {
        {"expect videoWidth", "videoWidth=1920@3", true},
        {"expect videoWidth=1920", "videoWidth=1920@3", true},
        {"expect videoWidth=0x780", "videoWidth=1920", true},
        {"expect videoWidth=1920@3", "videoWidth=1920@2", false},
        {"expect videoWidth=1921", "videoWidth=1920", false},
        {"expect videoHeight", "videoWidth=1920", false},
        {"expect stbsystemReady=stbav_ready", "serviceselectionServiceName=stbav_ready", false},
        {"expect videooutputCurrentOutputFormat=1920x1080p50", "videooutputCurrentOutputFormat=0x630D0000", true},
        {"expect videooutputCurrentOutputFormat=1920x1080p25", "videooutputCurrentOutputFormat=0x630D0000", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Parsed(catalog, c.expect).expect.Matches(OpFrom(c.op), formatter), c.matches)
            << c.expect << " / " << c.op;
    }
    // A status text sent under a numeric type (stbsystemReady[0] = "stbav_ready") matches its text.
    const SsOp ready = FrameOf("00 03 00 01 00 0B 73 74 62 61 76 5F 72 65 61 64 79").op;
    EXPECT_TRUE(Parsed(catalog, "expect stbsystemReady=stbav_ready").expect.Matches(ready, formatter));
}

// The host (this session, fed line by line as from standard input; the process
// tests run a script file) sends a batch and the apply trigger; the daemon's
// adapter receives exactly those images and answers. expect looks only at what
// came after the last send: a report that arrived before it is stale; the answer
// to the apply is seen.
TEST(SessionRunner, DrivesTheDaemonsAdapterOverAPtyAndExpectsOnlyWhatCameAfterTheSend) {
    const OpCatalog catalog;
    PtyLine line;
    std::string error;
    ASSERT_TRUE(line.Open(error)) << error;
    DaemonSide daemon(line.SlaveName());
    daemon.AnswerApplyWith(OpFrom("videoHeight=1080"));
    ASSERT_TRUE(daemon.Start());

    std::ostringstream out, err, captureText;
    CaptureWriter capture(captureText);
    std::atomic<bool> arrived{false};  // set once the frame is kept for expect
    LineSession::Options options;
    options.capture = &capture;
    options.onFrame = [&arrived](double, char dir, const LineFrame&) { arrived = arrived || dir == '<'; };
    LineSession session(line, catalog, out, options);
    session.Start();
    SessionRunner runner(session, catalog, err);
    ASSERT_TRUE(daemon.Send(OpFrom("videoWidth=1920")));
    ASSERT_TRUE(e2e::WaitUntil([&] { return arrived.load(); }));
    std::istringstream stale(
        "send videooutputFormatMode=2 videooutputManualFormat=1280x720p59.94@1\n"
        "apply\n"
        "expect videoWidth 0.2\n");
    EXPECT_EQ(runner.RunInteractive(stale, "script"), 1);
    EXPECT_EQ(err.str(), "avhost: script:3: expect videoWidth 0.2: nothing matching received within 0.2 s\n");
    std::istringstream fresh("expect videoHeight=1080 10\n");
    EXPECT_EQ(runner.RunInteractive(fresh, "script"), 0) << err.str();
    session.Stop();

    EXPECT_EQ(daemon.Received(3),
              (std::vector<std::string>{"00 06 01 01 00 01 02", "00 0A 01 01 01 04 73 09 00 00", "06 00 00 00 00"}));
    EXPECT_NE(out.str().find(" < videoHeight[0] = 1080\n"), std::string::npos) << out.str();

    std::vector<CaptureChunk> chunks;
    ASSERT_TRUE(CaptureReader::Read(captureText.str(), '<', chunks, error)) << error;
    std::string dirs;
    for (const CaptureChunk& c : chunks) dirs += c.dir;
    EXPECT_EQ(dirs, "<>>><");
}

}  // namespace
}  // namespace avhost
