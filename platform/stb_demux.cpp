// Programme settings of the decoded service and their application to the AV
// player. Poller thread.
#include "platform/stb_demux.h"

#include <algorithm>
#include <cstring>

#include "toolkit/log.h"

namespace {

struct CodecEntry {
    int32_t type;       // VideoType_e / AudioType_e
    uint32_t platform;  // the player's codec code
    const char* text;   // debug line of the mapping
};

// Value 4 has no entry in either table; the fallbacks differ (video 0, audio 1)
// and the two AAC types share one text but not one code.
const CodecEntry kVideoCodecs[] = {
    {VIDEO_TYPE_MPEG2, 0, "\tVideo Stream Type MPEG2\n"}, {VIDEO_TYPE_H264, 5, "\tVideo Stream Type H264\n"},
    {VIDEO_TYPE_HEVC, 38, "\tVideo Stream Type HEVC\n"},  {VIDEO_TYPE_AVS, 2, "\tVideo Stream Type AVS\n"},
    {VIDEO_TYPE_AVS2, 44, "\tVideo Stream Type AVS2\n"},
};
const CodecEntry kVideoCodecUnknown = {0, 0, "\tVideo Stream Type error\n"};

const CodecEntry kAudioCodecs[] = {
    {AUDIO_TYPE_MPEG1, 0, "\tAudio Stream Type MPGE1\n"}, {AUDIO_TYPE_MPEG2, 1, "\tAudio Stream Type MPGE2\n"},
    {AUDIO_TYPE_AC3, 4, "\tAudio Stream Type AC3\n"},     {AUDIO_TYPE_EAC3, 5, "\tAudio Stream Type EAC3\n"},
    {AUDIO_TYPE_AAC_ADTS, 2, "\tAudio Stream Type AAC\n"}, {AUDIO_TYPE_AAC_LATM, 3, "\tAudio Stream Type AAC\n"},
    {AUDIO_TYPE_DRA, 53, "\tAudio Stream Type DRA\n"},
};
const CodecEntry kAudioCodecUnknown = {0, 1, "\tAudio Stream Type error\n"};

template <size_t N>
const CodecEntry& FindCodec(const CodecEntry (&table)[N], int32_t type, const CodecEntry& fallback) {
    for (const CodecEntry& e : table) {
        if (e.type == type) return e;
    }
    return fallback;
}

}  // namespace

StbDemux::StbDemux()
    : m_Logger(stbav::Logger("stbav.stbdemux")), m_AudioPids(kPidListSize, 0), m_ExtraPids(kPidListSize, 0) {
    memset(&m_Pending, 0, sizeof m_Pending);
    memset(&m_Applied, 0, sizeof m_Applied);
}

bool StbDemux::LoadPending(const char* name) {
    _AV_SETTING_S current;
    memset(&current, 0, sizeof current);
    if (av_get_config(m_AvHandle, &current) != 0) {
        stbav::LogError(m_Logger, "%s av_get_config error", name);
        return false;
    }
    stbav::LogDebug(m_Logger, "%s av_get_config success", name);
    memcpy(&m_Pending, &current, sizeof m_Pending);
    return true;
}

bool StbDemux::SetPid(uint16_t pid, EsType_e type) { return SetPid(pid, type, 0); }

bool StbDemux::SetPid(uint16_t pid, EsType_e type, uint16_t index) {
    stbav::LogDebug(m_Logger, "%s: Pid - %d, EsType - %d, Index - %d", "SetPid", int(pid), int(type), int(index));
    if (!LoadPending("SetPid")) return false;
    bool rejected = false;
    bool changed = ApplyPid(pid, type, index, &rejected);
    if (rejected) return false;
    if (changed) {
        stbav::LogDebug(m_Logger, "Send STOP_REQUIRED");
        RaiseEvent(DECODER_EVENT_STOP_REQUIRED);
    }
    return UpdateProgSettings() == 0;
}

// Audio, PCR and video compare against the PID this demux remembers, not
// against the player's record.
bool StbDemux::ApplyPid(uint16_t pid, EsType_e type, uint16_t index, bool* rejected) {
    switch (type) {
        case ES_TYPE_AUDIO:
            if (index >= m_AudioPids.size()) {
                *rejected = true;
                return false;
            }
            if (m_AudioPids[index] == pid) return false;
            m_AudioPids[index] = pid;
            m_Pending.audio_pid = pid;
            return true;
        case ES_TYPE_PCR:
            if (m_PcrPid == pid) return false;
            m_PcrPid = m_Pending.pcr_pid = pid;
            return true;
        case ES_TYPE_VIDEO:
            if (m_VideoPid == pid) return false;
            m_VideoPid = m_Pending.video_pid = pid;
            return true;
        case ES_TYPE_EXTRA:
            if (m_ExtraPid != pid) {
                m_ExtraPid = pid;
                RaiseEvent(DECODER_EVENT_PID_CHANGED);
            }
            return false;
        case ES_TYPE_EXTRA_INDEXED:
            if (index >= m_ExtraPids.size()) {
                *rejected = true;
                return false;
            }
            m_ExtraPids[index] = pid;
            return false;
        default:
            return false;
    }
}

uint16_t StbDemux::GetPid(EsType_e type) { return GetPid(type, 0); }

uint16_t StbDemux::GetPid(EsType_e type, uint16_t index) {
    stbav::LogDebug(m_Logger, "%s: EsType - %d, Index - %d", "GetPid", int(type), int(index));
    AvStatusInfo status;
    memset(&status, 0, sizeof status);
    if (av_get_status_info(m_AvHandle, &status) != 0) {
        stbav::LogError(m_Logger, "%s: av_get_status_info failed", "GetPid");
        return 0;
    }
    switch (type) {
        case ES_TYPE_AUDIO: return status.audio_pid;
        case ES_TYPE_PCR: return status.pcr_pid;
        case ES_TYPE_VIDEO: return status.video_pid;
        case ES_TYPE_EXTRA: return m_ExtraPid;
        case ES_TYPE_EXTRA_INDEXED:
            if (index >= m_ExtraPids.size()) {
                stbav::LogError(m_Logger, "Index %d is invalid", int(index));
                return 0;
            }
            return m_ExtraPids[index];
        default: return 0;
    }
}

// The name's bytes go in without a terminating NUL, so a shorter name keeps the
// player's bytes behind it. A name longer than the field is cut at the end of
// the record.
bool StbDemux::SetServiceName(std::string name) {
    if (!LoadPending("SetServiceName")) return false;
    memcpy(m_Pending.service_name, name.data(), std::min(name.size(), sizeof m_Pending.service_name));
    return UpdateProgSettings() == 0;
}

std::string StbDemux::GetServiceName() {
    _AV_SETTING_S current;
    memset(&current, 0, sizeof current);
    if (av_get_config(m_AvHandle, &current) != 0) {
        stbav::LogError(m_Logger, "%s av_get_config error", "GetServiceName");
        return "Undefined";
    }
    return std::string(current.service_name, strnlen(current.service_name, sizeof current.service_name));
}

bool StbDemux::SetServiceId(uint16_t id) {
    if (!LoadPending("SetServiceId")) return false;
    m_Pending.service_id = id;
    return UpdateProgSettings() == 0;
}

uint16_t StbDemux::GetServiceId() {
    _AV_SETTING_S current;
    memset(&current, 0, sizeof current);
    if (av_get_config(m_AvHandle, &current) != 0) {
        stbav::LogError(m_Logger, "%s av_get_config error", "GetServiceId");
        return 0;
    }
    return current.service_id;
}

bool StbDemux::SetServiceVideoCodecType(VideoType_e type) {
    if (!LoadPending("SetServiceVideoCodecType")) return false;
    const CodecEntry& codec = FindCodec(kVideoCodecs, type, kVideoCodecUnknown);
    stbav::LogDebug(m_Logger, "%s", codec.text);
    m_Pending.video_type = codec.platform;
    return UpdateProgSettings() == 0;
}

bool StbDemux::SetServiceAudioCodecType(AudioType_e type) {
    if (!LoadPending("SetServiceAudioCodecType")) return false;
    const CodecEntry& codec = FindCodec(kAudioCodecs, type, kAudioCodecUnknown);
    stbav::LogDebug(m_Logger, "%s", codec.text);
    m_Pending.audio_type = codec.platform;
    return UpdateProgSettings() == 0;
}

bool StbDemux::ClearBuffer() {
    av_stop(m_AvHandle);
    av_reset(m_AvHandle, 1);
    m_Changed = true;
    return UpdateProgSettings() == 0;
}

int StbDemux::GetProgSettings(_AV_SETTING_S* out) {
    memcpy(out, &m_Pending, sizeof m_Pending);
    return 0;
}

// A failed stop or configuration is only logged (the result stays 0) and the
// changed flag is cleared in every case: the next setter compares against
// settings the player may never have taken.
uint16_t StbDemux::UpdateProgSettings() {
    if (memcmp(&m_Pending, &m_Applied, sizeof m_Pending) != 0) {
        stbav::LogDebug(m_Logger, "%s progSettings is changed", "UpdateProgSettings");
        memcpy(&m_Applied, &m_Pending, sizeof m_Applied);
        m_Changed = true;
    }
    if (!m_Changed) {
        stbav::LogDebug(m_Logger, "%s progSettings is not changed", "UpdateProgSettings");
        return 0;
    }
    int r = 0;
    if (av_stop(m_AvHandle) != 0) {
        stbav::LogError(m_Logger, "%s stop av failed", "UpdateProgSettings");
    } else {
        stbav::LogInfo(m_Logger,
                        "StbVideoDecoder::GetCodec: pcrPid: %u, vidPid: %u, audPid: %u, video type: %d, "
                        "audio type: %d, ",
                        unsigned(m_Applied.pcr_pid), unsigned(m_Applied.video_pid), unsigned(m_Applied.audio_pid),
                        int(m_Applied.video_type), int(m_Applied.audio_type));
        if (av_set_config(m_AvHandle, &m_Applied) != 0) {
            stbav::LogError(m_Logger, "%s av set config error", "UpdateProgSettings");
        } else {
            r = av_start_audio(m_AvHandle);
            r |= av_start_video(m_AvHandle);
            if (r != 0) stbav::LogError(m_Logger, "%s av start error", "UpdateProgSettings");
        }
    }
    m_Changed = false;
    return static_cast<uint16_t>(r & 0xFFFF);
}
