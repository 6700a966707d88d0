// FakeVideoOutput: recording double of IVideoOutput, IDecoderEventSource and
// IDecoderControl. SetFormat stores the format (unless told to fail), and
// GetFormat reports the format last set, as the display does. Any thread.
#pragma once

#include "platform/i_decoder_event_source.h"
#include "platform/i_video_output.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeVideoOutputState : VideoFormatState {
    int setFormatCount = 0;
};

class FakeVideoOutput : public IVideoOutput, public IDecoderEventSource, public FakeControl<FakeVideoOutputState> {
public:
    explicit FakeVideoOutput(CallLog& log) : FakeControl(log, "IVideoOutput") {}

    bool SetFormat(uint32_t width, uint32_t height, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                   VideoAspectRatio_e aspectRatio, _VOUT_FORMAT_E compositeStd,
                   VideoOutputInterface_e outputInterface) override {
        auto store = [&](State& s) {
            s = {{width, height, scanType, frameRate, aspectRatio}, s.setFormatCount + 1};
            return true;
        };
        return Apply(store, "SetFormat", width, height, scanType, frameRate, aspectRatio, compositeStd,
                     outputInterface);
    }
    bool SetRasterColor(RasterColor_e color) override { return Call("SetRasterColor", color); }
    bool SetRasterMode(RasterMode_e mode) override { return Call("SetRasterMode", mode); }
    bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                   VideoAspectRatio_e& aspectRatio) override {
        return ReportFormat(width, height, scanType, frameRate, aspectRatio);
    }
    bool SetColourSpace(ColourSpace cs) override { return Call("SetColourSpace", cs); }
    bool SetAspectRatio(VideoAspectRatio_e ar) override { return Call("SetAspectRatio", ar); }
    bool SetDisplayMode(SdDisplayMode_e mode) override { return Call("SetDisplayMode", mode); }
    bool SetDisplayMode(HdDisplayMode_e mode) override { return Call("SetDisplayMode", mode); }
    bool SetCvbsState(bool on) override { return Call("SetCvbsState", on); }
    bool SetLatency(int ms) override { return Call("SetLatency", ms); }

    bool Subscribe(const DecoderEventHandler&) override { return Call("Subscribe"); }
    bool Unsubscribe(const DecoderEventHandler&) override { return Call("Unsubscribe"); }
};

}  // namespace stbav_test
