// UhdVidFormat: the video format code as a packed record of resolution, scan
// type, frame rate and aspect ratio. Value type; no thread concerns.
//
// Layout: let B be the code with its four bytes in reverse order (B = byte 0 of
// the code's little-endian image as the most significant byte):
//
//   B bit  31 ............. 10 | 9  8 | 7 ... 4 | 3 ... 0
//          resolution (22 bits) | scan |  rate   | aspect
//
// e.g. 1920x1080p 50.00fps 16x9 (3, 1, 6, 3): B = 0xD63, code 0x630D0000.
// Built with shifts only, so the code is the same on any host.
#pragma once

#include <cstdint>
#include <string>

#include "output/video_format_base.h"

class UhdVidFormat : public VideoFormatBase {
public:
    // Adopts a code as given.
    explicit UhdVidFormat(uint32_t code = 0) : VideoFormatBase(code) {}
    // Resolution from SizeToResolution(height, width); fields wider than their
    // place are masked.
    UhdVidFormat(uint32_t height, uint32_t width, ScanType_e scanType, AspectRatio_e aspectRatio,
                 FrameRate_e frameRate);
    UhdVidFormat(Resolution_e resolution, ScanType_e scanType, AspectRatio_e aspectRatio, FrameRate_e frameRate);

    // 480, 576, 720, 1080 or 2160 by resolution; 0 for a resolution above 5.
    uint32_t GetHeight() const override;
    // 720, 1280, 1920, 3840 or 4096 by resolution; 0 for a resolution above 5.
    uint32_t GetWidth() const override;
    ScanType_e GetScanType() const override;
    FrameRate_e GetFrameRate() const override;
    AspectRatio_e GetAspectRatio() const override;
    // e.g. "1920x1080p 16x9 50.00fps"
    std::string GetFormatString() const override;

    Resolution_e GetResolution() const;

private:
    static uint32_t Pack(uint32_t resolution, uint32_t scanType, uint32_t aspectRatio, uint32_t frameRate);
};
