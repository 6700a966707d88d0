// KT::CSemaphore: count under a mutex, waiters on a condition variable. A waiter
// on a KT::CThread registers a wake-up so that Cancel() cuts its wait short.
#include "toolkit/kt_semaphore.h"

#include <chrono>

#include "toolkit/kt_thread.h"

namespace KT {
namespace {

void WakeSemaphore(void* arg) { static_cast<CSemaphore*>(arg)->WakeAll(); }

}  // namespace

CSemaphore::CSemaphore(unsigned initial) : m_count(initial) {}

CSemaphore::~CSemaphore() = default;

bool CSemaphore::Wait(unsigned timeoutMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    CThread::RegisterWait(&WakeSemaphore, this);
    bool taken = false;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_cond.wait_until(lock, deadline, [this] { return m_count > 0 || CThread::IsCancelRequested(); });
        if (m_count > 0) {
            if (!CThread::IsCancelRequested()) {
                --m_count;
                taken = true;
            } else {
                // A cancelled worker takes nothing; pass on a Signal() it may have absorbed.
                m_cond.notify_one();
            }
        }
    }
    CThread::UnregisterWait();
    return taken;
}

void CSemaphore::Signal() {
    // Notify under the lock: a waiter that wakes may destroy the semaphore at once.
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_count;
    m_cond.notify_one();
}

unsigned CSemaphore::Count() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_count;
}

void CSemaphore::WakeAll() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_cond.notify_all();
}

}  // namespace KT
