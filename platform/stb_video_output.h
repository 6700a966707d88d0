// StbVideoOutput: turns the output format chosen by the output settings
// manager into the display's format and rate codes (vout_display_set).
// Poller thread. Handles come from the chip bring-up; owned by the assembly.
#pragma once

#include <cstdint>

#include <log4cpp/Category.hh>

#include "platform/decoder_types.h"
#include "platform/i_decoder_control.h"
#include "platform/i_decoder_event_source.h"
#include "platform/i_video_output.h"
#include "platform/stb_module.h"

class StbVideoOutput : public IVideoOutput, public IDecoderEventSource, public IDecoderControl {
public:
    StbVideoOutput();

    // Reads the display attributes, sets the format code (word 0) and the rate
    // code (word 1) and writes them back. True when the display took them; only
    // then does GetFormat report the new format.
    bool SetFormat(uint32_t width, uint32_t height, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                   VideoAspectRatio_e aspectRatio, _VOUT_FORMAT_E compositeStd,
                   VideoOutputInterface_e outputInterface) override;
    bool SetRasterColor(RasterColor_e) override { return true; }
    bool SetRasterMode(RasterMode_e) override { return true; }
    bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                   VideoAspectRatio_e& aspectRatio) override;
    bool SetColourSpace(ColourSpace) override { return true; }
    bool SetAspectRatio(VideoAspectRatio_e) override { return true; }
    bool SetDisplayMode(SdDisplayMode_e) override { return true; }
    bool SetDisplayMode(HdDisplayMode_e) override { return true; }
    bool SetCvbsState(bool) override { return true; }
    // Logs the request only: the display has no latency setting.
    bool SetLatency(int ms) override;

    bool Subscribe(const DecoderEventHandler&) override { return true; }
    bool Unsubscribe(const DecoderEventHandler&) override { return true; }
    bool Start() override { return true; }
    bool Stop() override { return true; }

    void BondOutHandle(uint32_t voutHandle) { m_VoutHandle = voutHandle; }
    void BondWindowHandle(uint32_t windowHandle) { m_WindowHandle = windowHandle; }

private:
    log4cpp::Category& m_Logger;
    uint32_t m_Width = 0;
    uint32_t m_Height = 0;
    VideoScanType_e m_ScanType = VIDEO_SCAN_TYPE_UNKNOWN;
    VideoFrameRate_e m_FrameRate = VIDEO_FRAME_RATE_UNKNOWN;
    VideoAspectRatio_e m_AspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
    uint32_t m_VoutHandle = 0;
    uint32_t m_WindowHandle = 0;
};
