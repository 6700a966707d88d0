// FakeDemux: recording double of IDemux and IDecoderControl. Stores the PIDs set
// by stream type and index (the daemon's form), the service name and id it is
// given and reports them back; the other calls are only recorded (nothing above
// the platform raises or subscribes to demux events). Any thread.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/i_demux.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeDemuxState {
    std::map<std::pair<EsType_e, uint16_t>, uint16_t> pids;  // (type, index) -> PID; GetPid answers 0 if absent
    std::string serviceName;
    uint16_t serviceId = 0;
};

class FakeDemux : public IDemux, public FakeControl<FakeDemuxState> {
public:
    explicit FakeDemux(CallLog& log) : FakeControl(log, "IDemux") {}

    bool SetPid(uint16_t pid, EsType_e type) override { return Call("SetPid", pid, type); }
    bool SetPid(uint16_t pid, EsType_e type, uint16_t index) override {
        return Apply([=](State& s) { return (s.pids[{type, index}] = pid, true); }, "SetPid", pid, type, index);
    }
    uint16_t GetPid(EsType_e type) override {
        return Query([=](const State& s) { return PidIn(s, type, 0); }, "GetPid", type);
    }
    uint16_t GetPid(EsType_e type, uint16_t index) override {
        return Query([=](const State& s) { return PidIn(s, type, index); }, "GetPid", type, index);
    }

    bool SetServiceName(std::string name) override { return Store("SetServiceName", &State::serviceName, name); }
    std::string GetServiceName() override { return Report("GetServiceName", &State::serviceName); }
    bool SetServiceId(uint16_t id) override { return Store("SetServiceId", &State::serviceId, id); }
    uint16_t GetServiceId() override { return Report("GetServiceId", &State::serviceId); }
    bool SetServiceVideoCodecType(VideoType_e type) override { return Call("SetServiceVideoCodecType", type); }
    bool SetServiceAudioCodecType(AudioType_e type) override { return Call("SetServiceAudioCodecType", type); }
    bool ClearBuffer() override { return Call("ClearBuffer"); }
    bool Subscribe(const EventHandler&) override { return Call("Subscribe"); }
    bool RaiseEvent(DecoderEvents_e event) override { return Call("RaiseEvent", event); }
    bool Unsubscribe(const EventHandler&) override { return Call("Unsubscribe"); }


private:
    static uint16_t PidIn(const State& s, EsType_e type, uint16_t index) {
        auto it = s.pids.find({type, index});
        return it == s.pids.end() ? 0 : it->second;
    }
};

}  // namespace stbav_test
