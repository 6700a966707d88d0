// KT::CThread: the worker loop, the cooperative cancel and the wake-up hooks that
// let Cancel() reach a worker blocked in a toolkit wait. Run/Cancel on the owner's
// thread; Sleep/RegisterWait/UnregisterWait on the worker itself.
#include "toolkit/kt_thread.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <system_error>

namespace KT {
namespace {

// The CThread whose body runs on this thread; null on any other thread.
thread_local CThread* t_current = nullptr;

}  // namespace

CThread::CThread(const Body& body, const std::string& name, int priority)
    : m_body(body), m_name(name), m_priority(priority) {}

CThread::~CThread() { Cancel(); }

bool CThread::Run() {
    if (m_running.load()) return false;
    if (m_thread.joinable()) m_thread.join();  // a previous run whose body returned false
    m_cancel.store(false);
    m_running.store(true);
    try {
        m_thread = std::thread(&CThread::Main, this);
    } catch (const std::system_error&) {
        m_running.store(false);
        return false;
    }
    return true;
}

void CThread::Cancel() {
    m_cancel.store(true);
    if (!m_thread.joinable()) return;
    if (m_thread.get_id() == std::this_thread::get_id()) return;  // cannot join itself; the flag stops it
    WakeCurrentWait();
    m_thread.join();
}

void CThread::Main() {
    t_current = this;
    // The kernel keeps at most 15 characters of a thread name.
    prctl(PR_SET_NAME, m_name.substr(0, 15).c_str(), 0, 0, 0);
    // Linux keeps the nice value per thread, so this touches the worker only.
    if (m_priority != GetPriority()) setpriority(PRIO_PROCESS, 0, m_priority);
    while (!m_cancel.load() && m_body()) {
    }
    t_current = nullptr;
    m_running.store(false);
}

void CThread::WakeCurrentWait() {
    // Under m_waitMutex: a wait that registered itself cannot unregister (and its
    // primitive cannot go away) while we wake it, and Sleep() checks the flag
    // under this same lock, so no wake-up is lost.
    std::lock_guard<std::mutex> lock(m_waitMutex);
    m_sleepCond.notify_all();
    if (m_waitFn) m_waitFn(m_waitArg);
}

int CThread::GetPriority() {
    errno = 0;
    int prio = getpriority(PRIO_PROCESS, 0);
    if (prio == -1 && errno != 0) return 0;
    return prio;
}

bool CThread::Sleep(unsigned ms) {
    CThread* self = t_current;
    if (!self) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        return true;
    }
    std::unique_lock<std::mutex> lock(self->m_waitMutex);
    bool cancelled = self->m_sleepCond.wait_for(lock, std::chrono::milliseconds(ms),
                                                [self] { return self->m_cancel.load(); });
    return !cancelled;
}

bool CThread::IsCancelRequested() {
    CThread* self = t_current;
    return self && self->m_cancel.load();
}

void CThread::RegisterWait(WakeFn fn, void* arg) {
    CThread* self = t_current;
    if (!self) return;
    std::lock_guard<std::mutex> lock(self->m_waitMutex);
    self->m_waitFn = fn;
    self->m_waitArg = arg;
}

void CThread::UnregisterWait() {
    CThread* self = t_current;
    if (!self) return;
    std::lock_guard<std::mutex> lock(self->m_waitMutex);
    self->m_waitFn = nullptr;
    self->m_waitArg = nullptr;
}

}  // namespace KT
