// Fuzz target: bytes as the daemon receives them on the serial line. They go
// through the frame decoder, the op image parser, the operation receiver's sort
// by type, and ConfigManager's processing (dictionary lookup and typed reads)
// into the output settings and the recording decoder doubles, with one
// configuration run per apply trigger and one at the end. Single-threaded: the
// schedule runs on a hand-moved clock.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "control/config_manager.h"
#include "control/stb_av_op_receiver.h"
#include "fuzz/fuzz_quiet.h"
#include "output/output_manager.h"
#include "protocol/op_ss_data_tables.h"
#include "status/status_monitor.h"
#include "tests/doubles/fake_decoder_set.h"
#include "tests/status/status_test_support.h"
#include "transport/uart_framing.h"

namespace {

struct Daemon {
    Daemon() { FillDictionary(dictionary); }
    stbav_test::FakeDecoderSet d;
    stbav_test::RecordingAdapter adapter;  // never opens a port
    COpSsDataMap dictionary;
    stbav_test::FakeClock clock;
    KT::CSchedule schedule{&clock};
    OutputManager output{d.videoDecoder, d.videoOutput, d.audioOutput, d.chip, d.closedCaption, d.demux};
    std::vector<KT::CSharedPtr<StatusProcessor>> processors;
    StatusMonitor monitor{processors, schedule};
    std::atomic<bool> readyAgain{false};
    std::atomic<bool> clearDone{false};
    ConfigManager config{d.chip, d.demux, output, dictionary, schedule, monitor, readyAgain, clearDone};
    StbAvOpReceiver receiver{adapter, config};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Daemon daemon;
    FrameDecoder decoder;
    std::vector<unsigned char> frame;
    for (size_t i = 0; i < size; ++i) {
        if (!decoder.Push(data[i], frame)) continue;
        frame.push_back(0x00);  // as the adapter does before parsing
        KT::CSharedPtr<SsOp> op(new SsOp());
        if (op->DeserializeOp(frame.data(), static_cast<unsigned>(frame.size())) == 0) continue;
        daemon.receiver.HandleCommOp(op);
        daemon.schedule.RunDue();
    }
    daemon.config.ScheduleConfiguration();
    daemon.schedule.RunDue();
    return 0;
}
