// StatusMonitor: polls the status processors every m_PollingIntervals[0] ms while
// the host has reporting enabled. Runs on the poller thread (the schedule's
// thread), which also calls Start/StopReporting from configuration processing.
// Holds the subsystem's processor list and schedule by reference.
#pragma once

#include <mutex>
#include <vector>

#include "status/status_processor.h"
#include "toolkit/kt_schedule.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_uncopyable.h"

class StatusMonitor : private KT::CUncopyable {
public:
    static constexpr unsigned kPollingIntervalCount = 1;
    // Poll delays in ms; the poll is re-armed after each run with the first one.
    static const unsigned int m_PollingIntervals[kPollingIntervalCount];

    StatusMonitor(std::vector<KT::CSharedPtr<StatusProcessor>>& processors, KT::CSchedule& schedule);
    // Stops reporting (cancels the pending poll).
    ~StatusMonitor();

    // A full forced report at once on the calling thread, then one unforced poll
    // every 2000 ms on the schedule's thread.
    void StartReporting();
    // The scheduled poll: an unforced poll, then the next one is armed.
    void ProcessStatusPolling();
    // Cancels the pending poll; nothing happens when none is pending.
    void StopReporting();

    // Process(force) on every processor in list order.
    void PollAllProcessors(bool force);
    void UpdateAllProcessors(bool force);
    // A forced full report.
    void UpdateStatus();
    // Clear() on every processor, so that the next poll resends every value.
    void ClearStatus();
    void ClearAllProcessors(bool unused);

private:
    void ArmNextPoll();

    log4cpp::Category& m_Log;
    std::vector<KT::CSharedPtr<StatusProcessor>>& m_Processors;
    KT::CSchedule& m_Schedule;
    std::mutex m_EventMutex;  // guards m_PollingEvents (armed and cancelled on different threads in tests)
    KT::CSchedule::CEvent m_PollingEvents[kPollingIntervalCount];
};
