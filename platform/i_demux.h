// IDemux: programme selection of the one decoded service (PIDs, service id and
// name, codec types). Setters run on the poller thread (configuration
// processing); getters on the poller thread (status). No locking is promised:
// callers do not call it from two threads at once.
#pragma once

#include <cstdint>
#include <string>

#include "platform/decoder_types.h"
#include "toolkit/kt_functor.h"

class IDemux {
public:
    using EventHandler = KT::CFunctor<void(DecoderEvents_e)>;

    virtual ~IDemux() = default;

    // Sets the PID of stream `type`, entry 0. True when stored and (if the
    // programme changed) applied; false on a platform failure.
    virtual bool SetPid(uint16_t pid, EsType_e type) = 0;
    // Same for entry `index` of the indexed stream types; false for an index out of range.
    virtual bool SetPid(uint16_t pid, EsType_e type, uint16_t index) = 0;
    // PID of stream `type` in use, entry 0; 0 when unknown or on a platform failure.
    virtual uint16_t GetPid(EsType_e type) = 0;
    // Same for entry `index`; 0 for an index out of range.
    virtual uint16_t GetPid(EsType_e type, uint16_t index) = 0;
    // Sets the service name. True on success, false on a platform failure.
    virtual bool SetServiceName(std::string name) = 0;
    // Service name held by the platform; "Undefined" on a platform failure.
    virtual std::string GetServiceName() = 0;
    // Sets the service id (programme number). True on success.
    virtual bool SetServiceId(uint16_t id) = 0;
    // Service id held by the platform; 0 on a platform failure.
    virtual uint16_t GetServiceId() = 0;
    // Sets the video codec of the service. True on success.
    virtual bool SetServiceVideoCodecType(VideoType_e type) = 0;
    // Sets the audio codec of the service. True on success.
    virtual bool SetServiceAudioCodecType(AudioType_e type) = 0;
    // Flushes the player: stop, reset, reconfigure and restart. True on success.
    virtual bool ClearBuffer() = 0;
    // Event subscription of the demux. True on success.
    virtual bool Subscribe(const EventHandler& handler) = 0;
    // Raises an event to the subscribers (called by the demux itself). True on success.
    virtual bool RaiseEvent(DecoderEvents_e event) = 0;
    // Removes a handler. True on success.
    virtual bool Unsubscribe(const EventHandler& handler) = 0;

protected:
    IDemux() = default;
    IDemux(const IDemux&) = delete;
    IDemux& operator=(const IDemux&) = delete;
};
