// The codes the virtual board writes into the status and stream information
// records, and the names the scenario files and the state JSON use for them.
// Pure functions; any thread. The code table is explained in sim/README.md.
#pragma once

#include <cstdint>
#include <string>

#include "sim/stream_model.h"

namespace stbsim {

// Platform codec codes as _AV_SETTING_S carries them.
uint32_t PlatformVideoType(VideoCodec c);  // 0 MPEG-2, 5 H.264, 38 HEVC, 2 AVS, 44 AVS2
uint32_t PlatformAudioType(AudioCodec c);  // 0 MPEG-1, 1 MPEG-2, 2 AAC, 3 AAC-LATM, 4 AC-3, 5 E-AC-3, 53 DRA
// Audio format code of the status record (+44) and the audio entry (word 3).
uint32_t AudioFormatCode(AudioCodec c);    // 0 MPEG, 1 AC-3, 2 DRA, 3 E-AC-3, 5 AAC
uint32_t SamplesPerFrame(AudioCodec c);
uint32_t ChromaCode(Chroma c);             // 1 4:2:0, 0 4:2:2, 2 4:0:0, 5 4:4:4
uint32_t BitDepthCode(uint32_t bits);      // 0 8 bits, 1 10 bits, 2 12 bits, 3 other

// Frames per second split as the status record carries it: the integer part and
// the hundredths, rounded (23.976 gives 23 and 98, 29.97 gives 29 and 97).
void FrameRateParts(Ratio fps, uint16_t* integerPart, uint16_t* decimalPart);

// Default profile and level (bitstream values) of a codec.
uint32_t DefaultProfile(VideoCodec c);
uint32_t DefaultLevel(VideoCodec c);

const char* VideoCodecName(VideoCodec c);  // "mpeg2", "h264", "hevc", "avs", "avs2"
const char* AudioCodecName(AudioCodec c);  // "mpeg1", "mpeg2", "aac", "aac-latm", "ac3", "eac3", "dra"
const char* ChromaName(Chroma c);          // "4:2:0", ...
const char* FieldOrderName(FieldOrder f);  // "unknown", "progressive", "tff", "bff"
bool ParseVideoCodec(const std::string& s, VideoCodec* out);
bool ParseAudioCodec(const std::string& s, AudioCodec* out);
bool ParseChroma(const std::string& s, Chroma* out);
// "progressive", "interlaced" (= "tff"), "tff", "bff", "unknown".
bool ParseFieldOrder(const std::string& s, FieldOrder* out);

}  // namespace stbsim
