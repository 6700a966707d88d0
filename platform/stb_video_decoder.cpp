// The video decoder's getters (poller thread), its code mappings, and the
// player's event callback (library's event thread).
#include "platform/stb_video_decoder.h"

#include <cstring>

#include "toolkit/log.h"

std::atomic<uint32_t> StbVideoDecoder::m_AvHandle{0};
std::atomic<uint32_t> StbVideoDecoder::m_WindowHandle{0};
std::atomic<uint32_t> StbVideoDecoder::m_AspectRatio{0};
std::atomic<uint32_t> StbVideoDecoder::m_ChromaFormat{0};
std::atomic<uint32_t> StbVideoDecoder::m_NewSrcHeight{0};
std::atomic<uint32_t> StbVideoDecoder::m_OldSrcHeight{0};

namespace {

// Platform video codec code -> VideoType_e (the demux maps the other way).
VideoType_e VideoTypeFromPlatform(uint32_t code) {
    switch (code) {
        case 0: return VIDEO_TYPE_MPEG2;
        case 5: return VIDEO_TYPE_H264;
        case 38: return VIDEO_TYPE_HEVC;
        case 2: return VIDEO_TYPE_AVS;
        case 44: return VIDEO_TYPE_AVS2;
        default: return VIDEO_TYPE_NONE;
    }
}

uint32_t ChromaFromPlatform(uint32_t code) {
    switch (code) {
        case 0: return VIDEO_CHROMA_FORMAT_422;
        case 1: return VIDEO_CHROMA_FORMAT_420;
        case 5: return VIDEO_CHROMA_FORMAT_444;
        default: return VIDEO_CHROMA_FORMAT_UNKNOWN;
    }
}

// The decimal part decides the fractional rates whatever the integer part says.
VideoFrameRate_e FrameRateFromStatus(uint16_t integer, uint16_t decimal) {
    switch (decimal) {
        case 98: return VIDEO_FRAME_RATE_23_976;
        case 97: return VIDEO_FRAME_RATE_29_97;
        case 94: return VIDEO_FRAME_RATE_59_94;
        default: break;
    }
    switch (integer) {
        case 24: return VIDEO_FRAME_RATE_24;
        case 25: return VIDEO_FRAME_RATE_25;
        case 30: return VIDEO_FRAME_RATE_30;
        case 50: return VIDEO_FRAME_RATE_50;
        case 60: return VIDEO_FRAME_RATE_60;
        default: return VIDEO_FRAME_RATE_UNKNOWN;
    }
}

struct CodeMap {
    uint32_t from;
    int32_t to;
};

template <size_t N>
int32_t Lookup(const CodeMap (&table)[N], uint32_t code) {
    for (const CodeMap& m : table) {
        if (m.from == code) return m.to;
    }
    return 0;
}

const CodeMap kMpeg2Profiles[] = {{1, 6}, {2, 5}, {3, 4}, {4, 2}, {5, 1}, {8, 3}};
const CodeMap kH264Profiles[] = {{66, 7}, {77, 8}, {88, 9}, {100, 10}, {110, 11}, {122, 12}, {144, 13}};
const CodeMap kHevcProfiles[] = {{1, 8}, {2, 14}, {3, 15}, {4, 16}, {5, 17}};

// MPEG-2 level codes 2 and 5 share their results with 4 and 8 on purpose.
const CodeMap kMpeg2Levels[] = {{2, 4}, {4, 4}, {5, 2}, {8, 2}, {6, 3}, {10, 1}};
const CodeMap kH264Levels[] = {{10, 5},  {11, 7},  {12, 8},  {13, 9},  {20, 10}, {21, 11}, {22, 12}, {30, 13},
                               {31, 14}, {32, 15}, {40, 16}, {41, 17}, {42, 18}, {50, 19}, {51, 20}};
const CodeMap kHevcLevels[] = {{30, 5},   {60, 10},  {63, 11},  {90, 13},  {93, 14},  {120, 16}, {123, 17},
                               {150, 19}, {153, 20}, {156, 21}, {180, 22}, {183, 23}, {186, 24}};

}  // namespace

StbVideoDecoder::StbVideoDecoder(FfAvProbe& probe)
    : m_Logger(stbav::Logger("stbav.stbvideodecoder")), m_Probe(probe) {}

bool StbVideoDecoder::ReadStatus(AvStatusInfo& status, const char* name, bool asError) {
    memset(&status, 0, sizeof status);
    if (av_get_status_info(m_AvHandle, &status) == 0) return true;
    if (asError) {
        stbav::LogError(m_Logger, "%s get status info error", name);
    } else {
        stbav::LogWarn(m_Logger, "%s get status info error", name);
    }
    return false;
}

bool StbVideoDecoder::SetCodec(VideoType_e codec) {
    if (codec == m_Codec) return false;
    stbav::LogDebug(m_Logger, "%s: codec - %d", "SetCodec", static_cast<int>(codec));
    m_Codec = codec;
    stbav::LogDebug(m_Logger, "Send STOP_REQUIRED");
    return true;
}

VideoType_e StbVideoDecoder::GetCodec() {
    _AV_SETTING_S settings;
    memset(&settings, 0, sizeof settings);
    if (av_get_config(m_AvHandle, &settings) != 0) {
        stbav::LogWarn(m_Logger, "av_get_config error\n");
        return VIDEO_TYPE_NONE;
    }
    return VideoTypeFromPlatform(settings.video_type);
}

bool StbVideoDecoder::GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                                 VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio) {
    AvStatusInfo s;
    memset(&s, 0, sizeof s);
    if (av_get_status_info(m_AvHandle, &s) != 0) {
        stbav::LogError(m_Logger, "av_get_status_info error");
        return false;
    }
    stbav::LogDebug(m_Logger,
                     "GetFormat w: %u, h: %u, fpsInt: %u, fpsDec: %u, bitW: %u, sampleRate: %u, format: %u, chn: %u\n",
                     s.width, s.height, unsigned(s.frame_rate_int), unsigned(s.frame_rate_dec), s.bit_width,
                     s.audio_sample_rate, s.audio_format, s.audio_channels);
    width = s.width;
    height = s.height;
    scanType = GetVideoScanType();
    frameRate = FrameRateFromStatus(s.frame_rate_int, s.frame_rate_dec);
    aspectRatio = GetVideoAspectRatio();
    return true;
}

VideoChromaFormat_e StbVideoDecoder::GetChromaFormat() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetChromaFormat", true)) return VIDEO_CHROMA_FORMAT_UNKNOWN;
    m_ChromaFormat = 0;
    if (m_Codec != VIDEO_TYPE_NONE) m_ChromaFormat = ChromaFromPlatform(m_Probe.GetVideoChromaFormat(s.video_pid));
    uint32_t chroma = m_ChromaFormat;
    stbav::LogDebug(m_Logger, "%s chromaFormat is %u", "GetChromaFormat", chroma);
    return static_cast<VideoChromaFormat_e>(chroma);
}

VideoScanType_e StbVideoDecoder::GetVideoScanType() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetVideoScanType", true)) return VIDEO_SCAN_TYPE_UNKNOWN;
    uint32_t f = m_Probe.GetVideoFieldOrder(s.video_pid);
    stbav::LogDebug(m_Logger, "%s VideoFieldOrder is %u", "GetVideoScanType", f);
    if (f == 0) return VIDEO_SCAN_TYPE_UNKNOWN;
    return f == 1 ? VIDEO_SCAN_TYPE_PROGRESSIVE : VIDEO_SCAN_TYPE_INTERLACED;
}

VideoAspectRatio_e StbVideoDecoder::GetVideoAspectRatio() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetVideoAspectRatio", false)) return VIDEO_ASPECT_RATIO_UNKNOWN;
    int32_t a = 0;
    int32_t b = 0;
    m_Probe.GetVideoAspectRatio(s.video_pid, a, b);
    if (a == 0 && b == 0) return VIDEO_ASPECT_RATIO_UNKNOWN;
    return (a >= 3 && b >= 4) ? VIDEO_ASPECT_RATIO_4X3 : VIDEO_ASPECT_RATIO_16X9;
}

VideoProfile_e StbVideoDecoder::GetProfile() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetProfile", true)) return VIDEO_PROFILE_UNKNOWN;
    uint32_t p = m_Probe.GetVideoProfile(s.video_pid);
    stbav::LogDebug(m_Logger, "%s profile is %u", "GetProfile", p);
    switch (m_Codec) {
        case VIDEO_TYPE_MPEG2: return static_cast<VideoProfile_e>(Lookup(kMpeg2Profiles, p));
        case VIDEO_TYPE_H264: return static_cast<VideoProfile_e>(Lookup(kH264Profiles, p));
        case VIDEO_TYPE_HEVC: return static_cast<VideoProfile_e>(Lookup(kHevcProfiles, p));
        default: return VIDEO_PROFILE_UNKNOWN;
    }
}

VideoLevel_e StbVideoDecoder::GetLevel() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetLevel", true)) return VIDEO_LEVEL_UNKNOWN;
    uint32_t l = m_Probe.GetVideoLevel(s.video_pid);
    stbav::LogDebug(m_Logger, "%s level is %u", "GetLevel", l);
    switch (m_Codec) {
        case VIDEO_TYPE_MPEG2: return static_cast<VideoLevel_e>(Lookup(kMpeg2Levels, l));
        case VIDEO_TYPE_H264: return static_cast<VideoLevel_e>(Lookup(kH264Levels, l));
        case VIDEO_TYPE_HEVC: return static_cast<VideoLevel_e>(Lookup(kHevcLevels, l));
        default: return VIDEO_LEVEL_UNKNOWN;
    }
}

std::string StbVideoDecoder::GetServiceName(uint16_t programNumber) {
    std::string name = m_Probe.GetServiceName(programNumber);
    stbav::LogDebug(m_Logger, "%s serviceName is %s", "GetServiceName", name.c_str());
    return name;
}

ChromaBitDepth_e StbVideoDecoder::GetBitDepth() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetBitDepth", false)) return CHROMA_BIT_DEPTH_UNKNOWN;
    uint32_t depth = CHROMA_BIT_DEPTH_UNKNOWN;
    if (m_Codec != VIDEO_TYPE_NONE) {
        uint32_t code = m_Probe.GetVideoBitDepth(s.video_pid);
        depth = code == 0 ? CHROMA_BIT_DEPTH_8 : code == 1 ? CHROMA_BIT_DEPTH_10 : CHROMA_BIT_DEPTH_UNKNOWN;
    }
    stbav::LogDebug(m_Logger, "%s bitDepth is %u", "GetBitDepth", depth);
    return static_cast<ChromaBitDepth_e>(depth);
}

uint32_t StbVideoDecoder::GetBitrate() { return 0; }

uint32_t StbVideoDecoder::GetFrameCount() {
    AvStatusInfo s;
    if (!ReadStatus(s, "GetFrameCount", false)) return 0;
    return s.video_frame_count;
}

uint32_t StbVideoDecoder::GetDecodeFailureReason() {
    stbav::LogDebug(m_Logger, "%s reason is %u", "GetDecodeFailureReason", 0u);
    return 0;
}

uint32_t StbVideoDecoder::GetVideoSyncStatus() {
    stbav::LogDebug(m_Logger, "%s sync status is %u", "GetVideoSyncStatus", 0u);
    return 0;
}

int StbVideoDecoder::AvEventCallback(uint32_t /*handle*/, _AV_EVENT_E event, const void* data) {
    if (event != AV_EVENT_VIDEO_FORMAT_CHANGED || data == nullptr) return 0;
    AvVideoFormatEvent e;
    memcpy(&e, data, sizeof e);
    if (e.aspect_first == 16 && e.aspect_second == 9) {
        m_AspectRatio = VIDEO_ASPECT_RATIO_16X9;
    } else if (e.aspect_first == 4 && e.aspect_second == 3) {
        m_AspectRatio = VIDEO_ASPECT_RATIO_4X3;
    } else {
        m_AspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
    }
    m_NewSrcHeight = e.source_height;
    if (m_NewSrcHeight != m_OldSrcHeight) {
        vout_window_open(m_WindowHandle);
        m_OldSrcHeight = m_NewSrcHeight.load();
    }
    m_ChromaFormat = ChromaFromPlatform(e.chroma_format);
    return 0;
}
