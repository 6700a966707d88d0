// The table of arguments the virtual board accepts (see sim/README.md, "What
// the board accepts"); values fixed by the daemon's platform contract are the
// only ones taken.
#include "sim/arg_rules.h"

#include <algorithm>

#include "sim/stbsim.h"

namespace stbsim {

namespace {

constexpr int kNull = kErrNullPointer, kMode = kErrBadMode, kRecord = kErrBadRecord, kParam = kErrInvalidParam;

ArgRule NonNull(const char* f, const char* key) { return {f, key, ArgRule::kNonNull, {}, kNull, "not NULL"}; }
ArgRule OneOf(const char* f, const char* key, std::vector<long long> v, int code, const char* accepts) {
    return {f, key, ArgRule::kOneOf, std::move(v), code, accepts};
}
ArgRule Range(const char* f, const char* key, long long lo, long long hi, int code, const char* accepts) {
    return {f, key, ArgRule::kRange, {lo, hi}, code, accepts};
}

std::vector<ArgRule> MakeRules() {
    const std::vector<long long> kFormats = {1, 2, 3, 4, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    const std::vector<long long> kRates = {1, 2, 4, 8, 16, 32, 64, 128, 256};
    const std::vector<long long> kBool = {0, 1};
    return {
        OneOf("system_init", "mode", {0}, kMode, "0"),
        NonNull("system_upgrade", "path"),
        NonNull("av_init", "initResult"),
        NonNull("av_init", "input"),
        NonNull("av_create", "avHandle"),
        NonNull("av_create", "attr"),
        OneOf("av_create", "attr.source_type", {4}, kRecord, "4"),
        OneOf("av_create", "attr.flags", {0}, kRecord, "0"),
        NonNull("av_create", "input"),
        NonNull("av_prepare", "address"),
        NonNull("av_set_event_config", "config"),
        OneOf("av_set_event_config", "config.event_class", {2}, kRecord, "2"),
        OneOf("av_set_event_config", "config.enable", kBool, kRecord, "0 or 1 (1 needs a callback)"),
        OneOf("av_set_event_config", "event_class", {2}, kMode, "2"),
        OneOf("av_reset", "mode", {1}, kMode, "1"),
        NonNull("av_set_config", "settings"),
        OneOf("av_set_config", "settings.video_type", {0, 2, 5, 38, 44}, kRecord, "0, 2, 5, 38, 44"),
        OneOf("av_set_config", "settings.audio_type", {0, 1, 2, 3, 4, 5, 53}, kRecord, "0 to 5, 53"),
        Range("av_set_config", "settings.pcr_pid", 0, 0x1fff, kRecord, "0 to 0x1fff"),
        Range("av_set_config", "settings.audio_pid", 0, 0x1fff, kRecord, "0 to 0x1fff"),
        Range("av_set_config", "settings.video_pid", 0, 0x1fff, kRecord, "0 to 0x1fff"),
        NonNull("av_get_config", "settings"),
        NonNull("av_search_progInfo", "settings"),
        NonNull("av_search_progInfo", "input"),
        NonNull("av_get_status_info", "status"),
        NonNull("av_get_stream_info", "info"),
        NonNull("vout_init", "info"),
        NonNull("vout_init", "input"),
        NonNull("vout_open_channel", "voutHandle"),
        NonNull("vout_open_channel", "attr"),
        OneOf("vout_open_channel", "attr.mode", {1}, kRecord, "1"),
        OneOf("vout_open_channel", "attr.channel_mask", {-1}, kRecord, "-1"),
        NonNull("vout_open_channel", "input"),
        OneOf("vout_close_channel", "flags", {0}, kMode, "0"),
        NonNull("vout_display_get", "attr"),
        NonNull("vout_display_set", "attr"),
        OneOf("vout_display_set", "attr.format", kFormats, kRecord, "1 to 4, 6 to 14"),
        OneOf("vout_display_set", "attr.rate", kRates, kRecord, "1, 2, 4, ... 256"),
        Range("vout_display_set", "attr.brightness", 0, 100, kRecord, "0 to 100"),
        Range("vout_display_set", "attr.contrast", 0, 100, kRecord, "0 to 100"),
        Range("vout_display_set", "attr.saturation", 0, 100, kRecord, "0 to 100"),
        Range("vout_display_set", "attr.hue", 0, 100, kRecord, "0 to 100"),
        NonNull("vout_window_create", "windowHandle"),
        OneOf("vout_window_create", "flags", {0}, kMode, "0"),
        OneOf("vout_window_destroy", "flags", {0}, kMode, "0"),
        OneOf("vout_window_attach_input", "input_type", {0}, kMode, "0"),
        OneOf("vout_window_detach_input", "input_type", {0}, kMode, "0"),
        NonNull("aout_init", "info"),
        NonNull("aout_init", "input"),
        OneOf("aout_deinit", "flags", {0}, kMode, "0"),
        NonNull("aout_open", "aoutHandle"),
        NonNull("aout_open", "attr"),
        OneOf("aout_open", "attr.mode", {1}, kRecord, "1"),
        OneOf("aout_open", "attr.channel_mask", {-1}, kRecord, "-1"),
        NonNull("aout_open", "input"),
        OneOf("aout_close", "flags", {0}, kMode, "0"),
        OneOf("aout_set_volume", "device", {1}, kParam, "1 (analog)"),
        Range("aout_set_volume", "value", -70, 100, kParam, "0 to 100 linear, -70 to 0 dB"),
        OneOf("aout_set_mute", "device", {1}, kParam, "1 (analog)"),
        NonNull("aout_track_create", "trackHandle"),
        OneOf("aout_track_create", "flags", {0}, kMode, "0"),
        OneOf("aout_track_attach_input", "input_type", {0}, kMode, "0"),
        OneOf("aout_track_detach_input", "input_type", {0}, kMode, "0"),
        NonNull("cc_init", "param"),
        OneOf("cc_init", "param.mode", {2}, kRecord, "2"),
        NonNull("cc_creat", "param"),
        OneOf("cc_creat", "param.source", kBool, kRecord, "0 (analog) or 1 (digital)"),
        OneOf("cc_set_window", "x", {0}, kParam, "0"),
        OneOf("cc_set_window", "y", {0}, kParam, "0"),
        OneOf("cc_set_window", "width", {1280}, kParam, "1280"),
        OneOf("cc_set_window", "height", {720}, kParam, "720"),
        NonNull("cc_getAttr", "attr"),
        NonNull("cc_setAttr", "attr"),
        OneOf("cc_setAttr", "attr.source", kBool, kRecord, "0 or 1, with mode word +28 (0) or +52 (1) at 3"),
    };
}

bool Holds(const ArgRule& r, long long v) {
    switch (r.kind) {
        case ArgRule::kNonNull: return v != 0;
        case ArgRule::kOneOf: return std::find(r.values.begin(), r.values.end(), v) != r.values.end();
        case ArgRule::kRange: return v >= r.values[0] && v <= r.values[1];
    }
    return false;
}

}  // namespace

const std::vector<ArgRule>& ArgRules() {
    static const std::vector<ArgRule> rules = MakeRules();
    return rules;
}

int CheckArgs(const std::string& function, const std::vector<CallArg>& args, std::string* reason) {
    for (const ArgRule& r : ArgRules()) {
        if (function != r.function) continue;
        for (const CallArg& a : args) {
            if (a.key != r.key || Holds(r, a.value)) continue;
            if (reason) {
                const std::string shown = r.kind == ArgRule::kNonNull ? "NULL" : std::to_string(a.value);
                *reason = a.key + "=" + shown + ": the board takes " + r.accepts;
            }
            return r.code;
        }
    }
    return 0;
}

}  // namespace stbsim
