// FakeAudioOutput: recording double of IAudioOutput. Stores the mute state and
// the levels it is given; a failing SetVolume returns -1. Any thread.
#pragma once

#include <string>

#include "platform/i_audio_output.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeAudioOutputState {
    bool muted = false;
    int analogVolumeDb = 0;
    _AOUT_DEVICE_TYPE_E device = AOUT_DEVICE_ANALOG;
    bool linear = false;
    int volume = 0;  // last SetVolume value
};

class FakeAudioOutput : public IAudioOutput, public FakeBase<FakeAudioOutputState> {
public:
    using State = FakeAudioOutputState;

    explicit FakeAudioOutput(CallLog& log, std::string name = "IAudioOutput") : FakeBase(log, std::move(name)) {}

    int SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("SetVolume", device, linear, value)) return -1;
        m_State.device = device;
        m_State.linear = linear;
        m_State.volume = value;
        return 0;
    }
    bool SetAnalogVolume(int dB) override { return Store("SetAnalogVolume", &State::analogVolumeDb, dB); }
    bool SetMute(bool mute) override { return Store("SetMute", &State::muted, mute); }
};

}  // namespace stbav_test
