// KT::CMutex: a named, non-recursive mutex; KT::CMutexLock: the RAII guard to take it.
// Any thread. The name is for diagnostics only.
#pragma once

#include <mutex>
#include <string>

#include "toolkit/kt_uncopyable.h"

namespace KT {

class CMutex : private CUncopyable {
public:
    explicit CMutex(const std::string& name = "") : m_name(name) {}
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }
    bool TryLock() { return m_mutex.try_lock(); }
    const std::string& Name() const { return m_name; }
    std::mutex& Native() { return m_mutex; }

private:
    std::string m_name;
    std::mutex m_mutex;
};

class CMutexLock : private CUncopyable {
public:
    explicit CMutexLock(CMutex& m) : m_mutex(m) { m_mutex.Lock(); }
    ~CMutexLock() { m_mutex.Unlock(); }

private:
    CMutex& m_mutex;
};

}  // namespace KT
