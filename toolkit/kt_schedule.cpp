// KT::CSchedule: pending events in a map ordered by (due time, sequence); one
// thread runs them through ProcessSchedule()/RunDue(), any thread adds or cancels.
// Actions run with the lock released; m_running marks the one in progress.
#include "toolkit/kt_schedule.h"

#include <time.h>

#include <chrono>

#include "toolkit/kt_thread.h"

namespace KT {

uint64_t CMonotonicClock::NowMs() const {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint64_t>(ts.tv_sec) * 1000u + static_cast<uint64_t>(ts.tv_nsec) / 1000000u;
}

CMonotonicClock& CMonotonicClock::Instance() {
    static CMonotonicClock clock;
    return clock;
}

CSchedule::CSchedule(IClock* clock) : m_clock(clock ? *clock : CMonotonicClock::Instance()) {}

CSchedule::~CSchedule() = default;

CSchedule::CEvent CSchedule::Add(const Action& action, unsigned delayMs, bool repeat) {
    std::lock_guard<std::mutex> lock(m_mutex);
    uint64_t id = m_nextSeq++;
    Key key(m_clock.NowMs() + delayMs, m_nextSeq++);
    m_events[id] = Entry{action, delayMs, repeat, key};
    m_queue[key] = id;
    m_wakeRequested = true;
    m_cond.notify_all();
    return CEvent(id);
}

bool CSchedule::Cancel(CEvent& event) {
    uint64_t id = event.m_id;
    event.m_id = 0;
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_events.find(id);
    if (it == m_events.end()) return false;
    bool stopped = true;
    if (id == m_running) {
        stopped = it->second.repeat;  // erasing it below keeps it from being re-armed
    } else {
        m_queue.erase(it->second.key);
    }
    m_events.erase(it);
    m_wakeRequested = true;
    m_cond.notify_all();
    return stopped;
}

bool CSchedule::ProcessSchedule() {
    RunDue();
    WaitForWork();
    return true;
}

unsigned CSchedule::RunDue() {
    uint64_t now = m_clock.NowMs();
    uint64_t seqLimit;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        seqLimit = m_nextSeq;
    }
    unsigned ran = 0;
    while (!CThread::IsCancelRequested() && RunOne(now, seqLimit)) ++ran;
    return ran;
}

bool CSchedule::RunOne(uint64_t now, uint64_t seqLimit) {
    Action action;
    uint64_t id = 0;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_queue.begin();
        while (it != m_queue.end() && it->first.first <= now && it->first.second >= seqLimit) ++it;
        if (it == m_queue.end() || it->first.first > now) return false;
        id = it->second;
        m_queue.erase(it);
        action = m_events[id].action;
        m_running = id;
    }
    action();
    Rearm(id);
    return true;
}

void CSchedule::Rearm(uint64_t id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_running = 0;
    auto it = m_events.find(id);
    if (it == m_events.end()) return;  // cancelled while it ran
    if (!it->second.repeat) {
        m_events.erase(it);
        return;
    }
    Key key(m_clock.NowMs() + it->second.delayMs, m_nextSeq++);
    it->second.key = key;
    m_queue[key] = id;
}

void CSchedule::WaitForWork() {
    CThread::RegisterWait(&CSchedule::WakeThunk, this);
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        auto woken = [this] { return m_wakeRequested || CThread::IsCancelRequested(); };
        if (m_queue.empty()) {
            m_cond.wait(lock, woken);
        } else {
            uint64_t due = m_queue.begin()->first.first;
            uint64_t now = m_clock.NowMs();
            if (due > now) {
                m_cond.wait_until(lock, std::chrono::steady_clock::now() + std::chrono::milliseconds(due - now),
                                  woken);
            }
        }
        m_wakeRequested = false;
    }
    CThread::UnregisterWait();
}

std::size_t CSchedule::PendingCount() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_queue.size();
}

void CSchedule::Wake() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_wakeRequested = true;
    m_cond.notify_all();
}

void CSchedule::WakeThunk(void* self) {
    CSchedule* schedule = static_cast<CSchedule*>(self);
    std::lock_guard<std::mutex> lock(schedule->m_mutex);
    schedule->m_cond.notify_all();
}

}  // namespace KT
