// VideoOutputFormatGenerator: checks a decoded format against the list of
// formats the output supports and gives its format code. The list is built once
// per process and copied into each generator; a generator is then read-only
// (owned by the video status processor, used on the poller thread).
#pragma once

#include <cstdint>
#include <vector>

#include "output/uhd_vid_format.h"
#include "platform/decoder_types.h"
#include "toolkit/kt_uncopyable.h"

// One supported output format, in decoder attributes, with its code.
struct UhdVideoFormatMatrix_t {
    uint32_t height;
    uint32_t width;
    VideoScanType_e scanType;
    VideoAspectRatio_e aspectRatio;
    VideoFrameRate_e frameRate;
    UhdVidFormat format;
};

// Result of a lookup: whether the format is supported, and its code either way.
struct ValueState_t {
    bool valid = false;
    UhdVidFormat format;
};

class VideoOutputFormatGenerator : private KT::CUncopyable {
public:
    VideoOutputFormatGenerator();
    virtual ~VideoOutputFormatGenerator() = default;

    // valid when some supported format has exactly these attributes; format is
    // the code of the attributes (converted to code attributes) in every case.
    ValueState_t GetFormat(uint32_t height, uint32_t width, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                           VideoAspectRatio_e aspectRatio) const;

    const std::vector<UhdVideoFormatMatrix_t>& Formats() const { return m_Formats; }

private:
    std::vector<UhdVideoFormatMatrix_t> m_Formats;
};
