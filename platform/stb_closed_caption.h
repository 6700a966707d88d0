// StbClosedCaption: the caption engine over the media library: bring-up and
// tear-down for the chip, overlay selection and the on/off switches for the
// output settings manager. Poller thread. Owned by the subsystem assembly.
#pragma once

#include <cstdint>

#include <log4cpp/Category.hh>

#include "platform/decoder_types.h"
#include "platform/i_closed_caption.h"
#include "platform/stb_module.h"

class StbClosedCaption : public IClosedCaption {
public:
    StbClosedCaption();

    int Initialize() override;
    // Note the order the engine is driven with: deinit, then stop and destroy.
    int Deinitialize() override;
    bool SetVbiLine21CcState(bool on) override;
    // Both forms re-create the engine for the new caption source; a failure is
    // logged and hidden from the caller (always true).
    bool SetOverlayCc(OverlayCcType_e type, OverlayNtscCcType_e dataType) override;
    bool SetOverlayCc(OverlayCcType_e type, OverlayDtvCcType_e dataType) override;
    bool SetOverlayCcState(bool on) override;

private:
    // Re-creates the engine for the overlay type. True means it FAILED.
    bool Reinitialize(OverlayCcType_e type, uint8_t dataType);
    bool SelectOverlay(OverlayCcType_e type, uint8_t dataType);
    // Logs ok (debug) or failFmt with the code (error); true when r is 0.
    bool Step(int r, const char* ok, const char* failFmt);

    log4cpp::Category& m_Logger;
};
