// The virtual board's picture of its input: the services of the incoming
// transport stream with their elementary streams and attributes, plus changes
// that a scenario schedules. Plain values; the board owns one copy under its lock.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace stbsim {

enum class VideoCodec { Mpeg2, H264, Hevc, Avs, Avs2 };
enum class AudioCodec { Mpeg1, Mpeg2, Aac, AacLatm, Ac3, Eac3, Dra };
enum class Chroma { Yuv420, Yuv422, Yuv444, Yuv400 };
// Values as the board reports them in the stream information record.
enum class FieldOrder : uint32_t { Unknown = 0, Progressive = 1, TopFirst = 2, BottomFirst = 3 };

struct Ratio {
    uint32_t num = 0;
    uint32_t den = 0;
    bool operator==(const Ratio& o) const { return num == o.num && den == o.den; }
    bool operator!=(const Ratio& o) const { return !(*this == o); }
};

struct VideoStream {
    uint16_t pid = 0;
    VideoCodec codec = VideoCodec::H264;
    uint32_t width = 1920;
    uint32_t height = 1080;
    FieldOrder field = FieldOrder::TopFirst;
    Ratio fps{25, 1};
    Ratio dar{16, 9};       // display aspect ratio; {0, 0} when unknown
    Ratio sar{1, 1};        // sample (pixel) aspect ratio, kept consistent with dar
    bool sarGiven = false;  // sar was given, dar follows from it
    uint32_t profile = 100; // bitstream value: profile_idc, general_profile_idc, MPEG-2 profile code
    uint32_t level = 40;    // bitstream value: level_idc, general_level_idc, MPEG-2 level code
    Chroma chroma = Chroma::Yuv420;
    uint32_t bitDepth = 8;
};

struct AudioStream {
    uint16_t pid = 0;
    AudioCodec codec = AudioCodec::Mpeg2;
    uint32_t sampleRate = 48000;
    uint32_t channels = 2;  // full-bandwidth channels
    bool lfe = false;       // plus a low-frequency channel (".1")
    uint32_t bitsPerSample = 16;
    uint64_t bitRate = 192000;
    uint64_t ptsStart = 0;  // 90 kHz PTS when the input was loaded
    int64_t ptsAtUs = 0;    // board clock when the PTS was ptsStart, if not the load time
};

struct Service {
    uint16_t id = 0;
    std::string name;
    uint16_t pcrPid = 0;
    std::vector<VideoStream> video;
    std::vector<AudioStream> audio;
};

// "at T video|audio [pid=P] key=value...": applied T seconds after loading.
struct TimedChange {
    int64_t atUs = 0;
    bool video = true;
    uint16_t pid = 0;  // 0: the first stream of that kind in the input
    std::vector<std::pair<std::string, std::string>> assignments;
    int line = 0;
};

struct StreamInput {
    std::string source;  // "default", a file path, or "text"
    std::vector<Service> services;
    std::vector<TimedChange> changes;  // sorted by time

    VideoStream* FindVideo(uint16_t pid);
    AudioStream* FindAudio(uint16_t pid);
    const VideoStream* FindVideo(uint16_t pid) const;
    const AudioStream* FindAudio(uint16_t pid) const;
    VideoStream* FirstVideo();  // nullptr when the input has no video
    AudioStream* FirstAudio();
    bool CarriesPcr(uint16_t pid) const;
};

// The input when nothing else is configured: one HD H.264 service with one
// MPEG audio stream (service 1 "stbsim HD", video 0x100, audio 0x101, PCR 0x100).
StreamInput DefaultInput();

// Keeps sar and dar consistent after width, height or either ratio changed.
void FinaliseVideo(VideoStream& v);

}  // namespace stbsim
