// The C API of the virtual board: each function journals its call, honours an
// injected fault, and hands over to CBoard. No exception leaves this file.
// Called on any thread of the daemon.
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

#include "platform/stb_module.h"
#include "sim/board.h"

using stbsim::CBoard;

namespace {

// One call: its arguments as text, the fault check, the journal entry.
class CCall {
public:
    explicit CCall(const char* name) : m_name(name), m_startUs(stbsim::MonotonicUs()) {}

    CCall& Num(const char* key, long long v) { return Add(key, std::to_string(v)); }
    CCall& Hex(const char* key, uint32_t v) {
        char buf[16];
        snprintf(buf, sizeof buf, "%#x", v);
        return Add(key, buf);
    }
    CCall& Str(const char* key, const char* v) { return Add(key, v ? "\"" + std::string(v) + "\"" : "NULL"); }
    CCall& Add(const char* key, const std::string& v) {
        if (!m_args.empty()) m_args += ", ";
        m_args += key;
        m_args += '=';
        m_args += v;
        return *this;
    }

    int Run(const std::function<int()>& body) noexcept {
        int result = stbsim::kErrInternal;
        try {
            CBoard& board = CBoard::Instance();
            board.OnCall();
            if (board.TakeFault(m_name, &result)) {
                Add("fault", "injected");
            } else {
                result = body();
            }
            board.Journal().Add(stbsim::JournalEntry{m_startUs, m_name, m_args, result});
        } catch (...) {
        }
        return result;
    }

private:
    const char* m_name;
    int64_t m_startUs;
    std::string m_args;
};

std::string Address(const IpInputParams* p) {
    if (!p) return "NULL";
    char buf[48];
    snprintf(buf, sizeof buf, "%u.%u.%u.%u:%u", p->ip >> 24, (p->ip >> 16) & 0xFF, (p->ip >> 8) & 0xFF, p->ip & 0xFF,
             p->port);
    return buf;
}

void AddSettings(CCall& c, const _AV_SETTING_S* s) {
    if (!s) return;
    char name[sizeof s->service_name + 1] = {0};
    memcpy(name, s->service_name, sizeof s->service_name);
    c.Num("video_pid", s->video_pid).Num("audio_pid", s->audio_pid).Num("pcr_pid", s->pcr_pid);
    c.Num("video_type", s->video_type).Num("audio_type", s->audio_type).Num("service_id", s->service_id);
    c.Str("service_name", name);
}

int HandleCall(const char* name, uint32_t handle, const std::function<int()>& body) {
    return CCall(name).Hex("handle", handle).Run(body);
}

}  // namespace

extern "C" {

// ---- system

int system_init(uint32_t mode) {
    return CCall("system_init").Num("mode", mode).Run([&] { return CBoard::Instance().SystemInit(mode); });
}

int system_deinit(void) {
    return CCall("system_deinit").Run([] { return CBoard::Instance().SystemDeinit(); });
}

int system_upgrade(const char* packagePath) {
    return CCall("system_upgrade").Str("path", packagePath).Run([&] {
        return CBoard::Instance().SystemUpgrade(packagePath);
    });
}

// ---- AV player

int av_init(uint32_t* initResult, const IpInputParams* params) {
    CCall c("av_init");
    c.Add("input", Address(params));
    return c.Run([&] {
        const int r = CBoard::Instance().AvInit(initResult, params);
        if (r == 0) c.Num("result_word", *initResult);
        return r;
    });
}

int av_create(uint32_t* avHandle, const AvCreateAttr* attr, const IpInputParams* params) {
    CCall c("av_create");
    if (attr) c.Num("source_type", attr->source_type).Num("flags", attr->flags);
    c.Add("input", Address(params));
    return c.Run([&] {
        const int r = CBoard::Instance().AvCreate(avHandle, attr);
        if (r == 0) c.Hex("handle", *avHandle);
        return r;
    });
}

int av_prepare(const char* address) {
    return CCall("av_prepare").Str("address", address).Run([&] { return CBoard::Instance().AvPrepare(address); });
}

int av_set_event_config(uint32_t avHandle, const AvEventConfig* config, uint32_t eventClass) {
    CCall c("av_set_event_config");
    c.Hex("handle", avHandle);
    if (config) c.Num("class", config->eventClass).Str("callback", config->callback ? "set" : "NULL").Num("enable", config->enable);
    c.Num("event_class", eventClass);
    return c.Run([&] { return CBoard::Instance().AvSetEventConfig(avHandle, config, eventClass); });
}

int av_start_video(uint32_t avHandle) {
    return HandleCall("av_start_video", avHandle, [&] { return CBoard::Instance().AvStart(avHandle, true, false); });
}

int av_start_audio(uint32_t avHandle) {
    return HandleCall("av_start_audio", avHandle, [&] { return CBoard::Instance().AvStart(avHandle, false, true); });
}

int av_stop(uint32_t avHandle) {
    return HandleCall("av_stop", avHandle, [&] { return CBoard::Instance().AvStop(avHandle, true, true); });
}

int av_stop_video(uint32_t avHandle) {
    return HandleCall("av_stop_video", avHandle, [&] { return CBoard::Instance().AvStop(avHandle, true, false); });
}

int av_reset(uint32_t avHandle, uint32_t mode) {
    return CCall("av_reset").Hex("handle", avHandle).Num("mode", mode).Run([&] {
        return CBoard::Instance().AvReset(avHandle);
    });
}

int av_set_config(uint32_t avHandle, const _AV_SETTING_S* settings) {
    CCall c("av_set_config");
    c.Hex("handle", avHandle);
    AddSettings(c, settings);
    return c.Run([&] { return CBoard::Instance().AvSetConfig(avHandle, settings); });
}

int av_get_config(uint32_t avHandle, _AV_SETTING_S* settings) {
    CCall c("av_get_config");
    c.Hex("handle", avHandle);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetConfig(avHandle, settings);
        if (r == 0) AddSettings(c, settings);
        return r;
    });
}

int av_search_progInfo(_AV_SETTING_S* settings, const IpInputParams* params) {
    CCall c("av_search_progInfo");
    c.Add("input", Address(params));
    return c.Run([&] {
        const int r = CBoard::Instance().AvSearchProgInfo(settings);
        if (r == 0) AddSettings(c, settings);
        return r;
    });
}

int av_get_status_info(uint32_t avHandle, AvStatusInfo* status) {
    CCall c("av_get_status_info");
    c.Hex("handle", avHandle);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetStatusInfo(avHandle, status);
        if (r == 0) {
            c.Num("video_pid", status->video_pid).Num("audio_pid", status->audio_pid).Num("pcr_pid", status->pcr_pid);
            c.Num("width", status->width).Num("height", status->height).Num("frames", status->video_frame_count);
            c.Num("audio_pts", static_cast<long long>(status->audio_pts));
        }
        return r;
    });
}

int av_get_stream_info(uint32_t avHandle, AvStreamInfo* info) {
    CCall c("av_get_stream_info");
    c.Hex("handle", avHandle);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetStreamInfo(avHandle, info);
        if (r == 0) c.Num("video", info->video_count).Num("audio", info->audio_count).Num("services", info->service_count);
        return r;
    });
}

int av_destory(uint32_t avHandle) {
    return HandleCall("av_destory", avHandle, [&] { return CBoard::Instance().AvDestroy(avHandle); });
}

int av_deinit(void) {
    return CCall("av_deinit").Run([] { return CBoard::Instance().AvDeinit(); });
}

// ---- video output

int vout_init(VoutInitInfo* info, const IpInputParams* params) {
    return CCall("vout_init").Add("input", Address(params)).Run([&] { return CBoard::Instance().VoutInit(info); });
}

int vout_deinit(void) {
    return CCall("vout_deinit").Run([] { return CBoard::Instance().VoutDeinit(); });
}

int vout_open_channel(uint32_t* voutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    CCall c("vout_open_channel");
    if (attr) c.Num("mode", attr->mode).Num("mask", attr->channel_mask).Hex("source", attr->source);
    c.Add("input", Address(params));
    return c.Run([&] {
        const int r = CBoard::Instance().VoutOpenChannel(voutHandle, attr);
        if (r == 0) c.Hex("handle", *voutHandle);
        return r;
    });
}

int vout_close_channel(uint32_t voutHandle, uint32_t flags) {
    return CCall("vout_close_channel").Hex("handle", voutHandle).Num("flags", flags).Run([&] {
        return CBoard::Instance().VoutCloseChannel(voutHandle);
    });
}

int vout_display_get(uint32_t voutHandle, VoutDisplayAttr* attr, const IpInputParams*) {
    CCall c("vout_display_get");
    c.Hex("handle", voutHandle);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutDisplayGet(voutHandle, attr);
        if (r == 0) c.Num("format", attr->format).Num("rate", attr->rate);
        return r;
    });
}

int vout_display_set(uint32_t voutHandle, const VoutDisplayAttr* attr, const IpInputParams*) {
    CCall c("vout_display_set");
    c.Hex("handle", voutHandle);
    if (attr) c.Num("format", attr->format).Num("rate", attr->rate);
    return c.Run([&] { return CBoard::Instance().VoutDisplaySet(voutHandle, attr); });
}

int vout_window_create(uint32_t voutHandle, uint32_t* windowHandle, uint32_t flags) {
    CCall c("vout_window_create");
    c.Hex("vout", voutHandle).Num("flags", flags);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutWindowCreate(voutHandle, windowHandle);
        if (r == 0) c.Hex("window", *windowHandle);
        return r;
    });
}

int vout_window_destroy(uint32_t voutHandle, uint32_t windowHandle, uint32_t flags) {
    return CCall("vout_window_destroy").Hex("vout", voutHandle).Hex("window", windowHandle).Num("flags", flags).Run([&] {
        return CBoard::Instance().VoutWindowDestroy(voutHandle, windowHandle);
    });
}

int vout_window_attach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    return CCall("vout_window_attach_input").Hex("window", windowHandle).Num("type", inputType).Hex("av", avHandle).Run([&] {
        return CBoard::Instance().VoutWindowAttach(windowHandle, avHandle, true);
    });
}

int vout_window_detach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    return CCall("vout_window_detach_input").Hex("window", windowHandle).Num("type", inputType).Hex("av", avHandle).Run([&] {
        return CBoard::Instance().VoutWindowAttach(windowHandle, avHandle, false);
    });
}

int vout_window_open(uint32_t windowHandle) {
    return CCall("vout_window_open").Hex("window", windowHandle).Run([&] {
        return CBoard::Instance().VoutWindowOpen(windowHandle, true);
    });
}

int vout_window_close(uint32_t windowHandle) {
    return CCall("vout_window_close").Hex("window", windowHandle).Run([&] {
        return CBoard::Instance().VoutWindowOpen(windowHandle, false);
    });
}

// ---- audio output

int aout_init(AoutInitInfo* info, const IpInputParams* params) {
    return CCall("aout_init").Add("input", Address(params)).Run([&] { return CBoard::Instance().AoutInit(info); });
}

int aout_deinit(uint32_t flags) {
    return CCall("aout_deinit").Num("flags", flags).Run([] { return CBoard::Instance().AoutDeinit(); });
}

int aout_open(uint32_t* aoutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    CCall c("aout_open");
    if (attr) c.Num("mode", attr->mode).Num("mask", attr->channel_mask).Hex("source", attr->source);
    c.Add("input", Address(params));
    return c.Run([&] {
        const int r = CBoard::Instance().AoutOpen(aoutHandle, attr);
        if (r == 0) c.Hex("handle", *aoutHandle);
        return r;
    });
}

int aout_close(uint32_t aoutHandle, uint32_t flags) {
    return CCall("aout_close").Hex("handle", aoutHandle).Num("flags", flags).Run([&] {
        return CBoard::Instance().AoutClose(aoutHandle);
    });
}

int aout_set_volume(uint32_t aoutHandle, _AOUT_DEVICE_TYPE_E device, bool linear, int value) {
    CCall c("aout_set_volume");
    c.Hex("handle", aoutHandle).Num("device", device).Num("linear", linear).Num("value", value);
    return c.Run([&] { return CBoard::Instance().AoutSetVolume(aoutHandle, device, linear, value); });
}

int aout_set_mute(uint32_t aoutHandle, uint32_t device, bool mute) {
    return CCall("aout_set_mute").Hex("handle", aoutHandle).Num("device", device).Num("mute", mute).Run([&] {
        return CBoard::Instance().AoutSetMute(aoutHandle, device, mute);
    });
}

int aout_track_create(uint32_t aoutHandle, uint32_t* trackHandle, uint32_t flags) {
    CCall c("aout_track_create");
    c.Hex("aout", aoutHandle).Num("flags", flags);
    return c.Run([&] {
        const int r = CBoard::Instance().AoutTrackCreate(aoutHandle, trackHandle);
        if (r == 0) c.Hex("track", *trackHandle);
        return r;
    });
}

int aout_track_destroy(uint32_t trackHandle) {
    return CCall("aout_track_destroy").Hex("track", trackHandle).Run([&] {
        return CBoard::Instance().AoutTrackDestroy(trackHandle);
    });
}

int aout_track_attach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    return CCall("aout_track_attach_input").Hex("track", trackHandle).Num("type", inputType).Hex("av", avHandle).Run([&] {
        return CBoard::Instance().AoutTrackAttach(trackHandle, avHandle, true);
    });
}

int aout_track_detach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    return CCall("aout_track_detach_input").Hex("track", trackHandle).Num("type", inputType).Hex("av", avHandle).Run([&] {
        return CBoard::Instance().AoutTrackAttach(trackHandle, avHandle, false);
    });
}

// ---- closed captions

int cc_init(const CcInitParam* param) {
    CCall c("cc_init");
    if (param) c.Num("mode", param->mode);
    return c.Run([&] { return CBoard::Instance().CcInit(param); });
}

int cc_deinit(void) {
    return CCall("cc_deinit").Run([] { return CBoard::Instance().CcDeinit(); });
}

int cc_creat(const CcCreateParam* param) {
    CCall c("cc_creat");
    if (param) c.Num("source", param->source);
    return c.Run([&] { return CBoard::Instance().CcCreate(param); });
}

int cc_destroy(void) {
    return CCall("cc_destroy").Run([] { return CBoard::Instance().CcDestroy(); });
}

int cc_set_window(uint32_t x, uint32_t y, uint32_t width, uint32_t height) {
    return CCall("cc_set_window").Num("x", x).Num("y", y).Num("width", width).Num("height", height).Run([&] {
        return CBoard::Instance().CcSetWindow(x, y, width, height);
    });
}

int cc_start(void) {
    return CCall("cc_start").Run([] { return CBoard::Instance().CcStart(true); });
}

int cc_stop(void) {
    return CCall("cc_stop").Run([] { return CBoard::Instance().CcStart(false); });
}

int cc_getAttr(CcAttr* attr) {
    CCall c("cc_getAttr");
    return c.Run([&] {
        const int r = CBoard::Instance().CcGetAttr(attr);
        if (r == 0) c.Num("source", attr->source).Num("data_type", attr->data_type);
        return r;
    });
}

int cc_setAttr(const CcAttr* attr) {
    CCall c("cc_setAttr");
    if (attr) {
        c.Num("source", attr->source).Num("data_type", attr->data_type);
        c.Num("analog_mode", attr->analog_mode).Num("digital_mode", attr->digital_mode);
    }
    return c.Run([&] { return CBoard::Instance().CcSetAttr(attr); });
}

int cc_send_VBI_enable(bool enable) {
    return CCall("cc_send_VBI_enable").Num("enable", enable).Run([&] { return CBoard::Instance().CcEnable(true, enable); });
}

int cc_show_subtitle_enable(bool enable) {
    return CCall("cc_show_subtitle_enable").Num("enable", enable).Run([&] {
        return CBoard::Instance().CcEnable(false, enable);
    });
}

}  // extern "C"

// The board's threads stop before the library goes away (process exit or
// dlclose); the board itself is never destroyed.
__attribute__((destructor)) static void StbsimUnload() {
    if (CBoard* board = CBoard::Existing()) board->Shutdown();
}
