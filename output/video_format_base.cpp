// Free helpers of the video format codes: size to resolution and display strings.
#include "output/video_format_base.h"

namespace {

const char* const kNotAvailable = "(n/a)";

// Indexed by the enumeration value; out of range gives "(n/a)".
template <size_t N>
std::string Lookup(const char* const (&table)[N], uint32_t value) {
    return value < N && table[value] != nullptr ? table[value] : kNotAvailable;
}

const char* const kResolutions[] = {"720x480", "720x576", "1280x720", "1920x1080", "3840x2160", "4096x2160"};
const char* const kScanTypes[] = {"i", "p", "psF"};
const char* const kFrameRates[] = {nullptr, "23.98", "24.00", "25.00", "29.97", "30.00", "50.00", "59.94", "60.00"};
const char* const kAspectRatios[] = {nullptr, "1x1", "4x3", "16x9", "2.21x1", "1.9x1"};

}  // namespace

VideoFormatBase::Resolution_e SizeToResolution(uint32_t height, uint32_t width) {
    switch (width) {
        case 720: return height == 576 ? VideoFormatBase::RESOLUTION_720X576 : VideoFormatBase::RESOLUTION_720X480;
        case 1280: return VideoFormatBase::RESOLUTION_1280X720;
        case 1920: return VideoFormatBase::RESOLUTION_1920X1080;
        case 3840: return VideoFormatBase::RESOLUTION_3840X2160;
        case 4096: return VideoFormatBase::RESOLUTION_4096X2160;
        default: return VideoFormatBase::RESOLUTION_720X480;
    }
}

std::string GetResolutionString(VideoFormatBase::Resolution_e resolution) { return Lookup(kResolutions, resolution); }

bool GetResolutionString(uint32_t height, uint32_t width, std::string& out) {
    switch (width) {
        case 720: out = height == 576 ? "720x576" : "720x480"; break;
        case 1280:
        case 1920:
        case 3840:
        case 4096: out = GetResolutionString(SizeToResolution(height, width)); break;
        default: out = kNotAvailable; break;
    }
    return true;
}

std::string GetScanTypeString(VideoFormatBase::ScanType_e scanType) { return Lookup(kScanTypes, scanType); }

bool GetScanTypeString(bool segmentedFrame, bool progressive, std::string& out) {
    out = segmentedFrame ? "psF" : (progressive ? "p" : "i");
    return true;
}

std::string GetFrameRateString(VideoFormatBase::FrameRate_e frameRate) { return Lookup(kFrameRates, frameRate); }

std::string GetAspectRatioString(VideoFormatBase::AspectRatio_e aspectRatio) {
    return Lookup(kAspectRatios, aspectRatio);
}
