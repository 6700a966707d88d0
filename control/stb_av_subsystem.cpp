// StbAvSubsystem: assembly, start-up, the periodic reports and tear-down.
#include "control/stb_av_subsystem.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "protocol/op_ss_data_tables.h"
#include "status/audio_status_processor.h"
#include "status/chip_status_processor.h"
#include "status/video_status_processor.h"
#include "toolkit/fixed_paths.h"
#include "toolkit/kt_env_block.h"
#include "toolkit/kt_fs.h"
#include "toolkit/kt_functor.h"
#include "toolkit/log.h"

namespace {

constexpr unsigned int kOpSoftwareVersion = 2;  // stbsystemSoftwareVersion
constexpr unsigned int kOpReady = 3;            // stbsystemReady
constexpr unsigned int kOpStatusClearDone = 9;  // stbsystemStatusClearDone
constexpr unsigned int kReportPeriodMs = 1000;

}  // namespace

// The two constructors differ only in the serial adapter's constructor.
StbAvSubsystem::StbAvSubsystem(IDecoderChip& decoderChip, IDemux& demux, AudioDecoders& audioDecoders,
                                 IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                                 IClosedCaption& closedCaption)
    : m_Log(stbav::Logger("stbav.subsystem")),
      m_DecoderChip(decoderChip),
      m_Demux(demux),
      m_AudioDecoders(audioDecoders),
      m_VideoDecoder(videoDecoder),
      m_VideoOutput(videoOutput),
      m_AudioOutput(audioOutput),
      m_ClosedCaption(closedCaption),
      m_OutputManager(videoDecoder, videoOutput, audioOutput, decoderChip, closedCaption, demux),
      m_UartAdapter(CUartAdapter::PORT_TTYS2, CUartAdapter::BAUD_115200),
      m_Schedule(nullptr),
      m_Poller(KT::MakeFunctor(&m_Schedule, &KT::CSchedule::ProcessSchedule), "poller", KT::CThread::GetPriority()),
      m_StatusMonitor(m_StatusProcessors, m_Schedule),
      m_ConfigManager(decoderChip, demux, m_OutputManager, m_Dictionary, m_Schedule, m_StatusMonitor,
                      m_ReadyAgainRequested, m_ClearDoneRequested),
      m_OpReceiver(m_UartAdapter, m_ConfigManager),
      m_OpSender(m_UartAdapter, m_Dictionary) {
    Assemble();
}

StbAvSubsystem::StbAvSubsystem(IDecoderChip& decoderChip, IDemux& demux, AudioDecoders& audioDecoders,
                                 IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IAudioOutput& audioOutput,
                                 IClosedCaption& closedCaption, const std::string& serialDevice, KT::IClock* clock)
    : m_Log(stbav::Logger("stbav.subsystem")),
      m_DecoderChip(decoderChip),
      m_Demux(demux),
      m_AudioDecoders(audioDecoders),
      m_VideoDecoder(videoDecoder),
      m_VideoOutput(videoOutput),
      m_AudioOutput(audioOutput),
      m_ClosedCaption(closedCaption),
      m_OutputManager(videoDecoder, videoOutput, audioOutput, decoderChip, closedCaption, demux),
      m_UartAdapter(serialDevice),
      m_Schedule(clock),
      m_Poller(KT::MakeFunctor(&m_Schedule, &KT::CSchedule::ProcessSchedule), "poller", KT::CThread::GetPriority()),
      m_StatusMonitor(m_StatusProcessors, m_Schedule),
      m_ConfigManager(decoderChip, demux, m_OutputManager, m_Dictionary, m_Schedule, m_StatusMonitor,
                      m_ReadyAgainRequested, m_ClearDoneRequested),
      m_OpReceiver(m_UartAdapter, m_ConfigManager),
      m_OpSender(m_UartAdapter, m_Dictionary) {
    Assemble();
}

void StbAvSubsystem::Assemble() {
    stbav::LogDebug(m_Log, "StbAvSubsystem");
    FillDictionary(m_Dictionary);

    // Polling order: audio, chip, video.
    m_StatusProcessors.push_back(KT::CSharedPtr<StatusProcessor>(
        new AudioStatusProcessor(m_OpSender, m_AudioDecoders, m_AudioOutput, m_Demux, m_DecoderChip)));
    m_StatusProcessors.push_back(KT::CSharedPtr<StatusProcessor>(new ChipStatusProcessor(m_OpSender, m_DecoderChip)));
    m_StatusProcessors.push_back(KT::CSharedPtr<StatusProcessor>(new VideoStatusProcessor(
        m_OpSender, m_ConfigManager, m_OutputManager, m_VideoDecoder, m_VideoOutput, m_Demux)));

    // The handles are not kept: the events live as long as the schedule.
    m_Schedule.Add(KT::MakeFunctor(this, &StbAvSubsystem::ReportSFVersionAndReadyAgain), kReportPeriodMs, true);
    m_Schedule.Add(KT::MakeFunctor(this, &StbAvSubsystem::ReportStatusClearDone), kReportPeriodMs, true);
}

StbAvSubsystem::~StbAvSubsystem() {
    m_Poller.Cancel();
    // Reception ends before the receiver and the config manager it feeds are
    // released, so that "UART Px" never hands an operation to a dead handler.
    m_UartAdapter.TerminateReceiveOps();
}

void StbAvSubsystem::StartProcess() {
    stbav::LogDebug(m_Log, "StartProcess");
    m_Poller.Run();
    m_OpReceiver.StartHandlingOperations();
    ReportSFVersion();
    ReportReady();
}

void StbAvSubsystem::ReportSFVersion() {
    const KT::CEnvBlock versionFile(stbav::paths::Resolve(stbav::paths::kVersionFile));
    const std::string version = versionFile.Get("version", "unknown");
    stbav::LogDebug(m_Log, "Software version: %s ", version.c_str());
    m_OpSender.TransmitStatus(kOpSoftwareVersion, 0, version);
}

void StbAvSubsystem::ReportReady() { m_OpSender.TransmitStatus(kOpReady, 0, std::string("stbav_ready")); }

void StbAvSubsystem::ReportSFVersionAndReadyAgain() {
    if (!m_ReadyAgainRequested.exchange(false)) return;
    ReportSFVersion();
    ReportReady();
}

void StbAvSubsystem::ReportStatusClearDone() {
    if (!m_ClearDoneRequested.exchange(false)) return;
    m_OpSender.TransmitStatus(kOpStatusClearDone, 0, std::string("Stbav status clear done!"));
}

bool StbAvSubsystem::ReportSambaServiceReady() {
    const std::string flagFile = stbav::paths::Resolve(stbav::paths::kSambaFlagFile);
    const std::string command = "ps | grep -o smbd > " + flagFile;
    if (system(command.c_str()) != 0)
        stbav::LogError(m_Log, "%s()%d: failed to run '%s' .", "ReportSambaServiceReady", 135, command.c_str());

    char marker[5] = {0};
    if (FILE* f = fopen(flagFile.c_str(), "r")) {
        size_t got = fread(marker, 1, 4, f);
        (void)got;  // a short read leaves the rest zero
        fclose(f);
    }
    if (!KT::CFs::DelFile(flagFile))
        stbav::LogError(m_Log, "%s()%d: failed to delete target file: '%s'.", "ReportSambaServiceReady", 145,
                         flagFile.c_str());
    if (memcmp(marker, "smbd", 4) == 0) {
        stbav::LogDebug(m_Log, "%s The Samba service startup successfully!", "ReportSambaServiceReady");
        return true;
    }
    stbav::LogDebug(m_Log, "%s The Samba service startup failed!", "ReportSambaServiceReady");
    return false;
}
