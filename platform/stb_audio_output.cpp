// Analog audio volume and mute. Poller thread.
#include "platform/stb_audio_output.h"

#include "toolkit/log.h"

namespace {
const int kMinDb = -60;
const int kMaxDb = 10;
const int kMaxPercent = 100;
}  // namespace

StbAudioOutput::StbAudioOutput() : m_Logger(stbav::Logger("stbav.stbaudiooutput")) {}

int StbAudioOutput::SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) {
    int passed = value;
    if (!linear) {
        if (value < kMinDb || value > kMaxDb) {
            stbav::LogError(m_Logger, "Set analog audio volume with invalid value: %d dBv.", value);
            return -1;
        }
        passed = value - kMaxDb;
    } else if (value < 0 || value > kMaxPercent) {
        stbav::LogError(m_Logger, "Set analog audio volume with invalid value: %d.", value);
        return -1;
    }
    int r = aout_set_volume(m_AoutHandle, device, linear, passed);
    if (r == 0) return 0;
    stbav::LogError(m_Logger, "call aout_set_volume failed: %#x.", r);
    return r;
}

bool StbAudioOutput::SetAnalogVolume(int dB) {
    int r = SetVolume(AOUT_DEVICE_ANALOG, false, dB);
    if (r == 0) return true;
    stbav::LogError(m_Logger, "set analog audio volume failed: %#x.", r);
    return false;
}

bool StbAudioOutput::SetMute(bool mute) {
    int r = aout_set_mute(m_AoutHandle, AOUT_DEVICE_ANALOG, mute);
    if (r == 0) return true;
    stbav::LogError(m_Logger, "set analog audio mute failed: %#x.", r);
    return false;
}
