// Analog audio volume and mute. Poller thread.
#include "platform/hisi_audio_output.h"

#include "toolkit/log.h"

namespace {
const int kMinDb = -60;
const int kMaxDb = 10;
const int kMaxPercent = 100;
}  // namespace

HisiAudioOutput::HisiAudioOutput() : m_Logger(hisiav::Logger("hisiav.hisiaudiooutput")) {}

int HisiAudioOutput::SetVolume(_AOUT_DEVICE_TYPE_E device, bool linear, int value) {
    int passed = value;
    if (!linear) {
        if (value < kMinDb || value > kMaxDb) {
            hisiav::LogError(m_Logger, "Set analog audio volume with invalid value: %d dBv.", value);
            return -1;
        }
        passed = value - kMaxDb;
    } else if (value < 0 || value > kMaxPercent) {
        hisiav::LogError(m_Logger, "Set analog audio volume with invalid value: %d.", value);
        return -1;
    }
    int r = aout_set_volume(m_AoutHandle, device, linear, passed);
    if (r == 0) return 0;
    hisiav::LogError(m_Logger, "call aout_set_volume failed: %#x.", r);
    return r;
}

bool HisiAudioOutput::SetAnalogVolume(int dB) {
    int r = SetVolume(AOUT_DEVICE_ANALOG, false, dB);
    if (r == 0) return true;
    hisiav::LogError(m_Logger, "set analog audio volume failed: %#x.", r);
    return false;
}

bool HisiAudioOutput::SetMute(bool mute) {
    int r = aout_set_mute(m_AoutHandle, AOUT_DEVICE_ANALOG, mute);
    if (r == 0) return true;
    hisiav::LogError(m_Logger, "set analog audio mute failed: %#x.", r);
    return false;
}
