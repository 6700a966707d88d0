// Code tables of the virtual board (see board_codes.h and sim/README.md).
#include "sim/board_codes.h"

#include <cmath>

namespace stbsim {

namespace {

template <typename E>
struct NameEntry {
    E value;
    const char* name;
};

const NameEntry<VideoCodec> kVideoNames[] = {
    {VideoCodec::Mpeg2, "mpeg2"}, {VideoCodec::H264, "h264"}, {VideoCodec::Hevc, "hevc"},
    {VideoCodec::Avs, "avs"},     {VideoCodec::Avs2, "avs2"},
};
const NameEntry<AudioCodec> kAudioNames[] = {
    {AudioCodec::Mpeg1, "mpeg1"}, {AudioCodec::Mpeg2, "mpeg2"}, {AudioCodec::Aac, "aac"},
    {AudioCodec::AacLatm, "aac-latm"}, {AudioCodec::Ac3, "ac3"}, {AudioCodec::Eac3, "eac3"},
    {AudioCodec::Dra, "dra"},
};
const NameEntry<Chroma> kChromaNames[] = {
    {Chroma::Yuv420, "4:2:0"}, {Chroma::Yuv422, "4:2:2"}, {Chroma::Yuv444, "4:4:4"}, {Chroma::Yuv400, "4:0:0"},
};
const NameEntry<FieldOrder> kFieldNames[] = {
    {FieldOrder::Unknown, "unknown"}, {FieldOrder::Progressive, "progressive"},
    {FieldOrder::TopFirst, "tff"},    {FieldOrder::BottomFirst, "bff"},
    {FieldOrder::TopFirst, "interlaced"},
};

template <typename E, size_t N>
const char* NameOf(const NameEntry<E> (&table)[N], E v) {
    for (const auto& e : table)
        if (e.value == v) return e.name;
    return "?";
}

template <typename E, size_t N>
bool ValueOf(const NameEntry<E> (&table)[N], const std::string& s, E* out) {
    for (const auto& e : table) {
        if (s == e.name) {
            *out = e.value;
            return true;
        }
    }
    return false;
}

}  // namespace

uint32_t PlatformVideoType(VideoCodec c) {
    switch (c) {
        case VideoCodec::Mpeg2: return 0;
        case VideoCodec::H264: return 5;
        case VideoCodec::Hevc: return 38;
        case VideoCodec::Avs: return 2;
        case VideoCodec::Avs2: return 44;
    }
    return 0;
}

uint32_t PlatformAudioType(AudioCodec c) {
    switch (c) {
        case AudioCodec::Mpeg1: return 0;
        case AudioCodec::Mpeg2: return 1;
        case AudioCodec::Aac: return 2;
        case AudioCodec::AacLatm: return 3;
        case AudioCodec::Ac3: return 4;
        case AudioCodec::Eac3: return 5;
        case AudioCodec::Dra: return 53;
    }
    return 1;
}

uint32_t AudioFormatCode(AudioCodec c) {
    switch (c) {
        case AudioCodec::Mpeg1:
        case AudioCodec::Mpeg2: return 0;
        case AudioCodec::Ac3: return 1;
        case AudioCodec::Dra: return 2;
        case AudioCodec::Eac3: return 3;
        case AudioCodec::Aac:
        case AudioCodec::AacLatm: return 5;
    }
    return 0;
}

uint32_t SamplesPerFrame(AudioCodec c) {
    switch (c) {
        case AudioCodec::Mpeg1:
        case AudioCodec::Mpeg2: return 1152;
        case AudioCodec::Ac3:
        case AudioCodec::Eac3: return 1536;
        case AudioCodec::Aac:
        case AudioCodec::AacLatm:
        case AudioCodec::Dra: return 1024;
    }
    return 1024;
}

uint32_t ChromaCode(Chroma c) {
    switch (c) {
        case Chroma::Yuv420: return 1;
        case Chroma::Yuv422: return 0;
        case Chroma::Yuv400: return 2;
        case Chroma::Yuv444: return 5;
    }
    return 2;
}

uint32_t BitDepthCode(uint32_t bits) {
    switch (bits) {
        case 8: return 0;
        case 10: return 1;
        case 12: return 2;
        default: return 3;
    }
}

void FrameRateParts(Ratio fps, uint16_t* integerPart, uint16_t* decimalPart) {
    *integerPart = 0;
    *decimalPart = 0;
    if (fps.num == 0 || fps.den == 0) return;
    const uint64_t hundredths = (uint64_t{fps.num} * 100 + fps.den / 2) / fps.den;
    *integerPart = static_cast<uint16_t>(hundredths / 100);
    *decimalPart = static_cast<uint16_t>(hundredths % 100);
}

uint32_t DefaultProfile(VideoCodec c) {
    switch (c) {
        case VideoCodec::Mpeg2: return 4;  // Main
        case VideoCodec::H264: return 100; // High
        case VideoCodec::Hevc: return 1;   // Main
        default: return 0;
    }
}

uint32_t DefaultLevel(VideoCodec c) {
    switch (c) {
        case VideoCodec::Mpeg2: return 8;  // Main
        case VideoCodec::H264: return 40;  // 4
        case VideoCodec::Hevc: return 123; // 4.1
        default: return 0;
    }
}

const char* VideoCodecName(VideoCodec c) { return NameOf(kVideoNames, c); }
const char* AudioCodecName(AudioCodec c) { return NameOf(kAudioNames, c); }
const char* ChromaName(Chroma c) { return NameOf(kChromaNames, c); }
const char* FieldOrderName(FieldOrder f) { return NameOf(kFieldNames, f); }
bool ParseVideoCodec(const std::string& s, VideoCodec* out) { return ValueOf(kVideoNames, s, out); }
bool ParseAudioCodec(const std::string& s, AudioCodec* out) { return ValueOf(kAudioNames, s, out); }
bool ParseChroma(const std::string& s, Chroma* out) { return ValueOf(kChromaNames, s, out); }
bool ParseFieldOrder(const std::string& s, FieldOrder* out) { return ValueOf(kFieldNames, s, out); }

}  // namespace stbsim
