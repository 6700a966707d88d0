// The MPEG-TS prober: opens a transport stream with libavformat, reads its
// programmes and elementary streams, and fills the board's input model with the
// codes the scenario files use. Built as a module of its own (libstbsim_ts.so)
// that the board loads at its first MPEG-TS file; Load runs on the caller's
// thread, before the board takes its lock, and owns nothing between calls.
#include <cstdint>
#include <set>
#include <string>

#include "sim/stream_source.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/pixdesc.h>
}

namespace stbsim {

namespace {

bool MapVideoCodec(AVCodecID id, VideoCodec* out) {
    switch (id) {
        case AV_CODEC_ID_MPEG1VIDEO:  // a receiver's MPEG-2 decoder plays it
        case AV_CODEC_ID_MPEG2VIDEO: *out = VideoCodec::Mpeg2; return true;
        case AV_CODEC_ID_H264: *out = VideoCodec::H264; return true;
        case AV_CODEC_ID_HEVC: *out = VideoCodec::Hevc; return true;
        case AV_CODEC_ID_CAVS: *out = VideoCodec::Avs; return true;
        case AV_CODEC_ID_AVS2: *out = VideoCodec::Avs2; return true;
        default: return false;
    }
}

// MPEG audio at 32 kHz and above is MPEG-1; the half rates are MPEG-2's.
bool MapAudioCodec(const AVCodecParameters& p, AudioCodec* out) {
    switch (p.codec_id) {
        case AV_CODEC_ID_MP1:
        case AV_CODEC_ID_MP2:
        case AV_CODEC_ID_MP3:
            *out = p.sample_rate >= 32000 ? AudioCodec::Mpeg1 : AudioCodec::Mpeg2;
            return true;
        case AV_CODEC_ID_AAC: *out = AudioCodec::Aac; return true;
        case AV_CODEC_ID_AAC_LATM: *out = AudioCodec::AacLatm; return true;
        case AV_CODEC_ID_AC3: *out = AudioCodec::Ac3; return true;
        case AV_CODEC_ID_EAC3: *out = AudioCodec::Eac3; return true;
        default: return false;
    }
}

// The bitstream's profile value, as the scenario files write it. libavcodec
// adds constraint flags above the H.264 profile_idc, and reports the MPEG-2
// escape profiles (4:2:2 at levels 5 and 2, multiview otherwise) as 0.
uint32_t ProfileCode(VideoCodec c, int profile, int level) {
    if (profile < 0) return 0;
    if (c == VideoCodec::H264) return static_cast<uint32_t>(profile) & 0xFF;
    if (c == VideoCodec::Mpeg2 && profile == 0) return level == 5 || level == 2 ? 8 : 0;
    return static_cast<uint32_t>(profile);
}

// Field order in display order. libavcodec leaves it unknown for HEVC, which
// carries no field indication it reads: an unknown order counts as progressive.
FieldOrder MapFieldOrder(AVFieldOrder f) {
    switch (f) {
        case AV_FIELD_TT:
        case AV_FIELD_BT: return FieldOrder::TopFirst;
        case AV_FIELD_BB:
        case AV_FIELD_TB: return FieldOrder::BottomFirst;
        default: return FieldOrder::Progressive;
    }
}

// Chroma subsampling and bit depth from the decoder's pixel format; a format
// the probe did not learn leaves the model's 4:2:0 8-bit.
void FillPixelFormat(int format, VideoStream& v) {
    const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    if (!d) return;
    v.bitDepth = static_cast<uint32_t>(d->comp[0].depth);
    if (d->nb_components < 3) v.chroma = Chroma::Yuv400;
    else if (d->log2_chroma_w == 0 && d->log2_chroma_h == 0) v.chroma = Chroma::Yuv444;
    else if (d->log2_chroma_w == 1 && d->log2_chroma_h == 0) v.chroma = Chroma::Yuv422;
    else v.chroma = Chroma::Yuv420;
}

Ratio ToRatio(AVRational r) {
    if (r.num <= 0 || r.den <= 0) return Ratio{};
    av_reduce(&r.num, &r.den, r.num, r.den, INT32_MAX);
    return Ratio{static_cast<uint32_t>(r.num), static_cast<uint32_t>(r.den)};
}

bool ValidPid(int pid) { return pid > 0 && pid < 0x1FFF; }

bool ReadVideo(AVFormatContext* fc, AVStream* st, VideoStream* out) {
    const AVCodecParameters& p = *st->codecpar;
    VideoStream v;
    if (!MapVideoCodec(p.codec_id, &v.codec)) return false;
    v.pid = static_cast<uint16_t>(st->id);
    v.width = static_cast<uint32_t>(p.width > 0 ? p.width : 0);
    v.height = static_cast<uint32_t>(p.height > 0 ? p.height : 0);
    v.field = MapFieldOrder(p.field_order);
    v.fps = ToRatio(st->avg_frame_rate.num > 0 ? st->avg_frame_rate : st->r_frame_rate);
    // The board derives the display aspect from the sample aspect and the size.
    v.sar = ToRatio(av_guess_sample_aspect_ratio(fc, st, nullptr));
    v.sarGiven = v.sar.num != 0;
    if (!v.sarGiven) v.dar = Ratio{};
    v.profile = ProfileCode(v.codec, p.profile, p.level);
    v.level = p.level > 0 ? static_cast<uint32_t>(p.level) : 0;
    FillPixelFormat(p.format, v);
    *out = v;
    return true;
}

bool ReadAudio(AVStream* st, AudioStream* out) {
    const AVCodecParameters& p = *st->codecpar;
    AudioStream a;
    if (!MapAudioCodec(p, &a.codec)) return false;
    a.pid = static_cast<uint16_t>(st->id);
    a.sampleRate = static_cast<uint32_t>(p.sample_rate > 0 ? p.sample_rate : 0);
    const int channels = p.ch_layout.nb_channels;
    a.lfe = av_channel_layout_index_from_channel(&p.ch_layout, AV_CHAN_LOW_FREQUENCY) >= 0;
    a.channels = static_cast<uint32_t>(channels > 0 ? channels - (a.lfe ? 1 : 0) : 0);
    // Compressed audio has no sample size of its own: the decoder gives 16-bit PCM.
    a.bitsPerSample = p.bits_per_raw_sample > 0 ? static_cast<uint32_t>(p.bits_per_raw_sample) : 16;
    a.bitRate = p.bit_rate > 0 ? static_cast<uint64_t>(p.bit_rate) : 0;
    if (st->start_time != AV_NOPTS_VALUE) {
        const int64_t pts90k = av_rescale_q(st->start_time, st->time_base, AVRational{1, 90000});
        a.ptsStart = static_cast<uint64_t>(pts90k) & ((uint64_t{1} << 33) - 1);
    }
    *out = a;
    return true;
}

// One service per programme, in the order of the programme association table;
// a stream listed by several programmes belongs to the first.
Service ReadService(AVFormatContext* fc, const AVProgram& prog, std::set<int>* taken) {
    Service s;
    s.id = static_cast<uint16_t>(prog.id);
    if (const AVDictionaryEntry* e = av_dict_get(prog.metadata, "service_name", nullptr, 0)) s.name = e->value;
    for (unsigned i = 0; i < prog.nb_stream_indexes; ++i) {
        AVStream* st = fc->streams[prog.stream_index[i]];
        if (!ValidPid(st->id) || !taken->insert(st->id).second) continue;
        VideoStream v;
        AudioStream a;
        if (st->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && ReadVideo(fc, st, &v)) s.video.push_back(v);
        else if (st->codecpar->codec_type == AVMEDIA_TYPE_AUDIO && ReadAudio(st, &a)) s.audio.push_back(a);
    }
    if (ValidPid(prog.pcr_pid)) s.pcrPid = static_cast<uint16_t>(prog.pcr_pid);
    else if (!s.video.empty()) s.pcrPid = s.video.front().pid;
    else if (!s.audio.empty()) s.pcrPid = s.audio.front().pid;
    return s;
}

std::string AvError(const char* what, int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {0};
    av_strerror(code, text, sizeof text);
    return std::string(what) + ": " + text;
}

class CFfmpegTsSource : public IStreamSource {
public:
    CFfmpegTsSource() { av_log_set_level(AV_LOG_ERROR); }

    bool Recognises(const std::string&, const std::string& head) const override {
        return head.size() >= 189 && head[0] == 0x47 && head[188] == 0x47;
    }

    bool Load(const std::string& path, StreamInput* out, std::string* error) const override {
        AVFormatContext* fc = nullptr;
        int r = avformat_open_input(&fc, path.c_str(), av_find_input_format("mpegts"), nullptr);
        if (r < 0) {
            *error = AvError("cannot open as MPEG-TS", r);
            return false;
        }
        // A stream whose parameters are not found before the end of the file
        // (a short capture) fails the call but keeps what was learnt: such a
        // stream is listed with the attributes found (zeros for the others).
        avformat_find_stream_info(fc, nullptr);
        StreamInput in;
        if (fc->nb_programs == 0) *error = "no programme in the MPEG-TS file (no PAT/PMT)";
        else Fill(fc, path, &in);
        avformat_close_input(&fc);
        if (in.services.empty()) return false;
        *out = std::move(in);
        return true;
    }

private:
    static void Fill(AVFormatContext* fc, const std::string& path, StreamInput* in) {
        in->source = path;
        std::set<int> taken;
        for (unsigned i = 0; i < fc->nb_programs; ++i) in->services.push_back(ReadService(fc, *fc->programs[i], &taken));
    }
};

}  // namespace

}  // namespace stbsim

// The module's entry, looked up by name when the board loads the module.
extern "C" __attribute__((visibility("default"))) const stbsim::IStreamSource* stbsim_ts_source() {
    static const stbsim::CFfmpegTsSource source;
    return &source;
}
