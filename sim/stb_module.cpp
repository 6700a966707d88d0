/* First cut of the virtual board: every call succeeds; creating calls hand out handle 1. */
#include "platform/stb_module.h"

extern "C" {
int system_init(uint32_t mode) {
    (void)mode;
    return 0;
}
int system_deinit(void) {
    return 0;
}
int system_upgrade(const char* packagePath) {
    (void)packagePath;
    return 0;
}
int av_init(uint32_t* initResult, const IpInputParams* params) {
    (void)initResult;
    (void)params;
    return 0;
}
int av_create(uint32_t* avHandle, const AvCreateAttr* attr, const IpInputParams* params) {
    (void)avHandle;
    (void)attr;
    (void)params;
    return 0;
}
int av_prepare(const char* address) {
    (void)address;
    return 0;
}
int av_set_event_config(uint32_t avHandle, const AvEventConfig* config, uint32_t eventClass) {
    (void)avHandle;
    (void)config;
    (void)eventClass;
    return 0;
}
int av_start_video(uint32_t avHandle) {
    (void)avHandle;
    return 0;
}
int av_start_audio(uint32_t avHandle) {
    (void)avHandle;
    return 0;
}
int av_stop(uint32_t avHandle) {
    (void)avHandle;
    return 0;
}
int av_stop_video(uint32_t avHandle) {
    (void)avHandle;
    return 0;
}
int av_reset(uint32_t avHandle, uint32_t mode) {
    (void)avHandle;
    (void)mode;
    return 0;
}
int av_set_config(uint32_t avHandle, const _AV_SETTING_S* settings) {
    (void)avHandle;
    (void)settings;
    return 0;
}
int av_get_config(uint32_t avHandle, _AV_SETTING_S* settings) {
    (void)avHandle;
    (void)settings;
    return 0;
}
int av_search_progInfo(_AV_SETTING_S* settings, const IpInputParams* params) {
    (void)settings;
    (void)params;
    return 0;
}
int av_get_status_info(uint32_t avHandle, AvStatusInfo* status) {
    (void)avHandle;
    (void)status;
    return 0;
}
int av_get_stream_info(uint32_t avHandle, AvStreamInfo* info) {
    (void)avHandle;
    (void)info;
    return 0;
}
int av_destory(uint32_t avHandle) {
    (void)avHandle;
    return 0;
}
int av_deinit(void) {
    return 0;
}
int vout_init(VoutInitInfo* info, const IpInputParams* params) {
    (void)info;
    (void)params;
    return 0;
}
int vout_deinit(void) {
    return 0;
}
int vout_open_channel(uint32_t* voutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    (void)voutHandle;
    (void)attr;
    (void)params;
    return 0;
}
int vout_close_channel(uint32_t voutHandle, uint32_t flags) {
    (void)voutHandle;
    (void)flags;
    return 0;
}
int vout_display_get(uint32_t voutHandle, VoutDisplayAttr* attr, const IpInputParams* params) {
    (void)voutHandle;
    (void)attr;
    (void)params;
    return 0;
}
int vout_display_set(uint32_t voutHandle, const VoutDisplayAttr* attr, const IpInputParams* params) {
    (void)voutHandle;
    (void)attr;
    (void)params;
    return 0;
}
int vout_window_create(uint32_t voutHandle, uint32_t* windowHandle, uint32_t flags) {
    (void)voutHandle;
    (void)windowHandle;
    (void)flags;
    return 0;
}
int vout_window_destroy(uint32_t voutHandle, uint32_t windowHandle, uint32_t flags) {
    (void)voutHandle;
    (void)windowHandle;
    (void)flags;
    return 0;
}
int vout_window_attach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    (void)windowHandle;
    (void)inputType;
    (void)avHandle;
    return 0;
}
int vout_window_detach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    (void)windowHandle;
    (void)inputType;
    (void)avHandle;
    return 0;
}
int vout_window_open(uint32_t windowHandle) {
    (void)windowHandle;
    return 0;
}
int vout_window_close(uint32_t windowHandle) {
    (void)windowHandle;
    return 0;
}
int aout_init(AoutInitInfo* info, const IpInputParams* params) {
    (void)info;
    (void)params;
    return 0;
}
int aout_deinit(uint32_t flags) {
    (void)flags;
    return 0;
}
int aout_open(uint32_t* aoutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    (void)aoutHandle;
    (void)attr;
    (void)params;
    return 0;
}
int aout_close(uint32_t aoutHandle, uint32_t flags) {
    (void)aoutHandle;
    (void)flags;
    return 0;
}
int aout_set_volume(uint32_t aoutHandle, _AOUT_DEVICE_TYPE_E device, bool linear, int value) {
    (void)aoutHandle;
    (void)device;
    (void)linear;
    (void)value;
    return 0;
}
int aout_set_mute(uint32_t aoutHandle, uint32_t device, bool mute) {
    (void)aoutHandle;
    (void)device;
    (void)mute;
    return 0;
}
int aout_track_create(uint32_t aoutHandle, uint32_t* trackHandle, uint32_t flags) {
    (void)aoutHandle;
    (void)trackHandle;
    (void)flags;
    return 0;
}
int aout_track_destroy(uint32_t trackHandle) {
    (void)trackHandle;
    return 0;
}
int aout_track_attach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    (void)trackHandle;
    (void)inputType;
    (void)avHandle;
    return 0;
}
int aout_track_detach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    (void)trackHandle;
    (void)inputType;
    (void)avHandle;
    return 0;
}
int cc_init(const CcInitParam* param) {
    (void)param;
    return 0;
}
int cc_deinit(void) {
    return 0;
}
int cc_creat(const CcCreateParam* param) {
    (void)param;
    return 0;
}
int cc_destroy(void) {
    return 0;
}
int cc_set_window(uint32_t x, uint32_t y, uint32_t width, uint32_t height) {
    (void)x;
    (void)y;
    (void)width;
    (void)height;
    return 0;
}
int cc_start(void) {
    return 0;
}
int cc_stop(void) {
    return 0;
}
int cc_getAttr(CcAttr* attr) {
    (void)attr;
    return 0;
}
int cc_setAttr(const CcAttr* attr) {
    (void)attr;
    return 0;
}
int cc_send_VBI_enable(bool enable) {
    (void)enable;
    return 0;
}
int cc_show_subtitle_enable(bool enable) {
    (void)enable;
    return 0;
}
}
