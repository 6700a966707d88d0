// FakeDemux: recording double of IDemux and IDecoderControl. Stores what it is
// given (PIDs per stream type and index, service name and id, codec types) and
// reports it back; RaiseEvent calls the subscribed handlers on the caller's
// thread. Any thread.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/i_decoder_control.h"
#include "platform/i_demux.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeDemuxState {
    std::map<std::pair<EsType_e, uint16_t>, uint16_t> pids;  // (type, index) -> PID; GetPid answers 0 if absent
    std::string serviceName;
    uint16_t serviceId = 0;
    VideoType_e videoCodec = VIDEO_TYPE_NONE;
    AudioType_e audioCodec = AUDIO_TYPE_NONE;
    int clearCount = 0;
    bool started = false;
    std::vector<DecoderEvents_e> raisedEvents;
};

class FakeDemux : public IDemux, public IDecoderControl, public FakeBase<FakeDemuxState> {
public:
    using State = FakeDemuxState;

    explicit FakeDemux(CallLog& log, std::string name = "IDemux") : FakeBase(log, std::move(name)) {}

    // Test helper: the PID GetPid reports for (type, index), without recording a call.
    void SetReportedPid(EsType_e type, uint16_t index, uint16_t pid) {
        Configure([&](FakeDemuxState& s) { s.pids[{type, index}] = pid; });
    }

    bool SetPid(uint16_t pid, EsType_e type) override { return StorePid("SetPid", pid, type, 0, false); }
    bool SetPid(uint16_t pid, EsType_e type, uint16_t index) override {
        return StorePid("SetPid", pid, type, index, true);
    }
    uint16_t GetPid(EsType_e type) override { return ReadPid(type, 0, false); }
    uint16_t GetPid(EsType_e type, uint16_t index) override { return ReadPid(type, index, true); }

    bool SetServiceName(std::string name) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("SetServiceName", name)) return false;
        m_State.serviceName = std::move(name);
        return true;
    }
    std::string GetServiceName() override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return RecordLocked("GetServiceName") ? std::string("Undefined") : m_State.serviceName;
    }
    bool SetServiceId(uint16_t id) override { return Store("SetServiceId", &State::serviceId, id); }
    uint16_t GetServiceId() override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return RecordLocked("GetServiceId") ? 0 : m_State.serviceId;
    }
    bool SetServiceVideoCodecType(VideoType_e type) override {
        return Store("SetServiceVideoCodecType", &State::videoCodec, type);
    }
    bool SetServiceAudioCodecType(AudioType_e type) override {
        return Store("SetServiceAudioCodecType", &State::audioCodec, type);
    }
    bool ClearBuffer() override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        ++m_State.clearCount;
        return !RecordLocked("ClearBuffer");
    }
    bool Subscribe(const EventHandler& handler) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("Subscribe")) return false;
        m_Handlers.push_back(handler);
        return true;
    }
    bool RaiseEvent(DecoderEvents_e event) override {
        std::vector<EventHandler> handlers;
        {
            std::lock_guard<std::mutex> lock(m_Mutex);
            if (RecordLocked("RaiseEvent", event)) return false;
            m_State.raisedEvents.push_back(event);
            handlers = m_Handlers;
        }
        for (const auto& h : handlers) h(event);
        return true;
    }
    bool Unsubscribe(const EventHandler&) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("Unsubscribe")) return false;
        // Handlers cannot be compared; the fake drops the oldest one.
        if (!m_Handlers.empty()) m_Handlers.erase(m_Handlers.begin());
        return true;
    }

    bool Start() override { return SetFlag("Start", &State::started, true); }
    bool Stop() override { return SetFlag("Stop", &State::started, false); }

private:
    bool StorePid(const char* op, uint16_t pid, EsType_e type, uint16_t index, bool withIndex) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        bool fail = withIndex ? RecordLocked(op, pid, type, index) : RecordLocked(op, pid, type);
        if (fail) return false;
        m_State.pids[{type, index}] = pid;
        return true;
    }
    uint16_t ReadPid(EsType_e type, uint16_t index, bool withIndex) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        bool fail = withIndex ? RecordLocked("GetPid", type, index) : RecordLocked("GetPid", type);
        auto it = m_State.pids.find({type, index});
        return (fail || it == m_State.pids.end()) ? 0 : it->second;
    }

    std::vector<EventHandler> m_Handlers;  // guarded by m_Mutex
};

}  // namespace stbav_test
