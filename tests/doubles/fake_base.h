// FakeBase<State>: what every recording double shares: the call log it writes
// to, its interface name, its configurable State (values the fake reports and
// values it was given) and the set of operations told to fail. Any thread; one
// lock per fake guards State and the failure set.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "tests/doubles/call_log.h"

namespace stbav_test {

template <typename State>
class FakeBase {
public:
    FakeBase(CallLog& log, std::string name) : m_Log(log), m_Name(std::move(name)) {}

    // Changes the state under the fake's lock: fake.Configure([](auto& s) { s.width = 1920; });
    void Configure(const std::function<void(State&)>& change) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        change(m_State);
    }
    // A copy of the state: what the fake reports and what it was last given.
    State Snapshot() const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return m_State;
    }
    // Makes operation `op` (e.g. "SetFormat", both overloads) report failure:
    // false for bool results, -1 for int results; getters that cannot fail keep answering.
    void FailOn(const std::string& op, bool fail = true) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (fail) {
            m_Failing.insert(op);
        } else {
            m_Failing.erase(op);
        }
    }
    const std::string& Name() const { return m_Name; }

protected:
    // Records the call and tells whether it is to fail. Caller holds m_Mutex.
    template <typename... Args>
    bool RecordLocked(const char* op, const Args&... args) {
        m_Log.Record(RenderCall(m_Name, op, args...));
        return m_Failing.count(op) != 0;
    }

    // A getter: records op and reports the field, or onFailure when op is told to fail.
    template <typename T>
    T Report(const char* op, T State::*field, T onFailure) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return RecordLocked(op) ? onFailure : m_State.*field;
    }
    // A setter: records op(value) and stores the value unless op is told to fail.
    template <typename T>
    bool Store(const char* op, T State::*field, T value) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked(op, value)) return false;
        m_State.*field = value;
        return true;
    }
    // An operation without arguments that sets a flag (Start, Stop ...).
    bool SetFlag(const char* op, bool State::*field, bool value) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked(op)) return false;
        m_State.*field = value;
        return true;
    }

    // Subscribe (+1) or Unsubscribe (-1): records op and counts the subscribers.
    bool Subscribers(const char* op, int delta) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked(op)) return false;
        m_State.subscriberCount += delta;
        return true;
    }
    // GetFormat of the video doubles: records it and reports the stored format.
    template <typename Scan, typename Rate, typename Aspect>
    bool ReportFormat(uint32_t& width, uint32_t& height, Scan& scanType, Rate& frameRate, Aspect& aspectRatio) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("GetFormat")) return false;
        width = m_State.width;
        height = m_State.height;
        scanType = m_State.scanType;
        frameRate = m_State.frameRate;
        aspectRatio = m_State.aspectRatio;
        return true;
    }

    mutable std::mutex m_Mutex;
    State m_State{};  // guarded by m_Mutex

private:
    CallLog& m_Log;
    const std::string m_Name;
    std::set<std::string> m_Failing;  // guarded by m_Mutex
};

}  // namespace stbav_test
