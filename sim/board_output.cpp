// CBoard: video output, audio output and caption engine calls.
#include "sim/board.h"

namespace stbsim {

namespace {

constexpr uint32_t kVoutHandleKind = 0x00B1;
constexpr uint32_t kWindowHandleKind = 0x00B2;
constexpr uint32_t kAoutHandleKind = 0x00C1;
constexpr uint32_t kTrackHandleKind = 0x00C2;

bool ValidDisplayFormat(uint32_t f) { return (f >= 1 && f <= 4) || (f >= 6 && f <= 14); }
bool ValidDisplayRate(uint32_t r) { return r >= 1 && r <= 256 && (r & (r - 1)) == 0; }

}  // namespace

// ---- video output

int CBoard::VoutInit(VoutInitInfo* info) {
    if (!info) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_system) return kErrNotInitialised;
    m_display.init = true;
    *info = VoutInitInfo{};
    info->version = 0x00010000;
    info->max_channels = 1;
    info->max_windows = 1;
    return 0;
}

int CBoard::VoutDeinit() {
    Lock lock(m_mutex);
    if (!m_display.init) return kErrNotInitialised;
    const VoutDisplayAttr attr = m_display.attr;
    m_display = Display{};
    m_display.attr = attr;
    return 0;
}

int CBoard::VoutOpenChannel(uint32_t* handle, const OutputOpenAttr* attr) {
    if (!handle || !attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_display.init) return kErrNotInitialised;
    if (!LivePlayer(attr->source)) return kErrInvalidHandle;
    if (m_display.open) return kErrNoResource;
    m_display.open = true;
    m_display.handle = NewHandle(kVoutHandleKind);
    *handle = m_display.handle;
    return 0;
}

int CBoard::VoutCloseChannel(uint32_t handle) {
    Lock lock(m_mutex);
    if (!m_display.open || handle != m_display.handle) return kErrInvalidHandle;
    m_display.open = m_display.window = m_display.windowOpen = false;
    m_display.handle = m_display.windowHandle = m_display.windowInput = 0;
    return 0;
}

int CBoard::VoutDisplayGet(uint32_t handle, VoutDisplayAttr* attr) {
    if (!attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_display.open || handle != m_display.handle) return kErrInvalidHandle;
    *attr = m_display.attr;
    return 0;
}

int CBoard::VoutDisplaySet(uint32_t handle, const VoutDisplayAttr* attr) {
    if (!attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_display.open || handle != m_display.handle) return kErrInvalidHandle;
    if (!ValidDisplayFormat(attr->format) || !ValidDisplayRate(attr->rate)) return kErrInvalidParam;
    m_display.attr = *attr;
    return 0;
}

int CBoard::VoutWindowCreate(uint32_t voutHandle, uint32_t* windowHandle) {
    if (!windowHandle) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_display.open || voutHandle != m_display.handle) return kErrInvalidHandle;
    if (m_display.window) return kErrNoResource;
    m_display.window = true;
    m_display.windowOpen = false;
    m_display.windowInput = 0;
    m_display.windowHandle = NewHandle(kWindowHandleKind);
    *windowHandle = m_display.windowHandle;
    return 0;
}

int CBoard::VoutWindowDestroy(uint32_t voutHandle, uint32_t windowHandle) {
    Lock lock(m_mutex);
    if (!m_display.open || voutHandle != m_display.handle) return kErrInvalidHandle;
    if (!m_display.window || windowHandle != m_display.windowHandle) return kErrInvalidHandle;
    m_display.window = m_display.windowOpen = false;
    m_display.windowHandle = m_display.windowInput = 0;
    return 0;
}

// Attaching needs a live player; detaching names the player that is attached
// (it may have been destroyed since).
int CBoard::VoutWindowAttach(uint32_t windowHandle, uint32_t avHandle, bool attach) {
    Lock lock(m_mutex);
    if (!m_display.window || windowHandle != m_display.windowHandle) return kErrInvalidHandle;
    if (attach) {
        if (!LivePlayer(avHandle)) return kErrInvalidHandle;
        if (m_display.windowInput && m_display.windowInput != avHandle) return kErrBadState;
        m_display.windowInput = avHandle;
    } else {
        if (!m_display.windowInput || m_display.windowInput != avHandle) return kErrInvalidParam;
        m_display.windowInput = 0;
    }
    return 0;
}

int CBoard::VoutWindowOpen(uint32_t windowHandle, bool open) {
    Lock lock(m_mutex);
    if (!m_display.window || windowHandle != m_display.windowHandle) return kErrInvalidHandle;
    m_display.windowOpen = open;
    if (open) ++m_display.windowOpenCount;
    return 0;
}

// ---- audio output

int CBoard::AoutInit(AoutInitInfo* info) {
    if (!info) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_system) return kErrNotInitialised;
    m_aout.init = true;
    *info = AoutInitInfo{};
    info->version = 0x00010000;
    info->max_outputs = 1;
    info->max_tracks = 1;
    return 0;
}

int CBoard::AoutDeinit() {
    Lock lock(m_mutex);
    if (!m_aout.init) return kErrNotInitialised;
    const AudioOut kept = m_aout;
    m_aout = AudioOut{};
    m_aout.volume = kept.volume;
    m_aout.volumeLinear = kept.volumeLinear;
    m_aout.mute = kept.mute;
    return 0;
}

int CBoard::AoutOpen(uint32_t* handle, const OutputOpenAttr* attr) {
    if (!handle || !attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_aout.init) return kErrNotInitialised;
    if (!LivePlayer(attr->source)) return kErrInvalidHandle;
    if (m_aout.open) return kErrNoResource;
    m_aout.open = true;
    m_aout.handle = NewHandle(kAoutHandleKind);
    *handle = m_aout.handle;
    return 0;
}

int CBoard::AoutClose(uint32_t handle) {
    Lock lock(m_mutex);
    if (!m_aout.open || handle != m_aout.handle) return kErrInvalidHandle;
    m_aout.open = m_aout.track = false;
    m_aout.handle = m_aout.trackHandle = m_aout.trackInput = 0;
    return 0;
}

int CBoard::AoutSetVolume(uint32_t handle, uint32_t device, bool linear, int value) {
    Lock lock(m_mutex);
    if (!m_aout.open || handle != m_aout.handle) return kErrInvalidHandle;
    const bool inRange = linear ? (value >= 0 && value <= 100) : (value >= -70 && value <= 0);
    if (device != AOUT_DEVICE_ANALOG || !inRange) return kErrInvalidParam;
    m_aout.volume = value;
    m_aout.volumeLinear = linear;
    return 0;
}

int CBoard::AoutSetMute(uint32_t handle, uint32_t device, bool mute) {
    Lock lock(m_mutex);
    if (!m_aout.open || handle != m_aout.handle) return kErrInvalidHandle;
    if (device != AOUT_DEVICE_ANALOG) return kErrInvalidParam;
    m_aout.mute = mute;
    return 0;
}

int CBoard::AoutTrackCreate(uint32_t aoutHandle, uint32_t* trackHandle) {
    if (!trackHandle) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_aout.open || aoutHandle != m_aout.handle) return kErrInvalidHandle;
    if (m_aout.track) return kErrNoResource;
    m_aout.track = true;
    m_aout.trackInput = 0;
    m_aout.trackHandle = NewHandle(kTrackHandleKind);
    *trackHandle = m_aout.trackHandle;
    return 0;
}

int CBoard::AoutTrackDestroy(uint32_t trackHandle) {
    Lock lock(m_mutex);
    if (!m_aout.track || trackHandle != m_aout.trackHandle) return kErrInvalidHandle;
    m_aout.track = false;
    m_aout.trackHandle = m_aout.trackInput = 0;
    return 0;
}

int CBoard::AoutTrackAttach(uint32_t trackHandle, uint32_t avHandle, bool attach) {
    Lock lock(m_mutex);
    if (!m_aout.track || trackHandle != m_aout.trackHandle) return kErrInvalidHandle;
    if (attach) {
        if (!LivePlayer(avHandle)) return kErrInvalidHandle;
        if (m_aout.trackInput && m_aout.trackInput != avHandle) return kErrBadState;
        m_aout.trackInput = avHandle;
    } else {
        if (!m_aout.trackInput || m_aout.trackInput != avHandle) return kErrInvalidParam;
        m_aout.trackInput = 0;
    }
    return 0;
}

// ---- captions: the engine (init/deinit) and its one instance (creat/destroy)
// are separate; an instance outlives cc_deinit until it is destroyed.

int CBoard::CcInit(const CcInitParam* param) {
    if (!param) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_system) return kErrNotInitialised;
    m_cc.init = true;
    m_cc.initMode = param->mode;
    return 0;
}

int CBoard::CcDeinit() {
    Lock lock(m_mutex);
    if (!m_cc.init) return kErrNotInitialised;
    m_cc.init = false;
    return 0;
}

int CBoard::CcCreate(const CcCreateParam* param) {
    if (!param) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_cc.init) return kErrNotInitialised;
    if (m_cc.created) return kErrBadState;
    if (param->source > 1) return kErrInvalidParam;
    m_cc.created = true;
    m_cc.started = false;
    m_cc.createSource = param->source;
    m_cc.attr = CcAttr{};
    m_cc.attr.source = param->source;
    return 0;
}

int CBoard::CcDestroy() {
    Lock lock(m_mutex);
    if (!m_cc.created) return kErrBadState;
    m_cc.created = m_cc.started = false;
    return 0;
}

int CBoard::CcSetWindow(uint32_t x, uint32_t y, uint32_t w, uint32_t h) {
    Lock lock(m_mutex);
    if (!m_cc.created) return kErrBadState;
    if (w == 0 || h == 0 || x + w > 4096 || y + h > 2160) return kErrInvalidParam;
    const uint32_t win[4] = {x, y, w, h};
    for (int i = 0; i < 4; ++i) m_cc.window[i] = win[i];
    return 0;
}

int CBoard::CcStart(bool start) {
    Lock lock(m_mutex);
    if (!m_cc.created) return kErrBadState;
    m_cc.started = start;
    return 0;
}

int CBoard::CcGetAttr(CcAttr* attr) {
    if (!attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_cc.created) return kErrBadState;
    *attr = m_cc.attr;
    return 0;
}

int CBoard::CcSetAttr(const CcAttr* attr) {
    if (!attr) return kErrNullPointer;
    Lock lock(m_mutex);
    if (!m_cc.created) return kErrBadState;
    m_cc.attr = *attr;
    return 0;
}

int CBoard::CcEnable(bool vbi, bool enable) {
    Lock lock(m_mutex);
    if (!m_cc.init) return kErrNotInitialised;
    if (!m_cc.created) return kErrBadState;
    (vbi ? m_cc.vbi : m_cc.subtitles) = enable;
    return 0;
}

}  // namespace stbsim
