// The stream probe: its thread's pass and the cache lookups of the poller thread.
#include "platform/ff_av_probe.h"

#include <algorithm>
#include <cstring>

#include "toolkit/kt_functor.h"
#include "toolkit/log.h"

FfAvProbe::FfAvProbe()
    : m_Logger(stbav::Logger("stbav.ffavprobe")),
      m_Thread(KT::MakeFunctor(this, &FfAvProbe::ProbeAvInfo), "FfAvProbe", KT::CThread::GetPriority()) {
    memset(&m_Cache, 0, sizeof m_Cache);
}

FfAvProbe::~FfAvProbe() { m_Thread.Cancel(); }

void FfAvProbe::BondAvHandle(uint32_t avHandle) { m_AvHandle = avHandle; }

void FfAvProbe::StartProbe() {
    stbav::LogDebug(m_Logger, "%s", "StartProbe");
    m_Thread.Run();
}

void FfAvProbe::ClearStreamInfo() { m_Clear = true; }

bool FfAvProbe::ProbeAvInfo() {
    if (m_Clear.exchange(false)) {
        KT::CMutexLock lock(m_CacheMutex);
        memset(&m_Cache, 0, sizeof m_Cache);
    }
    AvStreamInfo fresh;
    memset(&fresh, 0, sizeof fresh);
    int r = av_get_stream_info(m_AvHandle, &fresh);
    if (r != 0) {
        stbav::LogWarn(m_Logger, "%s get stream info failed: %#x", "ProbeAvInfo", r);
    } else {
        MergeIntoCache(fresh);
    }
    KT::CThread::Sleep(kPassIntervalMs);
    return true;
}

// A section whose count is zero keeps what the cache had. Entries are taken
// only once the platform has filled in the first one's timing (a stream that
// was just found may not have its rates yet).
void FfAvProbe::MergeIntoCache(const AvStreamInfo& fresh) {
    KT::CMutexLock lock(m_CacheMutex);
    if (fresh.audio_count != 0) {
        m_Cache.audio_count = fresh.audio_count;
        if (fresh.audio[0].sample_rate != 0) memcpy(m_Cache.audio, fresh.audio, sizeof m_Cache.audio);
    }
    if (fresh.video_count != 0) {
        m_Cache.video_count = fresh.video_count;
        if (fresh.video[0].frame_rate_num != 0) memcpy(m_Cache.video, fresh.video, sizeof m_Cache.video);
    }
    if (fresh.service_count != 0) {
        m_Cache.service_count = fresh.service_count;
        memcpy(m_Cache.service, fresh.service, sizeof m_Cache.service);
    }
}

bool FfAvProbe::FindVideo(uint16_t pid, AvVideoStreamEntry& out) const {
    KT::CMutexLock lock(m_CacheMutex);
    uint32_t n = std::min(m_Cache.video_count, kMaxEntries);
    for (uint32_t i = 0; i < n; ++i) {
        if (m_Cache.video[i].pid == pid) {
            out = m_Cache.video[i];
            return true;
        }
    }
    return false;
}

bool FfAvProbe::FindAudio(uint16_t pid, AvAudioStreamEntry& out) const {
    KT::CMutexLock lock(m_CacheMutex);
    uint32_t n = std::min(m_Cache.audio_count, kMaxEntries);
    for (uint32_t i = 0; i < n; ++i) {
        if (m_Cache.audio[i].pid == pid) {
            out = m_Cache.audio[i];
            return true;
        }
    }
    return false;
}

uint32_t FfAvProbe::GetVideoChromaFormat(uint16_t pid) const {
    AvVideoStreamEntry e;
    return FindVideo(pid, e) ? e.chroma_format : 19;
}

uint32_t FfAvProbe::GetVideoBitDepth(uint16_t pid) const {
    AvVideoStreamEntry e;
    return FindVideo(pid, e) ? e.bit_depth : 3;
}

void FfAvProbe::GetVideoAspectRatio(uint16_t pid, int32_t& first, int32_t& second) const {
    AvVideoStreamEntry e;
    if (!FindVideo(pid, e)) return;
    first = static_cast<int32_t>(e.aspect_first);
    second = static_cast<int32_t>(e.aspect_second);
}

uint32_t FfAvProbe::GetVideoProfile(uint16_t pid) const {
    AvVideoStreamEntry e;
    return FindVideo(pid, e) ? e.profile : 0;
}

uint32_t FfAvProbe::GetVideoLevel(uint16_t pid) const {
    AvVideoStreamEntry e;
    return FindVideo(pid, e) ? e.level : 0;
}

void FfAvProbe::GetVideoFrameRate(uint16_t pid, uint32_t& first, uint32_t& second) const {
    AvVideoStreamEntry e;
    bool found = FindVideo(pid, e);
    first = found ? e.frame_rate_num : 0;
    second = found ? e.frame_rate_den : 0;
}

uint32_t FfAvProbe::GetVideoFieldOrder(uint16_t pid) const {
    AvVideoStreamEntry e;
    return FindVideo(pid, e) ? e.field_order : 0;
}

uint32_t FfAvProbe::GetAudioChannels(uint16_t pid) const {
    AvAudioStreamEntry e;
    return FindAudio(pid, e) ? e.channels : 0;
}

int32_t FfAvProbe::GetAudioEnFormat(uint16_t pid) const {
    AvAudioStreamEntry e;
    return FindAudio(pid, e) ? static_cast<int32_t>(e.format) : -1;
}

uint32_t FfAvProbe::GetAudioSampleRate(uint16_t pid) const {
    AvAudioStreamEntry e;
    return FindAudio(pid, e) ? e.sample_rate : 0;
}

uint64_t FfAvProbe::GetAudioBitRate(uint16_t pid) const {
    AvAudioStreamEntry e;
    return FindAudio(pid, e) ? e.bit_rate : 0;
}

std::string FfAvProbe::GetServiceName(uint16_t programNumber) const {
    KT::CMutexLock lock(m_CacheMutex);
    uint32_t n = std::min(m_Cache.service_count, kMaxEntries);
    for (uint32_t i = 0; i < n; ++i) {
        const AvServiceEntry& s = m_Cache.service[i];
        if (s.program_number == programNumber) return std::string(s.name, strnlen(s.name, sizeof s.name));
    }
    return std::string();
}
