// StbAudioDecoder: one audio decoder over the media library. Its getters run on
// the poller thread and read the live status record and the stream probe's
// cache; platform failures read as 0 and are not logged. Held by the subsystem
// assembly as KT::CSharedPtr<StbAudioDecoder>; holds the probe by reference.
#pragma once

#include <cstdint>

#include <log4cpp/Category.hh>

#include "platform/decoder_types.h"
#include "platform/ff_av_probe.h"
#include "platform/i_audio_decoder.h"
#include "platform/i_decoder_control.h"
#include "platform/i_decoder_event_source.h"
#include "platform/stb_module.h"

class StbAudioDecoder : public IAudioDecoder, public IDecoderEventSource, public IDecoderControl {
public:
    explicit StbAudioDecoder(FfAvProbe& probe);

    bool SetCodec(AudioType_e codec) override;
    AudioTypeStatus_e GetCodec() override;
    AudioChannelCoding_e GetCodingMode() override;
    uint32_t GetBitRate() override;
    uint32_t GetBitsPerSample() override;
    uint32_t GetSamplingRate() override;
    int8_t GetDialNorm() override { return 0; }
    uint32_t GetFrameCount() override;
    int SetAudioMode(int) override { return 0; }
    uint64_t GetPts() override;
    uint32_t GetSyncStatus() override { return 0; }

    bool Subscribe(const DecoderEventHandler&) override { return true; }
    bool Unsubscribe(const DecoderEventHandler&) override { return true; }
    bool RaiseEvent(DecoderEvents_e) { return true; }
    bool Start() override { return true; }
    bool Stop() override { return true; }

    // The AV player handle from the chip bring-up.
    void BondAvHandle(uint32_t avHandle) { m_AvHandle = avHandle; }

private:
    bool ReadStatus(AvStatusInfo& status);

    log4cpp::Category& m_Logger;
    FfAvProbe& m_Probe;
    uint32_t m_AvHandle = 0;
    AudioType_e m_Codec = AUDIO_TYPE_NONE;
};
