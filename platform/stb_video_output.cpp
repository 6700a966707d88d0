// Display format and rate codes for the output format. Poller thread.
#include "platform/stb_video_output.h"

#include <cstring>

#include "toolkit/log.h"

namespace {

// Display rate codes: one bit per field/frame rate.
const uint32_t kRate23_976 = 2;
const uint32_t kRate24 = 4;
const uint32_t kRate25p = 8;
const uint32_t kRate29_97p = 16;
const uint32_t kRate30p = 32;
const uint32_t kRate50 = 64;
const uint32_t kRate59_94 = 128;
const uint32_t kRate60 = 256;
const uint32_t kRateComposite = 1;

// Display format code (word 0) for the picture; `current` when the width has none.
uint32_t FormatCode(uint32_t width, uint32_t height, bool interlaced, _VOUT_FORMAT_E compositeStd,
                    VideoOutputInterface_e outputInterface, uint32_t current) {
    bool hd = outputInterface == VIDEO_OUTPUT_INTERFACE_HD;
    switch (width) {
        case 720:
            if (height == 480) {
                if (!interlaced) return VOUT_FORMAT_480P;
                return hd ? uint32_t(VOUT_FORMAT_480I) : uint32_t(compositeStd);
            }
            if (!interlaced) return VOUT_FORMAT_576P;
            return hd ? uint32_t(VOUT_FORMAT_576I) : uint32_t(compositeStd);
        case 1280: return VOUT_FORMAT_720P;
        case 1920: return interlaced ? VOUT_FORMAT_1080I : VOUT_FORMAT_1080P;
        case 3840: return VOUT_FORMAT_2160P_3840;
        case 4096: return VOUT_FORMAT_2160P_4096;
        default: return current;
    }
}

// Display rate code (word 1); `current` for a rate the table does not know.
uint32_t RateCode(VideoFrameRate_e rate, bool interlaced, uint32_t current) {
    switch (rate) {
        case VIDEO_FRAME_RATE_23_976: return kRate23_976;
        case VIDEO_FRAME_RATE_24: return kRate24;
        case VIDEO_FRAME_RATE_25: return interlaced ? kRate50 : kRate25p;
        case VIDEO_FRAME_RATE_29_97: return interlaced ? kRate59_94 : kRate29_97p;
        case VIDEO_FRAME_RATE_30: return interlaced ? kRate60 : kRate30p;
        case VIDEO_FRAME_RATE_50: return kRate50;
        case VIDEO_FRAME_RATE_59_94: return kRate59_94;
        case VIDEO_FRAME_RATE_60: return kRate60;
        default: return current;
    }
}

// Some formats run at one rate only; the composite standards at their own.
uint32_t RateForFormat(uint32_t format, uint32_t rate) {
    switch (format) {
        case VOUT_FORMAT_576P: return kRate50;
        case VOUT_FORMAT_480P: return kRate60;
        case VOUT_FORMAT_PAL:
        case VOUT_FORMAT_NTSC:
        case VOUT_FORMAT_PAL_N:
        case VOUT_FORMAT_NTSC_J: return kRateComposite;
        default: return rate;
    }
}

}  // namespace

StbVideoOutput::StbVideoOutput() : m_Logger(stbav::Logger("stbav.stbvideooutput")) {}

bool StbVideoOutput::SetFormat(uint32_t width, uint32_t height, VideoScanType_e scanType,
                                VideoFrameRate_e frameRate, VideoAspectRatio_e aspectRatio,
                                _VOUT_FORMAT_E compositeStd, VideoOutputInterface_e outputInterface) {
    VoutDisplayAttr attr;
    memset(&attr, 0, sizeof attr);
    vout_display_get(m_VoutHandle, &attr);  // a failed read leaves zeros, which the set below replaces
    stbav::LogDebug(m_Logger,
                     "SetFormat width: %d, height: %d, scanType: %d, frameRate: %d, aspectRatio: %d, "
                     "compositeStdFormat: %d, videoOutputInterface: %d",
                     static_cast<int>(width), static_cast<int>(height), static_cast<int>(scanType),
                     static_cast<int>(frameRate), static_cast<int>(aspectRatio), static_cast<int>(compositeStd),
                     static_cast<int>(outputInterface));
    bool interlaced = scanType == VIDEO_SCAN_TYPE_INTERLACED;
    attr.format = FormatCode(width, height, interlaced, compositeStd, outputInterface, attr.format);
    attr.rate = RateForFormat(attr.format, RateCode(frameRate, interlaced, attr.rate));
    if (vout_display_set(m_VoutHandle, &attr) != 0) {
        stbav::LogError(m_Logger, "set vout format failed\n");
        return false;
    }
    m_Width = width;
    m_Height = height;
    m_ScanType = scanType;
    m_FrameRate = frameRate;
    m_AspectRatio = aspectRatio;
    return true;
}

bool StbVideoOutput::GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                                VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio) {
    width = m_Width;
    height = m_Height;
    scanType = m_ScanType;
    frameRate = m_FrameRate;
    aspectRatio = m_AspectRatio;
    return true;
}

bool StbVideoOutput::SetLatency(int ms) {
    stbav::LogDebug(m_Logger, "%s: ST set latency %d", "SetLatency", ms);
    return true;
}
