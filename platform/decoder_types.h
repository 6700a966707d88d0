// The enumerations that cross the decoder interfaces (platform/i_*.h) and the
// control, status and output logic built on them. Plain enumerations, 32 bits
// wide, with the numbers the host protocol and the adapters rely on; any value
// of the underlying type may be stored (values from the host are not trusted).
// Header only; no state, no thread concerns.
#pragma once

#include <cstdint>

// ---- Video attributes of the decoded stream --------------------------------

enum VideoType_e : int32_t {
    VIDEO_TYPE_NONE = 0,
    VIDEO_TYPE_MPEG2 = 1,
    VIDEO_TYPE_H264 = 2,
    VIDEO_TYPE_HEVC = 3,
    // 4 is not used by any mapping.
    VIDEO_TYPE_AVS = 5,
    VIDEO_TYPE_AVS2 = 6
};

enum VideoScanType_e : int32_t {
    VIDEO_SCAN_TYPE_UNKNOWN = 0,
    VIDEO_SCAN_TYPE_INTERLACED = 1,
    VIDEO_SCAN_TYPE_PROGRESSIVE = 2,
    VIDEO_SCAN_TYPE_PSF = 3  // progressive segmented frame
};

enum VideoFrameRate_e : int32_t {
    VIDEO_FRAME_RATE_UNKNOWN = 0,
    VIDEO_FRAME_RATE_23_976 = 1,
    VIDEO_FRAME_RATE_24 = 2,
    VIDEO_FRAME_RATE_25 = 3,
    VIDEO_FRAME_RATE_29_97 = 4,
    VIDEO_FRAME_RATE_30 = 5,
    VIDEO_FRAME_RATE_50 = 6,
    VIDEO_FRAME_RATE_59_94 = 7,
    VIDEO_FRAME_RATE_60 = 8
};

enum VideoAspectRatio_e : int32_t {
    VIDEO_ASPECT_RATIO_UNKNOWN = 0,
    VIDEO_ASPECT_RATIO_16X9 = 1,
    VIDEO_ASPECT_RATIO_4X3 = 2
};

enum VideoProfile_e : int32_t {
    VIDEO_PROFILE_UNKNOWN = 0,
    VIDEO_PROFILE_MPEG2_SIMPLE = 1,
    VIDEO_PROFILE_MPEG2_MAIN = 2,
    VIDEO_PROFILE_MPEG2_422 = 3,
    VIDEO_PROFILE_MPEG2_SNR = 4,
    VIDEO_PROFILE_MPEG2_SPATIAL = 5,
    VIDEO_PROFILE_MPEG2_HIGH = 6,
    VIDEO_PROFILE_H264_BASELINE = 7,
    VIDEO_PROFILE_H264_MAIN = 8,
    VIDEO_PROFILE_HEVC_MAIN = 8,  // shares the H.264 Main value
    VIDEO_PROFILE_H264_EXTENDED = 9,
    VIDEO_PROFILE_H264_HIGH = 10,
    VIDEO_PROFILE_H264_HIGH10 = 11,
    VIDEO_PROFILE_H264_HIGH422 = 12,
    VIDEO_PROFILE_H264_HIGH444 = 13,
    VIDEO_PROFILE_HEVC_MAIN10 = 14,
    VIDEO_PROFILE_HEVC_MAIN_STILL = 15,
    VIDEO_PROFILE_HEVC_REXT = 16,
    VIDEO_PROFILE_HEVC_HIGH_THROUGHPUT = 17,
    // 18..20 are defined codes that no decoder produces.
    VIDEO_PROFILE_RESERVED_18 = 18,
    VIDEO_PROFILE_RESERVED_19 = 19,
    VIDEO_PROFILE_RESERVED_20 = 20
};

// MPEG-2 levels 1..4; from 5 on one value per level number, shared by H.264 and HEVC.
enum VideoLevel_e : int32_t {
    VIDEO_LEVEL_UNKNOWN = 0,
    VIDEO_LEVEL_MPEG2_LOW = 1,
    VIDEO_LEVEL_MPEG2_MAIN = 2,
    VIDEO_LEVEL_MPEG2_HIGH1440 = 3,
    VIDEO_LEVEL_MPEG2_HIGH = 4,
    VIDEO_LEVEL_1 = 5,
    VIDEO_LEVEL_1B = 6,  // never produced
    VIDEO_LEVEL_1_1 = 7,
    VIDEO_LEVEL_1_2 = 8,
    VIDEO_LEVEL_1_3 = 9,
    VIDEO_LEVEL_2 = 10,
    VIDEO_LEVEL_2_1 = 11,
    VIDEO_LEVEL_2_2 = 12,
    VIDEO_LEVEL_3 = 13,
    VIDEO_LEVEL_3_1 = 14,
    VIDEO_LEVEL_3_2 = 15,
    VIDEO_LEVEL_4 = 16,
    VIDEO_LEVEL_4_1 = 17,
    VIDEO_LEVEL_4_2 = 18,
    VIDEO_LEVEL_5 = 19,
    VIDEO_LEVEL_5_1 = 20,
    VIDEO_LEVEL_5_2 = 21,
    VIDEO_LEVEL_6 = 22,
    VIDEO_LEVEL_6_1 = 23,
    VIDEO_LEVEL_6_2 = 24
};

// Names are ours; the adapters map the platform's chroma codes 1, 0, 5 onto 1, 2, 3.
enum VideoChromaFormat_e : int32_t {
    VIDEO_CHROMA_FORMAT_UNKNOWN = 0,
    VIDEO_CHROMA_FORMAT_420 = 1,
    VIDEO_CHROMA_FORMAT_422 = 2,
    VIDEO_CHROMA_FORMAT_444 = 3
};

// Names are ours; the adapters map the platform's bit-depth codes 0 and 1 onto 1 and 3.
enum ChromaBitDepth_e : int32_t {
    CHROMA_BIT_DEPTH_UNKNOWN = 0,
    CHROMA_BIT_DEPTH_8 = 1,
    CHROMA_BIT_DEPTH_10 = 3
};

// ---- Programme selection ----------------------------------------------------

enum EsType_e : int32_t {
    ES_TYPE_AUDIO = 0,
    ES_TYPE_PCR = 1,
    ES_TYPE_NONE = 2,           // addresses nothing
    ES_TYPE_VIDEO = 3,
    ES_TYPE_EXTRA = 4,          // one extra stream; a change raises event 3
    ES_TYPE_EXTRA_INDEXED = 5   // four extra streams, by index
};

// Audio codec of the selected service, as the host sets it (demux side).
enum AudioType_e : int32_t {
    AUDIO_TYPE_NONE = 0,
    AUDIO_TYPE_MPEG1 = 1,
    AUDIO_TYPE_MPEG2 = 2,
    AUDIO_TYPE_AC3 = 3,
    // 4 has no platform mapping.
    AUDIO_TYPE_EAC3 = 5,
    AUDIO_TYPE_AAC_ADTS = 6,
    AUDIO_TYPE_AAC_LATM = 7,
    AUDIO_TYPE_DRA = 8
};

// Audio codec as the audio decoder reports it to the host (IAudioDecoder::GetCodec).
// Same numbering as AudioType_e, plus 4 and 9 that the decoder may report.
enum AudioTypeStatus_e : int32_t {
    AUDIO_TYPE_STATUS_NONE = 0,
    AUDIO_TYPE_STATUS_MPEG1 = 1,
    AUDIO_TYPE_STATUS_MPEG2 = 2,
    AUDIO_TYPE_STATUS_AC3 = 3,
    AUDIO_TYPE_STATUS_4 = 4,
    AUDIO_TYPE_STATUS_EAC3 = 5,
    AUDIO_TYPE_STATUS_AAC_ADTS = 6,
    AUDIO_TYPE_STATUS_AAC_LATM = 7,
    AUDIO_TYPE_STATUS_DRA = 8,
    AUDIO_TYPE_STATUS_9 = 9
};

// Channel arrangement (front/rear), one more than the AC-3 acmod numbering.
enum AudioChannelCoding_e : int32_t {
    AUDIO_CHANNEL_CODING_UNKNOWN = 0,
    AUDIO_CHANNEL_CODING_DUAL_MONO = 1,  // 1+1
    AUDIO_CHANNEL_CODING_MONO = 2,       // 1/0
    AUDIO_CHANNEL_CODING_STEREO = 3,     // 2/0
    AUDIO_CHANNEL_CODING_3_0 = 4,
    AUDIO_CHANNEL_CODING_2_1 = 5,
    AUDIO_CHANNEL_CODING_3_1 = 6,
    AUDIO_CHANNEL_CODING_2_2 = 7,
    AUDIO_CHANNEL_CODING_3_2 = 8
};

// Events a decoder block may raise to its subscribers; the numbers are ours.
enum DecoderEvents_e : int32_t {
    DECODER_EVENT_STOP_REQUIRED = 0,
    DECODER_EVENT_START_REQUIRED = 1,
    DECODER_EVENT_FORMAT_CHANGED = 2,
    DECODER_EVENT_PID_CHANGED = 3
};

// ---- Output settings (set by the host) --------------------------------------

enum FormatMode_e : int32_t {
    FORMAT_MODE_AUTO = 1,   // follow the decoded input
    FORMAT_MODE_MANUAL = 2  // use the host's format code
};

enum VideoOutputInterface_e : int32_t {
    VIDEO_OUTPUT_INTERFACE_HD = 1,
    VIDEO_OUTPUT_INTERFACE_CVBS = 2  // composite
};

enum Composite525_e : int32_t {
    COMPOSITE_525_NTSC = 1,
    COMPOSITE_525_NTSC_J = 2
};

enum Composite625_e : int32_t {
    COMPOSITE_625_PAL = 1,
    COMPOSITE_625_PAL_N = 2
};

enum AnalogAudio_e : int32_t {
    ANALOG_AUDIO_OFF = 1,  // muted
    ANALOG_AUDIO_ON = 2
};

enum Enable_e : int32_t {
    ENABLE_STATE_ENABLE = 1,
    ENABLE_STATE_DISABLE = 2
};

enum OverlayCcType_e : int32_t {
    OVERLAY_CC_TYPE_NTSC = 1,  // line-21 (EIA-608) caption data
    OVERLAY_CC_TYPE_DTV = 2    // digital (EIA-708) caption data
};

enum OverlayNtscCcType_e : int32_t {
    OVERLAY_NTSC_CC1 = 1,
    OVERLAY_NTSC_CC2 = 2,
    OVERLAY_NTSC_CC3 = 3,
    OVERLAY_NTSC_CC4 = 4
};

enum OverlayDtvCcType_e : int32_t {
    OVERLAY_DTV_SERVICE1 = 1,
    OVERLAY_DTV_SERVICE2 = 2,
    OVERLAY_DTV_SERVICE3 = 3,
    OVERLAY_DTV_SERVICE4 = 4,
    OVERLAY_DTV_SERVICE5 = 5,
    OVERLAY_DTV_SERVICE6 = 6
};

// Raster (test picture) settings: stored and passed through; the board ignores them.
enum RasterMode_e : int32_t {
    RASTER_MODE_OFF = 0,
    RASTER_MODE_ON = 1
};

enum RasterColor_e : int32_t {
    RASTER_COLOR_BLACK = 0,
    RASTER_COLOR_BLUE = 1
};

enum ColourSpace : int32_t {
    COLOUR_SPACE_UHD = 0,  // formats of at least 3840 x 2160
    COLOUR_SPACE_HD = 1    // all others
};

// Aspect-ratio presentation: stored and passed through; no apply cycle uses them.
enum HdDisplayMode_e : int32_t {
    HD_DISPLAY_MODE_NONE = 0,
    HD_DISPLAY_MODE_PILLAR_BOX = 1,
    HD_DISPLAY_MODE_FULL = 2
};

enum SdDisplayMode_e : int32_t {
    SD_DISPLAY_MODE_NONE = 0,
    SD_DISPLAY_MODE_LETTER_BOX = 1,
    SD_DISPLAY_MODE_PAN_SCAN = 2,
    SD_DISPLAY_MODE_FULL = 3
};

enum AspectRatioConversion_e : int32_t {
    ASPECT_RATIO_CONVERSION_NONE = 0,
    ASPECT_RATIO_CONVERSION_AUTO = 1
};

// ---- Status values (reported to the host) -----------------------------------

enum Status_e : int32_t {
    STATUS_UNKNOWN = 0,
    STATUS_ACTIVE = 1,   // e.g. decoding: the frame count moved
    STATUS_INACTIVE = 2
};

enum SyncStatus_e : int32_t {
    SYNC_STATUS_UNKNOWN = 0,
    SYNC_STATUS_OUT_OF_SYNC = 1,
    SYNC_STATUS_IN_SYNC = 2
};

// Video codec as reported to the host: same numbering as VideoType_e.
enum VideoStatusType_e : int32_t {
    VIDEO_STATUS_TYPE_NONE = 0,
    VIDEO_STATUS_TYPE_MPEG2 = 1,
    VIDEO_STATUS_TYPE_H264 = 2,
    VIDEO_STATUS_TYPE_HEVC = 3,
    VIDEO_STATUS_TYPE_AVS = 5,
    VIDEO_STATUS_TYPE_AVS2 = 6
};

enum VideoResolutionType_e : int32_t {
    VIDEO_RESOLUTION_TYPE_UNKNOWN = 0,
    VIDEO_RESOLUTION_TYPE_HD = 1,   // 720 up to below 2160 lines
    VIDEO_RESOLUTION_TYPE_SD = 2,   // below 720 lines
    VIDEO_RESOLUTION_TYPE_UHD = 3   // 2160 lines and more
};
