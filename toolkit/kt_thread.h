// KT::CThread: a named worker thread that calls a bool-returning body again and
// again while the body returns true and the thread is not cancelled.
// Run() and Cancel() are called by the owning thread. Cancel() is cooperative
// (no pthread_cancel, which Android's C library lacks): it sets the stop flag,
// wakes any toolkit wait the worker is in (CThread::Sleep, CSchedule waits,
// CSemaphore waits) and joins. A body that blocks in a system call must poll
// with a short time-out and look at IsCancelRequested().
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "toolkit/kt_functor.h"
#include "toolkit/kt_uncopyable.h"

namespace KT {

class CThread : private CUncopyable {
public:
    using Body = CFunctor<bool()>;

    CThread(const Body& body, const std::string& name, int priority);
    // Cancels and joins if still running.
    ~CThread();

    // Starts the thread (named with the first 15 characters of the name); false if
    // it already runs or could not be created. A thread whose body returned false
    // may be run again.
    bool Run();
    // Requests stop, wakes toolkit waits, joins. Safe to call more than once and
    // on a thread that never ran. Must not be called from the thread itself.
    void Cancel();
    bool IsRunning() const { return m_running.load(); }
    const std::string& Name() const { return m_name; }

    // The calling thread's scheduling priority (nice value; 0 on Linux defaults).
    // A CThread built with another value sets it on itself at start (best effort).
    static int GetPriority();
    // Sleeps ms milliseconds; returns early (false) if the calling CThread is
    // cancelled. Off a CThread it is a plain sleep that returns true.
    static bool Sleep(unsigned ms);
    // True when the calling thread is a CThread whose Cancel() has been requested.
    static bool IsCancelRequested();

    // Waits in toolkit primitives register a wake-up here so Cancel() can reach them.
    // Used by CSemaphore and CSchedule; not for application code. Protocol, on the
    // waiting thread: RegisterWait(fn, arg); take the primitive's own lock; wait
    // with a predicate that includes IsCancelRequested(); release that lock;
    // UnregisterWait(). Cancel() calls fn(arg) with the thread's wait lock held,
    // so fn must only take the primitive's lock and notify. Calls made off a
    // CThread do nothing.
    using WakeFn = void (*)(void*);
    static void RegisterWait(WakeFn fn, void* arg);
    static void UnregisterWait();

private:
    void Main();
    void WakeCurrentWait();

    Body m_body;
    std::string m_name;
    int m_priority;
    std::thread m_thread;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_cancel{false};
    std::mutex m_waitMutex;              // guards m_waitFn, m_waitArg and m_sleepCond use
    std::condition_variable m_sleepCond;
    WakeFn m_waitFn = nullptr;           // guarded by m_waitMutex
    void* m_waitArg = nullptr;           // guarded by m_waitMutex
};

}  // namespace KT
