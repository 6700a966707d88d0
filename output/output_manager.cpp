// OutputManager: validation, storage and one-pass application of the output settings.
#include "output/output_manager.h"

#include "output/uhd_vid_format.h"
#include "output/uhd_vid_format_helper.h"
#include "toolkit/log.h"

using stbav::LogDebug;
using stbav::LogError;

OutputManager::OutputManager(IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                             IDecoderChip& decoderChip, IClosedCaption& closedCaption, IDemux& demux)
    : m_Log(stbav::Logger("stbav.outputmanager")),
      m_VideoDecoder(videoDecoder),
      m_VideoOutput(videoOutput),
      m_AudioOutput(audioOutput),
      m_DecoderChip(decoderChip),
      m_ClosedCaption(closedCaption),
      m_Demux(demux),
      m_HdVideoSettings(1),
      m_CompositeVideoSettings(1),
      m_AudioSettings(1),
      m_AspectRatioSettings(1) {}

// ---------------------------------------------------------------- validation

bool OutputManager::CheckVideoIndex(const char* fn, unsigned idx) const {
    if (idx < m_HdVideoSettings.size()) return true;
    LogError(m_Log, "%s: video index %u is out of range (only index 0 exists)", fn, idx);
    return false;
}

bool OutputManager::CheckAudioIndex(const char* fn, unsigned idx) const {
    if (idx < m_AudioSettings.size()) return true;
    LogError(m_Log, "%s: audio index %u is out of range (only index 0 exists)", fn, idx);
    return false;
}

bool OutputManager::Reject(const char* fn, int value) const {
    LogError(m_Log, "%s: input parameter %d is not valid", fn, value);
    return false;
}

// ---------------------------------------------------------------- setters

bool OutputManager::SetVideoOutputInterface(unsigned idx, VideoOutputInterface_e outputInterface) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_VideoOutputInterface = outputInterface;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetVideoFormatMode(unsigned idx, FormatMode_e mode) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_HdVideoSettings[idx].formatMode = mode;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetVideoFormatModeCvbs(unsigned idx, FormatMode_e mode) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_CompositeVideoSettings[idx].formatMode = mode;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetVideoFormat(unsigned idx, uint32_t code) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_HdVideoSettings[idx].videoFormat = code;
    SetVideoDirty(idx);
    SetAspectRatioDirty(idx);
    return true;
}

bool OutputManager::SetVideoFormatCvbs(unsigned idx, uint32_t code) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_CompositeVideoSettings[idx].videoFormat = code;
    SetVideoDirty(idx);
    SetAspectRatioDirty(idx);
    return true;
}

bool OutputManager::SetRasterMode(unsigned idx, RasterMode_e mode) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_HdVideoSettings[idx].rasterMode = mode;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetRasterColor(unsigned idx, RasterColor_e color) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_HdVideoSettings[idx].rasterColor = color;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetComposite525Std(unsigned idx, Composite525_e std) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    if (std != COMPOSITE_525_NTSC && std != COMPOSITE_525_NTSC_J) return Reject(__func__, std);
    m_HdVideoSettings[idx].composite525Std = std;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetComposite625Std(unsigned idx, Composite625_e std) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    if (std != COMPOSITE_625_PAL && std != COMPOSITE_625_PAL_N) return Reject(__func__, std);
    m_HdVideoSettings[idx].composite625Std = std;
    SetVideoDirty(idx);
    return true;
}

bool OutputManager::SetAnalogAudioState(unsigned idx, AnalogAudio_e state) {
    if (!CheckAudioIndex(__func__, idx)) return false;
    if (state != ANALOG_AUDIO_OFF && state != ANALOG_AUDIO_ON) return Reject(__func__, state);
    m_AudioSettings[idx].analogAudioOn = state == ANALOG_AUDIO_ON;
    SetAudioDirty(idx);
    return true;
}

bool OutputManager::SetAnalogAudioLevelGain(unsigned idx, signed char gain) {
    if (!CheckAudioIndex(__func__, idx)) return false;
    if (gain < -60 || gain > 10) {
        LogError(m_Log, "Set analog audio volume with invalid value: %d dBv.", gain);
        return false;
    }
    m_AudioSettings[idx].levelGain = gain;
    SetAudioDirty(idx);
    return true;
}

bool OutputManager::SetCompositeLine21Cc(Enable_e state) {
    if (state != ENABLE_STATE_ENABLE && state != ENABLE_STATE_DISABLE) return Reject(__func__, state);
    m_CompositeLine21CcEnabled = state == ENABLE_STATE_ENABLE;
    SetClosedCaptionDirty();
    return true;
}

bool OutputManager::SetOverlayCcType(OverlayCcType_e type) {
    if (type < OVERLAY_CC_TYPE_NTSC || type > OVERLAY_CC_TYPE_DTV) return Reject(__func__, type);
    m_OverlayCcType = type;
    SetClosedCaptionDirty();
    return true;
}

bool OutputManager::SetOverlayNtscCcDataType(OverlayNtscCcType_e type) {
    if (type < OVERLAY_NTSC_CC1 || type > OVERLAY_NTSC_CC4) return Reject(__func__, type);
    m_OverlayNtscCcDataType = type;
    SetClosedCaptionDirty();
    return true;
}

bool OutputManager::SetOverlayDtvCcDataType(OverlayDtvCcType_e type) {
    if (type < OVERLAY_DTV_SERVICE1 || type > OVERLAY_DTV_SERVICE6) return Reject(__func__, type);
    m_OverlayDtvCcDataType = type;
    SetClosedCaptionDirty();
    return true;
}

bool OutputManager::SetOverlayCcState(Enable_e state) {
    if (state != ENABLE_STATE_ENABLE && state != ENABLE_STATE_DISABLE) return Reject(__func__, state);
    m_OverlayCcEnabled = state == ENABLE_STATE_ENABLE;
    SetClosedCaptionDirty();
    return true;
}

bool OutputManager::SetHDAspectRatioMode(unsigned idx, HdDisplayMode_e mode) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_AspectRatioSettings[idx].hdDisplayMode = mode;
    SetAspectRatioDirty(idx);
    return true;
}

bool OutputManager::SetSDAspectRatioMode(unsigned idx, SdDisplayMode_e mode) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    m_AspectRatioSettings[idx].sdDisplayMode = mode;
    SetAspectRatioDirty(idx);
    return true;
}

bool OutputManager::SetHDAspectRatioConversion(unsigned, AspectRatioConversion_e) { return false; }

bool OutputManager::SetSDAspectRatioConversion(unsigned, AspectRatioConversion_e) { return false; }

void OutputManager::SetVideoOutDecodeStatus(Status_e status) { m_VideoOutDecodeStatus = status; }

// ---------------------------------------------------------------- dirty markers

void OutputManager::SetVideoDirty(unsigned idx) {
    if (CheckVideoIndex(__func__, idx)) m_HdVideoSettings[idx].dirty = true;
}

void OutputManager::SetAudioDirty(unsigned idx) {
    if (CheckAudioIndex(__func__, idx)) m_AudioSettings[idx].dirty = true;
}

void OutputManager::SetClosedCaptionDirty() { m_ClosedCaptionDirty = true; }

void OutputManager::SetAspectRatioDirty(unsigned idx) {
    if (CheckVideoIndex(__func__, idx)) m_AspectRatioSettings[idx].dirty = true;
}

// ---------------------------------------------------------------- getters

FormatMode_e OutputManager::GetFormatMode(unsigned idx) const {
    return CheckVideoIndex(__func__, idx) ? m_HdVideoSettings[idx].formatMode.load() : static_cast<FormatMode_e>(0);
}

FormatMode_e OutputManager::GetFormatModeCvbs(unsigned idx) const {
    return CheckVideoIndex(__func__, idx) ? m_CompositeVideoSettings[idx].formatMode.load()
                                          : static_cast<FormatMode_e>(0);
}

uint32_t OutputManager::GetVideoFormat(unsigned idx) const {
    return CheckVideoIndex(__func__, idx) ? m_HdVideoSettings[idx].videoFormat.load() : 0;
}

uint32_t OutputManager::GetVideoFormatCvbs(unsigned idx) const {
    return CheckVideoIndex(__func__, idx) ? m_CompositeVideoSettings[idx].videoFormat.load() : 0;
}

VideoOutputInterface_e OutputManager::GetVideoOutputInterface() const { return m_VideoOutputInterface; }

// ---------------------------------------------------------------- apply cycle

bool OutputManager::ApplySettings(bool force) {
    bool video = ApplyVideoSettings(force);
    bool audio = ApplyAudioSettings(force);
    bool captions = ApplyClosedCaptionSettings(force);
    return video || audio || captions;
}

// Each flag is taken (cleared) before its group is applied, so that a change
// raised by the status poll during the pass is served by the next pass.
bool OutputManager::ApplyVideoSettings(bool force) {
    bool result = false;
    for (unsigned idx = 0; idx < m_HdVideoSettings.size(); ++idx) {
        if (m_HdVideoSettings[idx].dirty.exchange(false) || force) result |= ApplyVideoFormatSetting(idx);
    }
    return result;
}

bool OutputManager::ApplyAudioSettings(bool force) {
    bool result = false;
    for (unsigned idx = 0; idx < m_AudioSettings.size(); ++idx) {
        if (m_AudioSettings[idx].dirty.exchange(false) || force) result |= ApplyAnalogAudioSetting(idx);
    }
    return result;
}

bool OutputManager::ApplyClosedCaptionSettings(bool force) {
    if (!m_ClosedCaptionDirty.exchange(false) && !force) return false;
    bool overlay = ApplyOverlayCcSetting();
    bool line21 = ApplyCompositeLine21CcSetting();
    return overlay || line21;
}

OutputManager::Format OutputManager::DecodeManualFormat(uint32_t code) {
    UhdVidFormat uhd(code);
    Format f;
    f.width = uhd.GetWidth();
    f.height = uhd.GetHeight();
    f.scanType = static_cast<VideoScanType_e>(uhd.GetScanType() + 1);
    f.frameRate = static_cast<VideoFrameRate_e>(uhd.GetFrameRate());
    switch (uhd.GetAspectRatio()) {
        case VideoFormatBase::ASPECT_RATIO_4X3: f.aspectRatio = VIDEO_ASPECT_RATIO_4X3; break;
        case VideoFormatBase::ASPECT_RATIO_16X9: f.aspectRatio = VIDEO_ASPECT_RATIO_16X9; break;
        default: f.aspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN; break;
    }
    return f;
}

OutputManager::Format OutputManager::RequestedFormat(const char* fn, FormatMode_e mode, uint32_t code) {
    Format f;
    const char* how = "Manual";
    if (mode != FORMAT_MODE_MANUAL) {
        m_VideoDecoder.GetFormat(f.width, f.height, f.scanType, f.frameRate, f.aspectRatio);
        how = "Auto";
    } else {
        f = DecodeManualFormat(code);
    }
    LogDebug(m_Log, "%s %s width[%d]-height[%d]-scanType[%d]-frameRate[%d]-aspectRatio[%d]", fn, how,
             static_cast<int>(f.width), static_cast<int>(f.height), f.scanType, f.frameRate, f.aspectRatio);
    return f;
}

_VOUT_FORMAT_E OutputManager::CompositeStandard(unsigned idx, const Format& f) const {
    const VideoSettings_t& hd = m_HdVideoSettings[idx];
    if (f.width == 720 && f.scanType == VIDEO_SCAN_TYPE_INTERLACED) {
        if (f.height == 480) return hd.composite525Std == COMPOSITE_525_NTSC ? VOUT_FORMAT_NTSC : VOUT_FORMAT_NTSC_J;
        if (f.height == 576) return hd.composite625Std == COMPOSITE_625_PAL ? VOUT_FORMAT_PAL : VOUT_FORMAT_PAL_N;
    }
    return VOUT_FORMAT_NTSC;
}

// The automatic mode follows the decoder; the composite interface only carries
// 480 or 576 lines; the HD interface goes through the scaler table. False when
// the decoder has not recognised its input yet.
bool OutputManager::OutputFormat(const char* fn, unsigned idx, VideoOutputInterface_e iface, Format& f) {
    const bool hd = iface == VIDEO_OUTPUT_INTERFACE_HD;
    const VideoSettings_t& s = hd ? m_HdVideoSettings[idx] : m_CompositeVideoSettings[idx];
    const FormatMode_e mode = s.formatMode;
    f = RequestedFormat(fn, mode, s.videoFormat);
    if (mode != FORMAT_MODE_MANUAL && (f.width == 0 || f.height == 0 || f.frameRate == 0)) {
        LogDebug(m_Log, "%s() Decoder is not initialized return false", fn);
        return false;
    }
    if (!hd) {
        if (f.height != 480 && f.height != 576) {
            f = {720, 480, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_29_97, VIDEO_ASPECT_RATIO_16X9};
        }
        return true;
    }
    GetValidScalerSettings(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, 0);
    LogDebug(m_Log, "%s ValidScale => width[%d]-height[%d]-scanType[%d]-frameRate[%d]-aspectRatio[%d]", fn,
             static_cast<int>(f.width), static_cast<int>(f.height), f.scanType, f.frameRate, f.aspectRatio);
    return true;
}

// The result of SetFormat is deliberately not reported: the pass returns false.
bool OutputManager::ApplyVideoFormatSetting(unsigned idx) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    const VideoOutputInterface_e iface = m_VideoOutputInterface;
    Format f;
    if (!OutputFormat(__func__, idx, iface, f)) return false;
    const int videoMode = getVideoMode(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, 0);
    LogDebug(m_Log, "%s width[%d]-height[%d]-scanType[%d]-frameRate[%d] => videoMode[%d]", __func__,
             static_cast<int>(f.width), static_cast<int>(f.height), f.scanType, f.frameRate, videoMode);
    if (videoMode == kNoVideoMode) {
        LogError(m_Log, "%s video mode is not valid", __func__);
        return false;
    }
    m_VideoOutput.SetFormat(f.width, f.height, f.scanType, f.frameRate, f.aspectRatio, CompositeStandard(idx, f),
                            iface);
    return false;
}

bool OutputManager::ApplyAnalogAudioSetting(unsigned idx) {
    if (!CheckAudioIndex(__func__, idx)) return false;
    const AudioSettings_t& s = m_AudioSettings[idx];
    bool mute = m_AudioOutput.SetMute(!s.analogAudioOn);
    bool volume = m_AudioOutput.SetAnalogVolume(s.levelGain);
    return mute || volume;
}

bool OutputManager::ApplyOverlayCcSetting() {
    if (!m_OverlayCcEnabled) return m_ClosedCaption.SetOverlayCcState(false);
    // An unknown overlay type selects no caption data and counts as a failure.
    bool type = false;
    const OverlayCcType_e overlayType = m_OverlayCcType;
    if (overlayType == OVERLAY_CC_TYPE_NTSC) {
        type = m_ClosedCaption.SetOverlayCc(overlayType, m_OverlayNtscCcDataType.load());
    } else if (overlayType == OVERLAY_CC_TYPE_DTV) {
        type = m_ClosedCaption.SetOverlayCc(overlayType, m_OverlayDtvCcDataType.load());
    }
    bool state = m_ClosedCaption.SetOverlayCcState(true);
    return type || state;
}

bool OutputManager::ApplyCompositeLine21CcSetting() {
    return m_ClosedCaption.SetVbiLine21CcState(m_CompositeLine21CcEnabled);
}

// ---------------------------------------------------------------- outside the cycle

bool OutputManager::ApplyVideoRasterGroupSetting(unsigned idx) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    bool mode = m_VideoOutput.SetRasterMode(m_HdVideoSettings[idx].rasterMode);
    bool color = m_VideoOutput.SetRasterColor(m_HdVideoSettings[idx].rasterColor);
    return mode || color;
}

bool OutputManager::ApplyVideoColorSpaceSetting(unsigned idx) {
    if (!CheckVideoIndex(__func__, idx)) return false;
    const VideoSettings_t& s = m_HdVideoSettings[idx];
    Format f = RequestedFormat(__func__, s.formatMode, s.videoFormat);
    GetValidScalerSettings(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, 0);
    bool uhd = f.width >= 3840 && f.height >= 2160;
    return m_VideoOutput.SetColourSpace(uhd ? COLOUR_SPACE_UHD : COLOUR_SPACE_HD);
}

bool OutputManager::ApplyAspectRatioSettings(bool /*force*/) { return false; }

bool OutputManager::IsUHDFormat() {
    const VideoSettings_t& s = m_HdVideoSettings[0];
    Format f = RequestedFormat(__func__, s.formatMode, s.videoFormat);
    GetValidScalerSettings(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, 0);
    const int videoMode = getVideoMode(f.height, f.width, f.scanType, f.frameRate, f.aspectRatio, 0);
    if (videoMode == kNoVideoMode) {
        LogError(m_Log, "%s video mode is not valid", __func__);
        return false;
    }
    return videoMode <= kLastUhdVideoMode;
}
