// Choice of the output format for a video described by its decoder attributes
// (height, width, scan type, frame rate, aspect ratio in the decoder
// enumerations): the format the scaler can produce, the output mode number, the
// SD format beside an HD one, a display string, and the conversions to the
// attributes of the format code. Pure functions over constant tables; any thread.
// Scaler diagnostics go to the log category "UhdVidFormatHelper".
#pragma once

#include <cstdint>
#include <string>

#include "output/uhd_vid_format.h"
#include "platform/decoder_types.h"

// Output mode number meaning "no valid mode".
constexpr int kNoVideoMode = 40;
// Modes up to this one are UHD modes.
constexpr int kLastUhdVideoMode = 15;

// Decoder attributes to code attributes.
VideoFormatBase::ScanType_e GetUhdScanType(VideoScanType_e scanType);        // 1->0, 2->1, 3->2, else 0
VideoFormatBase::FrameRate_e GetUhdFrameRate(VideoFrameRate_e frameRate);    // 1..8 kept, else 1
VideoFormatBase::AspectRatio_e GetUhdAspectRatio(VideoAspectRatio_e aspect);  // 1->3, 2->2, else 1

// Rewrites the five attributes in place to a format the scaler produces (note:
// height before width). Formats below 480 lines or 352 pixels, and formats no
// scaler row accepts, fall back to 576i25 (for 25 and 50 frames/s) or 480i29.97.
// The aspect ratio comes out as 16:9, except that the small-picture fall-back
// keeps 4:3. A videoIndex other than 0 is logged and changes nothing.
void GetValidScalerSettings(uint32_t& height, uint32_t& width, VideoScanType_e& scanType,
                            VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio, unsigned videoIndex);

// Output mode number of a format (0..39); kNoVideoMode for 2160 lines at a
// width other than 3840/4096 and for 1080 lines segmented-frame. An unknown
// height gives 8. videoIndex is not used.
int getVideoMode(uint32_t height, uint32_t width, VideoScanType_e scanType, VideoFrameRate_e frameRate,
                 VideoAspectRatio_e aspectRatio, unsigned videoIndex);

// Replaces an HD format by the SD format output beside it: 576i25 for the 25
// and 50 Hz families, 480i29.97 for the others; UHD and SD formats are kept.
// Note: width before height. Returns true.
bool GetSDFormatSimultaneousHD(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                               VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio);

// e.g. "1280x720-50P", "720x576-25I-PAL-BDGI"; empty for an unknown frame rate.
std::string TransVideoFormatString(int width, int height, VideoScanType_e scanType, VideoFrameRate_e frameRate);
