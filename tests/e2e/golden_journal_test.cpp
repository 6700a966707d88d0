// Golden journal: the real stbavd on the virtual board is taken through a whole
// session as a host would drive it (bring-up, service selection, manual then
// automatic output format, captions, audio level and mute, an input format
// change, a status clear, an upgrade request, tear-down), and every platform
// call the board saw, arguments included, is compared with
// tests/e2e/golden/daemon_session.journal.
//
// Normalised: time stamps removed; handles named by kind and order of first
// appearance (<av1>, <vout1>, <window1>, <aout1>, <track1>); the test's temporary
// folder shown as <tmp>. Left out: the reads whose number depends on timing
// (av_get_status_info, av_get_stream_info, av_get_config: the status poll and
// the stream probe run on their own clocks). Calls made on the board's event
// thread (the format callback and what the daemon does inside it) are listed in
// a section of their own, in their own order.
//
// After an intended change, rewrite the golden file and read its diff:
//   STBAV_UPDATE_GOLDEN=1 build/dev/tests/e2e/golden_journal_test     (or: make golden)
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <iostream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/e2e/daemon_rig.h"

namespace {

using namespace e2e;  // the operations' numbers

const char* const kScenario =
    "service 1 name=\"golden HD\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n";

const char* const kGoldenHeader =
    "# Platform calls of one daemon session on the virtual board (tests/e2e/golden_journal_test.cpp).\n"
    "# Rewrite after an intended change: STBAV_UPDATE_GOLDEN=1 build/dev/tests/e2e/golden_journal_test\n";

bool UpdateMode() {
    const char* v = getenv("STBAV_UPDATE_GOLDEN");
    return v && *v && std::string(v) != "0";
}

std::string GoldenPath() { return std::string(STBAV_GOLDEN_DIR) + "/daemon_session.journal"; }

// The journal file split into the calls of the daemon's own threads and those
// made on the board's event thread, normalised.
struct Calls {
    std::vector<std::string> main, events;
};

Calls ReadCalls(const std::string& journalFile, const std::string& tmp) {
    static const std::set<std::string> kTimedReads = {"av_get_status_info", "av_get_stream_info", "av_get_config"};
    static const std::regex inCallback(R"(\) = \S+ in callback)");
    static const std::regex handle(R"(0x(a1|b1|b2|c1|c2)[0-9a-f]{4}\b)");
    static const std::map<std::string, std::string> kKinds = {
        {"a1", "av"}, {"b1", "vout"}, {"b2", "window"}, {"c1", "aout"}, {"c2", "track"}};
    std::map<std::string, std::string> names;  // a handle's value: its name by kind and order of first appearance
    std::map<std::string, int> counts;         // handles named so far, by kind
    std::string text;
    e2e::ReadFile(journalFile, text);
    Calls calls;
    for (const e2e::JournalEntry& e : e2e::ParseJournal(text)) {
        if (kTimedReads.count(e.name)) continue;
        std::string rest = e.call;
        for (size_t at; (at = rest.find(tmp)) != std::string::npos;) rest.replace(at, tmp.size(), "<tmp>");
        std::string line;
        for (std::smatch m; std::regex_search(rest, m, handle); rest = m.suffix().str()) {
            std::string& name = names[m.str()];
            if (name.empty()) name = "<" + kKinds.at(m.str(1)) + std::to_string(++counts[m.str(1)]) + ">";
            line += m.prefix().str() + name;
        }
        line += rest;
        const bool event = e.name == "callback" || std::regex_search(line, inCallback);
        (event ? calls.events : calls.main).push_back(line);
    }
    return calls;
}

// The lines of each "== NAME" section of a golden file (comment lines start with '#').
std::map<std::string, std::vector<std::string>> ParseGolden(const std::string& text) {
    std::map<std::string, std::vector<std::string>> sections;
    std::istringstream in(text);
    std::string line, section;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (line.compare(0, 3, "== ") == 0) section = line.substr(3);
        else if (!section.empty()) sections[section].push_back(line);
    }
    return sections;
}

class GoldenJournalTest : public ::testing::Test, protected e2e::DaemonRig {
protected:
    GoldenJournalTest() : DaemonRig("version=golden-1\n") {
        e2e::WriteFile(m_Tmp / "input.scn", kScenario);
        if (!UpdateMode() && e2e::ReadFile(GoldenPath(), m_GoldenText)) m_Golden = ParseGolden(m_GoldenText);
    }

    // Runs one step and waits until its calls are in: as many as the golden file
    // lists (at most 10 s), or, when rewriting, until none came for 3.5 s.
    void Step(const std::string& name, const std::function<void()>& act) {
        const size_t from = ReadCalls(JournalFile(), m_Tmp.Path()).main.size();
        act();
        std::vector<std::string> got;
        const auto since = [&] {
            const auto all = ReadCalls(JournalFile(), m_Tmp.Path()).main;
            return std::vector<std::string>(all.begin() + std::min(from, all.size()), all.end());
        };
        const size_t want = m_Golden[name].size();
        const uint64_t start = e2e::MonotonicUs();
        uint64_t quietSince = start;
        do {
            m_Host.Drain(20);
            const auto now = since();
            if (now.size() != got.size()) quietSince = e2e::MonotonicUs();
            got = now;
        } while (UpdateMode() ? e2e::MonotonicUs() - quietSince < 3500000 && e2e::MonotonicUs() - start < 20000000
                              : got.size() < want && e2e::MonotonicUs() - start < 10000000);
        m_Sections.push_back({name, got});
    }

    std::string Text() const {
        std::string out = kGoldenHeader;
        for (const auto& [name, lines] : m_Sections) {
            out += "== " + name + "\n";
            for (const auto& l : lines) out += l + "\n";
        }
        return out;
    }

    std::string m_GoldenText;  // the golden file ("" when rewriting it)
    std::map<std::string, std::vector<std::string>> m_Golden;
    std::vector<std::pair<std::string, std::vector<std::string>>> m_Sections;
};

TEST_F(GoldenJournalTest, DaemonSessionMatchesTheGoldenJournal) {
    ASSERT_TRUE(UpdateMode() || !m_GoldenText.empty())
        << GoldenPath() << " is missing; write it with STBAV_UPDATE_GOLDEN=1";

    Step("bring-up and status on", [&] {
        LaunchReady(m_Tmp / "input.scn");
        EnableStatus();
    });
    ASSERT_FALSE(HasFailure());
    Step("service selection", [&] {
        SendService(0x100, 0x100, 0x101, 2, 2, 1, "golden HD");
        m_Host.SendApply();
    });
    Step("manual output format 1080p50", [&] { SendManualFormat(Progressive50(1080, 1920)); });
    // A step of one-byte values, then the apply trigger.
    const auto values = [&](const std::string& name, const std::vector<std::pair<unsigned, int>>& ops) {
        Step(name, [&] {
            for (const auto& [opId, value] : ops) m_Host.SendU8(opId, static_cast<unsigned char>(value));
            m_Host.SendApply();
        });
    };
    values("automatic output format", {{kFormatMode, 1}});
    values("line-21 and NTSC overlay captions",
           {{kLine21Cc, 1}, {kOverlayCcType, 1}, {kOverlayNtscType, 2}, {kOverlayType, 2}});
    values("DTV overlay captions", {{kOverlayCcType, 2}, {kOverlayDtvType, 3}});
    // The level byte is read with the dictionary's type, so the volume call shows what the daemon makes of it.
    values("audio level -20 dB and mute", {{kAnalogLevel, -20}, {kAnalogPort, 1}});
    Step("input turns 720p50", [&] {
        ASSERT_EQ("ok\n", e2e::BoardCommand(Socket(), "video width=1280 height=720 scan=progressive fps=50"));
    });
    values("status clear", {{kStatusClear, 1}});
    values("upgrade request", {{kSystemUpdate, 1}});
    Step("tear-down", [&] { StopCleanly(); });
    m_Sections.push_back({"event thread", ReadCalls(JournalFile(), m_Tmp.Path()).events});
    const std::string now = Text();
    if (UpdateMode()) {
        std::ofstream(GoldenPath()) << now;
        std::cout << "rewrote " << GoldenPath() << "\n";
        return;
    }
    EXPECT_EQ(m_GoldenText, now) << "the platform calls differ from " << GoldenPath();
}

}  // namespace
