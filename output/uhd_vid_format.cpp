// UhdVidFormat: packing and unpacking of the format code with explicit shifts.
#include "output/uhd_vid_format.h"

namespace {

uint32_t ReverseBytes(uint32_t v) {
    return (v >> 24) | ((v >> 8) & 0x0000FF00u) | ((v << 8) & 0x00FF0000u) | (v << 24);
}

}  // namespace

UhdVidFormat::UhdVidFormat(uint32_t height, uint32_t width, ScanType_e scanType, AspectRatio_e aspectRatio,
                           FrameRate_e frameRate)
    : UhdVidFormat(SizeToResolution(height, width), scanType, aspectRatio, frameRate) {}

UhdVidFormat::UhdVidFormat(Resolution_e resolution, ScanType_e scanType, AspectRatio_e aspectRatio,
                           FrameRate_e frameRate)
    : VideoFormatBase(Pack(resolution, scanType, aspectRatio, frameRate)) {}

uint32_t UhdVidFormat::Pack(uint32_t resolution, uint32_t scanType, uint32_t aspectRatio, uint32_t frameRate) {
    uint32_t b = ((resolution & 0x3FFFFFu) << 10) | ((scanType & 0x3u) << 8) | ((frameRate & 0xFu) << 4) |
                 (aspectRatio & 0xFu);
    return ReverseBytes(b);
}

VideoFormatBase::Resolution_e UhdVidFormat::GetResolution() const {
    return static_cast<Resolution_e>(ReverseBytes(m_Id) >> 10);
}

VideoFormatBase::ScanType_e UhdVidFormat::GetScanType() const {
    return static_cast<ScanType_e>((ReverseBytes(m_Id) >> 8) & 0x3u);
}

VideoFormatBase::FrameRate_e UhdVidFormat::GetFrameRate() const {
    return static_cast<FrameRate_e>((ReverseBytes(m_Id) >> 4) & 0xFu);
}

VideoFormatBase::AspectRatio_e UhdVidFormat::GetAspectRatio() const {
    return static_cast<AspectRatio_e>(ReverseBytes(m_Id) & 0xFu);
}

uint32_t UhdVidFormat::GetHeight() const {
    static const uint32_t kHeights[] = {480, 576, 720, 1080, 2160, 2160};
    uint32_t r = GetResolution();
    return r < 6 ? kHeights[r] : 0;
}

uint32_t UhdVidFormat::GetWidth() const {
    static const uint32_t kWidths[] = {720, 720, 1280, 1920, 3840, 4096};
    uint32_t r = GetResolution();
    return r < 6 ? kWidths[r] : 0;
}

std::string UhdVidFormat::GetFormatString() const {
    return GetResolutionString(GetResolution()) + GetScanTypeString(GetScanType()) + " " +
           GetAspectRatioString(GetAspectRatio()) + " " + GetFrameRateString(GetFrameRate()) + "fps";
}
