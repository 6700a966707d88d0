// FakeVideoOutput: recording double of IVideoOutput, IDecoderEventSource and
// IDecoderControl. SetFormat stores the format (unless told to fail), and
// GetFormat reports the format last set, as the display does. Any thread.
#pragma once

#include <string>

#include "platform/i_decoder_control.h"
#include "platform/i_decoder_event_source.h"
#include "platform/i_video_output.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeVideoOutputState {
    uint32_t width = 0;
    uint32_t height = 0;
    VideoScanType_e scanType = VIDEO_SCAN_TYPE_UNKNOWN;
    VideoFrameRate_e frameRate = VIDEO_FRAME_RATE_UNKNOWN;
    VideoAspectRatio_e aspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
    _VOUT_FORMAT_E compositeStd = VOUT_FORMAT_UNSET;
    VideoOutputInterface_e outputInterface = VIDEO_OUTPUT_INTERFACE_HD;
    int setFormatCount = 0;
    RasterColor_e rasterColor = RASTER_COLOR_BLACK;
    RasterMode_e rasterMode = RASTER_MODE_OFF;
    ColourSpace colourSpace = COLOUR_SPACE_HD;
    VideoAspectRatio_e outputAspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
    SdDisplayMode_e sdDisplayMode = SD_DISPLAY_MODE_NONE;
    HdDisplayMode_e hdDisplayMode = HD_DISPLAY_MODE_NONE;
    bool cvbsOn = false;
    int latencyMs = 0;
    int subscriberCount = 0;
    bool started = false;
};

class FakeVideoOutput : public IVideoOutput,
                        public IDecoderEventSource,
                        public IDecoderControl,
                        public FakeBase<FakeVideoOutputState> {
public:
    using State = FakeVideoOutputState;

    explicit FakeVideoOutput(CallLog& log, std::string name = "IVideoOutput") : FakeBase(log, std::move(name)) {}

    bool SetFormat(uint32_t width, uint32_t height, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                   VideoAspectRatio_e aspectRatio, _VOUT_FORMAT_E compositeStd,
                   VideoOutputInterface_e outputInterface) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("SetFormat", width, height, scanType, frameRate, aspectRatio, compositeStd, outputInterface))
            return false;
        m_State = Stored(m_State, width, height, scanType, frameRate, aspectRatio);
        m_State.compositeStd = compositeStd;
        m_State.outputInterface = outputInterface;
        ++m_State.setFormatCount;
        return true;
    }
    bool SetRasterColor(RasterColor_e color) override { return Store("SetRasterColor", &State::rasterColor, color); }
    bool SetRasterMode(RasterMode_e mode) override { return Store("SetRasterMode", &State::rasterMode, mode); }
    bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                   VideoAspectRatio_e& aspectRatio) override {
        return ReportFormat(width, height, scanType, frameRate, aspectRatio);
    }
    bool SetColourSpace(ColourSpace cs) override { return Store("SetColourSpace", &State::colourSpace, cs); }
    bool SetAspectRatio(VideoAspectRatio_e ar) override {
        return Store("SetAspectRatio", &State::outputAspectRatio, ar);
    }
    bool SetDisplayMode(SdDisplayMode_e mode) override { return Store("SetDisplayMode", &State::sdDisplayMode, mode); }
    bool SetDisplayMode(HdDisplayMode_e mode) override { return Store("SetDisplayMode", &State::hdDisplayMode, mode); }
    bool SetCvbsState(bool on) override { return Store("SetCvbsState", &State::cvbsOn, on); }
    bool SetLatency(int ms) override { return Store("SetLatency", &State::latencyMs, ms); }

    bool Subscribe(const DecoderEventHandler&) override { return Subscribers("Subscribe", +1); }
    bool Unsubscribe(const DecoderEventHandler&) override { return Subscribers("Unsubscribe", -1); }
    bool Start() override { return SetFlag("Start", &State::started, true); }
    bool Stop() override { return SetFlag("Stop", &State::started, false); }

private:
    static State Stored(State s, uint32_t width, uint32_t height, VideoScanType_e scan, VideoFrameRate_e rate,
                        VideoAspectRatio_e aspect) {
        s.width = width;
        s.height = height;
        s.scanType = scan;
        s.frameRate = rate;
        s.aspectRatio = aspect;
        return s;
    }
};

}  // namespace stbav_test
