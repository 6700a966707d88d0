// The table of value meanings. The numbers come from the daemon's own
// enumerations, so a renumbered value cannot leave a stale name behind.
#include "protocol/op_value_names.h"

#include "platform/decoder_types.h"

namespace op_value_names {

namespace {

const ValueSet kVideoType = {"VideoStatusType_e", {
    {VIDEO_STATUS_TYPE_NONE, "none"}, {VIDEO_STATUS_TYPE_MPEG2, "MPEG-2"}, {VIDEO_STATUS_TYPE_H264, "H.264"},
    {VIDEO_STATUS_TYPE_HEVC, "HEVC"}, {VIDEO_STATUS_TYPE_AVS, "AVS"}, {VIDEO_STATUS_TYPE_AVS2, "AVS2"}}};

const ValueSet kVideoCodecSetting = {"VideoType_e", {
    {VIDEO_TYPE_NONE, "none"}, {VIDEO_TYPE_MPEG2, "MPEG-2"}, {VIDEO_TYPE_H264, "H.264"},
    {VIDEO_TYPE_HEVC, "HEVC"}, {VIDEO_TYPE_AVS, "AVS"}, {VIDEO_TYPE_AVS2, "AVS2"}}};

const ValueSet kAudioCodecSetting = {"AudioType_e", {
    {AUDIO_TYPE_NONE, "none"}, {AUDIO_TYPE_MPEG1, "MPEG-1 audio"}, {AUDIO_TYPE_MPEG2, "MPEG-2 audio"},
    {AUDIO_TYPE_AC3, "AC-3"}, {AUDIO_TYPE_EAC3, "E-AC-3"}, {AUDIO_TYPE_AAC_ADTS, "AAC (ADTS)"},
    {AUDIO_TYPE_AAC_LATM, "AAC (LATM)"}, {AUDIO_TYPE_DRA, "DRA"}}};

// 4 and 9 are reported by the audio decoder but have no codec of their own.
const ValueSet kAudioType = {"AudioTypeStatus_e", {
    {AUDIO_TYPE_STATUS_NONE, "none"}, {AUDIO_TYPE_STATUS_MPEG1, "MPEG-1 audio"},
    {AUDIO_TYPE_STATUS_MPEG2, "MPEG-2 audio"}, {AUDIO_TYPE_STATUS_AC3, "AC-3"},
    {AUDIO_TYPE_STATUS_4, "type 4 (no codec name)"}, {AUDIO_TYPE_STATUS_EAC3, "E-AC-3"},
    {AUDIO_TYPE_STATUS_AAC_ADTS, "AAC (ADTS)"}, {AUDIO_TYPE_STATUS_AAC_LATM, "AAC (LATM)"},
    {AUDIO_TYPE_STATUS_DRA, "DRA"}, {AUDIO_TYPE_STATUS_9, "type 9 (no codec name)"}}};

const ValueSet kScanType = {"VideoScanType_e", {
    {VIDEO_SCAN_TYPE_UNKNOWN, "unknown"}, {VIDEO_SCAN_TYPE_INTERLACED, "interlaced"},
    {VIDEO_SCAN_TYPE_PROGRESSIVE, "progressive"}, {VIDEO_SCAN_TYPE_PSF, "progressive segmented frame"}}};

const ValueSet kFrameRate = {"VideoFrameRate_e", {
    {VIDEO_FRAME_RATE_UNKNOWN, "unknown"}, {VIDEO_FRAME_RATE_23_976, "23.976 fps"}, {VIDEO_FRAME_RATE_24, "24 fps"},
    {VIDEO_FRAME_RATE_25, "25 fps"}, {VIDEO_FRAME_RATE_29_97, "29.97 fps"}, {VIDEO_FRAME_RATE_30, "30 fps"},
    {VIDEO_FRAME_RATE_50, "50 fps"}, {VIDEO_FRAME_RATE_59_94, "59.94 fps"}, {VIDEO_FRAME_RATE_60, "60 fps"}}};

const ValueSet kAspectRatio = {"VideoAspectRatio_e", {
    {VIDEO_ASPECT_RATIO_UNKNOWN, "unknown"}, {VIDEO_ASPECT_RATIO_16X9, "16:9"}, {VIDEO_ASPECT_RATIO_4X3, "4:3"}}};

const ValueSet kProfile = {"VideoProfile_e", {
    {VIDEO_PROFILE_UNKNOWN, "unknown"}, {VIDEO_PROFILE_MPEG2_SIMPLE, "MPEG-2 Simple"},
    {VIDEO_PROFILE_MPEG2_MAIN, "MPEG-2 Main"}, {VIDEO_PROFILE_MPEG2_422, "MPEG-2 4:2:2"},
    {VIDEO_PROFILE_MPEG2_SNR, "MPEG-2 SNR Scalable"}, {VIDEO_PROFILE_MPEG2_SPATIAL, "MPEG-2 Spatially Scalable"},
    {VIDEO_PROFILE_MPEG2_HIGH, "MPEG-2 High"}, {VIDEO_PROFILE_H264_BASELINE, "H.264 Baseline"},
    {VIDEO_PROFILE_H264_MAIN, "H.264 Main or HEVC Main"}, {VIDEO_PROFILE_H264_EXTENDED, "H.264 Extended"},
    {VIDEO_PROFILE_H264_HIGH, "H.264 High"}, {VIDEO_PROFILE_H264_HIGH10, "H.264 High 10"},
    {VIDEO_PROFILE_H264_HIGH422, "H.264 High 4:2:2"}, {VIDEO_PROFILE_H264_HIGH444, "H.264 High 4:4:4"},
    {VIDEO_PROFILE_HEVC_MAIN10, "HEVC Main 10"}, {VIDEO_PROFILE_HEVC_MAIN_STILL, "HEVC Main Still Picture"},
    {VIDEO_PROFILE_HEVC_REXT, "HEVC Range Extensions"}, {VIDEO_PROFILE_HEVC_HIGH_THROUGHPUT, "HEVC High Throughput"},
    {VIDEO_PROFILE_RESERVED_18, "reserved 18"}, {VIDEO_PROFILE_RESERVED_19, "reserved 19"},
    {VIDEO_PROFILE_RESERVED_20, "reserved 20"}}};

const ValueSet kLevel = {"VideoLevel_e", {
    {VIDEO_LEVEL_UNKNOWN, "unknown"}, {VIDEO_LEVEL_MPEG2_LOW, "MPEG-2 Low"}, {VIDEO_LEVEL_MPEG2_MAIN, "MPEG-2 Main"},
    {VIDEO_LEVEL_MPEG2_HIGH1440, "MPEG-2 High 1440"}, {VIDEO_LEVEL_MPEG2_HIGH, "MPEG-2 High"},
    {VIDEO_LEVEL_1, "level 1"}, {VIDEO_LEVEL_1B, "level 1b"}, {VIDEO_LEVEL_1_1, "level 1.1"},
    {VIDEO_LEVEL_1_2, "level 1.2"}, {VIDEO_LEVEL_1_3, "level 1.3"}, {VIDEO_LEVEL_2, "level 2"},
    {VIDEO_LEVEL_2_1, "level 2.1"}, {VIDEO_LEVEL_2_2, "level 2.2"}, {VIDEO_LEVEL_3, "level 3"},
    {VIDEO_LEVEL_3_1, "level 3.1"}, {VIDEO_LEVEL_3_2, "level 3.2"}, {VIDEO_LEVEL_4, "level 4"},
    {VIDEO_LEVEL_4_1, "level 4.1"}, {VIDEO_LEVEL_4_2, "level 4.2"}, {VIDEO_LEVEL_5, "level 5"},
    {VIDEO_LEVEL_5_1, "level 5.1"}, {VIDEO_LEVEL_5_2, "level 5.2"}, {VIDEO_LEVEL_6, "level 6"},
    {VIDEO_LEVEL_6_1, "level 6.1"}, {VIDEO_LEVEL_6_2, "level 6.2"}}};

const ValueSet kChroma = {"VideoChromaFormat_e", {
    {VIDEO_CHROMA_FORMAT_UNKNOWN, "unknown"}, {VIDEO_CHROMA_FORMAT_420, "4:2:0"},
    {VIDEO_CHROMA_FORMAT_422, "4:2:2"}, {VIDEO_CHROMA_FORMAT_444, "4:4:4"}}};

const ValueSet kBitDepth = {"ChromaBitDepth_e", {
    {CHROMA_BIT_DEPTH_UNKNOWN, "unknown"}, {CHROMA_BIT_DEPTH_8, "8-bit"}, {CHROMA_BIT_DEPTH_10, "10-bit"}}};

const ValueSet kResolutionType = {"VideoResolutionType_e", {
    {VIDEO_RESOLUTION_TYPE_UNKNOWN, "unknown"}, {VIDEO_RESOLUTION_TYPE_HD, "HD"},
    {VIDEO_RESOLUTION_TYPE_SD, "SD"}, {VIDEO_RESOLUTION_TYPE_UHD, "UHD"}}};

const ValueSet kDecoding = {"Status_e", {
    {STATUS_UNKNOWN, "unknown"}, {STATUS_ACTIVE, "decoding"}, {STATUS_INACTIVE, "not decoding"}}};

const ValueSet kSync = {"SyncStatus_e", {
    {SYNC_STATUS_UNKNOWN, "unknown"}, {SYNC_STATUS_OUT_OF_SYNC, "out of sync"}, {SYNC_STATUS_IN_SYNC, "in sync"}}};

const ValueSet kAutoFormat = {"auto format status", {
    {0, "not checked"}, {1, "input format supported"}, {2, "input format not supported"}}};

const ValueSet kChannelCoding = {"AudioChannelCoding_e", {
    {AUDIO_CHANNEL_CODING_UNKNOWN, "unknown"}, {AUDIO_CHANNEL_CODING_DUAL_MONO, "1+1 dual mono"},
    {AUDIO_CHANNEL_CODING_MONO, "1/0 mono"}, {AUDIO_CHANNEL_CODING_STEREO, "2/0 stereo"},
    {AUDIO_CHANNEL_CODING_3_0, "3/0"}, {AUDIO_CHANNEL_CODING_2_1, "2/1"}, {AUDIO_CHANNEL_CODING_3_1, "3/1"},
    {AUDIO_CHANNEL_CODING_2_2, "2/2"}, {AUDIO_CHANNEL_CODING_3_2, "3/2 (5.1)"}}};

const ValueSet kBitsPerSample = {"bits-per-sample code", {
    {0, "unknown"}, {1, "16 bits"}, {2, "20 bits"}, {3, "24 bits"}}};

const ValueSet kFormatMode = {"FormatMode_e", {
    {FORMAT_MODE_AUTO, "automatic"}, {FORMAT_MODE_MANUAL, "manual"}}};

const ValueSet kInterface = {"VideoOutputInterface_e", {
    {VIDEO_OUTPUT_INTERFACE_HD, "HD"}, {VIDEO_OUTPUT_INTERFACE_CVBS, "composite (CVBS)"}}};

const std::vector<OpValues> kAll = {
    {"audiosrvBitsPerSample", &kBitsPerSample},
    {"audiosrvChannelCoding", &kChannelCoding},
    {"audiosrvEncodedType", &kAudioType},
    {"audiosrvDecoding", &kDecoding},
    {"selectedaudioType", &kAudioType},
    {"selectedaudioSyncStatus", &kSync},
    {"selectedserviceVideoType", &kVideoType},
    {"serviceselectionVideoCodecType", &kVideoCodecSetting},
    {"serviceselectionAudioCodecType1", &kAudioCodecSetting},
    {"videooutputInterface", &kInterface},
    {"videooutputFormatMode", &kFormatMode},
    {"videooutputFormatModeCvbs", &kFormatMode},
    {"videooutputAutoFormatStatus", &kAutoFormat},
    {"videooutputDecode", &kDecoding},
    {"videoAspectRatio", &kAspectRatio},
    {"videoFrameRate", &kFrameRate},
    {"videoScanType", &kScanType},
    {"videoProfile", &kProfile},
    {"videoLevel", &kLevel},
    {"videoChromaFormat", &kChroma},
    {"videoResolutionType", &kResolutionType},
    {"videoChromaBitDepth", &kBitDepth},
};

}  // namespace

const std::vector<OpValues>& All() { return kAll; }

const ValueSet* ForOp(const std::string& opName) {
    for (const OpValues& o : kAll) {
        if (opName == o.op) return o.set;
    }
    return nullptr;
}

const char* NameOf(const std::string& opName, long long value) {
    const ValueSet* set = ForOp(opName);
    if (set == nullptr) return nullptr;
    for (const ValueName& v : set->values) {
        if (v.value == value) return v.name;
    }
    return nullptr;
}

}  // namespace op_value_names
