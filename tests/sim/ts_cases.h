// What the daemon makes of each test stream (tests/sim/ts_streams.h), worked
// out from the file's true attributes through the daemon's enumerations: read
// back by its adapters on the board (tests/sim) and sent to the host
// (tests/e2e). Where a mapping cannot give the truth (sim/README.md), the value
// is the mapped one and the comment says what the stream really carries.
// Also the test's way to a stream's file. Test thread only.
#pragma once

#include <cstdio>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "platform/decoder_types.h"
#include "tests/sim/ts_streams.h"

namespace tstest {

constexpr const char* kNoFfmpeg =
    "the ffmpeg command-line tool is not installed; these tests make their MPEG-TS files with it (make deps "
    "installs it)";

struct TsCase {
    const TsStream* stream;
    const char* serviceName;
    // av_search_progInfo: service id, video PID (also the PCR), audio PID, video and audio codec codes.
    std::tuple<uint16_t, uint16_t, uint16_t, uint32_t, uint32_t> programme;
    VideoType_e videoType;
    AudioType_e audioType;
    std::tuple<uint32_t, uint32_t, VideoScanType_e, VideoFrameRate_e, VideoAspectRatio_e> format;
    std::tuple<VideoProfile_e, VideoLevel_e, VideoChromaFormat_e, ChromaBitDepth_e> coding;
    std::tuple<uint32_t, AudioTypeStatus_e, AudioChannelCoding_e> audio;  // sampling rate, codec, coding mode
};

// MPEG-1 Layer II at 48 kHz: the status record has one MPEG code, read as MPEG-2.
inline const TsCase kSdCase = {
    &kMpeg2Sd, "SD MPEG-2", {101, 0x101, 0x102, 0, 0}, VIDEO_TYPE_MPEG2, AUDIO_TYPE_MPEG1,
    {720, 576, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_4X3},
    {VIDEO_PROFILE_MPEG2_MAIN, VIDEO_LEVEL_MPEG2_MAIN, VIDEO_CHROMA_FORMAT_420, CHROMA_BIT_DEPTH_8},
    {48000, AUDIO_TYPE_STATUS_MPEG2, AUDIO_CHANNEL_CODING_STEREO}};
// x264 "superfast" codes High; its automatic level is 4 for 1080i25, 3.2 for 720p59.94.
inline const TsCase kHd1080iCase = {
    &kH264Interlaced, "HD H.264", {202, 0x201, 0x202, 5, 4}, VIDEO_TYPE_H264, AUDIO_TYPE_AC3,
    {1920, 1080, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_16X9},
    {VIDEO_PROFILE_H264_HIGH, VIDEO_LEVEL_4, VIDEO_CHROMA_FORMAT_420, CHROMA_BIT_DEPTH_8},
    {48000, AUDIO_TYPE_STATUS_AC3, AUDIO_CHANNEL_CODING_3_2}};
// ADTS AAC: the status record's only AAC code reads as LATM.
inline const TsCase kHd720pCase = {
    &kH264Progressive, "HD 720p", {303, 0x301, 0x302, 5, 2}, VIDEO_TYPE_H264, AUDIO_TYPE_AAC_ADTS,
    {1280, 720, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_59_94, VIDEO_ASPECT_RATIO_16X9},
    {VIDEO_PROFILE_H264_HIGH, VIDEO_LEVEL_3_2, VIDEO_CHROMA_FORMAT_420, CHROMA_BIT_DEPTH_8},
    {44100, AUDIO_TYPE_STATUS_AAC_LATM, AUDIO_CHANNEL_CODING_STEREO}};
// x265 codes Main 10 (general_profile_idc 2) at level 5.1 (general_level_idc 153) for 2160p50.
// E-AC-3: no status code maps to E-AC-3.
inline const TsCase kUhdCase = {
    &kHevcUhd, "UHD HEVC", {404, 0x401, 0x402, 38, 5}, VIDEO_TYPE_HEVC, AUDIO_TYPE_EAC3,
    {3840, 2160, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, VIDEO_ASPECT_RATIO_16X9},
    {VIDEO_PROFILE_HEVC_MAIN10, VIDEO_LEVEL_5_1, VIDEO_CHROMA_FORMAT_420, CHROMA_BIT_DEPTH_10},
    {48000, AUDIO_TYPE_STATUS_9, AUDIO_CHANNEL_CODING_3_2}};
// The first of the two programmes.
inline const TsCase kStudioCase = {
    &kTwoProgrammes, "Studio 422", {0x501, 0x511, 0x512, 0, 1}, VIDEO_TYPE_MPEG2, AUDIO_TYPE_MPEG2,
    {720, 576, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_4X3},
    {VIDEO_PROFILE_MPEG2_422, VIDEO_LEVEL_MPEG2_MAIN, VIDEO_CHROMA_FORMAT_422, CHROMA_BIT_DEPTH_8},
    {24000, AUDIO_TYPE_STATUS_MPEG2, AUDIO_CHANNEL_CODING_MONO}};

// The stream's file in this build's cache, made by ffmpeg the first time any
// test asks; "" (with a failure naming ffmpeg's errors) when it cannot be made.
inline std::string TsFile(const TsStream& s) {
    std::string why;
    double seconds = 0;
    const std::string path = MakeTsFile(s, STBAV_TS_STREAM_DIR, &why, &seconds);
    EXPECT_FALSE(path.empty()) << why;
    if (seconds > 0) printf("[ ffmpeg   ] %s made in %.2f s\n", s.name, seconds);
    return path;
}

}  // namespace tstest
