// Scenario file reader: tokenising, value parsing and per-keyword handlers.
#include "sim/scenario_parser.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <set>
#include <sstream>

#include "sim/board_codes.h"

namespace stbsim {

namespace {

using Assignments = std::vector<std::pair<std::string, std::string>>;

// Splits a line into words; double quotes group a value with spaces, '#'
// outside quotes starts a comment.
bool Tokenize(const std::string& line, std::vector<std::string>* words, std::string* error) {
    std::string cur;
    bool inWord = false, quoted = false;
    for (char ch : line) {
        if (quoted) {
            if (ch == '"') quoted = false;
            else cur += ch;
        } else if (ch == '"') {
            quoted = inWord = true;
        } else if (ch == '#') {
            break;
        } else if (ch == ' ' || ch == '\t' || ch == '\r') {
            if (inWord) words->push_back(cur);
            cur.clear();
            inWord = false;
        } else {
            cur += ch;
            inWord = true;
        }
    }
    if (quoted) {
        *error = "unterminated quote";
        return false;
    }
    if (inWord) words->push_back(cur);
    return true;
}

bool SplitAssignments(const std::vector<std::string>& words, size_t from, Assignments* out, std::string* error) {
    for (size_t i = from; i < words.size(); ++i) {
        const size_t eq = words[i].find('=');
        if (eq == std::string::npos || eq == 0) {
            *error = "expected key=value, got '" + words[i] + "'";
            return false;
        }
        out->emplace_back(words[i].substr(0, eq), words[i].substr(eq + 1));
    }
    return true;
}

bool ParseUnsigned(const std::string& s, uint64_t max, uint64_t* out) {
    if (s.empty() || s[0] == '-' || s[0] == '+' || s[0] == ' ') return false;
    errno = 0;
    char* end = nullptr;
    const unsigned long long v = std::strtoull(s.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || v > max) return false;
    *out = v;
    return true;
}

template <typename T>
bool ParseNumber(const std::string& s, uint64_t min, uint64_t max, T* out) {
    uint64_t v = 0;
    if (!ParseUnsigned(s, max, &v) || v < min) return false;
    *out = static_cast<T>(v);
    return true;
}

bool ParseRatio(const std::string& s, char sep, Ratio* out) {
    const size_t p = s.find(sep);
    if (p == std::string::npos) return false;
    Ratio r;
    if (!ParseNumber(s.substr(0, p), 1, 100000, &r.num) || !ParseNumber(s.substr(p + 1), 1, 100000, &r.den))
        return false;
    *out = r;
    return true;
}

// "25", "29.97" (read as 30000/1001), "12.5", "30000/1001".
bool ParseFps(const std::string& s, Ratio* out) {
    if (s.find('/') != std::string::npos) return ParseRatio(s, '/', out);
    char* end = nullptr;
    const double x = std::strtod(s.c_str(), &end);
    if (s.empty() || *end != '\0' || !(x > 0.0) || x > 1000.0) return false;
    const double ntsc = x * 1001.0 / 1000.0;
    if (std::fabs(x - std::round(x)) < 1e-9) {
        *out = Ratio{static_cast<uint32_t>(std::lround(x)), 1};
    } else if (std::fabs(ntsc - std::round(ntsc)) < 0.005) {
        *out = Ratio{static_cast<uint32_t>(std::lround(ntsc)) * 1000, 1001};
    } else {
        *out = Ratio{static_cast<uint32_t>(std::lround(x * 1000.0)), 1000};
    }
    return true;
}

bool ParseAspect(const std::string& s, Ratio* out) {
    if (s == "unknown") {
        *out = Ratio{};
        return true;
    }
    return ParseRatio(s, ':', out);
}

bool ParseChannels(const std::string& s, AudioStream* a) {
    std::string main = s;
    bool lfe = false;
    if (s.size() > 2 && s.compare(s.size() - 2, 2, ".1") == 0) {
        main = s.substr(0, s.size() - 2);
        lfe = true;
    }
    if (!ParseNumber(main, 1, 16, &a->channels)) return false;
    a->lfe = lfe;
    return true;
}

bool BadValue(const std::string& key, const std::string& value, std::string* error) {
    *error = "bad value '" + value + "' for " + key;
    return false;
}

bool SetVideoField(VideoStream& v, const std::string& k, const std::string& val, std::string* error) {
    bool ok = true;
    if (k == "pid") ok = ParseNumber(val, 1, 0x1FFE, &v.pid);
    else if (k == "codec") {
        ok = ParseVideoCodec(val, &v.codec);
        if (ok) {
            v.profile = DefaultProfile(v.codec);
            v.level = DefaultLevel(v.codec);
        }
    } else if (k == "width") ok = ParseNumber(val, 16, 8192, &v.width);
    else if (k == "height") ok = ParseNumber(val, 16, 8192, &v.height);
    else if (k == "scan") ok = ParseFieldOrder(val, &v.field);
    else if (k == "fps") ok = ParseFps(val, &v.fps);
    else if (k == "aspect") {
        ok = ParseAspect(val, &v.dar);
        v.sarGiven = false;
    } else if (k == "sar") {
        ok = ParseRatio(val, ':', &v.sar);
        v.sarGiven = ok;
    } else if (k == "profile") ok = ParseNumber(val, 0, 255, &v.profile);
    else if (k == "level") ok = ParseNumber(val, 0, 255, &v.level);
    else if (k == "chroma") ok = ParseChroma(val, &v.chroma);
    else if (k == "depth") ok = ParseNumber(val, 8, 16, &v.bitDepth);
    else {
        *error = "unknown video key '" + k + "'";
        return false;
    }
    return ok || BadValue(k, val, error);
}

bool SetAudioField(AudioStream& a, const std::string& k, const std::string& val, std::string* error) {
    bool ok = true;
    if (k == "pid") ok = ParseNumber(val, 1, 0x1FFE, &a.pid);
    else if (k == "codec") ok = ParseAudioCodec(val, &a.codec);
    else if (k == "rate") ok = ParseNumber(val, 8000, 192000, &a.sampleRate);
    else if (k == "channels") ok = ParseChannels(val, &a);
    else if (k == "bits") ok = ParseNumber(val, 8, 32, &a.bitsPerSample);
    else if (k == "bitrate") ok = ParseNumber(val, 0, 100000000, &a.bitRate);
    else if (k == "pts") ok = ParseNumber(val, 0, (uint64_t{1} << 33) - 1, &a.ptsStart);
    else {
        *error = "unknown audio key '" + k + "'";
        return false;
    }
    return ok || BadValue(k, val, error);
}

// Applies the key=value pairs of a change; a "pid" key only selects the stream.
// The codec goes first: it resets profile and level to the codec's defaults.
bool ApplyVideo(VideoStream& v, const Assignments& as, std::string* error) {
    for (const auto& kv : as)
        if (kv.first == "codec" && !SetVideoField(v, kv.first, kv.second, error)) return false;
    for (const auto& kv : as) {
        if (kv.first == "codec") continue;
        if (kv.first == "pid" && v.pid != 0) continue;
        if (!SetVideoField(v, kv.first, kv.second, error)) return false;
    }
    FinaliseVideo(v);
    return true;
}

bool ApplyAudio(AudioStream& a, const Assignments& as, std::string* error) {
    for (const auto& kv : as) {
        if (kv.first == "pid" && a.pid != 0) continue;
        if (!SetAudioField(a, kv.first, kv.second, error)) return false;
    }
    return true;
}

// Parsing state of one file.
class CScenarioReader {
public:
    bool Line(const std::vector<std::string>& words, std::string* error);
    bool Finish(std::string* error);
    StreamInput input;

private:
    bool Service(const std::vector<std::string>& words, std::string* error);
    bool Stream(const std::vector<std::string>& words, bool video, std::string* error);
    bool At(const std::vector<std::string>& words, std::string* error);
    bool ClaimPid(uint16_t pid, std::string* error);
    std::set<uint16_t> m_pids;
    bool m_pcrGiven = false;

public:
    int line = 0;  // number of the line being read, or of the change that failed
};

bool CScenarioReader::Line(const std::vector<std::string>& words, std::string* error) {
    const std::string& kw = words[0];
    if (kw == "service") return Service(words, error);
    if (kw == "video") return Stream(words, true, error);
    if (kw == "audio") return Stream(words, false, error);
    if (kw == "at") return At(words, error);
    *error = "unknown keyword '" + kw + "'";
    return false;
}

bool CScenarioReader::Service(const std::vector<std::string>& words, std::string* error) {
    if (!input.services.empty() && !m_pcrGiven) {
        auto& last = input.services.back();
        last.pcrPid = last.video.empty() ? (last.audio.empty() ? 0 : last.audio[0].pid) : last.video[0].pid;
    }
    stbsim::Service s;
    if (words.size() < 2 || !ParseNumber(words[1], 0, 65535, &s.id)) {
        *error = "service needs a service id (0..65535)";
        return false;
    }
    Assignments as;
    if (!SplitAssignments(words, 2, &as, error)) return false;
    m_pcrGiven = false;
    for (const auto& kv : as) {
        if (kv.first == "name") {
            if (kv.second.size() > 63) {
                *error = "service name longer than 63 bytes";
                return false;
            }
            s.name = kv.second;
        } else if (kv.first == "pcr") {
            if (!ParseNumber(kv.second, 1, 0x1FFE, &s.pcrPid)) return BadValue("pcr", kv.second, error);
            m_pcrGiven = true;
        } else {
            *error = "unknown service key '" + kv.first + "'";
            return false;
        }
    }
    input.services.push_back(s);
    return true;
}

bool CScenarioReader::ClaimPid(uint16_t pid, std::string* error) {
    if (m_pids.insert(pid).second) return true;
    std::ostringstream os;
    os << "PID 0x" << std::hex << pid << " is already used";
    *error = os.str();
    return false;
}

bool CScenarioReader::Stream(const std::vector<std::string>& words, bool video, std::string* error) {
    if (input.services.empty()) {
        *error = words[0] + " before any service";
        return false;
    }
    Assignments as;
    if (!SplitAssignments(words, 1, &as, error)) return false;
    const bool hasPid = std::any_of(as.begin(), as.end(), [](const auto& kv) { return kv.first == "pid"; });
    if (!hasPid) {
        *error = words[0] + " needs pid=";
        return false;
    }
    auto& svc = input.services.back();
    if (video) {
        VideoStream v;
        v.pid = 0;
        if (!ApplyVideo(v, as, error) || !ClaimPid(v.pid, error)) return false;
        svc.video.push_back(v);
    } else {
        AudioStream a;
        a.pid = 0;
        if (!ApplyAudio(a, as, error) || !ClaimPid(a.pid, error)) return false;
        svc.audio.push_back(a);
    }
    return true;
}

bool CScenarioReader::At(const std::vector<std::string>& words, std::string* error) {
    char* end = nullptr;
    const double t = words.size() > 1 ? std::strtod(words[1].c_str(), &end) : -1.0;
    if (words.size() < 2 || *end != '\0' || !(t >= 0.0) || t > 1e6) {
        *error = "at needs a time in seconds";
        return false;
    }
    if (words.size() < 3 || (words[2] != "video" && words[2] != "audio")) {
        *error = "at needs 'video' or 'audio' after the time";
        return false;
    }
    TimedChange c;
    c.atUs = static_cast<int64_t>(std::llround(t * 1e6));
    c.video = words[2] == "video";
    c.line = line;
    Assignments as;
    if (!SplitAssignments(words, 3, &as, error)) return false;
    c.assignments = as;
    for (const auto& kv : as)
        if (kv.first == "pid" && !ParseNumber(kv.second, 1, 0x1FFE, &c.pid)) return BadValue("pid", kv.second, error);
    input.changes.push_back(c);
    return true;
}

bool CScenarioReader::Finish(std::string* error) {
    if (!input.services.empty() && !m_pcrGiven) {
        auto& last = input.services.back();
        last.pcrPid = last.video.empty() ? (last.audio.empty() ? 0 : last.audio[0].pid) : last.video[0].pid;
    }
    std::stable_sort(input.changes.begin(), input.changes.end(),
                     [](const TimedChange& a, const TimedChange& b) { return a.atUs < b.atUs; });
    // Every change must apply to the input as it will be at that time.
    StreamInput scratch = input;
    for (const auto& c : input.changes) {
        if (!ApplyChange(scratch, c, error)) {
            line = c.line;
            return false;
        }
    }
    return true;
}

std::string WithLine(int line, const std::string& msg) { return "line " + std::to_string(line) + ": " + msg; }

}  // namespace

bool ParseScenario(const std::string& text, StreamInput* out, std::string* error) {
    CScenarioReader reader;
    std::istringstream is(text);
    std::string line, err;
    while (std::getline(is, line)) {
        ++reader.line;
        std::vector<std::string> words;
        if (!Tokenize(line, &words, &err) || (!words.empty() && !reader.Line(words, &err))) {
            *error = WithLine(reader.line, err);
            return false;
        }
    }
    if (!reader.Finish(&err)) {
        *error = WithLine(reader.line, err);
        return false;
    }
    reader.input.source = "text";
    *out = reader.input;
    return true;
}

bool ParseChangeArgs(const std::string& args, bool video, TimedChange* c, std::string* error) {
    std::vector<std::string> words;
    Assignments as;
    if (!Tokenize(args, &words, error) || !SplitAssignments(words, 0, &as, error)) return false;
    if (as.empty()) {
        *error = "nothing to change";
        return false;
    }
    TimedChange parsed;
    parsed.video = video;
    parsed.assignments = as;
    for (const auto& kv : as)
        if (kv.first == "pid" && !ParseNumber(kv.second, 1, 0x1FFE, &parsed.pid)) return BadValue("pid", kv.second, error);
    VideoStream v;
    AudioStream a;
    if (video ? !ApplyVideo(v, as, error) : !ApplyAudio(a, as, error)) return false;
    *c = parsed;
    return true;
}

bool ApplyChange(StreamInput& in, const TimedChange& c, std::string* error) {
    std::ostringstream pid;
    pid << "0x" << std::hex << c.pid;
    if (c.video) {
        VideoStream* v = c.pid ? in.FindVideo(c.pid) : in.FirstVideo();
        if (!v) {
            *error = c.pid ? "no video stream with PID " + pid.str() : "the input has no video stream";
            return false;
        }
        VideoStream changed = *v;
        if (!ApplyVideo(changed, c.assignments, error)) return false;
        *v = changed;
    } else {
        AudioStream* a = c.pid ? in.FindAudio(c.pid) : in.FirstAudio();
        if (!a) {
            *error = c.pid ? "no audio stream with PID " + pid.str() : "the input has no audio stream";
            return false;
        }
        AudioStream changed = *a;
        if (!ApplyAudio(changed, c.assignments, error)) return false;
        *a = changed;
    }
    return true;
}

}  // namespace stbsim
