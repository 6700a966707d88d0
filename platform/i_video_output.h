// IVideoOutput: the display side of the board (HD and composite outputs).
// Called on the poller thread by the output settings manager (setters) and the
// video status processor (GetFormat).
#pragma once

#include <cstdint>

#include "platform/decoder_types.h"
#include "platform/stb_module.h"

class IVideoOutput {
public:
    virtual ~IVideoOutput() = default;

    // Sets the output format. compositeStd is the display format code used for
    // interlaced SD on the composite interface. True on success; false on a
    // platform failure, with the current format unchanged.
    virtual bool SetFormat(uint32_t width, uint32_t height, VideoScanType_e scanType,
                           VideoFrameRate_e frameRate, VideoAspectRatio_e aspectRatio,
                           _VOUT_FORMAT_E compositeStd, VideoOutputInterface_e outputInterface) = 0;
    // Raster colour. True on success.
    virtual bool SetRasterColor(RasterColor_e color) = 0;
    // Raster mode. True on success.
    virtual bool SetRasterMode(RasterMode_e mode) = 0;
    // Format last set successfully (all zero before the first). True on success.
    virtual bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                           VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio) = 0;
    // Colour space of the output. True on success.
    virtual bool SetColourSpace(ColourSpace colourSpace) = 0;
    // Output aspect ratio. True on success.
    virtual bool SetAspectRatio(VideoAspectRatio_e aspectRatio) = 0;
    // Presentation of other aspect ratios on the SD output. True on success.
    virtual bool SetDisplayMode(SdDisplayMode_e mode) = 0;
    // Presentation of other aspect ratios on the HD output. True on success.
    virtual bool SetDisplayMode(HdDisplayMode_e mode) = 0;
    // Composite output on or off. True on success.
    virtual bool SetCvbsState(bool on) = 0;
    // Output latency in ms. True on success.
    virtual bool SetLatency(int ms) = 0;

protected:
    IVideoOutput() = default;
    IVideoOutput(const IVideoOutput&) = delete;
    IVideoOutput& operator=(const IVideoOutput&) = delete;
};
