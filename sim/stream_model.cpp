// The input model's helpers and the board's default input.
#include "sim/stream_model.h"

#include <numeric>

namespace stbsim {

namespace {

Ratio Reduced(uint64_t num, uint64_t den) {
    if (num == 0 || den == 0) return Ratio{};
    const uint64_t g = std::gcd(num, den);
    return Ratio{static_cast<uint32_t>(num / g), static_cast<uint32_t>(den / g)};
}

}  // namespace

VideoStream* StreamInput::FindVideo(uint16_t pid) {
    return const_cast<VideoStream*>(static_cast<const StreamInput*>(this)->FindVideo(pid));
}

AudioStream* StreamInput::FindAudio(uint16_t pid) {
    return const_cast<AudioStream*>(static_cast<const StreamInput*>(this)->FindAudio(pid));
}

const VideoStream* StreamInput::FindVideo(uint16_t pid) const {
    for (const auto& s : services)
        for (const auto& v : s.video)
            if (v.pid == pid) return &v;
    return nullptr;
}

const AudioStream* StreamInput::FindAudio(uint16_t pid) const {
    for (const auto& s : services)
        for (const auto& a : s.audio)
            if (a.pid == pid) return &a;
    return nullptr;
}

VideoStream* StreamInput::FirstVideo() {
    for (auto& s : services)
        if (!s.video.empty()) return &s.video.front();
    return nullptr;
}

AudioStream* StreamInput::FirstAudio() {
    for (auto& s : services)
        if (!s.audio.empty()) return &s.audio.front();
    return nullptr;
}

bool StreamInput::CarriesPcr(uint16_t pid) const {
    for (const auto& s : services)
        if (s.pcrPid == pid) return true;
    return false;
}

void FinaliseVideo(VideoStream& v) {
    if (v.width == 0 || v.height == 0) return;
    if (v.sarGiven) {
        v.dar = Reduced(uint64_t{v.sar.num} * v.width, uint64_t{v.sar.den} * v.height);
    } else {
        v.sar = Reduced(uint64_t{v.dar.num} * v.height, uint64_t{v.dar.den} * v.width);
    }
}

StreamInput DefaultInput() {
    StreamInput in;
    in.source = "default";
    Service s;
    s.id = 1;
    s.name = "stbsim HD";
    s.pcrPid = 0x100;
    VideoStream v;
    v.pid = 0x100;
    FinaliseVideo(v);
    s.video.push_back(v);
    AudioStream a;
    a.pid = 0x101;
    s.audio.push_back(a);
    in.services.push_back(s);
    return in;
}

}  // namespace stbsim
