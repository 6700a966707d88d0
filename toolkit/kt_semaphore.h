// KT::CSemaphore: a counting semaphore with a timed wait. Signal() from any thread;
// Wait() from any thread. A Wait() made on a KT::CThread returns false early when
// that thread is cancelled, so a cancelled worker never waits out its time-out.
#pragma once

#include <condition_variable>
#include <mutex>

#include "toolkit/kt_uncopyable.h"

namespace KT {

class CSemaphore : private CUncopyable {
public:
    explicit CSemaphore(unsigned initial = 0);
    ~CSemaphore();

    // Waits until the count is above zero (then takes one) or timeoutMs passes.
    // Returns true when a count was taken, false on time-out or cancel.
    bool Wait(unsigned timeoutMs);
    void Signal();
    unsigned Count() const;

    // Wakes every waiter so it can look at its thread's cancel flag (used by CThread).
    void WakeAll();

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cond;
    unsigned m_count;  // guarded by m_mutex
};

}  // namespace KT
