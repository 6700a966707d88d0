// VideoFormatBase: abstract holder of a 32-bit video format code (the id) as the
// host and the settings exchange it, with the attribute enumerations stored in
// the code and the free helpers that print them. Value type; no thread concerns.
#pragma once

#include <cstdint>
#include <string>

class VideoFormatBase {
public:
    enum Resolution_e : uint32_t {
        RESOLUTION_720X480 = 0,
        RESOLUTION_720X576 = 1,
        RESOLUTION_1280X720 = 2,
        RESOLUTION_1920X1080 = 3,
        RESOLUTION_3840X2160 = 4,
        RESOLUTION_4096X2160 = 5
    };
    enum ScanType_e : uint32_t {
        SCAN_TYPE_INTERLACED = 0,
        SCAN_TYPE_PROGRESSIVE = 1,
        SCAN_TYPE_PSF = 2  // progressive segmented frame
    };
    enum FrameRate_e : uint32_t {
        FRAME_RATE_23_98 = 1,
        FRAME_RATE_24 = 2,
        FRAME_RATE_25 = 3,
        FRAME_RATE_29_97 = 4,
        FRAME_RATE_30 = 5,
        FRAME_RATE_50 = 6,
        FRAME_RATE_59_94 = 7,
        FRAME_RATE_60 = 8
    };
    enum AspectRatio_e : uint32_t {
        ASPECT_RATIO_1X1 = 1,
        ASPECT_RATIO_4X3 = 2,
        ASPECT_RATIO_16X9 = 3,
        ASPECT_RATIO_2_21X1 = 4,
        ASPECT_RATIO_1_9X1 = 5
    };

    explicit VideoFormatBase(uint32_t id = 0) : m_Id(id) {}
    VideoFormatBase(const VideoFormatBase&) = default;
    virtual ~VideoFormatBase() = default;

    virtual uint32_t GetHeight() const = 0;
    virtual uint32_t GetWidth() const = 0;
    virtual ScanType_e GetScanType() const = 0;
    virtual FrameRate_e GetFrameRate() const = 0;
    virtual AspectRatio_e GetAspectRatio() const = 0;
    virtual std::string GetFormatString() const = 0;

    // The code as stored.
    uint32_t GetId() const { return m_Id; }
    // Equal codes are equal formats, whatever the dynamic type.
    bool operator==(const VideoFormatBase& other) const { return m_Id == other.m_Id; }
    bool operator!=(const VideoFormatBase& other) const { return m_Id != other.m_Id; }
    VideoFormatBase& operator=(const VideoFormatBase& other) {
        if (this != &other) m_Id = other.m_Id;
        return *this;
    }

protected:
    uint32_t m_Id;
};

// Resolution of a picture size: the width decides, and at width 720 the height
// tells 480 (also for any other height) from 576; unknown widths give 0.
VideoFormatBase::Resolution_e SizeToResolution(uint32_t height, uint32_t width);

// Display strings; every helper answers "(n/a)" for a value it does not list.
std::string GetResolutionString(VideoFormatBase::Resolution_e resolution);
// As SizeToResolution, but "(n/a)" where no resolution matches. Returns true.
bool GetResolutionString(uint32_t height, uint32_t width, std::string& out);
std::string GetScanTypeString(VideoFormatBase::ScanType_e scanType);
// "psF" if segmentedFrame, else "p" if progressive, else "i". Returns true.
bool GetScanTypeString(bool segmentedFrame, bool progressive, std::string& out);
std::string GetFrameRateString(VideoFormatBase::FrameRate_e frameRate);
std::string GetAspectRatioString(VideoFormatBase::AspectRatio_e aspectRatio);
