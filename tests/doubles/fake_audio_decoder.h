// FakeAudioDecoder: recording double of IAudioDecoder, IDecoderEventSource and
// IDecoderControl. Reports the values held in its state (GetCodec reports
// `reportedCodec`, which the test sets, as the real decoder reports what the
// stream carries), but frame count and sync status, which nothing above the
// platform reads, always 0; SetCodec is only recorded. Any thread.
#pragma once

#include <string>
#include <utility>

#include "platform/i_audio_decoder.h"
#include "platform/i_decoder_event_source.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeAudioDecoderState {
    AudioTypeStatus_e reportedCodec = AUDIO_TYPE_STATUS_NONE;
    AudioChannelCoding_e codingMode = AUDIO_CHANNEL_CODING_UNKNOWN;
    uint32_t bitRate = 0;
    uint32_t bitsPerSample = 0;
    uint32_t samplingRate = 0;
    int8_t dialNorm = 0;
    uint64_t pts = 0;
};

class FakeAudioDecoder : public IAudioDecoder, public IDecoderEventSource, public FakeControl<FakeAudioDecoderState> {
public:
    explicit FakeAudioDecoder(CallLog& log, std::string name = "IAudioDecoder") : FakeControl(log, std::move(name)) {}

    bool SetCodec(AudioType_e codec) override { return Call("SetCodec", codec); }
    AudioTypeStatus_e GetCodec() override { return Report("GetCodec", &State::reportedCodec); }
    AudioChannelCoding_e GetCodingMode() override { return Report("GetCodingMode", &State::codingMode); }
    uint32_t GetBitRate() override { return Report("GetBitRate", &State::bitRate); }
    uint32_t GetBitsPerSample() override { return Report("GetBitsPerSample", &State::bitsPerSample); }
    uint32_t GetSamplingRate() override { return Report("GetSamplingRate", &State::samplingRate); }
    int8_t GetDialNorm() override { return Report("GetDialNorm", &State::dialNorm); }
    uint32_t GetFrameCount() override { return Query([](const State&) { return 0u; }, "GetFrameCount"); }
    int SetAudioMode(int mode) override { return Call("SetAudioMode", mode) ? 0 : -1; }
    uint64_t GetPts() override { return Report("GetPts", &State::pts); }
    uint32_t GetSyncStatus() override { return Query([](const State&) { return 0u; }, "GetSyncStatus"); }

    bool Subscribe(const DecoderEventHandler&) override { return Call("Subscribe"); }
    bool Unsubscribe(const DecoderEventHandler&) override { return Call("Unsubscribe"); }
};

}  // namespace stbav_test
