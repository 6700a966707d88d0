// IAudioOutput: volume and mute of the board's audio outputs. Called on the
// poller thread by the output settings manager.
#pragma once

#include "platform/stb_module.h"

class IAudioOutput {
public:
    virtual ~IAudioOutput() = default;

    // Sets a device's volume: in dB (-60..10) when linear is false, in percent
    // (0..100) when true. 0 on success; -1 for a value out of range (nothing is
    // sent); the platform's code when it fails.
    virtual int SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) = 0;
    // Analog output level in dB (-60..10). True on success.
    virtual bool SetAnalogVolume(int dB) = 0;
    // Mutes (true) or unmutes the analog output. True on success.
    virtual bool SetMute(bool mute) = 0;

protected:
    IAudioOutput() = default;
    IAudioOutput(const IAudioOutput&) = delete;
    IAudioOutput& operator=(const IAudioOutput&) = delete;
};
