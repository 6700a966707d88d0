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
    // each run. Returns its handle.
    CEvent Add(const Action& action, unsigned delayMs, bool repeat);
    // Cancels the event; false if it was not pending (already run, cancelled or invalid).
    // The handle is reset.
    bool Cancel(CEvent& event);

    // Thread body: runs every due event, then sleeps until the next due time, until
    // an event is added or cancelled, or until the calling CThread is cancelled.
    // Always returns true.
    bool ProcessSchedule();
    // Runs every event that is due now, without waiting; returns how many ran.
    // For tests driving a fake clock.
    unsigned RunDue();

    // Number of pending events (tests and diagnostics).
    std::size_t PendingCount() const;

    // Wakes a waiting ProcessSchedule() (after a fake clock moved, or on cancel).
    void Wake();

private:
    struct Entry {
        Action action;
        unsigned delayMs;
        bool repeat;
    };
    using Key = std::pair<uint64_t, uint64_t>;  // (due ms, sequence)

    bool RunOne(uint64_t now);

    IClock& m_clock;
    mutable std::mutex m_mutex;
    std::condition_variable m_cond;
    std::map<Key, uint64_t> m_queue;           // guarded by m_mutex: due order -> id
    std::map<uint64_t, std::pair<Key, Entry>> m_events;  // guarded by m_mutex: id -> entry
    uint64_t m_nextSeq = 1;                    // guarded by m_mutex
    uint64_t m_running = 0;                    // guarded by m_mutex: id being run, 0 if none
    bool m_wakeRequested = false;              // guarded by m_mutex
};

}  // namespace KT
