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
#include <tuple>
#include <utility>

#include "platform/decoder_types.h"
#include "platform/i_decoder_control.h"
#include "tests/doubles/call_log.h"

namespace stbav_test {

// The State of a fake that keeps nothing but its calls.
struct NoState {};

// What GetFormat of the video doubles reports: the first part of their State.
// Also the decoded formats of the output tests' tables, written as plain codes:
// {1920, 1080, 2, 6, 1} is 1920x1080, progressive, 50 fps, 16:9 (all 0: unknown).
struct VideoFormatState {
    VideoFormatState(uint32_t w = 0, uint32_t h = 0, int scan = 0, int rate = 0, int aspect = 0)
        : width(w), height(h), scanType(VideoScanType_e(scan)), frameRate(VideoFrameRate_e(rate)),
          aspectRatio(VideoAspectRatio_e(aspect)) {}
    uint32_t width;
    uint32_t height;
    VideoScanType_e scanType;
    VideoFrameRate_e frameRate;
    VideoAspectRatio_e aspectRatio;
};

template <typename S>
class FakeBase {
public:
    using State = S;  // the name each fake uses for its state
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
    // false for bool results, -1 for int results, zero (none, unknown) for getters.
    void FailOn(const std::string& op) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Failing.insert(op);
    }

protected:
    // Records op(args...); unless op is told to fail, runs change on the state
    // under the lock and reports what it returns (false: the call failed).
    template <typename Change, typename... Args>
    bool Apply(const Change& change, const char* op, const Args&... args) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Log.Record(RenderCall(m_Name, op, args...));
        return m_Failing.count(op) == 0 && change(m_State);
    }
    // An operation that only records: succeeds unless op is told to fail.
    template <typename... Args>
    bool Call(const char* op, const Args&... args) {
        return Apply([](State&) { return true; }, op, args...);
    }
    // A setter: records op(value) and stores the value unless op is told to fail.
    template <typename T>
    bool Store(const char* op, T State::*field, T value) {
        return Apply([&](State& s) { return (s.*field = value, true); }, op, value);
    }
    // A getter: records op(args...) and reports read(state), or zero (none, unknown) when op is told to fail.
    template <typename Read, typename... Args>
    auto Query(const Read& read, const char* op, const Args&... args) {
        decltype(read(m_State)) out{};
        Apply([&](State& s) { return (out = read(s), true); }, op, args...);
        return out;
    }
    // A getter of one field, answering zero (none, unknown) when op is told to fail.
    template <typename T, typename Part>
    T Report(const char* op, T Part::*field) {
        return Query([field](const State& s) { return s.*field; }, op);
    }
    // GetFormat of the video doubles: records it and reports the stored format.
    bool ReportFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                      VideoAspectRatio_e& aspectRatio) {
        auto read = [&](const VideoFormatState& f) {
            std::tie(width, height, scanType, frameRate, aspectRatio) =
                std::tie(f.width, f.height, f.scanType, f.frameRate, f.aspectRatio);
            return true;
        };
        return Apply(read, "GetFormat");
    }

private:
    mutable std::mutex m_Mutex;
    State m_State{};  // guarded by m_Mutex
    CallLog& m_Log;
    const std::string m_Name;
    std::set<std::string> m_Failing;  // guarded by m_Mutex
};

// The base of the fakes that are also an IDecoderControl: Start and Stop are
// only recorded.
template <typename S>
class FakeControl : public IDecoderControl, public FakeBase<S> {
public:
    using FakeBase<S>::FakeBase;
    bool Start() override { return this->Call("Start"); }
    bool Stop() override { return this->Call("Stop"); }
};

}  // namespace stbav_test
