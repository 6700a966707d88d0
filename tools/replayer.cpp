// Replay script, expected files and their difference. Pure.
#include "tools/replayer.h"

#include <algorithm>
#include <sstream>

namespace avhost {

namespace {

bool IsHeartbeat(const std::string& name) { return name == "stbsystemHeartBeatCount" || name == "avssHeartBeat"; }

}  // namespace

std::string Replayer::Compared(const LineFrame& frame) const {
    const std::string name = FrameName(m_catalog, frame);
    if (IsHeartbeat(name) || (m_filter != nullptr && !m_filter->Shows(m_catalog, frame))) return "";
    return "< " + m_formatter.Describe(frame);
}

ReplayScript Replayer::Script(const std::vector<CaptureChunk>& chunks) const {
    ReplayScript script;
    LineDecoder fromDaemon;
    std::vector<LineFrame> frames;
    for (const CaptureChunk& c : chunks) {
        if (c.dir == '>') {
            script.steps.push_back({c.t, c.bytes, script.daemonLines.size()});
            continue;
        }
        frames.clear();
        fromDaemon.Push(c.bytes.data(), c.bytes.size(), frames);
        fromDaemon.TakeStray(frames);
        for (const LineFrame& f : frames) {
            std::string line = Compared(f);
            if (!line.empty()) script.daemonLines.push_back(line);
        }
    }
    return script;
}

std::string Replayer::DefaultExpectedPath(const std::string& capturePath) {
    for (const std::string ext : {".cap", ".pcap"}) {
        if (capturePath.size() > ext.size() &&
            capturePath.compare(capturePath.size() - ext.size(), ext.size(), ext) == 0)
            return capturePath.substr(0, capturePath.size() - ext.size()) + ".chk";
    }
    return capturePath + ".chk";
}

std::vector<std::string> Replayer::ParseExpected(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] != '#') lines.push_back(line);
    }
    return lines;
}

std::string Replayer::ExpectedText(const std::string& captureName, const std::vector<std::string>& lines) {
    std::string text = "# avhost replay: what the daemon sends for " + captureName +
                       " (heartbeats left out); rewrite with avhost replay --update\n";
    for (const std::string& l : lines) text += l + "\n";
    return text;
}

std::string Replayer::Difference(const std::vector<std::string>& expected, const std::vector<std::string>& got) {
    if (expected == got) return "";
    // Longest common subsequence, then a walk that prints what is not in it.
    const std::size_t n = expected.size(), m = got.size();
    std::vector<std::vector<unsigned>> lcs(n + 1, std::vector<unsigned>(m + 1, 0));
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t j = m; j-- > 0;)
            lcs[i][j] = expected[i] == got[j] ? lcs[i + 1][j + 1] + 1 : std::max(lcs[i + 1][j], lcs[i][j + 1]);
    }
    std::string out;
    std::size_t i = 0, j = 0;
    bool inHunk = false;
    while (i < n || j < m) {
        if (i < n && j < m && expected[i] == got[j]) {
            ++i, ++j;
            inHunk = false;
            continue;
        }
        if (!inHunk) out += "@@ expected frame " + std::to_string(i + 1) + " @@\n";
        inHunk = true;
        if (i < n && (j == m || lcs[i + 1][j] >= lcs[i][j + 1])) out += "- " + expected[i++] + "\n";
        else out += "+ " + got[j++] + "\n";
    }
    return out;
}

}  // namespace avhost
