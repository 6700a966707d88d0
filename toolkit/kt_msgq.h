// KT::CMsgQ<T>: a FIFO guarded by a mutex named "CMsgQ" and a counting semaphore,
// with an optional maximum length (below 1: unbounded). Any number of producers
// and consumers on any threads.
#pragma once

#include <deque>
#include <utility>

#include "toolkit/kt_mutex.h"
#include "toolkit/kt_semaphore.h"
#include "toolkit/kt_uncopyable.h"

namespace KT {

template <typename T>
class CMsgQ : private CUncopyable {
public:
    explicit CMsgQ(int maxLength = -1) : m_mutex("CMsgQ"), m_signal(0), m_maxLength(maxLength) {}

    // Appends the item and signals; false (item dropped) when the queue is full.
    bool Enqueue(const T& item) {
        m_mutex.Lock();
        if (m_maxLength >= 1 && static_cast<int>(m_items.size()) >= m_maxLength) {
            m_mutex.Unlock();
            return false;
        }
        m_items.push_back(item);
        m_mutex.Unlock();
        m_signal.Signal();
        return true;
    }

    // Waits at most timeoutMs for an item and moves the front one into out.
    bool Dequeue(unsigned timeoutMs, T& out) {
        if (!m_signal.Wait(timeoutMs)) return false;
        CMutexLock lock(m_mutex);
        if (m_items.empty()) return false;
        out = std::move(m_items.front());
        m_items.pop_front();
        return true;
    }

    std::size_t Size() {
        CMutexLock lock(m_mutex);
        return m_items.size();
    }

private:
    CMutex m_mutex;
    CSemaphore m_signal;
    int m_maxLength;
    std::deque<T> m_items;  // guarded by m_mutex
};

}  // namespace KT
