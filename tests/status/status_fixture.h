// StatusFixture: the decoder doubles, a recording adapter, the full dictionary and
// a sender over them, plus the configuration side the video processor needs
// (output settings, schedule on a hand-moved clock, monitor, config manager).
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "control/config_manager.h"
#include "control/stb_av_op_sender.h"
#include "output/output_manager.h"
#include "protocol/op_ss_data_tables.h"
#include "status/status_monitor.h"
#include "tests/doubles/fake_decoder_set.h"
#include "tests/protocol/print_capture.h"
#include "tests/status/status_test_support.h"

namespace stbav_test {

class StatusFixture : public ::testing::Test {
protected:
    StatusFixture() { FillDictionary(dictionary); }

    PrintCapture prints;  // the missing port's message and read diagnostics
    FakeDecoderSet d;
    RecordingAdapter adapter;
    COpSsDataMap dictionary;
    StbAvOpSender sender{adapter, dictionary};
    FakeClock clock;
    KT::CSchedule schedule{&clock};
    OutputManager output{d.videoDecoder, d.videoOutput, d.audioOutput, d.chip, d.closedCaption, d.demux};
    std::vector<KT::CSharedPtr<StatusProcessor>> processors;
    StatusMonitor monitor{processors, schedule};
    std::atomic<bool> readyAgain{false};
    std::atomic<bool> clearDone{false};
    ConfigManager config{d.chip, d.demux, output, dictionary, schedule, monitor, readyAgain, clearDone};
};

}  // namespace stbav_test
