// FakeDecoderSet: one recording double of every decoder interface, all writing
// to the same CallLog, ready to be handed to the control, status and output
// logic in place of the platform adapters. Owned by the test; the log outlives
// the fakes. audioDecoders holds the first audio decoder; AddAudioDecoder adds
// more (named "IAudioDecoder#1", "#2" ... in the log). The small doubles live
// here too: FakeDecoderChip (counts Initialize), FakeAudioOutput and
// FakeClosedCaption (which remembers the SetOverlayCc overload called last, as
// both render alike in the log). Any thread.
//
//   FakeDecoderSet d;
//   OutputManager om(d.videoDecoder, d.videoOutput, d.audioOutput, d.chip, d.closedCaption, d.demux);
//   d.videoDecoder.SetReportedFormat({1920, 1080, 2, 6, 1});  // 1080p50 16:9
//   om.ApplySettings(true);
//   EXPECT_EQ(d.log.CallsWithPrefix("IVideoOutput::"), ...);
#pragma once

#include <string>
#include <vector>

#include "platform/i_audio_output.h"
#include "platform/i_closed_caption.h"
#include "platform/i_decoder_chip.h"
#include "tests/doubles/call_log.h"
#include "tests/doubles/fake_audio_decoder.h"
#include "tests/doubles/fake_base.h"
#include "tests/doubles/fake_demux.h"
#include "tests/doubles/fake_video_decoder.h"
#include "tests/doubles/fake_video_output.h"
#include "toolkit/kt_shared_ptr.h"

namespace stbav_test {

struct FakeDecoderChipState {
    int initializeCount = 0;  // the Initialize calls not told to fail
};

class FakeDecoderChip : public IDecoderChip, public FakeBase<FakeDecoderChipState> {
public:
    explicit FakeDecoderChip(CallLog& log) : FakeBase(log, "IDecoderChip") {}

    bool Initialize() override { return Apply([](auto& s) { return ++s.initializeCount > 0; }, "Initialize"); }
    bool Reset() override { return Call("Reset"); }
    bool CommitConfig() override { return Call("CommitConfig"); }
    bool Upgrade() override { return Call("Upgrade"); }
};

class FakeAudioOutput : public IAudioOutput, public FakeBase<NoState> {
public:
    explicit FakeAudioOutput(CallLog& log) : FakeBase(log, "IAudioOutput") {}

    int SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) override {
        return Call("SetVolume", device, linear, value) ? 0 : -1;
    }
    bool SetAnalogVolume(int dB) override { return Call("SetAnalogVolume", dB); }
    bool SetMute(bool mute) override { return Call("SetMute", mute); }
};

struct FakeClosedCaptionState {
    enum Overload { NONE, NTSC, DTV };
    Overload lastOverload = NONE;
};

class FakeClosedCaption : public IClosedCaption, public FakeBase<FakeClosedCaptionState> {
public:
    explicit FakeClosedCaption(CallLog& log) : FakeBase(log, "IClosedCaption") {}

    int Initialize() override { return Call("Initialize") ? 0 : -1; }
    int Deinitialize() override { return Call("Deinitialize") ? 0 : -1; }
    bool SetVbiLine21CcState(bool on) override { return Call("SetVbiLine21CcState", on); }
    bool SetOverlayCc(OverlayCcType_e type, OverlayNtscCcType_e dataType) override {
        return Apply([](State& s) { return (s.lastOverload = State::NTSC, true); }, "SetOverlayCc", type, dataType);
    }
    bool SetOverlayCc(OverlayCcType_e type, OverlayDtvCcType_e dataType) override {
        return Apply([](State& s) { return (s.lastOverload = State::DTV, true); }, "SetOverlayCc", type, dataType);
    }
    bool SetOverlayCcState(bool on) override { return Call("SetOverlayCcState", on); }
};

struct FakeDecoderSet {
    // A stream the status processors can report: one AC-3 audio service (PID 0x101)
    // and 1080p50 16:9 video (PID 0x100), with the display already at that format.
    // Only the two SetPid calls are recorded.
    void PlayStream() {
        demux.SetPid(0x101, ES_TYPE_AUDIO, 0);
        demux.SetPid(0x100, ES_TYPE_VIDEO, 0);
        audioDecoder->Configure([](FakeAudioDecoderState& s) {
            s.pts = 1000;
            s.bitRate = 192000;
            s.samplingRate = 48000;
            s.bitsPerSample = 1;
            s.codingMode = AUDIO_CHANNEL_CODING_STEREO;
            s.dialNorm = -31;
            s.reportedCodec = AUDIO_TYPE_STATUS_AC3;
        });
        const VideoFormatState f{1920, 1080, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, VIDEO_ASPECT_RATIO_16X9};
        videoDecoder.SetReportedFormat(f);
        videoOutput.Configure([&](VideoFormatState& s) { s = f; });
    }
    FakeAudioDecoder& AddAudioDecoder() {
        auto d = KT::MakeShared<FakeAudioDecoder>(log, "IAudioDecoder#" + std::to_string(audioDecoders.size()));
        audioDecoders.push_back(KT::CSharedPtr<IAudioDecoder>(d));
        return *d;
    }

    CallLog log;  // first: outlives every fake
    FakeDecoderChip chip{log};
    FakeDemux demux{log};
    FakeVideoDecoder videoDecoder{log};
    KT::CSharedPtr<FakeAudioDecoder> audioDecoder = KT::MakeShared<FakeAudioDecoder>(log);
    std::vector<KT::CSharedPtr<IAudioDecoder>> audioDecoders{KT::CSharedPtr<IAudioDecoder>(audioDecoder)};
    FakeVideoOutput videoOutput{log};
    FakeAudioOutput audioOutput{log};
    FakeClosedCaption closedCaption{log};
};

}  // namespace stbav_test
