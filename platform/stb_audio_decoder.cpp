// The audio decoder's getters and code mappings. Poller thread.
#include "platform/stb_audio_decoder.h"

#include <cstring>

#include "toolkit/log.h"

namespace {

// Status audio format code -> the codec reported to the host. Not the inverse
// of the demux's table: the two are kept apart on purpose.
AudioTypeStatus_e CodecFromStatusFormat(uint32_t format) {
    switch (format) {
        case 0: return AUDIO_TYPE_STATUS_MPEG2;
        case 1: return AUDIO_TYPE_STATUS_AC3;
        case 2: return AUDIO_TYPE_STATUS_DRA;
        case 3: return AUDIO_TYPE_STATUS_9;
        case 4: return AUDIO_TYPE_STATUS_4;
        case 5: return AUDIO_TYPE_STATUS_AAC_LATM;
        default: return AUDIO_TYPE_STATUS_NONE;
    }
}

// Only mono, stereo and 5-channel streams have a coding mode.
AudioChannelCoding_e CodingFromChannels(uint32_t channels) {
    switch (channels) {
        case 1: return AUDIO_CHANNEL_CODING_MONO;
        case 2: return AUDIO_CHANNEL_CODING_STEREO;
        case 5: return AUDIO_CHANNEL_CODING_3_2;
        default: return AUDIO_CHANNEL_CODING_UNKNOWN;
    }
}

uint32_t BitsPerSampleCode(uint32_t bits) {
    switch (bits) {
        case 16: return 1;
        case 20: return 2;
        case 24: return 3;
        default: return 0;
    }
}

}  // namespace

StbAudioDecoder::StbAudioDecoder(FfAvProbe& probe)
    : m_Logger(stbav::Logger("stbav.stbaudiodecoder")), m_Probe(probe) {}

bool StbAudioDecoder::ReadStatus(AvStatusInfo& status) {
    memset(&status, 0, sizeof status);
    return av_get_status_info(m_AvHandle, &status) == 0;
}

bool StbAudioDecoder::SetCodec(AudioType_e codec) {
    stbav::LogDebug(m_Logger, "%s: codec - %d", "SetCodec", static_cast<int>(codec));
    if (codec == m_Codec) return false;
    m_Codec = codec;
    return true;
}

AudioTypeStatus_e StbAudioDecoder::GetCodec() {
    AvStatusInfo s;
    return ReadStatus(s) ? CodecFromStatusFormat(s.audio_format) : AUDIO_TYPE_STATUS_NONE;
}

AudioChannelCoding_e StbAudioDecoder::GetCodingMode() {
    AvStatusInfo s;
    if (!ReadStatus(s)) return AUDIO_CHANNEL_CODING_UNKNOWN;
    return CodingFromChannels(m_Probe.GetAudioChannels(s.audio_pid));
}

uint32_t StbAudioDecoder::GetBitRate() {
    AvStatusInfo s;
    if (!ReadStatus(s)) return 0;
    return static_cast<uint32_t>(m_Probe.GetAudioBitRate(s.audio_pid) & 0xFFFFFFFFu);
}

uint32_t StbAudioDecoder::GetBitsPerSample() {
    AvStatusInfo s;
    return ReadStatus(s) ? BitsPerSampleCode(s.audio_bits_per_sample) : 0;
}

uint32_t StbAudioDecoder::GetSamplingRate() {
    AvStatusInfo s;
    return ReadStatus(s) ? m_Probe.GetAudioSampleRate(s.audio_pid) : 0;
}

uint32_t StbAudioDecoder::GetFrameCount() {
    AvStatusInfo s;
    return ReadStatus(s) ? s.audio_frame_count : 0;
}

uint64_t StbAudioDecoder::GetPts() {
    AvStatusInfo s;
    return ReadStatus(s) ? s.audio_pts : 0;
}
