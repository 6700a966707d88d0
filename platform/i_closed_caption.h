// IClosedCaption: the caption engine (line-21 VBI insertion and on-screen overlay).
// Initialize/Deinitialize run on the poller thread during chip bring-up and
// tear-down; the setters on the poller thread from the output settings manager.
#pragma once

#include "platform/decoder_types.h"

class IClosedCaption {
public:
    virtual ~IClosedCaption() = default;

    // Brings the caption engine up. 0 on success, else the failing step's code.
    virtual int Initialize() = 0;
    // Tears the caption engine down. 0 on success, else the failing step's code.
    virtual int Deinitialize() = 0;
    // Line-21 caption insertion on the composite output on/off. True on success.
    virtual bool SetVbiLine21CcState(bool on) = 0;
    // Selects NTSC (line-21) caption data for the overlay. True on success.
    virtual bool SetOverlayCc(OverlayCcType_e type, OverlayNtscCcType_e dataType) = 0;
    // Selects DTV caption data for the overlay. True on success.
    virtual bool SetOverlayCc(OverlayCcType_e type, OverlayDtvCcType_e dataType) = 0;
    // Caption overlay on/off. True on success.
    virtual bool SetOverlayCcState(bool on) = 0;

protected:
    IClosedCaption() = default;
    IClosedCaption(const IClosedCaption&) = delete;
    IClosedCaption& operator=(const IClosedCaption&) = delete;
};
