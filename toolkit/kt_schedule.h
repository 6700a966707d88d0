// KT::CSchedule: timed events on a monotonic clock, run by one thread that calls
// ProcessSchedule() in a loop (the daemon's "poller"). Add and Cancel are safe
// from any thread. Due events run in due-time order, equal times in the order
// they were added. A cancelled event never runs after Cancel() returns, unless it
// is the one running at that moment (and then it is not re-armed).
// The clock is injectable so tests can drive time without sleeping.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "toolkit/kt_functor.h"
#include "toolkit/kt_uncopyable.h"

namespace KT {

// Milliseconds on a monotonic clock.
class IClock {
public:
    virtual ~IClock() = default;
    virtual uint64_t NowMs() const = 0;
};

// The monotonic clock the daemon uses (CLOCK_MONOTONIC).
class CMonotonicClock : public IClock {
public:
    uint64_t NowMs() const override;
    static CMonotonicClock& Instance();
};

class CSchedule : private CUncopyable {
public:
    using Action = CFunctor<void()>;

    // Handle of one added event; default-constructed handles refer to nothing.
    class CEvent {
    public:
        CEvent() = default;
        bool IsValid() const { return m_id != 0; }
        uint64_t Id() const { return m_id; }

    private:
        friend class CSchedule;
        explicit CEvent(uint64_t id) : m_id(id) {}
        uint64_t m_id = 0;
    };

    // clock may be null for the monotonic clock; it must outlive the schedule.
    explicit CSchedule(IClock* clock = nullptr);
    ~CSchedule();

    // Adds an event due delayMs from now; a repeating one is re-armed delayMs after
    // each run ends. Returns its handle. Any thread, including from an action.
    CEvent Add(const Action& action, unsigned delayMs, bool repeat);
    // Cancels the event; true when this stopped a future run: it was pending, or it
    // is the repeating event running right now (it is then not re-armed). False if
    // it already ran, was cancelled or is invalid. The handle is reset. An action
    // may cancel itself or any other event.
    bool Cancel(CEvent& event);

    // Thread body: runs every due event (without the schedule's lock, so actions
    // may Add and Cancel), then sleeps until the next due time, until an event is
    // added or cancelled, or until the calling CThread is cancelled. Always returns
    // true. Only one thread may run the schedule.
    bool ProcessSchedule();
    // Runs every event that is due now, without waiting; returns how many ran.
    // For tests driving a fake clock.
    unsigned RunDue();

    // Number of pending events (tests and diagnostics).
    std::size_t PendingCount() const;

    // Wakes a waiting ProcessSchedule() (after a fake clock moved, or on cancel).
    void Wake();

private:
    using Key = std::pair<uint64_t, uint64_t>;  // (due ms, sequence): due order, then insertion order
    struct Entry {
        Action action;
        unsigned delayMs;
        bool repeat;
        Key key;  // its place in m_queue while pending
    };

    // Runs the first event due at or before now that was queued before seqLimit
    // (so a repeating event with delay 0 runs once per pass). False if none.
    bool RunOne(uint64_t now, uint64_t seqLimit);
    void Rearm(uint64_t id);
    // Waits for the next due time, an Add/Cancel/Wake, or cancel of the calling CThread.
    void WaitForWork();
    static void WakeThunk(void* self);

    IClock& m_clock;
    mutable std::mutex m_mutex;
    std::condition_variable m_cond;
    std::map<Key, uint64_t> m_queue;     // guarded by m_mutex: pending events, due order -> id
    std::map<uint64_t, Entry> m_events;  // guarded by m_mutex: id -> entry (pending or running)
    uint64_t m_nextSeq = 1;              // guarded by m_mutex: ids and sequence numbers
    uint64_t m_running = 0;              // guarded by m_mutex: id being run, 0 if none
    bool m_wakeRequested = false;        // guarded by m_mutex
};

}  // namespace KT
