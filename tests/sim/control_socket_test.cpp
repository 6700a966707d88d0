// The virtual board's control socket over a real unix-domain socket: one
// command per connection, the state JSON, journal, faults and input switching.
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cctype>
#include <map>
#include <regex>
#include <sstream>

#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

// Sends one command line and reads the answer until the board closes.
std::string Ask(const std::string& path, const std::string& command) {
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    snprintf(addr.sun_path, sizeof addr.sun_path, "%s", path.c_str());
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
        close(fd);
        return "connect failed";
    }
    const std::string line = command + "\n";
    EXPECT_EQ(write(fd, line.data(), line.size()), static_cast<ssize_t>(line.size()));
    std::string answer;
    char buf[4096];
    ssize_t n;
    while ((n = read(fd, buf, sizeof buf)) > 0) answer.append(buf, static_cast<size_t>(n));
    close(fd);
    return answer;
}

// A small JSON reader that flattens objects and lists into "a.b.0" -> raw value text.
class CFlatJson {
public:
    explicit CFlatJson(const std::string& text) : m_s(text) { m_ok = Value("") && Ws() == m_s.size(); }
    bool ok() const { return m_ok; }
    bool Has(const std::string& path) const { return m_values.count(path) != 0; }
    std::string operator[](const std::string& path) const { return Has(path) ? m_values.at(path) : "<missing>"; }

private:
    size_t Ws() {
        while (m_i < m_s.size() && isspace(static_cast<unsigned char>(m_s[m_i]))) ++m_i;
        return m_i;
    }
    bool String(std::string* out) {
        if (m_s[m_i] != '"') return false;
        for (++m_i; m_i < m_s.size() && m_s[m_i] != '"'; ++m_i) *out += m_s[m_s[m_i] == '\\' ? ++m_i : m_i];
        return m_i++ < m_s.size();
    }
    bool Value(const std::string& path) {
        const size_t start = Ws();
        if (start >= m_s.size()) return false;
        const char c = m_s[m_i];
        std::string text;
        if (c == '{' || c == '[') {
            ++m_i;
            for (int n = 0; Ws() < m_s.size() && m_s[m_i] != (c == '{' ? '}' : ']'); ++n) {
                std::string key = std::to_string(n);
                if (c == '{' && (!String(&(key = "")) || Ws() >= m_s.size() || m_s[m_i++] != ':')) return false;
                if (!Value(path.empty() ? key : path + "." + key)) return false;
                if (Ws() < m_s.size() && m_s[m_i] == ',') ++m_i;
            }
            if (m_i++ >= m_s.size()) return false;
        } else if (c == '"') {
            if (!String(&text)) return false;
        } else {
            while (m_i < m_s.size() && (isalnum(static_cast<unsigned char>(m_s[m_i])) || m_s[m_i] == '-')) ++m_i;
            if (m_i == start) return false;
        }
        m_values[path] = m_s.substr(start, m_i - start);
        return true;
    }
    std::string m_s;
    size_t m_i = 0;
    bool m_ok = false;
    std::map<std::string, std::string> m_values;
};

class ControlSocketTest : public SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        m_path = ::testing::TempDir() + "stbsim_ctl_" + std::to_string(getpid()) + ".sock";
        std::string error;
        ASSERT_TRUE(stbsim::StartControl(m_path, &error)) << error;
    }
    std::string m_path;
};

TEST_F(ControlSocketTest, StateIsOneJsonObjectWithTheDocumentedKeys) {
    const Handles h = BringUp();
    Play(h.av, 0x100, 5, 0x101, 1, 0x100);
    ASSERT_EQ(aout_set_mute(h.aout, 1, true), 0);
    ASSERT_EQ(system_upgrade("/sdcard/update.zip"), 0);
    const std::string answer = Ask(m_path, "state");
    ASSERT_FALSE(answer.empty());
    EXPECT_EQ(answer.find('\n'), answer.size() - 1);
    const CFlatJson json(answer);
    ASSERT_TRUE(json.ok()) << answer;
    const char* keys[] = {"display.format", "display.rate", "player.video_pid", "player.audio_pid", "player.pcr_pid",
                          "player.video_type", "player.audio_type", "player.service_id", "player.video_started",
                          "player.audio_started", "audio.volume", "audio.mute", "upgrades"};
    for (const char* k : keys) EXPECT_TRUE(json.Has(k)) << k;
    EXPECT_EQ(json["display.format"], "11");
    EXPECT_EQ(json["player.video_pid"], "256");
    EXPECT_EQ(json["player.video_type"], "5");
    EXPECT_EQ(json["player.video_started"], "true");
    EXPECT_EQ(json["audio.mute"], "true");
    EXPECT_EQ(json["upgrades.0"], "\"/sdcard/update.zip\"");
}

TEST_F(ControlSocketTest, JournalFailAndResetJournal) {
    const Handles h = BringUp();
    const std::string journal = Ask(m_path, "journal");
    std::istringstream lines(journal);
    std::string first;
    std::getline(lines, first);
    EXPECT_TRUE(std::regex_match(first, std::regex(R"(\d+ vout_display_get\(handle=0x[0-9a-f]+.*\) = 0)"))) << first;
    EXPECT_NE(journal.find("vout_display_set(handle="), std::string::npos);

    EXPECT_EQ(Ask(m_path, "fail av_start_audio 0x8000aaaa 2"), "ok\n");
    EXPECT_EQ(av_start_audio(h.av), static_cast<int>(0x8000aaaau));
    EXPECT_EQ(av_start_audio(h.av), static_cast<int>(0x8000aaaau));
    EXPECT_EQ(av_start_audio(h.av), 0);
    EXPECT_EQ(Ask(m_path, "fail av_start_audio"), "error: usage: fail FUNCTION CODE [COUNT]\n");
    EXPECT_EQ(Ask(m_path, "fail no_such_call 1"), "error: unknown function 'no_such_call'\n");

    EXPECT_EQ(Ask(m_path, "reset-journal"), "ok\n");
    EXPECT_EQ(Ask(m_path, "journal"), "");
    ASSERT_EQ(av_stop(h.av), 0);
    EXPECT_NE(Ask(m_path, "journal").find("av_stop(handle="), std::string::npos);
}

TEST_F(ControlSocketTest, UnknownCommandsGetAnErrorLine) {
    for (const char* cmd : {"", "bogus", "STATE", "stream"}) {
        const std::string answer = Ask(m_path, cmd);
        EXPECT_EQ(answer.rfind("error:", 0), 0u) << cmd << " -> " << answer;
        EXPECT_EQ(answer.find('\n'), answer.size() - 1) << cmd;
    }
}

TEST_F(ControlSocketTest, StreamSwitchesTheInputAndVideoChangesItNow) {
    const Handles h = BringUp();
    Play(h.av, 0x100, 5, 0x101, 1, 0x100);
    const std::string file = ::testing::TempDir() + "stbsim_switch_" + std::to_string(getpid()) + ".scn";
    FILE* f = fopen(file.c_str(), "w");
    ASSERT_NE(f, nullptr);
    fputs("service 3 name=Other\nvideo pid=0x100 width=1280 height=720 scan=progressive fps=50\naudio pid=0x101\n", f);
    fclose(f);
    EXPECT_EQ(Ask(m_path, "stream " + file), "ok\n");
    EXPECT_EQ(Status(h.av).height, 720u);
    EXPECT_EQ(CFlatJson(Ask(m_path, "state"))["input.services.0.name"], "\"Other\"");

    EXPECT_EQ(Ask(m_path, "video height=1080 width=1920"), "ok\n");
    EXPECT_EQ(Status(h.av).height, 1080u);
    EXPECT_EQ(Ask(m_path, "video pid=0x999 height=576"), "error: no video stream with PID 0x999\n");
    EXPECT_EQ(Ask(m_path, "stream /nonexistent/file"), "error: /nonexistent/file: cannot open\n");
    remove(file.c_str());
}

TEST_F(ControlSocketTest, TheEnvironmentStartsTheSocketAndDeinitRemovesIt) {
    stbsim::StopControl();
    struct stat st {};
    EXPECT_NE(stat(m_path.c_str(), &st), 0);
    setenv("STBSIM_CONTROL", m_path.c_str(), 1);
    ASSERT_EQ(system_init(0), 0);
    unsetenv("STBSIM_CONTROL");
    EXPECT_EQ(CFlatJson(Ask(m_path, "state"))["system.initialised"], "true");
    ASSERT_EQ(system_deinit(), 0);
    EXPECT_NE(stat(m_path.c_str(), &st), 0);
}

}  // namespace
}  // namespace simtest
