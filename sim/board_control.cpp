// CBoard: state snapshots, the state JSON and the control commands.
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "sim/board.h"
#include "sim/board_codes.h"
#include "sim/json_writer.h"
#include "sim/scenario_parser.h"

namespace stbsim {

namespace {

const char kHelp[] =
    "commands: state | journal | reset-journal | stream FILE | fail FUNCTION CODE [COUNT] | "
    "video KEY=VALUE... | audio KEY=VALUE... | help\n";

bool ParseInt(const std::string& s, long long min, long long max, long long* out) {
    if (s.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const long long v = std::strtoll(s.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || v < min || v > max) return false;
    *out = v;
    return true;
}

void WriteVideo(CJsonWriter& w, const VideoStream& v) {
    w.Begin()
        .Num("pid", v.pid)
        .Str("codec", VideoCodecName(v.codec))
        .Num("width", v.width)
        .Num("height", v.height)
        .Str("scan", FieldOrderName(v.field))
        .Num("fps_num", v.fps.num)
        .Num("fps_den", v.fps.den)
        .Str("aspect", std::to_string(v.dar.num) + ":" + std::to_string(v.dar.den))
        .Num("profile", v.profile)
        .Num("level", v.level)
        .Str("chroma", ChromaName(v.chroma))
        .Num("depth", v.bitDepth)
        .End();
}

void WriteAudio(CJsonWriter& w, const AudioStream& a) {
    w.Begin()
        .Num("pid", a.pid)
        .Str("codec", AudioCodecName(a.codec))
        .Num("rate", a.sampleRate)
        .Num("channels", a.channels)
        .Bool("lfe", a.lfe)
        .Num("bits", a.bitsPerSample)
        .Num("bitrate", static_cast<int64_t>(a.bitRate))
        .End();
}

}  // namespace

BoardState CBoard::State() {
    Lock lock(m_mutex);
    const int64_t now = MonotonicUs();
    Sync(now);
    BoardState s;
    s.systemInitialised = m_system;
    const Player& p = m_player;
    s.player.exists = p.exists;
    s.player.handle = p.handle;
    s.player.settings = p.settings;
    s.player.videoStarted = p.videoStarted;
    s.player.audioStarted = p.audioStarted;
    s.player.eventsEnabled = p.eventsEnabled;
    s.player.preparedAddress = m_preparedAddress;
    s.player.videoDecoding = DecodedVideo() != nullptr;
    s.player.audioDecoding = DecodedAudio() != nullptr;
    if (p.exists) {
        AvStatusInfo st;
        FillStatus(&st, now);
        s.player.videoPidInUse = st.video_pid;
        s.player.audioPidInUse = st.audio_pid;
        s.player.pcrPidInUse = st.pcr_pid;
        s.player.videoFrames = st.video_frame_count;
        s.player.audioFrames = st.audio_frame_count;
        s.player.audioPts = st.audio_pts;
    }
    s.display = {m_display.init, m_display.open, m_display.handle, m_display.attr, m_display.window,
                 m_display.windowOpen, m_display.windowHandle, m_display.windowInput, m_display.windowOpenCount};
    s.audio = {m_aout.init, m_aout.open, m_aout.handle, m_aout.track, m_aout.trackHandle,
               m_aout.trackInput, m_aout.volume, m_aout.volumeLinear, m_aout.mute};
    s.captions.initialised = m_cc.init;
    s.captions.created = m_cc.created;
    s.captions.started = m_cc.started;
    s.captions.initMode = m_cc.initMode;
    s.captions.createSource = m_cc.createSource;
    for (int i = 0; i < 4; ++i) s.captions.window[i] = m_cc.window[i];
    s.captions.attr = m_cc.attr;
    s.captions.vbi = m_cc.vbi;
    s.captions.subtitles = m_cc.subtitles;
    s.upgrades = m_upgrades;
    return s;
}

std::string CBoard::StateJson() {
    const BoardState s = State();
    Lock lock(m_mutex);
    CJsonWriter w;
    w.Begin().Begin("system").Bool("initialised", s.systemInitialised).End();
    const auto& d = s.display;
    w.Begin("display")
        .Bool("initialised", d.initialised)
        .Bool("channel_open", d.channelOpen)
        .Num("handle", d.channelHandle)
        .Num("format", d.attr.format)
        .Num("rate", d.attr.rate)
        .Begin("window")
        .Bool("exists", d.windowExists)
        .Num("handle", d.windowHandle)
        .Bool("open", d.windowOpen)
        .Num("input", d.windowInput)
        .Num("open_count", d.windowOpenCount)
        .End()
        .End();
    const auto& p = s.player;
    w.Begin("player")
        .Bool("exists", p.exists)
        .Num("handle", p.handle)
        .Num("video_pid", p.settings.video_pid)
        .Num("audio_pid", p.settings.audio_pid)
        .Num("pcr_pid", p.settings.pcr_pid)
        .Num("video_type", p.settings.video_type)
        .Num("audio_type", p.settings.audio_type)
        .Num("service_id", p.settings.service_id)
        .Str("service_name", std::string(p.settings.service_name, strnlen(p.settings.service_name, 34)))
        .Bool("video_started", p.videoStarted)
        .Bool("audio_started", p.audioStarted)
        .Bool("video_decoding", p.videoDecoding)
        .Bool("audio_decoding", p.audioDecoding)
        .Bool("events_enabled", p.eventsEnabled)
        .Num("video_pid_in_use", p.videoPidInUse)
        .Num("audio_pid_in_use", p.audioPidInUse)
        .Num("pcr_pid_in_use", p.pcrPidInUse)
        .Num("video_frames", p.videoFrames)
        .Num("audio_frames", p.audioFrames)
        .Num("audio_pts", static_cast<int64_t>(p.audioPts))
        .Str("prepared_address", p.preparedAddress)
        .End();
    const auto& a = s.audio;
    w.Begin("audio")
        .Bool("initialised", a.initialised)
        .Bool("open", a.open)
        .Num("handle", a.handle)
        .Num("volume", a.volume)
        .Bool("volume_linear", a.volumeLinear)
        .Bool("mute", a.mute)
        .Begin("track")
        .Bool("exists", a.trackExists)
        .Num("handle", a.trackHandle)
        .Num("input", a.trackInput)
        .End()
        .End();
    const auto& c = s.captions;
    w.Begin("captions")
        .Bool("initialised", c.initialised)
        .Bool("created", c.created)
        .Bool("started", c.started)
        .Num("init_mode", c.initMode)
        .Num("create_source", c.createSource)
        .BeginList("window");
    for (uint32_t v : c.window) w.Num(nullptr, v);
    w.EndList()
        .Begin("attr")
        .Num("source", c.attr.source)
        .Num("data_type", c.attr.data_type)
        .Num("analog_mode", c.attr.analog_mode)
        .Num("digital_mode", c.attr.digital_mode)
        .End()
        .Bool("vbi", c.vbi)
        .Bool("subtitles", c.subtitles)
        .End();
    w.BeginList("upgrades");
    for (const auto& u : s.upgrades) w.Str(nullptr, u);
    w.EndList();
    WriteInputJson(w, MonotonicUs());
    w.End();
    return w.Text();
}

// The input and the injected faults. Needs the lock.
void CBoard::WriteInputJson(CJsonWriter& w, int64_t nowUs) {
    w.Begin("input")
        .Str("source", m_input.source)
        .Num("elapsed_ms", (nowUs - m_inputLoadedUs) / 1000)
        .Num("pending_changes", static_cast<int64_t>(m_input.changes.size() - m_nextChange))
        .BeginList("services");
    for (const Service& s : m_input.services) {
        w.Begin().Num("id", s.id).Str("name", s.name).Num("pcr", s.pcrPid).BeginList("video");
        for (const VideoStream& v : s.video) WriteVideo(w, v);
        w.EndList().BeginList("audio");
        for (const AudioStream& a : s.audio) WriteAudio(w, a);
        w.EndList().End();
    }
    w.EndList().End().BeginList("faults");
    for (const auto& f : m_faults)
        w.Begin().Str("function", f.first).Num("code", f.second.code).Num("remaining", f.second.remaining).End();
    w.EndList();
}

std::string CBoard::Command(const std::string& line) {
    std::istringstream is(line);
    std::string verb, rest;
    is >> verb;
    std::getline(is, rest);
    const size_t first = rest.find_first_not_of(" \t");
    rest = first == std::string::npos ? "" : rest.substr(first);
    try {
        return RunCommand(verb, rest);
    } catch (const std::exception& e) {
        return std::string("error: ") + e.what() + "\n";
    } catch (...) {
        return "error: internal failure\n";
    }
}

std::string CBoard::RunCommand(const std::string& verb, const std::string& rest) {
    std::string error;
    if (verb == "state") return StateJson() + "\n";
    if (verb == "journal") return m_journal.Text();
    if (verb == "reset-journal") {
        m_journal.Clear();
        return "ok\n";
    }
    if (verb == "help") return kHelp;
    if (verb == "stream") {
        if (rest.empty()) return "error: stream needs a file name\n";
        return LoadInputFile(rest, &error) ? "ok\n" : "error: " + error + "\n";
    }
    if (verb == "video" || verb == "audio") {
        TimedChange c;
        if (!ParseChangeArgs(rest, verb == "video", &c, &error) || !ChangeNow(c, &error)) return "error: " + error + "\n";
        return "ok\n";
    }
    if (verb == "fail") {
        std::istringstream args(rest);
        std::string fn, code, count, extra;
        args >> fn >> code >> count >> extra;
        long long c = 0, n = 1;
        if (fn.empty() || !ParseInt(code, INT32_MIN, UINT32_MAX, &c) || (!count.empty() && !ParseInt(count, 0, 1000000, &n)) ||
            !extra.empty())
            return "error: usage: fail FUNCTION CODE [COUNT]\n";
        if (!InjectFault(fn, static_cast<int>(static_cast<uint32_t>(c)), static_cast<unsigned>(n)))
            return "error: unknown function '" + fn + "'\n";
        return "ok\n";
    }
    return "error: unknown command '" + verb + "' (try help)\n";
}

}  // namespace stbsim
