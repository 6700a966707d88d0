// Output format selection: the scaler table, the output mode numbering and the
// SD companion format.
#include "output/uhd_vid_format_helper.h"

#include <cstdio>

#include "toolkit/log.h"

namespace {

log4cpp::Category& HelperLog() {
    static log4cpp::Category& cat = stbav::Logger("UhdVidFormatHelper");
    return cat;
}

// One scaler row: an input of at least inHeight lines (the first height found at
// or below the picture's), at least inWidth pixels, and a frame rate up to
// rateLimit, comes out as out*. Scan and rates in the decoder enumerations.
struct ScalerRow {
    uint32_t inHeight;
    uint32_t inWidth;
    int32_t inScan;
    int32_t rateLimit;
    uint32_t outHeight;
    uint32_t outWidth;
    int32_t outScan;
    int32_t outRate;
};

// Ordered by input height, then input width (both descending), progressive rows
// before interlaced ones. The repeated rows are harmless and kept; so are the
// odd ones: row 141 makes 480p at limit 8 interlaced, row 168 makes 480i at
// limit 3 a 576-line output, and the 720-line rows lift rates 1..5 to 7, 8, 6, 7, 8.
const ScalerRow kScalerTable[] = {
    // in: height, width, scan, rate limit -> out: height, width, scan, rate
    {2160, 4096, 2, 2, /* -> */ 2160, 4096, 2, 2},  // 1
    {2160, 4096, 2, 3, /* -> */ 2160, 4096, 2, 3},  // 2
    {2160, 4096, 2, 5, /* -> */ 2160, 4096, 2, 5},  // 3
    {2160, 4096, 2, 6, /* -> */ 2160, 4096, 2, 6},  // 4
    {2160, 4096, 2, 8, /* -> */ 2160, 4096, 2, 8},  // 5
    {2160, 3840, 2, 1, /* -> */ 2160, 3840, 2, 1},  // 6
    {2160, 3840, 2, 2, /* -> */ 2160, 3840, 2, 2},  // 7
    {2160, 3840, 2, 3, /* -> */ 2160, 3840, 2, 3},  // 8
    {2160, 3840, 2, 4, /* -> */ 2160, 3840, 2, 4},  // 9
    {2160, 3840, 2, 5, /* -> */ 2160, 3840, 2, 5},  // 10
    {2160, 3840, 2, 6, /* -> */ 2160, 3840, 2, 6},  // 11
    {2160, 3840, 2, 8, /* -> */ 2160, 3840, 2, 8},  // 12
    {1088, 1920, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 13
    {1088, 1920, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 14
    {1088, 1920, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 15
    {1088, 1920, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 16
    {1088, 1920, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 17
    {1088, 1920, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 18
    {1088, 1920, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 19
    {1088, 1920, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 20
    {1088, 1920, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 21
    {1088, 1920, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 22
    {1088, 1920, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 23
    {1088, 1440, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 24
    {1088, 1440, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 25
    {1088, 1440, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 26
    {1088, 1440, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 27
    {1088, 1440, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 28
    {1088, 1440, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 29
    {1088, 1440, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 30
    {1088, 1440, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 31
    {1088, 1440, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 32
    {1088, 1440, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 33
    {1088, 1440, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 34
    {1088,  960, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 35
    {1088,  960, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 36
    {1088,  960, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 37
    {1088,  960, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 38
    {1088,  960, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 39
    {1088,  960, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 40
    {1088,  960, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 41
    {1088,  960, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 42
    {1088,  960, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 43
    {1088,  960, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 44
    {1088,  960, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 45
    {1080, 1920, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 46
    {1080, 1920, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 47
    {1080, 1920, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 48
    {1080, 1920, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 49
    {1080, 1920, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 50
    {1080, 1920, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 51
    {1080, 1920, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 52
    {1080, 1920, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 53
    {1080, 1920, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 54
    {1080, 1920, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 55
    {1080, 1920, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 56
    {1080, 1440, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 57
    {1080, 1440, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 58
    {1080, 1440, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 59
    {1080, 1440, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 60
    {1080, 1440, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 61
    {1080, 1440, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 62
    {1080, 1440, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 63
    {1080, 1440, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 64
    {1080, 1440, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 65
    {1080, 1440, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 66
    {1080, 1440, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 67
    {1080,  960, 2, 1, /* -> */ 1080, 1920, 2, 1},  // 68
    {1080,  960, 2, 2, /* -> */ 1080, 1920, 2, 2},  // 69
    {1080,  960, 2, 3, /* -> */ 1080, 1920, 2, 3},  // 70
    {1080,  960, 2, 4, /* -> */ 1080, 1920, 2, 4},  // 71
    {1080,  960, 2, 5, /* -> */ 1080, 1920, 2, 5},  // 72
    {1080,  960, 2, 6, /* -> */ 1080, 1920, 2, 6},  // 73
    {1080,  960, 2, 7, /* -> */ 1080, 1920, 2, 7},  // 74
    {1080,  960, 2, 8, /* -> */ 1080, 1920, 2, 8},  // 75
    {1080,  960, 1, 3, /* -> */ 1080, 1920, 1, 3},  // 76
    {1080,  960, 1, 4, /* -> */ 1080, 1920, 1, 4},  // 77
    {1080,  960, 1, 5, /* -> */ 1080, 1920, 1, 5},  // 78
    { 720, 1280, 2, 1, /* -> */  720, 1280, 2, 7},  // 79
    { 720, 1280, 2, 2, /* -> */  720, 1280, 2, 8},  // 80
    { 720, 1280, 2, 3, /* -> */  720, 1280, 2, 6},  // 81
    { 720, 1280, 2, 4, /* -> */  720, 1280, 2, 7},  // 82
    { 720, 1280, 2, 5, /* -> */  720, 1280, 2, 8},  // 83
    { 720, 1280, 2, 6, /* -> */  720, 1280, 2, 6},  // 84
    { 720, 1280, 2, 7, /* -> */  720, 1280, 2, 7},  // 85
    { 720, 1280, 2, 8, /* -> */  720, 1280, 2, 8},  // 86
    { 720,  960, 2, 1, /* -> */  720, 1280, 2, 7},  // 87
    { 720,  960, 2, 2, /* -> */  720, 1280, 2, 8},  // 88
    { 720,  960, 2, 3, /* -> */  720, 1280, 2, 6},  // 89
    { 720,  960, 2, 4, /* -> */  720, 1280, 2, 7},  // 90
    { 720,  960, 2, 5, /* -> */  720, 1280, 2, 8},  // 91
    { 720,  960, 2, 6, /* -> */  720, 1280, 2, 6},  // 92
    { 720,  960, 2, 7, /* -> */  720, 1280, 2, 7},  // 93
    { 720,  960, 2, 8, /* -> */  720, 1280, 2, 8},  // 94
    { 720,  640, 2, 1, /* -> */  720, 1280, 2, 7},  // 95
    { 720,  640, 2, 2, /* -> */  720, 1280, 2, 8},  // 96
    { 720,  640, 2, 3, /* -> */  720, 1280, 2, 6},  // 97
    { 720,  640, 2, 4, /* -> */  720, 1280, 2, 7},  // 98
    { 720,  640, 2, 5, /* -> */  720, 1280, 2, 8},  // 99
    { 720,  640, 2, 6, /* -> */  720, 1280, 2, 6},  // 100
    { 720,  640, 2, 7, /* -> */  720, 1280, 2, 7},  // 101
    { 720,  640, 2, 8, /* -> */  720, 1280, 2, 8},  // 102
    { 576,  720, 2, 2, /* -> */  576,  720, 2, 6},  // 103
    { 576,  720, 2, 3, /* -> */  576,  720, 2, 6},  // 104
    { 576,  720, 2, 6, /* -> */  576,  720, 2, 6},  // 105
    { 576,  720, 2, 2, /* -> */  576,  720, 2, 6},  // 106
    { 576,  720, 2, 3, /* -> */  576,  720, 2, 6},  // 107
    { 576,  720, 1, 3, /* -> */  576,  720, 1, 3},  // 108
    { 576,  720, 1, 3, /* -> */  576,  720, 1, 3},  // 109
    { 576,  720, 1, 6, /* -> */  576,  720, 1, 3},  // 110
    { 576,  704, 1, 3, /* -> */  576,  720, 1, 3},  // 111
    { 576,  544, 2, 2, /* -> */  576,  720, 2, 6},  // 112
    { 576,  544, 2, 3, /* -> */  576,  720, 2, 6},  // 113
    { 576,  544, 2, 2, /* -> */  576,  720, 2, 6},  // 114
    { 576,  544, 2, 3, /* -> */  576,  720, 2, 6},  // 115
    { 576,  544, 1, 3, /* -> */  576,  720, 1, 3},  // 116
    { 576,  544, 1, 3, /* -> */  576,  720, 1, 3},  // 117
    { 576,  480, 2, 2, /* -> */  576,  720, 2, 6},  // 118
    { 576,  480, 2, 3, /* -> */  576,  720, 2, 6},  // 119
    { 576,  480, 2, 2, /* -> */  576,  720, 2, 6},  // 120
    { 576,  480, 2, 3, /* -> */  576,  720, 2, 6},  // 121
    { 576,  480, 1, 3, /* -> */  576,  720, 1, 3},  // 122
    { 576,  480, 1, 3, /* -> */  576,  720, 1, 3},  // 123
    { 576,  352, 2, 2, /* -> */  576,  720, 2, 6},  // 124
    { 576,  352, 2, 3, /* -> */  576,  720, 2, 6},  // 125
    { 576,  352, 2, 2, /* -> */  576,  720, 2, 6},  // 126
    { 576,  352, 2, 3, /* -> */  576,  720, 2, 6},  // 127
    { 576,  352, 1, 3, /* -> */  576,  720, 1, 3},  // 128
    { 576,  352, 1, 3, /* -> */  576,  720, 1, 3},  // 129
    { 480,  720, 2, 1, /* -> */  480,  720, 2, 8},  // 130
    { 480,  720, 2, 2, /* -> */  480,  720, 2, 8},  // 131
    { 480,  720, 2, 4, /* -> */  480,  720, 2, 8},  // 132
    { 480,  720, 2, 5, /* -> */  480,  720, 2, 8},  // 133
    { 480,  720, 2, 7, /* -> */  480,  720, 2, 8},  // 134
    { 480,  720, 2, 8, /* -> */  480,  720, 2, 8},  // 135
    { 480,  720, 2, 1, /* -> */  480,  720, 2, 8},  // 136
    { 480,  720, 2, 2, /* -> */  480,  720, 2, 8},  // 137
    { 480,  720, 2, 4, /* -> */  480,  720, 2, 8},  // 138
    { 480,  720, 2, 5, /* -> */  480,  720, 2, 8},  // 139
    { 480,  720, 2, 7, /* -> */  480,  720, 2, 8},  // 140
    { 480,  720, 2, 8, /* -> */  480,  720, 1, 8},  // 141
    { 480,  720, 1, 4, /* -> */  480,  720, 1, 5},  // 142
    { 480,  720, 1, 5, /* -> */  480,  720, 1, 5},  // 143
    { 480,  720, 1, 4, /* -> */  480,  720, 1, 5},  // 144
    { 480,  720, 1, 5, /* -> */  480,  720, 1, 5},  // 145
    { 480,  704, 2, 1, /* -> */  480,  720, 2, 8},  // 146
    { 480,  704, 2, 2, /* -> */  480,  720, 2, 8},  // 147
    { 480,  704, 2, 4, /* -> */  480,  720, 2, 8},  // 148
    { 480,  704, 2, 5, /* -> */  480,  720, 2, 8},  // 149
    { 480,  704, 2, 7, /* -> */  480,  720, 2, 8},  // 150
    { 480,  704, 2, 8, /* -> */  480,  720, 2, 8},  // 151
    { 480,  704, 2, 1, /* -> */  480,  720, 2, 8},  // 152
    { 480,  704, 2, 2, /* -> */  480,  720, 2, 8},  // 153
    { 480,  704, 2, 4, /* -> */  480,  720, 2, 8},  // 154
    { 480,  704, 2, 5, /* -> */  480,  720, 2, 8},  // 155
    { 480,  704, 2, 7, /* -> */  480,  720, 2, 8},  // 156
    { 480,  704, 2, 8, /* -> */  480,  720, 2, 8},  // 157
    { 480,  704, 1, 4, /* -> */  480,  720, 1, 5},  // 158
    { 480,  704, 1, 5, /* -> */  480,  720, 1, 5},  // 159
    { 480,  704, 1, 4, /* -> */  480,  720, 1, 5},  // 160
    { 480,  704, 1, 5, /* -> */  480,  720, 1, 5},  // 161
    { 480,  640, 2, 1, /* -> */  480,  720, 2, 8},  // 162
    { 480,  640, 2, 2, /* -> */  480,  720, 2, 8},  // 163
    { 480,  640, 2, 4, /* -> */  480,  720, 2, 8},  // 164
    { 480,  640, 2, 5, /* -> */  480,  720, 2, 8},  // 165
    { 480,  640, 2, 7, /* -> */  480,  720, 2, 8},  // 166
    { 480,  640, 2, 8, /* -> */  480,  720, 2, 8},  // 167
    { 480,  640, 1, 3, /* -> */  576,  720, 1, 5},  // 168
    { 480,  640, 1, 4, /* -> */  480,  720, 1, 5},  // 169
    { 480,  640, 1, 5, /* -> */  480,  720, 1, 5},  // 170
    { 480,  544, 2, 1, /* -> */  480,  720, 2, 8},  // 171
    { 480,  544, 2, 1, /* -> */  480,  720, 2, 8},  // 172
    { 480,  544, 2, 4, /* -> */  480,  720, 2, 8},  // 173
    { 480,  544, 2, 4, /* -> */  480,  720, 2, 8},  // 174
    { 480,  544, 1, 4, /* -> */  480,  720, 1, 5},  // 175
    { 480,  544, 1, 4, /* -> */  480,  720, 1, 5},  // 176
    { 480,  528, 2, 1, /* -> */  480,  720, 2, 8},  // 177
    { 480,  528, 1, 4, /* -> */  480,  720, 1, 5},  // 178
    { 480,  480, 2, 1, /* -> */  480,  720, 2, 8},  // 179
    { 480,  480, 2, 1, /* -> */  480,  720, 2, 8},  // 180
    { 480,  480, 2, 4, /* -> */  480,  720, 2, 8},  // 181
    { 480,  480, 2, 4, /* -> */  480,  720, 2, 8},  // 182
    { 480,  480, 1, 4, /* -> */  480,  720, 1, 5},  // 183
    { 480,  480, 1, 4, /* -> */  480,  720, 1, 5},  // 184
    { 480,  352, 2, 1, /* -> */  480,  720, 2, 8},  // 185
    { 480,  352, 2, 1, /* -> */  480,  720, 2, 8},  // 186
    { 480,  352, 2, 4, /* -> */  480,  720, 2, 8},  // 187
    { 480,  352, 2, 4, /* -> */  480,  720, 2, 8},  // 188
    { 480,  352, 1, 4, /* -> */  480,  720, 1, 5},  // 189
    { 480,  352, 1, 4, /* -> */  480,  720, 1, 5},  // 190
    {0, 0, 0, 0, /* -> */ 0, 0, 0, 0},  // end of table
};

// The small-picture / no-match fall-back: 576i25 for the 25 Hz family, else 480i29.97.
void FallBack(uint32_t& height, uint32_t& width, VideoScanType_e& scanType, VideoFrameRate_e& frameRate) {
    bool fiftyHz = frameRate == VIDEO_FRAME_RATE_25 || frameRate == VIDEO_FRAME_RATE_50;
    height = fiftyHz ? 576 : 480;
    width = 720;
    scanType = VIDEO_SCAN_TYPE_INTERLACED;
    frameRate = fiftyHz ? VIDEO_FRAME_RATE_25 : VIDEO_FRAME_RATE_29_97;
}

// Rows are searched from the first whose height is not above the picture's; the
// search ends at the next height once a candidate exists. The first row that
// fits width and rate is the candidate; a fitting row with the same scan wins.
const ScalerRow* FindScalerRow(uint32_t height, uint32_t width, int32_t scan, int32_t rate) {
    const ScalerRow* best = nullptr;
    for (const ScalerRow* row = kScalerTable; row->inHeight != 0; ++row) {
        if (row->inHeight > height) continue;
        if (best != nullptr && row->inHeight != best->inHeight) break;
        if (row->inWidth <= width && row->rateLimit >= rate) {
            if (best == nullptr) best = row;
            if (row->inScan == scan) return row;
        }
    }
    return best;
}

}  // namespace

VideoFormatBase::ScanType_e GetUhdScanType(VideoScanType_e scanType) {
    switch (scanType) {
        case VIDEO_SCAN_TYPE_PROGRESSIVE: return VideoFormatBase::SCAN_TYPE_PROGRESSIVE;
        case VIDEO_SCAN_TYPE_PSF: return VideoFormatBase::SCAN_TYPE_PSF;
        default: return VideoFormatBase::SCAN_TYPE_INTERLACED;
    }
}

VideoFormatBase::FrameRate_e GetUhdFrameRate(VideoFrameRate_e frameRate) {
    if (frameRate >= VIDEO_FRAME_RATE_23_976 && frameRate <= VIDEO_FRAME_RATE_60) {
        return static_cast<VideoFormatBase::FrameRate_e>(frameRate);
    }
    return VideoFormatBase::FRAME_RATE_23_98;
}

VideoFormatBase::AspectRatio_e GetUhdAspectRatio(VideoAspectRatio_e aspect) {
    switch (aspect) {
        case VIDEO_ASPECT_RATIO_16X9: return VideoFormatBase::ASPECT_RATIO_16X9;
        case VIDEO_ASPECT_RATIO_4X3: return VideoFormatBase::ASPECT_RATIO_4X3;
        default: return VideoFormatBase::ASPECT_RATIO_1X1;
    }
}

void GetValidScalerSettings(uint32_t& height, uint32_t& width, VideoScanType_e& scanType,
                            VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio, unsigned videoIndex) {
    if (videoIndex != 0) {
        stbav::LogError(HelperLog(), "OutputManager::%s, videoIndex is out of range (0), actual: %u", __func__,
                         videoIndex);
        return;
    }
    if (height == 0 || width == 0 || frameRate == 0) {
        stbav::LogError(HelperLog(),
                         "OutputManager::%s invalid input: height: %d, width: %d, frameRate: %d, videoIndex: %d",
                         __func__, static_cast<int>(height), static_cast<int>(width), static_cast<int>(frameRate),
                         static_cast<int>(videoIndex));
    }
    if (height < 480 || width < 352 || frameRate < 0) {
        if (aspectRatio != VIDEO_ASPECT_RATIO_16X9 && aspectRatio != VIDEO_ASPECT_RATIO_4X3) {
            aspectRatio = VIDEO_ASPECT_RATIO_16X9;
        }
        FallBack(height, width, scanType, frameRate);
        return;
    }
    const ScalerRow* row = FindScalerRow(height, width, scanType, frameRate);
    if (row == nullptr) {
        FallBack(height, width, scanType, frameRate);
    } else {
        height = row->outHeight;
        width = row->outWidth;
        scanType = static_cast<VideoScanType_e>(row->outScan);
        frameRate = static_cast<VideoFrameRate_e>(row->outRate);
    }
    aspectRatio = VIDEO_ASPECT_RATIO_16X9;
}

int getVideoMode(uint32_t height, uint32_t width, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                 VideoAspectRatio_e aspectRatio, unsigned /*videoIndex*/) {
    const int f = frameRate;
    const bool nominal = f >= 1 && f <= 8;
    switch (height) {
        case 2160:
            if (width == 4096) return nominal ? 8 - f : 3;
            if (width == 3840) return nominal ? 16 - f : 11;
            return kNoVideoMode;
        case 1080:
            if (scanType == VIDEO_SCAN_TYPE_PROGRESSIVE) return nominal ? 24 - f : 19;
            if (scanType == VIDEO_SCAN_TYPE_PSF) return kNoVideoMode;
            return f == VIDEO_FRAME_RATE_25 ? 26 : (f == VIDEO_FRAME_RATE_29_97 ? 25 : 24);
        case 720: return f == VIDEO_FRAME_RATE_50 ? 31 : (f == VIDEO_FRAME_RATE_59_94 ? 30 : 29);
        case 576: return aspectRatio == VIDEO_ASPECT_RATIO_16X9 ? 33 : 37;
        case 480: return aspectRatio == VIDEO_ASPECT_RATIO_16X9 ? 35 : 39;
        default: return 8;
    }
}

bool GetSDFormatSimultaneousHD(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                               VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio) {
    switch (getVideoMode(height, width, scanType, frameRate, aspectRatio, 0)) {
        case 16: case 17: case 19: case 20: case 22: case 23: case 24: case 25: case 29: case 30:
            width = 720;
            height = 480;
            frameRate = VIDEO_FRAME_RATE_29_97;
            break;
        case 18: case 21: case 26: case 31:  // the 50 Hz and 25 Hz families
            width = 720;
            height = 576;
            frameRate = VIDEO_FRAME_RATE_25;
            break;
        default: return true;  // UHD, SD and invalid modes stay
    }
    scanType = VIDEO_SCAN_TYPE_INTERLACED;
    aspectRatio = VIDEO_ASPECT_RATIO_16X9;
    return true;
}

std::string TransVideoFormatString(int width, int height, VideoScanType_e scanType, VideoFrameRate_e frameRate) {
    static const int kRates[] = {23, 24, 25, 29, 30, 50, 59, 60};
    if (frameRate < 1 || frameRate > 8) return std::string();
    char buf[48];
    std::snprintf(buf, sizeof(buf), "%dx%d-%d", width, height, kRates[frameRate - 1]);
    std::string s(buf);
    if (scanType == VIDEO_SCAN_TYPE_PROGRESSIVE) s += "P";
    if (scanType == VIDEO_SCAN_TYPE_INTERLACED) s += "I";
    if (s == "720x576-25I") return "720x576-25I-PAL-BDGI";
    if (s == "720x480-29I") return "720x480-29I-NTSC";
    return s;
}
