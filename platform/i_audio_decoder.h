// IAudioDecoder: what one audio decoder knows about its audio service. Getters
// run on the poller thread (status polling); platform failures read as 0.
// Held by the subsystem as KT::CSharedPtr<IAudioDecoder>, one per decoder.
#pragma once

#include <cstdint>

#include "platform/decoder_types.h"

class IAudioDecoder {
public:
    virtual ~IAudioDecoder() = default;

    // Records the codec of the selected service. True when it changed, false when
    // it was already the current codec.
    virtual bool SetCodec(AudioType_e codec) = 0;
    // Codec being decoded, in the numbering reported to the host; 0 on failure.
    virtual AudioTypeStatus_e GetCodec() = 0;
    // Channel arrangement; 0 when unknown or on failure.
    virtual AudioChannelCoding_e GetCodingMode() = 0;
    // Bit rate in bit/s; 0 when unknown or on failure.
    virtual uint32_t GetBitRate() = 0;
    // Bits-per-sample code (1 = 16, 2 = 20, 3 = 24); 0 when unknown or on failure.
    virtual uint32_t GetBitsPerSample() = 0;
    // Sampling rate in Hz; 0 when unknown or on failure.
    virtual uint32_t GetSamplingRate() = 0;
    // Dialogue normalisation value; 0 when unknown.
    virtual int8_t GetDialNorm() = 0;
    // Decoded frame count; 0 on failure.
    virtual uint32_t GetFrameCount() = 0;
    // Selects an audio mode. 0 on success, an error code otherwise.
    virtual int SetAudioMode(int mode) = 0;
    // Presentation time stamp (90 kHz, 33 bits used); 0 on failure.
    virtual uint64_t GetPts() = 0;
    // Audio sync status; 0 when unknown.
    virtual uint32_t GetSyncStatus() = 0;

protected:
    IAudioDecoder() = default;
    IAudioDecoder(const IAudioDecoder&) = delete;
    IAudioDecoder& operator=(const IAudioDecoder&) = delete;
};
