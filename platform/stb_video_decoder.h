// StbVideoDecoder: the video decoder over the media library. Its getters run on
// the poller thread and read the live status record and the stream probe's cache.
// AvEventCallback runs on the library's event thread and writes the class-wide
// atomics below. Owned by the subsystem assembly; holds the probe by reference.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include <log4cpp/Category.hh>

#include "platform/decoder_types.h"
#include "platform/ff_av_probe.h"
#include "platform/i_decoder_control.h"
#include "platform/i_video_decoder.h"
#include "platform/stb_module.h"

class StbVideoDecoder : public IVideoDecoder, public IDecoderControl {
public:
    explicit StbVideoDecoder(FfAvProbe& probe);

    bool SetCodec(VideoType_e codec) override;
    VideoType_e GetCodec() override;
    bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                   VideoAspectRatio_e& aspectRatio) override;
    VideoChromaFormat_e GetChromaFormat() override;
    VideoScanType_e GetVideoScanType() override;
    VideoAspectRatio_e GetVideoAspectRatio() override;
    VideoProfile_e GetProfile() override;
    VideoLevel_e GetLevel() override;
    std::string GetServiceName(uint16_t programNumber) override;
    ChromaBitDepth_e GetBitDepth() override;
    uint32_t GetBitrate() override;
    uint32_t GetFrameCount() override;
    uint32_t GetDecodeFailureReason() override;
    uint32_t GetVideoSyncStatus() override;

    bool Start() override { return true; }
    bool Stop() override { return true; }

    // Handles from the chip bring-up; class-wide because the event callback is a
    // plain function.
    void BondAvHandle(uint32_t avHandle) { m_AvHandle = avHandle; }
    void BondWindowHandle(uint32_t windowHandle) { m_WindowHandle = windowHandle; }
    // Nothing to do: the chip bring-up already opened the window.
    void Initialize() {}

    // The player's event callback (registered by the chip's DisplayStart). Handles
    // event 2 (video format changed): records aspect and chroma, and reopens the
    // window when the source height changes. Always 0. Library's event thread.
    static int AvEventCallback(uint32_t handle, _AV_EVENT_E event, const void* data);

    // Written by the event thread and the bring-up, read by the poller thread.
    static std::atomic<uint32_t> m_AvHandle;
    static std::atomic<uint32_t> m_WindowHandle;
    static std::atomic<uint32_t> m_AspectRatio;
    static std::atomic<uint32_t> m_ChromaFormat;
    static std::atomic<uint32_t> m_NewSrcHeight;
    static std::atomic<uint32_t> m_OldSrcHeight;

private:
    // The status record and the video PID in use; logs "<name> get status info
    // error" (error or warning) and returns false on a platform failure.
    bool ReadStatus(AvStatusInfo& status, const char* name, bool asError);

    log4cpp::Category& m_Logger;
    FfAvProbe& m_Probe;
    VideoType_e m_Codec = VIDEO_TYPE_NONE;  // poller thread only
};
