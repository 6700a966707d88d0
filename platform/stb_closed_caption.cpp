// Caption engine bring-up, tear-down and overlay selection. Poller thread.
#include "platform/stb_closed_caption.h"

#include <cstring>

#include "toolkit/log.h"

namespace {
const uint32_t kCcInitMode = 2;
const uint32_t kCcSourceDigital = 1;
const uint32_t kWindowWidth = 1280;
const uint32_t kWindowHeight = 720;
}  // namespace

StbClosedCaption::StbClosedCaption() : m_Logger(stbav::Logger("stbav.stbclosedcaption")) {}

bool StbClosedCaption::Step(int r, const char* ok, const char* failFmt) {
    if (r != 0) {
        stbav::LogError(m_Logger, failFmt, r);
        return false;
    }
    if (ok != nullptr) stbav::LogDebug(m_Logger, "%s", ok);
    return true;
}

// Each step runs only if the one before succeeded; the failing code is returned.
int StbClosedCaption::Initialize() {
    CcInitParam init{kCcInitMode};
    int r = cc_init(&init);
    if (!Step(r, "call cc_init successfully!", "call cc_init failed %#x")) return r;
    CcCreateParam create{kCcSourceDigital};
    r = cc_creat(&create);
    if (!Step(r, "call cc_creat successfully!", "call cc_creat failed %#x")) return r;
    r = cc_set_window(0, 0, kWindowWidth, kWindowHeight);
    if (!Step(r, "call cc_set_window successfully!", "call cc_set_window failed %#x")) return r;
    r = cc_start();
    if (!Step(r, "call cc_start successfully!", "call cc_start failed %#x")) return r;
    CcAttr attr;
    memset(&attr, 0, sizeof attr);
    r = cc_getAttr(&attr);
    if (!Step(r, "call cc_getAttr successfully!", "call cc_getAttr failed %#x")) return r;
    attr.source = 1;
    attr.digital_mode = 3;
    attr.data_type = 1;
    r = cc_setAttr(&attr);
    Step(r, "call cc_setAttr successfully!", "call cc_setAttr failed %#x");
    return r;
}

int StbClosedCaption::Deinitialize() {
    int r = cc_deinit();
    if (!Step(r, nullptr, "call cc_deinit failed %#x")) return r;
    r = cc_stop();
    if (!Step(r, nullptr, "call cc_stop failed %#x")) return r;
    r = cc_destroy();
    if (!Step(r, "Finish deinitializing ClosedCaption", "call cc_destroy failed %#x")) return r;
    return 0;
}

bool StbClosedCaption::SetVbiLine21CcState(bool on) {
    int r = cc_send_VBI_enable(on);
    if (r == 0) return true;
    stbav::LogError(m_Logger, "Enable VBI line 21 Closed Caption failed: %#x.", r);
    return false;
}

bool StbClosedCaption::SetOverlayCc(OverlayCcType_e type, OverlayNtscCcType_e dataType) {
    return SelectOverlay(type, static_cast<uint8_t>(dataType));
}

bool StbClosedCaption::SetOverlayCc(OverlayCcType_e type, OverlayDtvCcType_e dataType) {
    return SelectOverlay(type, static_cast<uint8_t>(dataType));
}

bool StbClosedCaption::SelectOverlay(OverlayCcType_e type, uint8_t dataType) {
    if (Reinitialize(type, dataType)) {
        stbav::LogError(m_Logger, "call Reinitialize failed %#x", 1u);
    } else {
        stbav::LogDebug(m_Logger, "closed caption type = %d, data type = %d", static_cast<int>(type),
                         static_cast<int>(dataType));
    }
    return true;
}

bool StbClosedCaption::SetOverlayCcState(bool on) {
    int r = cc_show_subtitle_enable(on);
    if (r == 0) return true;
    stbav::LogError(m_Logger, "Enable Closed Caption Overlay failed: %#x.", r);
    return false;
}

// Overlay type 1 (line-21 data) uses the analog source and mode word; any other
// type the digital ones.
bool StbClosedCaption::Reinitialize(OverlayCcType_e type, uint8_t dataType) {
    bool analog = type == OVERLAY_CC_TYPE_NTSC;
    if (!Step(cc_stop(), nullptr, "call cc_stop failed %#x")) return true;
    if (!Step(cc_destroy(), nullptr, "call cc_destroy failed %#x")) return true;
    CcCreateParam create{analog ? 0u : kCcSourceDigital};
    if (!Step(cc_creat(&create), nullptr, "call cc_creat failed %#x")) return true;
    if (!Step(cc_set_window(0, 0, kWindowWidth, kWindowHeight), nullptr, "call cc_set_window failed %#x")) return true;
    if (!Step(cc_start(), nullptr, "call cc_start failed %#x")) return true;
    CcAttr attr;
    memset(&attr, 0, sizeof attr);
    if (!Step(cc_getAttr(&attr), nullptr, "call cc_getAttr failed %#x")) return true;
    if (analog) {
        attr.source = 0;
        attr.analog_mode = 3;
        attr.data_type = static_cast<uint32_t>(dataType) - 1;
    } else {
        attr.source = 1;
        attr.digital_mode = 3;
        attr.data_type = dataType;
    }
    return !Step(cc_setAttr(&attr), "Finish Reinitializing ClosedCaption", "call cc_setAttr failed %#x");
}
