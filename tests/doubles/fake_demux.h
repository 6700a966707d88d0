// FakeDemux: recording double of IDemux and IDecoderControl. Stores the PIDs
// per stream type and index, the service name and id it is given and reports
// them back; RaiseEvent calls the subscribed handlers on the caller's thread.
// Any thread.
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
    std::vector<IDemux::EventHandler> handlers;
};

class FakeDemux : public IDemux, public IDecoderControl, public FakeBase<FakeDemuxState> {
public:
    using State = FakeDemuxState;

private:  // before their use: their return types are deduced
    static auto StorePid(uint16_t pid, EsType_e type, uint16_t index) {
        return [=](State& s) { return (s.pids[{type, index}] = pid, true); };
    }
    static auto ReadPid(EsType_e type, uint16_t index) {
        return [=](const State& s) {
            auto it = s.pids.find({type, index});
            return it == s.pids.end() ? uint16_t{0} : it->second;
        };
    }

public:
    explicit FakeDemux(CallLog& log, std::string name = "IDemux") : FakeBase(log, std::move(name)) {}

    // Test helper: the PID GetPid reports for (type, index), without recording a call.
    void SetReportedPid(EsType_e type, uint16_t index, uint16_t pid) {
        Configure([&](FakeDemuxState& s) { s.pids[{type, index}] = pid; });
    }

    bool SetPid(uint16_t pid, EsType_e type) override { return Apply(StorePid(pid, type, 0), "SetPid", pid, type); }
    bool SetPid(uint16_t pid, EsType_e type, uint16_t index) override {
        return Apply(StorePid(pid, type, index), "SetPid", pid, type, index);
    }
    uint16_t GetPid(EsType_e type) override { return Query(ReadPid(type, 0), "GetPid", type); }
    uint16_t GetPid(EsType_e type, uint16_t index) override {
        return Query(ReadPid(type, index), "GetPid", type, index);
    }

    bool SetServiceName(std::string name) override { return Store("SetServiceName", &State::serviceName, name); }
    std::string GetServiceName() override {
        return Report("GetServiceName", &State::serviceName, std::string("Undefined"));
    }
    bool SetServiceId(uint16_t id) override { return Store("SetServiceId", &State::serviceId, id); }
    uint16_t GetServiceId() override { return Report("GetServiceId", &State::serviceId); }
    bool SetServiceVideoCodecType(VideoType_e type) override { return Call("SetServiceVideoCodecType", type); }
    bool SetServiceAudioCodecType(AudioType_e type) override { return Call("SetServiceAudioCodecType", type); }
    bool ClearBuffer() override { return Call("ClearBuffer"); }
    bool Subscribe(const EventHandler& handler) override {
        return Apply([&](State& s) { return (s.handlers.push_back(handler), true); }, "Subscribe");
    }
    bool RaiseEvent(DecoderEvents_e event) override {
        std::vector<EventHandler> handlers;
        if (!Apply([&](State& s) { return (handlers = s.handlers, true); }, "RaiseEvent", event)) return false;
        for (const auto& h : handlers) h(event);
        return true;
    }
    // Handlers cannot be compared; the fake drops the oldest one.
    bool Unsubscribe(const EventHandler&) override {
        auto dropOldest = [](State& s) {
            if (!s.handlers.empty()) s.handlers.erase(s.handlers.begin());
            return true;
        };
        return Apply(dropOldest, "Unsubscribe");
    }

    bool Start() override { return Call("Start"); }
    bool Stop() override { return Call("Stop"); }
};

}  // namespace stbav_test
