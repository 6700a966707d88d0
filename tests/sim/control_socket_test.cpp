// The virtual board's control socket over a real unix-domain socket: one
// command per connection, the state JSON, journal, faults and input switching.
#include <regex>
#include <tuple>

#include "tests/e2e/e2e_support.h"
#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

std::string Ask(const std::string& path, const std::string& command) { return e2e::BoardCommand(path, command); }

e2e::FlatJson State(const std::string& path) {
    e2e::FlatJson json;
    EXPECT_TRUE(json.Parse(Ask(path, "state")));
    return json;
}

class ControlSocketTest : public SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        m_path = m_dir / "ctl.sock";
        std::string error;
        ASSERT_TRUE(stbsim::StartControl(m_path, &error)) << error;
    }
    const e2e::TempDir m_dir;  // the socket and the scenario files
    std::string m_path;
};

TEST_F(ControlSocketTest, JournalFailStateStreamAndVideoCommands) {
    const Handles h = BringUp();
    const std::string journal = Ask(m_path, "journal");
    const std::string first = journal.substr(0, journal.find('\n'));
    EXPECT_TRUE(std::regex_match(first, std::regex(R"(\d+ vout_display_get\(handle=0x[0-9a-f]+.*\) = 0)"))) << first;
    EXPECT_NE(journal.find("vout_display_set(handle="), std::string::npos);

    EXPECT_EQ(Ask(m_path, "fail av_start_audio 0x8000aaaa 2"), "ok\n");
    for (int code : {static_cast<int>(0x8000aaaau), static_cast<int>(0x8000aaaau), 0})
        EXPECT_EQ(av_start_audio(h.av), code);
    EXPECT_EQ(Ask(m_path, "fail av_start_audio"), "error: usage: fail FUNCTION CODE [COUNT]\n");
    EXPECT_EQ(Ask(m_path, "fail no_such_call 1"), "error: unknown function 'no_such_call'\n");
    for (const char* cmd : {"", "bogus", "STATE", "stream"}) {
        const std::string answer = Ask(m_path, cmd);
        EXPECT_EQ(answer.rfind("error:", 0), 0u) << cmd << " -> " << answer;
        EXPECT_EQ(answer.find('\n'), answer.size() - 1) << cmd;
    }

    EXPECT_EQ(Ask(m_path, "reset-journal"), "ok\n");
    EXPECT_EQ(Ask(m_path, "journal"), "");
    ASSERT_EQ(av_stop(h.av), 0);
    EXPECT_NE(Ask(m_path, "journal").find("av_stop(handle="), std::string::npos);

    // state is one JSON object with the documented keys.
    PlayDefaultService(h.av);
    ASSERT_EQ(aout_set_mute(h.aout, 1, true), 0);
    ASSERT_EQ(system_upgrade("/sdcard/update.zip"), 0);
    const std::string answer = Ask(m_path, "state");
    ASSERT_FALSE(answer.empty());
    EXPECT_EQ(answer.find('\n'), answer.size() - 1);
    e2e::FlatJson json;
    ASSERT_TRUE(json.Parse(answer)) << answer;
    // The keys compared below, and these.
    for (const char* k : {"display.rate", "player.audio_pid", "player.pcr_pid", "player.audio_type",
                          "player.service_id", "player.audio_started", "audio.volume"})
        EXPECT_TRUE(json.Has(k)) << k;
    EXPECT_EQ(std::make_tuple(json.Get("display.format"), json.Get("player.video_pid"), json.Get("player.video_type")),
              std::make_tuple("11", "256", "5"));
    EXPECT_EQ(std::make_tuple(json.Get("player.video_started"), json.Get("audio.mute"), json.Get("upgrades.0")),
              std::make_tuple("true", "true", "/sdcard/update.zip"));

    // stream switches the input; video changes it now.
    const std::string file = m_dir / "switch.scn";
    ASSERT_TRUE(e2e::WriteFile(file, "service 3 name=Other\nvideo pid=0x100 width=1280 height=720 scan=progressive "
                                     "fps=50\naudio pid=0x101\n"));
    EXPECT_EQ(Ask(m_path, "stream " + file), "ok\n");
    EXPECT_EQ(Status(h.av).height, 720u);
    EXPECT_EQ(State(m_path).Get("input.services.0.name"), "Other");

    EXPECT_EQ(Ask(m_path, "video height=1080 width=1920"), "ok\n");
    EXPECT_EQ(Status(h.av).height, 1080u);
    EXPECT_EQ(Ask(m_path, "video pid=0x999 height=576"), "error: no video stream with PID 0x999\n");
    EXPECT_EQ(Ask(m_path, "stream /nonexistent/file"), "error: /nonexistent/file: cannot open\n");
}

// STBSIM_CONTROL and STBSIM_STREAM are read at system_init: the socket starts
// (system_deinit removes it) and the scenario file is the input; a malformed
// scenario file fails system_init.
TEST_F(ControlSocketTest, TheEnvironmentStartsTheSocketAndSetsTheInputAtSystemInit) {
    stbsim::StopControl();
    EXPECT_FALSE(e2e::FileExists(m_path));
    const std::string scenario = m_dir / "env.scn";
    ASSERT_TRUE(e2e::WriteFile(scenario, "service 9 name=\"From env\"\nvideo pid=0x900\n"));
    setenv("STBSIM_CONTROL", m_path.c_str(), 1);
    setenv("STBSIM_STREAM", scenario.c_str(), 1);
    ASSERT_EQ(system_init(0), 0);
    unsetenv("STBSIM_CONTROL");
    const e2e::FlatJson state = State(m_path);
    EXPECT_EQ(std::make_tuple(state.Get("system.initialised"), state.Get("input.services.0.name")),
              std::make_tuple("true", "From env"));
    ASSERT_EQ(system_deinit(), 0);
    EXPECT_FALSE(e2e::FileExists(m_path));

    ASSERT_TRUE(e2e::WriteFile(scenario, "service 9\nvideo\n"));
    EXPECT_EQ(system_init(0), stbsim::kErrInvalidParam);
    unsetenv("STBSIM_STREAM");
    EXPECT_FALSE(stbsim::State().systemInitialised);
}

}  // namespace
}  // namespace simtest
