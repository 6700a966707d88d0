// StatusMonitor: the 2000 ms status poll over the processor list.
#include "status/status_monitor.h"

#include "toolkit/kt_functor.h"
#include "toolkit/log.h"

const unsigned int StatusMonitor::m_PollingIntervals[StatusMonitor::kPollingIntervalCount] = {2000};

StatusMonitor::StatusMonitor(std::vector<KT::CSharedPtr<StatusProcessor>>& processors, KT::CSchedule& schedule)
    : m_Log(stbav::Logger("tevrin.status")), m_Processors(processors), m_Schedule(schedule) {}

StatusMonitor::~StatusMonitor() { StopReporting(); }

void StatusMonitor::StartReporting() {
    stbav::LogDebug(m_Log, "%s() ", "StartReporting");
    PollAllProcessors(true);
    ArmNextPoll();
}

void StatusMonitor::ProcessStatusPolling() {
    PollAllProcessors(false);
    ArmNextPoll();
}

void StatusMonitor::ArmNextPoll() {
    std::lock_guard<std::mutex> lock(m_EventMutex);
    m_Schedule.Cancel(m_PollingEvents[0]);  // never two poll chains
    m_PollingEvents[0] =
        m_Schedule.Add(KT::MakeFunctor(this, &StatusMonitor::ProcessStatusPolling), m_PollingIntervals[0], false);
}

void StatusMonitor::StopReporting() {
    std::lock_guard<std::mutex> lock(m_EventMutex);
    for (KT::CSchedule::CEvent& event : m_PollingEvents) m_Schedule.Cancel(event);
}

void StatusMonitor::PollAllProcessors(bool force) {
    for (KT::CSharedPtr<StatusProcessor>& processor : m_Processors) processor->Process(force);
}

void StatusMonitor::UpdateAllProcessors(bool force) { PollAllProcessors(force); }

void StatusMonitor::UpdateStatus() { UpdateAllProcessors(true); }

void StatusMonitor::ClearStatus() { ClearAllProcessors(true); }

void StatusMonitor::ClearAllProcessors(bool /*unused*/) {
    for (KT::CSharedPtr<StatusProcessor>& processor : m_Processors) processor->Clear();
}
