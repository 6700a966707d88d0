// StbDemux: the programme settings of the one decoded service. Each setter changes
// one field of the player's settings and restarts the player (stop, configure,
// start) only when they differ from what was applied last. No lock: poller thread
// only. Owned by the subsystem assembly; the AV handle comes from the chip bring-up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <log4cpp/Category.hh>

#include "platform/decoder_types.h"
#include "platform/i_decoder_control.h"
#include "platform/i_demux.h"
#include "platform/stb_module.h"

class StbDemux : public IDemux, public IDecoderControl {
public:
    StbDemux();

    bool SetPid(uint16_t pid, EsType_e type) override;
    // False on a failed settings read, an index out of range for the audio and
    // indexed extra streams (0..3), or a failed restart.
    bool SetPid(uint16_t pid, EsType_e type, uint16_t index) override;
    uint16_t GetPid(EsType_e type) override;
    uint16_t GetPid(EsType_e type, uint16_t index) override;
    bool SetServiceName(std::string name) override;
    std::string GetServiceName() override;
    bool SetServiceId(uint16_t id) override;
    uint16_t GetServiceId() override;
    bool SetServiceVideoCodecType(VideoType_e type) override;
    bool SetServiceAudioCodecType(AudioType_e type) override;
    // Stops and resets the player, then always reconfigures and restarts it.
    bool ClearBuffer() override;
    bool Subscribe(const EventHandler&) override { return true; }
    bool RaiseEvent(DecoderEvents_e) override { return true; }
    bool Unsubscribe(const EventHandler&) override { return true; }
    bool Start() override { return true; }
    bool Stop() override { return true; }

    void BondAvHandle(uint32_t avHandle) { m_AvHandle = avHandle; }
    // Copies the pending settings (68 bytes) to out. Always 0.
    int GetProgSettings(_AV_SETTING_S* out);
    // Applies the pending settings if they changed (or a clear asked for it):
    // 0 on success or when nothing had to be done, else the low 16 bits of the
    // failed restart's code. A failed stop or configuration is logged only.
    uint16_t UpdateProgSettings();

private:
    // Steps 1-2 of every setter: pending = the player's settings. False (logged
    // with `name`) when the read fails.
    bool LoadPending(const char* name);
    // Pending PID change for stream `type`; true when the player must restart.
    // *rejected is set for an index out of range.
    bool ApplyPid(uint16_t pid, EsType_e type, uint16_t index, bool* rejected);

    static const size_t kPidListSize = 4;

    log4cpp::Category& m_Logger;
    std::vector<uint16_t> m_AudioPids;
    std::vector<uint16_t> m_ExtraPids;  // ES type 5
    uint16_t m_VideoPid = 0;
    uint16_t m_PcrPid = 0;
    uint16_t m_ExtraPid = 0;  // ES type 4
    uint32_t m_AvHandle = 0;
    _AV_SETTING_S m_Pending;
    _AV_SETTING_S m_Applied;
    bool m_Changed = false;
};
