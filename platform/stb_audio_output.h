// StbAudioOutput: volume and mute of the analog audio output over the media
// library. Called on the poller thread by the output settings manager; the
// output handle comes from the chip bring-up. Owned by the subsystem assembly.
#pragma once

#include <cstdint>

#include <log4cpp/Category.hh>

#include "platform/i_audio_output.h"
#include "platform/stb_module.h"

class StbAudioOutput : public IAudioOutput {
public:
    StbAudioOutput();

    // dB values (-60..10) reach the platform shifted down by 10 (-70..0);
    // percentages (0..100) unchanged.
    int SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) override;
    bool SetAnalogVolume(int dB) override;
    bool SetMute(bool mute) override;

    // The audio output handle from the chip bring-up.
    void BondOutHandle(uint32_t aoutHandle) { m_AoutHandle = aoutHandle; }

private:
    log4cpp::Category& m_Logger;
    uint32_t m_AoutHandle = 0;
};
