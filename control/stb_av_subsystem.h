// StbAvSubsystem: the daemon's composition root. Given the decoder platform
// objects (by reference), it owns and wires everything else: output settings,
// serial adapter, dictionary, status processors, the schedule and its "poller"
// thread, status monitor, configuration manager, operation receiver and sender.
// Built, started and destroyed on one controlling thread; all timed work (status
// polls, configuration runs, the one-second reports) runs on the poller thread.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "control/config_manager.h"
#include "control/stb_av_op_receiver.h"
#include "control/stb_av_op_sender.h"
#include "output/output_manager.h"
#include "platform/i_audio_decoder.h"
#include "platform/i_audio_output.h"
#include "platform/i_closed_caption.h"
#include "platform/i_decoder_chip.h"
#include "platform/i_demux.h"
#include "platform/i_video_decoder.h"
#include "platform/i_video_output.h"
#include "protocol/c_op_ss_data_map.h"
#include "status/status_monitor.h"
#include "status/status_processor.h"
#include "toolkit/kt_schedule.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_thread.h"
#include "toolkit/kt_uncopyable.h"
#include "transport/uart_adapter.h"

class StbAvSubsystem : private KT::CUncopyable {
public:
    using AudioDecoders = std::vector<KT::CSharedPtr<IAudioDecoder>>;

    // The board's line: "/dev/ttyS2" at 115200 bit/s.
    StbAvSubsystem(IDecoderChip& decoderChip, IDemux& demux, AudioDecoders& audioDecoders,
                    IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                    IClosedCaption& closedCaption);
    // The same on another serial device (a pty on a PC) at 115200 bit/s. clock
    // drives the schedule (null: the monotonic clock); it must outlive the subsystem.
    StbAvSubsystem(IDecoderChip& decoderChip, IDemux& demux, AudioDecoders& audioDecoders,
                    IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                    IClosedCaption& closedCaption, const std::string& serialDevice, KT::IClock* clock = nullptr);
    // Cancels the poller, ends reception, then releases the members in reverse order.
    ~StbAvSubsystem();

    // Runs the poller, starts receiving host operations, then reports the
    // software version and readiness. Controlling thread, once.
    void StartProcess();

    // The value of "version" in the version file ("unknown" without it), as text.
    void ReportSFVersion();
    // "stbav_ready".
    void ReportReady();
    // Every second on the poller: version and ready again if the host asked.
    void ReportSFVersionAndReadyAgain();
    // Every second on the poller: "Stbav status clear done!" if the host cleared status.
    void ReportStatusClearDone();
    // True when a Samba server process runs. Sends nothing. Any thread.
    bool ReportSambaServiceReady();

    // The serial adapter, for its frame counters. Any thread.
    const CUartAdapter& UartAdapter() const { return m_UartAdapter; }

    // The daemon's schedule, for tests that drive an injected clock (Wake after moving it).
    KT::CSchedule& Schedule() { return m_Schedule; }

private:
    void Assemble();

    log4cpp::Category& m_Log;
    IDecoderChip& m_DecoderChip;
    IDemux& m_Demux;
    AudioDecoders& m_AudioDecoders;
    IVideoDecoder& m_VideoDecoder;
    IVideoOutput& m_VideoOutput;
    IAudioOutput& m_AudioOutput;
    [[maybe_unused]] IClosedCaption& m_ClosedCaption;  // held, not used here
    OutputManager m_OutputManager;
    CUartAdapter m_UartAdapter;
    COpSsDataMap m_Dictionary;
    std::vector<KT::CSharedPtr<StatusProcessor>> m_StatusProcessors;  // polled in this order
    KT::CSchedule m_Schedule;
    KT::CThread m_Poller;
    StatusMonitor m_StatusMonitor;
    // Set by configuration processing, read and cleared by the reports; both on
    // the poller, atomic so that a test may drive configuration from its own thread.
    std::atomic<bool> m_ReadyAgainRequested{false};
    std::atomic<bool> m_ClearDoneRequested{false};
    ConfigManager m_ConfigManager;
    StbAvOpReceiver m_OpReceiver;
    StbAvOpSender m_OpSender;
};
