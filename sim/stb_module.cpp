// The C API of the virtual board: each function checks its arguments against
// the board's table (sim/arg_rules.h), journals its call with every argument
// (records passed by pointer field by field), honours an injected fault and
// hands over to CBoard. No exception leaves this file. Called on any thread.
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/stb_module.h"
#include "sim/arg_rules.h"
#include "sim/board.h"

using stbsim::CBoard;

namespace {

// Journal text of a string: printable ASCII as is, anything else as \xNN.
std::string Quoted(const char* s, size_t max) {
    std::string out = "\"";
    for (size_t i = 0; i < max && s[i]; ++i) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        if (c == '"' || c == '\\' || c < 0x20 || c > 0x7e) {
            char buf[8];
            snprintf(buf, sizeof buf, "\\x%02x", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

// One call: its arguments as text and as values for the argument check, the
// fault check, the journal entry.
class CCall {
public:
    explicit CCall(const char* name) : m_name(name) {}

    CCall& Num(const char* key, long long v) { return Add(key, std::to_string(v), v); }
    CCall& Hex(const char* key, uint32_t v) {
        char buf[16];
        snprintf(buf, sizeof buf, "%#x", v);
        return Add(key, buf, v);
    }
    CCall& Str(const char* key, const char* v, size_t max = 4096) { return Add(key, v ? Quoted(v, max) : "NULL", v != nullptr); }
    // A pointer the call writes through: shown only when NULL (the call shows what it wrote).
    CCall& Out(const char* key, const void* p) {
        if (!p) return Add(key, "NULL", 0);
        m_args.push_back(stbsim::CallArg{m_prefix + key, 1});
        return *this;
    }
    // A record passed by pointer: "key={field=value, ...}" or "key=NULL".
    template <class T, class F>
    CCall& Rec(const char* key, const T* p, F fields) {
        if (!p) return Add(key, "NULL", 0);
        Separate();
        m_text += key;
        m_text += "={";
        m_args.push_back(stbsim::CallArg{m_prefix + key, 1});
        const std::string outer = m_prefix;
        m_prefix += std::string(key) + ".";
        m_first = true;
        fields(*this, *p);
        m_prefix = outer;
        m_text += '}';
        m_first = false;
        return *this;
    }
    // Refuses the call (before the board sees it) with code and reason.
    void Reject(int code, const std::string& reason) {
        if (m_rejectCode == 0) m_rejectCode = code, m_reason = reason;
    }

    int Run(const std::function<int()>& body) noexcept {
        int result = stbsim::kErrInternal;
        try {
            CBoard& board = CBoard::Instance();
            board.OnCall();
            stbsim::JournalEntry e;
            e.inCallback = board.OnEventThread();
            if (board.TakeFault(m_name, &result)) {
                Add("fault", "injected", 0);
            } else if (const int code = Check()) {
                result = code;
                e.reason = m_reason;
                fprintf(stderr, "stbsim: %s refused: %s\n", m_name, m_reason.c_str());
            } else {
                result = body();
            }
            e.name = m_name;
            e.args = m_text;
            e.result = result;
            board.Journal().Add(std::move(e));
        } catch (...) {
        }
        return result;
    }

private:
    CCall& Add(const char* key, const std::string& text, long long value) {
        Separate();
        m_text += key;
        m_text += '=';
        m_text += text;
        m_args.push_back(stbsim::CallArg{m_prefix + key, value});
        return *this;
    }
    void Separate() {
        if (!m_first) m_text += ", ";
        m_first = false;
    }
    int Check() {
        if (m_rejectCode) return m_rejectCode;
        m_rejectCode = stbsim::CheckArgs(m_name, m_args, &m_reason);
        return m_rejectCode;
    }

    const char* m_name;
    std::string m_text;
    std::vector<stbsim::CallArg> m_args;
    std::string m_prefix;
    bool m_first = true;
    int m_rejectCode = 0;
    std::string m_reason;
};

void IpFields(CCall& c, const IpInputParams& p) {
    char ip[20];
    snprintf(ip, sizeof ip, "%u.%u.%u.%u", p.ip >> 24, (p.ip >> 16) & 0xFF, (p.ip >> 8) & 0xFF, p.ip & 0xFF);
    c.Str("ip", ip).Num("port", p.port).Str("address", p.address, sizeof p.address).Num("port_copy", p.port_copy);
}

std::string HexBytes(const uint8_t* b, size_t n) {
    std::string out;
    char buf[4];
    for (size_t i = 0; i < n; ++i) {
        snprintf(buf, sizeof buf, "%02x", b[i]);
        out += buf;
    }
    return out;
}

void SettingsFields(CCall& c, const _AV_SETTING_S& s) {
    c.Str("reserved0", HexBytes(s.reserved0, sizeof s.reserved0).c_str());
    c.Num("video_type", s.video_type).Num("audio_type", s.audio_type);
    c.Str("reserved16", HexBytes(s.reserved16, sizeof s.reserved16).c_str());
    c.Num("pcr_pid", s.pcr_pid).Num("audio_pid", s.audio_pid).Num("reserved28", s.reserved28);
    c.Num("video_pid", s.video_pid).Num("service_id", s.service_id);
    c.Str("service_name", s.service_name, sizeof s.service_name);
}

void DisplayFields(CCall& c, const VoutDisplayAttr& a) {
    c.Num("format", a.format).Num("rate", a.rate).Num("brightness", a.brightness).Num("contrast", a.contrast);
    c.Num("saturation", a.saturation).Num("hue", a.hue);
    std::string rest;
    for (uint32_t w : a.reserved) rest += (rest.empty() ? "" : " ") + std::to_string(w);
    c.Str("reserved", rest.c_str());
}

void OpenFields(CCall& c, const OutputOpenAttr& a) {
    c.Num("mode", a.mode).Num("channel_mask", a.channel_mask).Hex("source", a.source);
}

void CcAttrFields(CCall& c, const CcAttr& a) {
    c.Num("source", a.source).Num("data_type", a.data_type).Num("analog_mode", a.analog_mode);
    c.Num("digital_mode", a.digital_mode);
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
    c.Out("initResult", initResult).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().AvInit(initResult, params);
        if (r == 0) c.Num("initResult", *initResult);
        return r;
    });
}

int av_create(uint32_t* avHandle, const AvCreateAttr* attr, const IpInputParams* params) {
    CCall c("av_create");
    c.Out("avHandle", avHandle);
    c.Rec("attr", attr, [](CCall& r, const AvCreateAttr& a) { r.Num("source_type", a.source_type).Num("flags", a.flags); });
    c.Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().AvCreate(avHandle, attr);
        if (r == 0) c.Hex("avHandle", *avHandle);
        return r;
    });
}

int av_prepare(const char* address) {
    return CCall("av_prepare").Str("address", address).Run([&] { return CBoard::Instance().AvPrepare(address); });
}

int av_set_event_config(uint32_t avHandle, const AvEventConfig* config, uint32_t eventClass) {
    CCall c("av_set_event_config");
    c.Hex("handle", avHandle);
    c.Rec("config", config, [](CCall& r, const AvEventConfig& e) {
        r.Num("event_class", e.eventClass).Str("callback", e.callback ? "set" : "NULL").Num("enable", e.enable);
    });
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
    c.Hex("handle", avHandle).Rec("settings", settings, SettingsFields);
    return c.Run([&] { return CBoard::Instance().AvSetConfig(avHandle, settings); });
}

int av_get_config(uint32_t avHandle, _AV_SETTING_S* settings) {
    CCall c("av_get_config");
    c.Hex("handle", avHandle).Out("settings", settings);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetConfig(avHandle, settings);
        if (r == 0) c.Rec("settings", settings, SettingsFields);
        return r;
    });
}

int av_search_progInfo(_AV_SETTING_S* settings, const IpInputParams* params) {
    CCall c("av_search_progInfo");
    c.Out("settings", settings).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().AvSearchProgInfo(settings);
        if (r == 0) c.Rec("settings", settings, SettingsFields);
        return r;
    });
}

int av_get_status_info(uint32_t avHandle, AvStatusInfo* status) {
    CCall c("av_get_status_info");
    c.Hex("handle", avHandle).Out("status", status);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetStatusInfo(avHandle, status);
        if (r != 0) return r;
        c.Rec("status", status, [](CCall& s, const AvStatusInfo& st) {
            s.Num("video_pid", st.video_pid).Num("audio_pid", st.audio_pid).Num("pcr_pid", st.pcr_pid);
            s.Num("width", st.width).Num("height", st.height).Num("frames", st.video_frame_count);
            s.Num("audio_pts", static_cast<long long>(st.audio_pts));
        });
        return r;
    });
}

int av_get_stream_info(uint32_t avHandle, AvStreamInfo* info) {
    CCall c("av_get_stream_info");
    c.Hex("handle", avHandle).Out("info", info);
    return c.Run([&] {
        const int r = CBoard::Instance().AvGetStreamInfo(avHandle, info);
        if (r != 0) return r;
        c.Rec("info", info, [](CCall& i, const AvStreamInfo& s) {
            i.Num("video_count", s.video_count).Num("audio_count", s.audio_count).Num("service_count", s.service_count);
        });
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
    CCall c("vout_init");
    c.Out("info", info).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutInit(info);
        if (r == 0) c.Rec("info", info, [](CCall& i, const VoutInitInfo& v) {
            i.Hex("version", v.version).Num("max_channels", v.max_channels).Num("max_windows", v.max_windows);
        });
        return r;
    });
}

int vout_deinit(void) {
    return CCall("vout_deinit").Run([] { return CBoard::Instance().VoutDeinit(); });
}

int vout_open_channel(uint32_t* voutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    CCall c("vout_open_channel");
    c.Out("voutHandle", voutHandle).Rec("attr", attr, OpenFields).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutOpenChannel(voutHandle, attr);
        if (r == 0) c.Hex("voutHandle", *voutHandle);
        return r;
    });
}

int vout_close_channel(uint32_t voutHandle, uint32_t flags) {
    return CCall("vout_close_channel").Hex("handle", voutHandle).Num("flags", flags).Run([&] {
        return CBoard::Instance().VoutCloseChannel(voutHandle);
    });
}

int vout_display_get(uint32_t voutHandle, VoutDisplayAttr* attr, const IpInputParams* params) {
    CCall c("vout_display_get");
    c.Hex("handle", voutHandle).Out("attr", attr).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutDisplayGet(voutHandle, attr);
        if (r == 0) c.Rec("attr", attr, DisplayFields);
        return r;
    });
}

int vout_display_set(uint32_t voutHandle, const VoutDisplayAttr* attr, const IpInputParams* params) {
    CCall c("vout_display_set");
    c.Hex("handle", voutHandle).Rec("attr", attr, DisplayFields).Rec("input", params, IpFields);
    return c.Run([&] { return CBoard::Instance().VoutDisplaySet(voutHandle, attr); });
}

int vout_window_create(uint32_t voutHandle, uint32_t* windowHandle, uint32_t flags) {
    CCall c("vout_window_create");
    c.Hex("vout", voutHandle).Out("windowHandle", windowHandle).Num("flags", flags);
    return c.Run([&] {
        const int r = CBoard::Instance().VoutWindowCreate(voutHandle, windowHandle);
        if (r == 0) c.Hex("windowHandle", *windowHandle);
        return r;
    });
}

int vout_window_destroy(uint32_t voutHandle, uint32_t windowHandle, uint32_t flags) {
    return CCall("vout_window_destroy").Hex("vout", voutHandle).Hex("window", windowHandle).Num("flags", flags).Run([&] {
        return CBoard::Instance().VoutWindowDestroy(voutHandle, windowHandle);
    });
}

int vout_window_attach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    CCall c("vout_window_attach_input");
    c.Hex("window", windowHandle).Num("input_type", inputType).Hex("av", avHandle);
    return c.Run([&] { return CBoard::Instance().VoutWindowAttach(windowHandle, avHandle, true); });
}

int vout_window_detach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle) {
    CCall c("vout_window_detach_input");
    c.Hex("window", windowHandle).Num("input_type", inputType).Hex("av", avHandle);
    return c.Run([&] { return CBoard::Instance().VoutWindowAttach(windowHandle, avHandle, false); });
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
    CCall c("aout_init");
    c.Out("info", info).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().AoutInit(info);
        if (r == 0) c.Rec("info", info, [](CCall& i, const AoutInitInfo& a) {
            i.Hex("version", a.version).Num("max_outputs", a.max_outputs).Num("max_tracks", a.max_tracks);
        });
        return r;
    });
}

int aout_deinit(uint32_t flags) {
    return CCall("aout_deinit").Num("flags", flags).Run([] { return CBoard::Instance().AoutDeinit(); });
}

int aout_open(uint32_t* aoutHandle, const OutputOpenAttr* attr, const IpInputParams* params) {
    CCall c("aout_open");
    c.Out("aoutHandle", aoutHandle).Rec("attr", attr, OpenFields).Rec("input", params, IpFields);
    return c.Run([&] {
        const int r = CBoard::Instance().AoutOpen(aoutHandle, attr);
        if (r == 0) c.Hex("aoutHandle", *aoutHandle);
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
    c.Hex("aout", aoutHandle).Out("trackHandle", trackHandle).Num("flags", flags);
    return c.Run([&] {
        const int r = CBoard::Instance().AoutTrackCreate(aoutHandle, trackHandle);
        if (r == 0) c.Hex("trackHandle", *trackHandle);
        return r;
    });
}

int aout_track_destroy(uint32_t trackHandle) {
    return CCall("aout_track_destroy").Hex("track", trackHandle).Run([&] {
        return CBoard::Instance().AoutTrackDestroy(trackHandle);
    });
}

int aout_track_attach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    CCall c("aout_track_attach_input");
    c.Hex("track", trackHandle).Num("input_type", inputType).Hex("av", avHandle);
    return c.Run([&] { return CBoard::Instance().AoutTrackAttach(trackHandle, avHandle, true); });
}

int aout_track_detach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle) {
    CCall c("aout_track_detach_input");
    c.Hex("track", trackHandle).Num("input_type", inputType).Hex("av", avHandle);
    return c.Run([&] { return CBoard::Instance().AoutTrackAttach(trackHandle, avHandle, false); });
}

// ---- closed captions

int cc_init(const CcInitParam* param) {
    CCall c("cc_init");
    c.Rec("param", param, [](CCall& r, const CcInitParam& p) { r.Num("mode", p.mode); });
    return c.Run([&] { return CBoard::Instance().CcInit(param); });
}

int cc_deinit(void) {
    return CCall("cc_deinit").Run([] { return CBoard::Instance().CcDeinit(); });
}

int cc_creat(const CcCreateParam* param) {
    CCall c("cc_creat");
    c.Rec("param", param, [](CCall& r, const CcCreateParam& p) { r.Num("source", p.source); });
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
    c.Out("attr", attr);
    return c.Run([&] {
        const int r = CBoard::Instance().CcGetAttr(attr);
        if (r == 0) c.Rec("attr", attr, CcAttrFields);
        return r;
    });
}

int cc_setAttr(const CcAttr* attr) {
    CCall c("cc_setAttr");
    c.Rec("attr", attr, CcAttrFields);
    // The source selects which mode word the engine runs on; that word must be 3.
    if (attr && attr->source == 1 && attr->digital_mode != 3)
        c.Reject(stbsim::kErrBadRecord, "attr.digital_mode=" + std::to_string(attr->digital_mode) +
                                            ": the board takes 3 with source 1");
    if (attr && attr->source == 0 && attr->analog_mode != 3)
        c.Reject(stbsim::kErrBadRecord, "attr.analog_mode=" + std::to_string(attr->analog_mode) +
                                            ": the board takes 3 with source 0");
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
