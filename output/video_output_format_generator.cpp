// The supported output formats and the lookup over them.
#include "output/video_output_format_generator.h"

#include <initializer_list>

#include "output/uhd_vid_format_helper.h"

namespace {

UhdVideoFormatMatrix_t Row(uint32_t height, uint32_t width, VideoScanType_e scan, VideoAspectRatio_e aspect,
                           VideoFrameRate_e rate) {
    return {height, width, scan, aspect, rate,
            UhdVidFormat(height, width, GetUhdScanType(scan), GetUhdAspectRatio(aspect), GetUhdFrameRate(rate))};
}

// Appends one row per frame rate of `rates`, in that order.
void AddRates(std::vector<UhdVideoFormatMatrix_t>& list, uint32_t height, uint32_t width, VideoScanType_e scan,
              VideoAspectRatio_e aspect, std::initializer_list<int> rates) {
    for (int r : rates) list.push_back(Row(height, width, scan, aspect, static_cast<VideoFrameRate_e>(r)));
}

std::vector<UhdVideoFormatMatrix_t> BuildSupportedFormats() {
    const auto P = VIDEO_SCAN_TYPE_PROGRESSIVE;
    const auto I = VIDEO_SCAN_TYPE_INTERLACED;
    const auto WIDE = VIDEO_ASPECT_RATIO_16X9;
    const auto NARROW = VIDEO_ASPECT_RATIO_4X3;
    std::vector<UhdVideoFormatMatrix_t> list;
    AddRates(list, 2160, 3840, P, WIDE, {1, 2, 3, 4, 5, 6, 7, 8});
    AddRates(list, 2160, 4096, P, WIDE, {1, 2, 3, 4, 5, 6, 7, 8});
    AddRates(list, 1080, 1920, P, WIDE, {8, 7, 6, 5, 4, 3, 2, 1});
    AddRates(list, 1080, 1920, I, WIDE, {5, 4, 3});
    AddRates(list, 720, 1280, P, WIDE, {8, 7, 6});
    AddRates(list, 576, 720, I, WIDE, {3});
    AddRates(list, 576, 720, I, NARROW, {3});
    AddRates(list, 480, 720, I, WIDE, {4});
    AddRates(list, 480, 720, I, NARROW, {4});
    return list;
}

// Built on first use, once per process (thread-safe static initialisation).
const std::vector<UhdVideoFormatMatrix_t>& SupportedFormats() {
    static const std::vector<UhdVideoFormatMatrix_t> formats = BuildSupportedFormats();
    return formats;
}

}  // namespace

VideoOutputFormatGenerator::VideoOutputFormatGenerator() : m_Formats(SupportedFormats()) {}

ValueState_t VideoOutputFormatGenerator::GetFormat(uint32_t height, uint32_t width, VideoScanType_e scanType,
                                                   VideoFrameRate_e frameRate, VideoAspectRatio_e aspectRatio) const {
    ValueState_t result;
    result.format = UhdVidFormat(height, width, GetUhdScanType(scanType), GetUhdAspectRatio(aspectRatio),
                                 GetUhdFrameRate(frameRate));
    for (const auto& f : m_Formats) {
        if (f.height == height && f.width == width && f.scanType == scanType && f.aspectRatio == aspectRatio &&
            f.frameRate == frameRate) {
            result.valid = true;
        }
    }
    return result;
}
