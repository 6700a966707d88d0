// FakeDecoderSet: one recording double of every decoder interface, all writing
// to the same CallLog, ready to be handed to the control, status and output
// logic in place of the platform adapters. Owned by the test; the log outlives
// the fakes. audioDecoders holds the first audio decoder; AddAudioDecoder adds
// more (named "IAudioDecoder#1", "#2" ... in the log).
//
//   FakeDecoderSet d;
//   OutputManager om(d.videoDecoder, d.videoOutput, d.audioOutput, d.chip, d.closedCaption, d.demux);
//   d.videoDecoder.SetReportedFormat(1920, 1080, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, ...);
//   om.ApplySettings(true);
//   EXPECT_EQ(d.log.CallsWithPrefix("IVideoOutput::"), ...);
#pragma once

#include <string>
#include <vector>

#include "tests/doubles/call_log.h"
#include "tests/doubles/fake_audio_decoder.h"
#include "tests/doubles/fake_audio_output.h"
#include "tests/doubles/fake_closed_caption.h"
#include "tests/doubles/fake_decoder_chip.h"
#include "tests/doubles/fake_demux.h"
#include "tests/doubles/fake_video_decoder.h"
#include "tests/doubles/fake_video_output.h"
#include "toolkit/kt_shared_ptr.h"

namespace stbav_test {

struct FakeDecoderSet {
    FakeDecoderSet()
        : audioDecoder(KT::MakeShared<FakeAudioDecoder>(log)),
          audioDecoders{KT::CSharedPtr<IAudioDecoder>(audioDecoder)} {}

    FakeAudioDecoder& AddAudioDecoder() {
        auto d = KT::MakeShared<FakeAudioDecoder>(log, "IAudioDecoder#" + std::to_string(audioDecoders.size()));
        audioDecoders.push_back(KT::CSharedPtr<IAudioDecoder>(d));
        return *d;
    }

    CallLog log;  // first: outlives every fake
    FakeDecoderChip chip{log};
    FakeDemux demux{log};
    FakeVideoDecoder videoDecoder{log};
    KT::CSharedPtr<FakeAudioDecoder> audioDecoder;
    std::vector<KT::CSharedPtr<IAudioDecoder>> audioDecoders;
    FakeVideoOutput videoOutput{log};
    FakeAudioOutput audioOutput{log};
    FakeClosedCaption closedCaption{log};
};

}  // namespace stbav_test
