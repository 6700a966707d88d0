// CBoard: the AV player calls and the status and stream information records.
#include <arpa/inet.h>

#include <cstring>

#include "sim/board.h"
#include "sim/board_codes.h"

namespace stbsim {

namespace {

constexpr uint32_t kAvHandleKind = 0x00A1;
constexpr uint32_t kPlayersAvailable = 1;

bool KnownVideoType(uint32_t t) { return t == 0 || t == 2 || t == 5 || t == 38 || t == 44; }
bool KnownAudioType(uint32_t t) { return t <= 5 || t == 53; }

void CopyName(const std::string& name, char* out, size_t size) {
    memset(out, 0, size);
    memcpy(out, name.data(), name.size() < size ? name.size() : size - 1);
}

}  // namespace

int CBoard::AvInit(uint32_t* initResult, const IpInputParams*) {
    if (!initResult) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_system) return kErrNotInitialised;
    m_avInit = true;
    *initResult = kPlayersAvailable;
    return 0;
}

int CBoard::AvCreate(uint32_t* handle, const AvCreateAttr* attr) {
    if (!handle || !attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_avInit) return kErrNotInitialised;
    if (m_player.exists) return kErrNoResource;
    Sync(MonotonicUs());
    m_player = Player{};
    m_player.exists = true;
    m_player.handle = NewHandle(kAvHandleKind);
    *handle = m_player.handle;
    return 0;
}

int CBoard::AvPrepare(const char* address) {
    if (!address) return kErrNullPointer;
    in_addr a{};
    if (inet_pton(AF_INET, address, &a) != 1) return kErrInvalidParam;
    Lock lock(m_mutex);
    if (!m_avInit) return kErrNotInitialised;
    m_preparedAddress = address;
    return 0;
}

int CBoard::AvSetEventConfig(uint32_t handle, const AvEventConfig* config, uint32_t) {
    if (!config) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    if (config->enable == 1 && !config->callback) return kErrInvalidParam;
    if (config->enable != 1) WaitNoCallback(lock);
    m_player.events = *config;
    m_player.eventsEnabled = config->enable == 1;
    return 0;
}

int CBoard::AvStart(uint32_t handle, bool video, bool audio) {
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    const int64_t now = MonotonicUs();
    Sync(now);
    m_player.videoStarted |= video;
    m_player.audioStarted |= audio;
    Retune(now);
    DetectFormatChange();
    return 0;
}

int CBoard::AvStop(uint32_t handle, bool video, bool audio) {
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    const int64_t now = MonotonicUs();
    Sync(now);
    if (video) m_player.videoStarted = false;
    if (audio) m_player.audioStarted = false;
    Retune(now);
    return 0;
}

// Clearing the decoder buffers restarts the frame counts.
int CBoard::AvReset(uint32_t handle) {
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    const int64_t now = MonotonicUs();
    Sync(now);
    m_player.videoFrames.base = m_player.audioFrames.base = 0;
    return 0;
}

int CBoard::AvSetConfig(uint32_t handle, const _AV_SETTING_S* settings) {
    if (!settings) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    if (!KnownVideoType(settings->video_type) || !KnownAudioType(settings->audio_type) ||
        settings->video_pid > 0x1FFF || settings->audio_pid > 0x1FFF || settings->pcr_pid > 0x1FFF)
        return kErrInvalidParam;
    const int64_t now = MonotonicUs();
    Sync(now);
    m_player.settings = *settings;
    Retune(now);
    DetectFormatChange();
    return 0;
}

int CBoard::AvGetConfig(uint32_t handle, _AV_SETTING_S* settings) {
    if (!settings) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    *settings = m_player.settings;
    return 0;
}

// The first programme of the input, as a settings record.
int CBoard::AvSearchProgInfo(_AV_SETTING_S* settings) {
    if (!settings) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_avInit) return kErrNotInitialised;
    Sync(MonotonicUs());
    if (m_input.services.empty()) return kErrNotFound;
    const Service& s = m_input.services.front();
    settings->service_id = s.id;
    settings->pcr_pid = s.pcrPid;
    settings->video_pid = s.video.empty() ? 0 : s.video[0].pid;
    settings->video_type = s.video.empty() ? 0 : PlatformVideoType(s.video[0].codec);
    settings->audio_pid = s.audio.empty() ? 0 : s.audio[0].pid;
    settings->audio_type = s.audio.empty() ? 0 : PlatformAudioType(s.audio[0].codec);
    CopyName(s.name, settings->service_name, sizeof settings->service_name);
    return 0;
}

int CBoard::AvGetStatusInfo(uint32_t handle, AvStatusInfo* status) {
    if (!status) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    const int64_t now = MonotonicUs();
    Sync(now);
    FillStatus(status, now);
    return 0;
}

void CBoard::FillStatus(AvStatusInfo* s, int64_t nowUs) const {
    const Player& p = m_player;
    memset(s, 0, sizeof *s);
    s->video_state = p.videoStarted ? 1 : 0;
    s->audio_state = p.audioStarted ? 1 : 0;
    if (p.settings.video_pid && m_input.FindVideo(p.settings.video_pid)) s->video_pid = p.settings.video_pid;
    if (p.settings.audio_pid && m_input.FindAudio(p.settings.audio_pid)) s->audio_pid = p.settings.audio_pid;
    if (p.settings.pcr_pid && m_input.CarriesPcr(p.settings.pcr_pid)) s->pcr_pid = p.settings.pcr_pid;
    s->video_frame_count = static_cast<uint32_t>(p.videoFrames.At(nowUs));
    s->audio_frame_count = static_cast<uint32_t>(p.audioFrames.At(nowUs));
    s->audio_pts = PlayerPts(nowUs);
    if (const VideoStream* v = DecodedVideo()) {
        s->video_type = PlatformVideoType(v->codec);
        s->video_field_order = static_cast<uint32_t>(v->field);
        FrameRateParts(v->fps, &s->frame_rate_int, &s->frame_rate_dec);
        s->width = v->width;
        s->height = v->height;
        s->bit_width = v->bitDepth;
    }
    if (const AudioStream* a = DecodedAudio()) {
        s->audio_channels = a->channels;
        s->audio_format = AudioFormatCode(a->codec);
        s->audio_sample_rate = a->sampleRate;
        s->audio_bits_per_sample = a->bitsPerSample;
        s->audio_bit_rate = static_cast<uint32_t>(a->bitRate);
    }
}

int CBoard::AvGetStreamInfo(uint32_t handle, AvStreamInfo* info) {
    if (!info) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    Sync(MonotonicUs());
    FillStreamInfo(info);
    return 0;
}

void CBoard::FillStreamInfo(AvStreamInfo* info) const {
    memset(info, 0, sizeof *info);
    for (const Service& s : m_input.services) {
        if (info->service_count < 16) {
            AvServiceEntry& e = info->service[info->service_count++];
            e.program_number = s.id;
            CopyName(s.name, e.name, sizeof e.name);
        }
        for (const VideoStream& v : s.video) {
            if (info->video_count >= 16) break;
            AvVideoStreamEntry& e = info->video[info->video_count++];
            e.pid = v.pid;
            e.video_type = PlatformVideoType(v.codec);
            e.width = v.width;
            e.height = v.height;
            e.aspect_first = v.sar.num;
            e.aspect_second = v.sar.den;
            e.frame_rate_num = v.fps.num;
            e.frame_rate_den = v.fps.den;
            e.field_order = static_cast<uint32_t>(v.field);
            e.profile = v.profile;
            e.level = v.level;
            e.chroma_format = ChromaCode(v.chroma);
            e.bit_depth = BitDepthCode(v.bitDepth);
        }
        for (const AudioStream& a : s.audio) {
            if (info->audio_count >= 16) break;
            AvAudioStreamEntry& e = info->audio[info->audio_count++];
            e.pid = a.pid;
            e.audio_type = PlatformAudioType(a.codec);
            e.channels = a.channels;
            e.format = AudioFormatCode(a.codec);
            e.sample_rate = a.sampleRate;
            e.bits_per_sample = a.bitsPerSample;
            e.bit_rate = a.bitRate;
        }
    }
}

int CBoard::AvDestroy(uint32_t handle) {
    Lock lock(m_mutex);
    if (!LivePlayer(handle)) return kErrInvalidHandle;
    WaitNoCallback(lock);
    m_player = Player{};
    return 0;
}

int CBoard::AvDeinit() {
    Lock lock(m_mutex);
    if (!m_avInit) return kErrNotInitialised;
    WaitNoCallback(lock);
    m_player = Player{};
    m_avInit = false;
    return 0;
}

}  // namespace stbsim
