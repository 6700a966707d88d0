// FfAvProbe: a cache of what the input stream carries (video, audio and service
// entries), refreshed once a second by its own thread from av_get_stream_info.
// The getters run on the poller thread; the cache is copied and read under a
// lock. Owned by the subsystem assembly; the chip bring-up binds and starts it.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include <log4cpp/Category.hh>

#include "platform/stb_module.h"
#include "toolkit/kt_mutex.h"
#include "toolkit/kt_thread.h"
#include "toolkit/kt_uncopyable.h"

class FfAvProbe : private KT::CUncopyable {
public:
    // Entries searched at most: the platform's record holds 16 of each kind.
    static constexpr uint32_t kMaxEntries = 16;
    // Pause between two passes of the probe thread.
    static constexpr unsigned kPassIntervalMs = 1000;

    FfAvProbe();
    // Cancels the probe thread; returns within about a pass's platform call.
    ~FfAvProbe();

    // Stores the AV player handle the passes read from. Any thread.
    void BondAvHandle(uint32_t avHandle);
    // Starts the probe thread (once). Caller's thread.
    void StartProbe();
    // Asks the next pass to empty the cache first. Any thread.
    void ClearStreamInfo();

    // Lookups by PID (video and audio) or programme number (services) in the
    // cache; each returns the stated default when no entry matches.
    uint32_t GetVideoChromaFormat(uint16_t pid) const;  // platform chroma code; 19
    uint32_t GetVideoBitDepth(uint16_t pid) const;      // platform bit-depth code; 3
    // Aspect-ratio pair; first and second are left untouched when no entry matches.
    void GetVideoAspectRatio(uint16_t pid, int32_t& first, int32_t& second) const;
    uint32_t GetVideoProfile(uint16_t pid) const;     // 0
    uint32_t GetVideoLevel(uint16_t pid) const;       // 0
    // Frame-rate pair; (0, 0) when no entry matches.
    void GetVideoFrameRate(uint16_t pid, uint32_t& first, uint32_t& second) const;
    uint32_t GetVideoFieldOrder(uint16_t pid) const;  // 0
    uint32_t GetAudioChannels(uint16_t pid) const;    // 0
    int32_t GetAudioEnFormat(uint16_t pid) const;     // -1
    uint32_t GetAudioSampleRate(uint16_t pid) const;  // 0
    uint64_t GetAudioBitRate(uint16_t pid) const;     // 0
    std::string GetServiceName(uint16_t programNumber) const;  // ""

    // One pass: clear if asked, read the platform, merge into the cache, sleep
    // (a cancel cuts the sleep short). Always true. Runs on the probe thread.
    bool ProbeAvInfo();

private:
    void MergeIntoCache(const AvStreamInfo& fresh);
    bool FindVideo(uint16_t pid, AvVideoStreamEntry& out) const;
    bool FindAudio(uint16_t pid, AvAudioStreamEntry& out) const;

    log4cpp::Category& m_Logger;
    KT::CThread m_Thread;
    std::atomic<uint32_t> m_AvHandle{0};
    mutable KT::CMutex m_CacheMutex{"FfAvProbe cache"};
    AvStreamInfo m_Cache;  // guarded by m_CacheMutex
    std::atomic<bool> m_Clear{false};
};
