// CBoard core: the singleton, system calls, input and time, format events and
// the event thread, fault injection.
#include "sim/board.h"

#include <atomic>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sim/board_codes.h"
#include "sim/scenario_parser.h"
#include "sim/stream_source.h"

namespace stbsim {

namespace {

std::atomic<CBoard*> g_board{nullptr};

const char* const kFunctions[] = {
    "system_init", "system_deinit", "system_upgrade",
    "av_init", "av_create", "av_prepare", "av_set_event_config", "av_start_video", "av_start_audio", "av_stop",
    "av_stop_video", "av_reset", "av_set_config", "av_get_config", "av_search_progInfo", "av_get_status_info",
    "av_get_stream_info", "av_destory", "av_deinit",
    "vout_init", "vout_deinit", "vout_open_channel", "vout_close_channel", "vout_display_get", "vout_display_set",
    "vout_window_create", "vout_window_destroy", "vout_window_attach_input", "vout_window_detach_input",
    "vout_window_open", "vout_window_close",
    "aout_init", "aout_deinit", "aout_open", "aout_close", "aout_set_volume", "aout_set_mute", "aout_track_create",
    "aout_track_destroy", "aout_track_attach_input", "aout_track_detach_input",
    "cc_init", "cc_deinit", "cc_creat", "cc_destroy", "cc_set_window", "cc_start", "cc_stop", "cc_getAttr",
    "cc_setAttr", "cc_send_VBI_enable", "cc_show_subtitle_enable",
};

// Two video streams show the same picture format (the PID aside).
bool SameFormat(const VideoStream& a, const VideoStream& b) {
    return a.codec == b.codec && a.width == b.width && a.height == b.height && a.field == b.field &&
           a.fps == b.fps && a.dar == b.dar && a.sar == b.sar && a.profile == b.profile && a.level == b.level &&
           a.chroma == b.chroma && a.bitDepth == b.bitDepth;
}

AvVideoFormatEvent EventData(const VideoStream& v) {
    AvVideoFormatEvent e{};
    e.video_pid = v.pid;
    e.chroma_format = ChromaCode(v.chroma);
    e.video_type = PlatformVideoType(v.codec);
    e.field_order = static_cast<uint32_t>(v.field);
    e.frame_rate_num = v.fps.num;
    e.frame_rate_den = v.fps.den;
    e.bit_depth = BitDepthCode(v.bitDepth);
    e.profile = v.profile;
    e.level = v.level;
    e.source_width = v.width;
    e.source_height = v.height;
    e.aspect_first = v.dar.num;
    e.aspect_second = v.dar.den;
    return e;
}

}  // namespace

CBoard& CBoard::Instance() {
    // Created once and never destroyed: the library's threads and late calls
    // during process exit must never see a destroyed board.
    static CBoard* board = [] {
        CBoard* b = new CBoard();
        g_board.store(b);
        return b;
    }();
    return *board;
}

CBoard* CBoard::Existing() { return g_board.load(); }

bool CBoard::IsFunction(const std::string& name) {
    for (const char* f : kFunctions)
        if (name == f) return true;
    return false;
}

CBoard::CBoard() : m_control(new CControlServer([this](const std::string& line) { return Command(line); })) {
    PowerOn();
}

// Everything but the threads back to how the board starts. Needs the lock
// (or a board no other thread can see yet).
void CBoard::PowerOn() {
    m_system = m_avInit = false;
    m_preparedAddress.clear();
    m_player = Player{};
    m_display = Display{};
    m_display.attr.format = VOUT_FORMAT_720P;
    m_display.attr.rate = 64;
    m_display.attr.brightness = m_display.attr.contrast = m_display.attr.saturation = m_display.attr.hue = 50;
    m_aout = AudioOut{};
    m_cc = Captions{};
    m_upgrades.clear();
    m_faults.clear();
    m_events.clear();
    m_envRead = false;
    InstallInput(DefaultInput(), MonotonicUs());
}

// ---- environment, faults

void CBoard::OnCall() {
    std::string control;
    {
        Lock lock(m_mutex);
        if (m_envRead) return;
        m_envRead = true;
        const char* j = getenv("STBSIM_JOURNAL");
        m_journal.SetEcho(j ? j : "");
        const char* c = getenv("STBSIM_CONTROL");
        if (c && *c) control = c;
    }
    std::string error;
    if (!control.empty() && !StartControl(control, &error)) fprintf(stderr, "stbsim: control socket: %s\n", error.c_str());
}

bool CBoard::TakeFault(const char* function, int* code) {
    Lock lock(m_mutex);
    auto it = m_faults.find(function);
    if (it == m_faults.end()) return false;
    *code = it->second.code;
    if (--it->second.remaining == 0) m_faults.erase(it);
    return true;
}

bool CBoard::InjectFault(const std::string& function, int code, unsigned count) {
    if (!IsFunction(function)) return false;
    Lock lock(m_mutex);
    if (count == 0) m_faults.erase(function);
    else m_faults[function] = Fault{code, count};
    return true;
}

// ---- input and time

void CBoard::InstallInput(StreamInput input, int64_t nowUs) {
    for (auto& s : input.services)
        for (auto& v : s.video) FinaliseVideo(v);
    m_input = std::move(input);
    m_inputLoadedUs = nowUs;
    m_nextChange = 0;
    // The PTS of every audio stream counts from the moment the input appeared.
    m_player.ptsPid = 0;
    Retune(nowUs);
    DetectFormatChange();
    m_cv.notify_all();
}

bool CBoard::SetInput(const StreamInput& input) {
    Lock lock(m_mutex);
    const int64_t now = MonotonicUs();
    Sync(now);
    InstallInput(input, now);
    return true;
}

bool CBoard::LoadInputFile(const std::string& path, std::string* error) {
    StreamInput in;
    if (!LoadStreamInput(path, &in, error)) return false;
    return SetInput(in);
}

bool CBoard::ChangeNow(const TimedChange& change, std::string* error) {
    Lock lock(m_mutex);
    const int64_t now = MonotonicUs();
    Sync(now);
    StreamInput changed = m_input;
    if (!ApplyChange(changed, change, error)) return false;
    m_input.services = changed.services;
    MarkPtsChange(change, now);
    Retune(now);
    DetectFormatChange();
    return true;
}

// A change that sets an audio stream's PTS sets it for that moment.
void CBoard::MarkPtsChange(const TimedChange& c, int64_t atUs) {
    if (c.video) return;
    for (const auto& kv : c.assignments) {
        if (kv.first != "pts") continue;
        AudioStream* a = c.pid ? m_input.FindAudio(c.pid) : m_input.FirstAudio();
        if (a) a->ptsAtUs = atUs;
    }
}

uint64_t CBoard::StreamPts(const AudioStream& a, int64_t nowUs) const {
    const int64_t from = a.ptsAtUs ? a.ptsAtUs : m_inputLoadedUs;
    const int64_t since = nowUs > from ? nowUs - from : 0;
    return (a.ptsStart + static_cast<uint64_t>(since) * 9 / 100) & ((uint64_t{1} << 33) - 1);
}

uint64_t CBoard::PlayerPts(int64_t nowUs) const {
    const AudioStream* a = m_player.ptsPid ? m_input.FindAudio(m_player.ptsPid) : nullptr;
    return a ? StreamPts(*a, nowUs) : m_player.heldPts;
}

void CBoard::Sync(int64_t nowUs) {
    while (m_nextChange < m_input.changes.size()) {
        const TimedChange& c = m_input.changes[m_nextChange];
        const int64_t at = m_inputLoadedUs + c.atUs;
        if (at > nowUs) break;
        ++m_nextChange;
        Retune(at);
        StreamInput changed = m_input;
        std::string ignored;  // every change was checked when the scenario was read
        if (ApplyChange(changed, c, &ignored)) m_input.services = changed.services;
        MarkPtsChange(c, at);
        Retune(at);
    }
    Retune(nowUs);
    DetectFormatChange();
}

// Settles the counters at nowUs with the rates in force so far, then sets the
// rates from the current state.
void CBoard::Retune(int64_t nowUs) {
    Player& p = m_player;
    p.videoFrames.Settle(nowUs);
    p.audioFrames.Settle(nowUs);
    p.heldPts = PlayerPts(nowUs);
    const VideoStream* v = DecodedVideo();
    const AudioStream* a = DecodedAudio();
    p.videoFrames.perSec = v && v->fps.den ? static_cast<double>(v->fps.num) / v->fps.den : 0.0;
    p.audioFrames.perSec = a ? static_cast<double>(a->sampleRate) / SamplesPerFrame(a->codec) : 0.0;
    p.ptsPid = a ? a->pid : 0;
}

// The video stream being decoded: the configured PID is carried, its codec is
// the configured one and video is started.
const VideoStream* CBoard::DecodedVideo() const {
    const Player& p = m_player;
    if (!p.exists || !p.videoStarted || p.settings.video_pid == 0) return nullptr;
    const VideoStream* v = m_input.FindVideo(p.settings.video_pid);
    return v && PlatformVideoType(v->codec) == p.settings.video_type ? v : nullptr;
}

const AudioStream* CBoard::DecodedAudio() const {
    const Player& p = m_player;
    if (!p.exists || !p.audioStarted || p.settings.audio_pid == 0) return nullptr;
    const AudioStream* a = m_input.FindAudio(p.settings.audio_pid);
    if (!a) return nullptr;
    // One MPEG audio decoder serves both MPEG codes, one AAC decoder both AAC codes.
    const uint32_t have = PlatformAudioType(a->codec), want = p.settings.audio_type;
    const auto family = [](uint32_t t) { return t <= 1 ? 0u : (t == 2 || t == 3) ? 2u : t; };
    return family(have) == family(want) ? a : nullptr;
}

void CBoard::DetectFormatChange() {
    Player& p = m_player;
    const VideoStream* v = DecodedVideo();
    if (!v || (p.reported && SameFormat(*v, p.lastFormat))) return;
    p.reported = true;
    p.lastFormat = *v;
    if (!p.eventsEnabled || p.events.eventClass != AV_EVENT_VIDEO_FORMAT_CHANGED || !p.events.callback) return;
    m_events.push_back(PendingEvent{p.handle, p.events.callback, EventData(*v)});
    m_cv.notify_all();
}

// ---- event thread

bool CBoard::OnEventThread() {
    Lock lock(m_mutex);
    return m_eventThreadId != std::thread::id() && m_eventThreadId == std::this_thread::get_id();
}

// The journal's text of a callback: the handle, the event and the data words the board filled.
std::string CBoard::CallbackArgs(const PendingEvent& e) {
    const AvVideoFormatEvent& d = e.data;
    char buf[320];
    snprintf(buf, sizeof buf,
             "handle=%#x, event=2, data={video_pid=%u, chroma_format=%u, video_type=%u, field_order=%u, "
             "frame_rate_num=%u, frame_rate_den=%u, bit_depth=%u, profile=%u, level=%u, source_width=%u, "
             "source_height=%u, aspect_first=%u, aspect_second=%u}",
             e.handle, d.video_pid, d.chroma_format, d.video_type, d.field_order, d.frame_rate_num, d.frame_rate_den,
             d.bit_depth, d.profile, d.level, d.source_width, d.source_height, d.aspect_first, d.aspect_second);
    return buf;
}

void CBoard::StartEventThread() {
    Lock lock(m_mutex);
    if (m_eventThread.joinable()) return;
    m_eventStop = false;
    m_eventThread = std::thread(&CBoard::EventLoop, this);
    m_eventThreadId = m_eventThread.get_id();
}

void CBoard::StopEventThread() {
    std::thread t;
    {
        Lock lock(m_mutex);
        m_eventStop = true;
        m_events.clear();
        m_cv.notify_all();
        t = std::move(m_eventThread);
        m_eventThreadId = std::thread::id();
    }
    if (!t.joinable()) return;
    if (t.get_id() == std::this_thread::get_id()) t.detach();  // stopped from inside a callback
    else t.join();
}

void CBoard::EventLoop() {
    try {
        EventLoopBody();
    } catch (...) {
        fprintf(stderr, "stbsim: event thread stopped by an internal failure\n");
    }
}

void CBoard::EventLoopBody() {
    Lock lock(m_mutex);
    while (!m_eventStop) {
        const int64_t now = MonotonicUs();
        Sync(now);
        if (!m_events.empty()) {
            const PendingEvent e = m_events.front();
            m_events.pop_front();
            if (!LivePlayer(e.handle) || !m_player.eventsEnabled) continue;
            m_callbackInFlight = true;
            lock.unlock();
            int r = 0;
            try {
                r = e.callback(e.handle, AV_EVENT_VIDEO_FORMAT_CHANGED, &e.data);
            } catch (...) {
                r = kErrInternal;
            }
            JournalEntry entry;
            entry.name = "callback";
            entry.args = CallbackArgs(e);
            entry.result = r;
            m_journal.Add(std::move(entry));
            lock.lock();
            m_callbackInFlight = false;
            m_cv.notify_all();
            continue;
        }
        if (m_nextChange < m_input.changes.size()) {
            const int64_t due = m_inputLoadedUs + m_input.changes[m_nextChange].atUs;
            m_cv.wait_for(lock, std::chrono::microseconds(due > now ? due - now : 0));
        } else {
            m_cv.wait(lock);
        }
    }
}

void CBoard::WaitNoCallback(Lock& lock) {
    if (std::this_thread::get_id() == m_eventThreadId) return;
    m_cv.wait(lock, [this] { return !m_callbackInFlight; });
}

// ---- system

int CBoard::SystemInit(uint32_t) {
    {
        Lock lock(m_mutex);
        if (m_system) return 0;
    }
    // The input file is read before the lock is taken: probing an MPEG-TS file takes a while.
    const char* path = getenv("STBSIM_STREAM");
    const bool haveFile = path && *path;
    StreamInput in;
    std::string control, error;
    if (haveFile && !LoadStreamInput(path, &in, &error)) {
        fprintf(stderr, "stbsim: STBSIM_STREAM: %s\n", error.c_str());
        return kErrInvalidParam;
    }
    {
        Lock lock(m_mutex);
        if (m_system) return 0;
        if (haveFile) InstallInput(in, MonotonicUs());
        m_system = true;
        const char* c = getenv("STBSIM_CONTROL");
        if (c && *c) control = c;
    }
    StartEventThread();
    if (!control.empty() && !StartControl(control, &error)) fprintf(stderr, "stbsim: control socket: %s\n", error.c_str());
    return 0;
}

int CBoard::SystemDeinit() {
    {
        Lock lock(m_mutex);
        if (!m_system) return kErrNotInitialised;
        WaitNoCallback(lock);
        Sync(MonotonicUs());
        m_system = false;
        m_avInit = false;
        m_player = Player{};
        ResetOutputs();
    }
    StopEventThread();
    StopControl();
    return 0;
}

// Video and audio output state back to power-on (captions are a module of
// their own and keep theirs).
void CBoard::ResetOutputs() {
    const VoutDisplayAttr attr = m_display.attr;
    m_display = Display{};
    m_display.attr = attr;  // the display keeps showing what it was set to
    m_aout = AudioOut{};
}

int CBoard::SystemUpgrade(const char* path) {
    if (!path) return kErrNullPointer;
    Lock lock(m_mutex);
    m_upgrades.push_back(path);
    return 0;
}

uint32_t CBoard::NewHandle(uint32_t kind) {
    m_handleSeq = (m_handleSeq % 0xFFFF) + 1;
    return kind << 16 | m_handleSeq;
}

// ---- control

void CBoard::Reset() {
    StopEventThread();
    StopControl();
    Lock lock(m_mutex);
    PowerOn();
    m_journal.Clear();
    m_journal.SetEcho("");
}

bool CBoard::StartControl(const std::string& path, std::string* error) { return m_control->Start(path, error); }

void CBoard::StopControl() { m_control->Stop(); }

void CBoard::Shutdown() {
    StopEventThread();
    StopControl();
}

}  // namespace stbsim
