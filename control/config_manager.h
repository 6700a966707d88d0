// ConfigManager: turns the host's configuration operations into settings. The
// receiver queues operations from "UART Px" and asks for a run on each apply
// trigger; the run drains the queue on the poller thread, acting on the output
// settings, the demux, the decoder chip and the status monitor, and ends with
// one OutputManager::ApplySettings(false). Everything is held by reference except
// the queue and the pending event; the two request flags belong to the subsystem.
#pragma once

#include <atomic>
#include <mutex>

#include "output/output_manager.h"
#include "platform/i_decoder_chip.h"
#include "platform/i_demux.h"
#include "protocol/c_op_ss_data_map.h"
#include "protocol/ss_op.h"
#include "status/status_monitor.h"
#include "toolkit/kt_msgq.h"
#include "toolkit/kt_schedule.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_uncopyable.h"

class ConfigManager : private KT::CUncopyable {
public:
    // readyAgainRequest / clearDoneRequest are set here (poller thread) and read
    // and cleared by the subsystem's one-second reports.
    ConfigManager(IDecoderChip& decoderChip, IDemux& demux, OutputManager& outputManager, COpSsDataMap& dictionary,
                  KT::CSchedule& schedule, StatusMonitor& statusMonitor, std::atomic<bool>& readyAgainRequest,
                  std::atomic<bool>& clearDoneRequest);
    // Cancels a pending run; operations still queued are dropped.
    ~ConfigManager();

    // Queues one configuration operation; the queue's result (true = queued). Any thread.
    bool QueueOperation(KT::CSharedPtr<SsOp> op);
    // Replaces the pending run, if any, by one due at once: a burst of triggers
    // gives one run. Any thread ("UART Px", or the poller for a format change).
    void ScheduleConfiguration();
    // The scheduled run: applies every queued operation in order, then the
    // accumulated output settings once. Poller thread.
    void ProcessConfiguration();

private:
    void ProcessOperation(const SsOp& op);
    // Each handles one group of opIds; false when the opId is not of its group.
    // type is the dictionary's value type, passed to every read.
    bool HandleSystemOp(const SsOp& op, DataVarType_e type);
    bool HandleOutputOp(const SsOp& op, DataVarType_e type);
    bool HandleServiceOp(const SsOp& op, DataVarType_e type);
    void EnableStatus(unsigned char value);

    log4cpp::Category& m_Log;
    IDecoderChip& m_DecoderChip;
    IDemux& m_Demux;
    OutputManager& m_OutputManager;
    KT::CMsgQ<KT::CSharedPtr<SsOp>> m_Queue;
    COpSsDataMap& m_Dictionary;
    KT::CSchedule& m_Schedule;
    std::mutex m_EventMutex;                   // guards m_ProcessingEvent ("UART Px" and poller)
    KT::CSchedule::CEvent m_ProcessingEvent;   // the pending run
    StatusMonitor& m_StatusMonitor;
    std::atomic<bool>& m_ReadyAgainRequest;
    std::atomic<bool>& m_ClearDoneRequest;
    bool m_ChipInitialized = false;  // poller thread only
    bool m_ReportingActive = false;  // poller thread only
};
