// OutputManager: the output settings the host sets (video interface, HD and
// composite format mode and code, composite standards, analog audio, captions)
// and their application to the decoder in one pass. Setters only validate,
// store and mark a group dirty; ApplySettings calls the platform. Setters and
// the apply pass run on the poller thread (configuration processing); the
// getters and SetVideoDirty also serve the status poll, so everything those
// touch is atomic. Holds the decoder interfaces by reference (not owned).
//
// There is one video and one audio output: every index other than 0 is
// rejected with an error log (setters and apply functions return false,
// getters answer 0).
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "platform/decoder_types.h"
#include "platform/i_audio_output.h"
#include "platform/i_closed_caption.h"
#include "platform/i_decoder_chip.h"
#include "platform/i_demux.h"
#include "platform/i_video_decoder.h"
#include "platform/i_video_output.h"
#include "toolkit/kt_uncopyable.h"

namespace log4cpp {
class Category;
}

class OutputManager : private KT::CUncopyable {
public:
    struct VideoSettings_t {
        std::atomic<bool> dirty{false};
        std::atomic<FormatMode_e> formatMode{static_cast<FormatMode_e>(0)};  // 2 manual, else automatic
        std::atomic<uint32_t> videoFormat{0};  // UhdVidFormat code used in manual mode
        std::atomic<RasterMode_e> rasterMode{static_cast<RasterMode_e>(0)};
        std::atomic<RasterColor_e> rasterColor{static_cast<RasterColor_e>(0)};
        std::atomic<Composite525_e> composite525Std{static_cast<Composite525_e>(0)};
        std::atomic<Composite625_e> composite625Std{static_cast<Composite625_e>(0)};
    };
    struct AudioSettings_t {
        std::atomic<bool> dirty{false};
        std::atomic<bool> analogAudioOn{false};
        std::atomic<int32_t> levelGain{0};  // dBV
    };
    struct AspectRatioSettings_t {
        std::atomic<bool> dirty{false};
        std::atomic<AspectRatioConversion_e> hdConversion{static_cast<AspectRatioConversion_e>(0)};
        std::atomic<HdDisplayMode_e> hdDisplayMode{static_cast<HdDisplayMode_e>(0)};
        std::atomic<AspectRatioConversion_e> sdConversion{static_cast<AspectRatioConversion_e>(0)};
        std::atomic<SdDisplayMode_e> sdDisplayMode{static_cast<SdDisplayMode_e>(0)};
    };

    OutputManager(IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                  IDecoderChip& decoderChip, IClosedCaption& closedCaption, IDemux& demux);

    // ---- Setters: true when stored; false when rejected ("%s: input parameter
    // %d is not valid" at error level), leaving every setting and flag as it was.
    bool SetVideoOutputInterface(unsigned idx, VideoOutputInterface_e outputInterface);
    bool SetVideoFormatMode(unsigned idx, FormatMode_e mode);
    // Composite format mode; marks the HD video entry dirty (the only video flag).
    bool SetVideoFormatModeCvbs(unsigned idx, FormatMode_e mode);
    bool SetVideoFormat(unsigned idx, uint32_t code);
    bool SetVideoFormatCvbs(unsigned idx, uint32_t code);
    bool SetRasterMode(unsigned idx, RasterMode_e mode);
    bool SetRasterColor(unsigned idx, RasterColor_e color);
    bool SetComposite525Std(unsigned idx, Composite525_e std);  // 1 or 2
    bool SetComposite625Std(unsigned idx, Composite625_e std);  // 1 or 2
    bool SetAnalogAudioState(unsigned idx, AnalogAudio_e state);  // 1 off, 2 on
    // -60..10 dBV; a rejection logs "Set analog audio volume with invalid value: %d dBv."
    bool SetAnalogAudioLevelGain(unsigned idx, signed char gain);
    bool SetCompositeLine21Cc(Enable_e state);                    // 1 on, 2 off
    bool SetOverlayCcType(OverlayCcType_e type);                  // 1..2
    bool SetOverlayNtscCcDataType(OverlayNtscCcType_e type);      // 1..4
    bool SetOverlayDtvCcDataType(OverlayDtvCcType_e type);        // 1..6
    bool SetOverlayCcState(Enable_e state);                       // 1 on, 2 off
    bool SetHDAspectRatioMode(unsigned idx, HdDisplayMode_e mode);
    bool SetSDAspectRatioMode(unsigned idx, SdDisplayMode_e mode);
    // Not supported on this board: store nothing and return false.
    bool SetHDAspectRatioConversion(unsigned idx, AspectRatioConversion_e conversion);
    bool SetSDAspectRatioConversion(unsigned idx, AspectRatioConversion_e conversion);
    void SetVideoOutDecodeStatus(Status_e status);

    // ---- Dirty markers: raise the group's flag only. SetVideoDirty is also
    // called by the video status processor when the input format changes.
    void SetVideoDirty(unsigned idx);
    void SetAudioDirty(unsigned idx);
    void SetClosedCaptionDirty();
    void SetAspectRatioDirty(unsigned idx);

    // ---- Getters (any thread).
    FormatMode_e GetFormatMode(unsigned idx) const;
    FormatMode_e GetFormatModeCvbs(unsigned idx) const;
    uint32_t GetVideoFormat(unsigned idx) const;
    uint32_t GetVideoFormatCvbs(unsigned idx) const;
    VideoOutputInterface_e GetVideoOutputInterface() const;

    // ---- Application (poller thread). Each returns the OR of the platform
    // results it collected; a group runs when dirty or forced, and its flag is
    // cleared. The video format result is deliberately not propagated: the
    // video group always contributes false.
    bool ApplySettings(bool force);
    bool ApplyVideoSettings(bool force);
    bool ApplyAudioSettings(bool force);
    bool ApplyClosedCaptionSettings(bool force);
    bool ApplyVideoFormatSetting(unsigned idx);
    bool ApplyAnalogAudioSetting(unsigned idx);
    bool ApplyOverlayCcSetting();
    bool ApplyCompositeLine21CcSetting();

    // ---- Not part of any apply pass.
    bool ApplyVideoRasterGroupSetting(unsigned idx);
    bool ApplyVideoColorSpaceSetting(unsigned idx);
    // The board has no aspect-ratio conversion to drive: does nothing (no
    // platform call, flags untouched) and returns false.
    bool ApplyAspectRatioSettings(bool force);
    // True when the HD output format (derived as the apply pass does) is a UHD mode.
    bool IsUHDFormat();

private:
    struct Format {
        uint32_t width = 0;
        uint32_t height = 0;
        VideoScanType_e scanType = VIDEO_SCAN_TYPE_UNKNOWN;
        VideoFrameRate_e frameRate = VIDEO_FRAME_RATE_UNKNOWN;
        VideoAspectRatio_e aspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
    };

    bool CheckVideoIndex(const char* fn, unsigned idx) const;
    bool CheckAudioIndex(const char* fn, unsigned idx) const;
    bool Reject(const char* fn, int value) const;
    // The format the settings ask for: the decoder's in automatic mode, the
    // host's code in manual mode.
    Format RequestedFormat(const char* fn, FormatMode_e mode, uint32_t code);
    static Format DecodeManualFormat(uint32_t code);
    // The format to put out on `iface`; false when the decoder has nothing yet.
    bool OutputFormat(const char* fn, unsigned idx, VideoOutputInterface_e iface, Format& f);
    _VOUT_FORMAT_E CompositeStandard(unsigned idx, const Format& f) const;

    log4cpp::Category& m_Log;
    IVideoDecoder& m_VideoDecoder;
    IVideoOutput& m_VideoOutput;
    IAudioOutput& m_AudioOutput;
    [[maybe_unused]] IDecoderChip& m_DecoderChip;  // held, not used here
    IClosedCaption& m_ClosedCaption;
    [[maybe_unused]] IDemux& m_Demux;  // held, not used here
    std::atomic<Status_e> m_VideoOutDecodeStatus{STATUS_ACTIVE};
    std::atomic<VideoOutputInterface_e> m_VideoOutputInterface{VIDEO_OUTPUT_INTERFACE_HD};
    std::vector<VideoSettings_t> m_HdVideoSettings;         // one element
    std::vector<VideoSettings_t> m_CompositeVideoSettings;  // one element; formatMode and videoFormat only
    std::vector<AudioSettings_t> m_AudioSettings;           // one element
    std::atomic<bool> m_ClosedCaptionDirty{false};
    std::atomic<bool> m_CompositeLine21CcEnabled{false};
    std::atomic<OverlayCcType_e> m_OverlayCcType{static_cast<OverlayCcType_e>(0)};
    std::atomic<OverlayNtscCcType_e> m_OverlayNtscCcDataType{static_cast<OverlayNtscCcType_e>(0)};
    std::atomic<OverlayDtvCcType_e> m_OverlayDtvCcDataType{static_cast<OverlayDtvCcType_e>(0)};
    std::atomic<bool> m_OverlayCcEnabled{false};
    std::vector<AspectRatioSettings_t> m_AspectRatioSettings;  // one element
};
