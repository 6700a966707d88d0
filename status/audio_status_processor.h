// AudioStatusProcessor: reports the state of every audio decoder (index i of the
// decoder list is operation index i) and logs large jumps of the audio PTS.
// Polled on the poller thread; the decoder list and the interfaces belong to the
// subsystem, the last reported records to this processor.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/decoder_types.h"
#include "platform/i_audio_decoder.h"
#include "platform/i_audio_output.h"
#include "platform/i_decoder_chip.h"
#include "platform/i_demux.h"
#include "status/status_processor.h"
#include "toolkit/kt_shared_ptr.h"

class AudioStatusProcessor : public StatusProcessor {
public:
    // What one decoder last reported; all zero at first.
    struct StatusAudio_t {
        uint64_t pts = 0;
        uint16_t pid = 0;
        uint32_t bitrate = 0;
        uint32_t samplingRate = 0;
        uint32_t bitsPerSample = 0;
        AudioChannelCoding_e channelCoding = AUDIO_CHANNEL_CODING_UNKNOWN;
        int8_t dialNorm = 0;
        AudioTypeStatus_e encodedType = AUDIO_TYPE_STATUS_NONE;
        AudioTypeStatus_e selectedType = AUDIO_TYPE_STATUS_NONE;
        uint32_t reserved = 0;                    // never reported
        Status_e decoding = STATUS_UNKNOWN;       // never set
        SyncStatus_e syncStatus = SYNC_STATUS_UNKNOWN;
    };

    // The audio output and the chip are held for the processor's owner; Process
    // reads only the decoders and the demux.
    AudioStatusProcessor(StbAvOpSender& sender, std::vector<KT::CSharedPtr<IAudioDecoder>>& audioDecoders,
                         IAudioOutput& audioOutput, IDemux& demux, IDecoderChip& decoderChip);

    bool Process(bool force) override;
    void Clear() override;
    // False for PID 0 and the null PID 8191.
    bool IsNormalAudioPid(uint16_t pid);

private:
    StatusAudio_t ReadDecoder(size_t i);
    // Logs a PTS step of more than four seconds (90 kHz clock); returns the step.
    uint64_t CheckPtsJump(uint64_t previous, uint64_t current);
    bool SendRecord(size_t i, const StatusAudio_t& r, bool force);

    log4cpp::Category& m_AudioLog;
    std::vector<KT::CSharedPtr<IAudioDecoder>>& m_AudioDecoders;
    [[maybe_unused]] IAudioOutput& m_AudioOutput;  // held, not used here
    IDemux& m_Demux;
    [[maybe_unused]] IDecoderChip& m_DecoderChip;  // held, not used here
    std::vector<StatusAudio_t> m_Previous;  // one per decoder: the last reported values
};
