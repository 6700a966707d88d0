// AudioStatusProcessor: one poll of every audio decoder.
#include "status/audio_status_processor.h"

#include "toolkit/log.h"

namespace {

// Status opIds (names as in the dictionary).
enum AudioStatusOp : unsigned int {
    kOpBitrate = 74,         // audiosrvBitrate
    kOpSamplingRate = 75,    // audiosrvSamplingRate
    kOpBitsPerSample = 76,   // audiosrvBitsPerSample
    kOpChannelCoding = 77,   // audiosrvChannelCoding
    kOpDialNorm = 78,        // audiosrvDialNormValue
    kOpEncodedType = 79,     // audiosrvEncodedType
    kOpDecoding = 80,        // audiosrvDecoding
    kOpPid = 213,            // selectedaudioPid
    kOpSelectedType = 214,   // selectedaudioType
    kOpSyncStatus = 216,     // selectedaudioSyncStatus
};

// Four seconds of the 90 kHz clock.
constexpr uint64_t kPtsJumpLimit = 360000;
// 2^33 - 1: the wrap of the 33-bit PTS counter, less one.
constexpr uint64_t kPtsWrap = 8589934591ULL;

}  // namespace

AudioStatusProcessor::AudioStatusProcessor(StbAvOpSender& sender,
                                           std::vector<KT::CSharedPtr<IAudioDecoder>>& audioDecoders,
                                           IAudioOutput& audioOutput, IDemux& demux, IDecoderChip& decoderChip)
    : StatusProcessor(sender),
      m_AudioLog(stbav::Logger("tevrin.audioStatusProcess")),
      m_AudioDecoders(audioDecoders),
      m_AudioOutput(audioOutput),
      m_Demux(demux),
      m_DecoderChip(decoderChip),
      m_Previous(audioDecoders.size()) {}

bool AudioStatusProcessor::Process(bool force) {
    if (m_Previous.size() < m_AudioDecoders.size()) m_Previous.resize(m_AudioDecoders.size());
    uint64_t step = 0;
    bool sent = false;
    for (size_t i = 0; i < m_AudioDecoders.size(); ++i) {
        StatusAudio_t r = ReadDecoder(i);
        // Only the first decoder whose PTS moved is checked in one poll.
        if (step == 0) step = CheckPtsJump(m_Previous[i].pts, r.pts);
        m_Previous[i].pts = r.pts;
        if (!IsNormalAudioPid(r.pid)) r = StatusAudio_t();
        sent |= SendRecord(i, r, force);
    }
    return sent;
}

AudioStatusProcessor::StatusAudio_t AudioStatusProcessor::ReadDecoder(size_t i) {
    IAudioDecoder& decoder = *m_AudioDecoders[i];
    StatusAudio_t r;
    r.pts = decoder.GetPts();
    r.pid = m_Demux.GetPid(ES_TYPE_AUDIO, static_cast<uint16_t>(i));
    r.bitrate = decoder.GetBitRate();
    r.samplingRate = decoder.GetSamplingRate();
    r.bitsPerSample = decoder.GetBitsPerSample();
    r.channelCoding = decoder.GetCodingMode();
    r.dialNorm = decoder.GetDialNorm();
    r.encodedType = decoder.GetCodec();
    r.selectedType = decoder.GetCodec();
    r.syncStatus = SYNC_STATUS_IN_SYNC;
    return r;
}

uint64_t AudioStatusProcessor::CheckPtsJump(uint64_t previous, uint64_t current) {
    uint64_t step = current - previous;
    stbav::LogDebug(m_AudioLog, "%llu %llu %llu", static_cast<unsigned long long>(step),
                     static_cast<unsigned long long>(previous), static_cast<unsigned long long>(current));
    if (step > kPtsJumpLimit) {
        step += kPtsWrap;
        stbav::LogInfo(m_AudioLog, "Significant PCR adjustment: %llu %llu %llu", static_cast<unsigned long long>(step),
                        static_cast<unsigned long long>(previous), static_cast<unsigned long long>(current));
    }
    return step;
}

bool AudioStatusProcessor::SendRecord(size_t i, const StatusAudio_t& r, bool force) {
    StatusAudio_t& last = m_Previous[i];
    const unsigned int index = static_cast<unsigned int>(i);
    bool sent = false;
    sent |= SendNewStatus(kOpPid, index, r.pid, last.pid, force);
    sent |= SendNewStatus(kOpBitrate, index, r.bitrate, last.bitrate, force);
    sent |= SendNewStatus(kOpSamplingRate, index, r.samplingRate, last.samplingRate, force);
    sent |= SendNewStatus(kOpBitsPerSample, index, r.bitsPerSample, last.bitsPerSample, force);
    sent |= SendNewStatus(kOpChannelCoding, index, r.channelCoding, last.channelCoding, force);
    sent |= SendNewStatus(kOpDialNorm, index, r.dialNorm, last.dialNorm, force);
    sent |= SendNewStatus(kOpEncodedType, index, r.encodedType, last.encodedType, force);
    sent |= SendNewStatus(kOpSelectedType, index, r.selectedType, last.selectedType, force);
    sent |= SendNewStatus(kOpDecoding, index, r.decoding, last.decoding, force);
    sent |= SendNewStatus(kOpSyncStatus, index, r.syncStatus, last.syncStatus, force);
    return sent;
}

void AudioStatusProcessor::Clear() { m_Previous.assign(m_AudioDecoders.size(), StatusAudio_t()); }

bool AudioStatusProcessor::IsNormalAudioPid(uint16_t pid) { return pid != 0 && pid != m_InvalidPid; }
