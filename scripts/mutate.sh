#!/usr/bin/env bash
# Mutation check of the platform adapters: puts one wrong argument at a time
# into platform/*.cpp (a scratch copy of the tree), rebuilds what the change
# touches, runs the tests that guard the platform calls, and reports which test
# caught it. Every mutation must be caught. Not part of `make test` or CI.
#
#   scripts/mutate.sh              all mutations
#   scripts/mutate.sh 3 7          only mutations 3 and 7 (numbers as listed)
#   STBAV_MUTATE_DIR=/path ...     scratch folder (default /tmp/stbav-mutate-$USER);
#                                  kept between runs, so its build is reused
set -u
SRC=$(cd "$(dirname "$0")/.." && pwd)
SCRATCH=${STBAV_MUTATE_DIR:-/tmp/stbav-mutate-${USER:-$(id -un)}}
BUILD=$SCRATCH/build/dev
TARGETS="stbavd stb_module platform_test golden_journal_test e2e_test"
# In the order they run; the first that fails catches the mutation.
TESTS="tests/platform/platform_test tests/e2e/golden_journal_test tests/e2e/e2e_test"

# file|sed script (one substitution, '#' as delimiter)|what is wrong
MUTATIONS=$(cat <<'EOF'
stb_decoder_chip.cpp|s#system_init(0)#system_init(1)#|system_init mode 1 instead of 0
stb_decoder_chip.cpp|s#av_init(&m_AvInitResult, &m_IpParams)#av_init(\&m_AvInitResult, nullptr)#|av_init without the input parameters
stb_decoder_chip.cpp|s#kPlayerSourceType = 4#kPlayerSourceType = 3#|av_create attribute word 0 is 3
stb_decoder_chip.cpp|s#AvCreateAttr{kPlayerSourceType, 0}#AvCreateAttr{kPlayerSourceType, 1}#|av_create attribute word 1 is 1
stb_decoder_chip.cpp|s#av_create(&m_AvHandle, &m_AvCreateAttr, &m_IpParams)#av_create(\&m_AvHandle, \&m_AvCreateAttr, nullptr)#|av_create without the input parameters
stb_decoder_chip.cpp|s#aout_init(&m_AoutInit, &m_IpParams)#aout_init(\&m_AoutInit, nullptr)#|aout_init without the input parameters
stb_decoder_chip.cpp|s#m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1#m_AoutOpenAttr = OutputOpenAttr{2, -1#|aout_open attribute word 0 is 2
stb_decoder_chip.cpp|s#m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1#m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, 0#|aout_open attribute word 1 is 0
stb_decoder_chip.cpp|s#m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, m_AvHandle}#m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, 0}#|aout_open attribute word 2 is not the player
stb_decoder_chip.cpp|s#aout_open(&m_AoutHandle, &m_AoutOpenAttr, &m_IpParams)#aout_open(\&m_AoutHandle, \&m_AoutOpenAttr, nullptr)#|aout_open without the input parameters
stb_decoder_chip.cpp|s#vout_init(&m_VoutInit, &m_IpParams)#vout_init(\&m_VoutInit, nullptr)#|vout_init without the input parameters
stb_decoder_chip.cpp|s#m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1#m_VoutOpenAttr = OutputOpenAttr{0, -1#|vout_open_channel attribute word 0 is 0
stb_decoder_chip.cpp|s#m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1#m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, 1#|vout_open_channel attribute word 1 is 1
stb_decoder_chip.cpp|s#m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, m_AvHandle}#m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, m_AvHandle + 1}#|vout_open_channel attribute word 2 is not the player
stb_decoder_chip.cpp|s#vout_open_channel(&m_VoutHandle, &m_VoutOpenAttr, &m_IpParams)#vout_open_channel(\&m_VoutHandle, \&m_VoutOpenAttr, nullptr)#|vout_open_channel without the input parameters
stb_decoder_chip.cpp|s#vout_display_get(m_VoutHandle, &m_DisplayAttr, &m_IpParams)#vout_display_get(m_VoutHandle, \&m_DisplayAttr, nullptr)#|vout_display_get at bring-up without the input parameters
stb_decoder_chip.cpp|s#vout_display_set(m_VoutHandle, &m_DisplayAttr, &m_IpParams)#vout_display_set(m_VoutHandle, \&m_DisplayAttr, nullptr)#|vout_display_set at bring-up without the input parameters
stb_decoder_chip.cpp|s#kDisplayFormat1080i = VOUT_FORMAT_1080I#kDisplayFormat1080i = VOUT_FORMAT_1080P#|bring-up display format 12 instead of 11
stb_decoder_chip.cpp|s#kDisplayRate50 = 64#kDisplayRate50 = 32#|bring-up display rate 32 instead of 64
stb_decoder_chip.cpp|s#vout_window_create(m_VoutHandle, &m_WindowHandle, 0)#vout_window_create(m_VoutHandle, \&m_WindowHandle, 1)#|vout_window_create flags 1
stb_decoder_chip.cpp|s#vout_window_attach_input(m_WindowHandle, 0, m_AvHandle)#vout_window_attach_input(m_WindowHandle, 1, m_AvHandle)#|vout_window_attach_input input type 1
stb_decoder_chip.cpp|s#aout_track_create(m_AoutHandle, &m_TrackHandle, 0)#aout_track_create(m_AoutHandle, \&m_TrackHandle, 1)#|aout_track_create flags 1
stb_decoder_chip.cpp|s#aout_track_attach_input(m_TrackHandle, 0, m_AvHandle)#aout_track_attach_input(m_TrackHandle, 1, m_AvHandle)#|aout_track_attach_input input type 1
stb_decoder_chip.cpp|s#aout_track_detach_input(m_TrackHandle, 0, m_AvHandle)#aout_track_detach_input(m_TrackHandle, 1, m_AvHandle)#|aout_track_detach_input input type 1
stb_decoder_chip.cpp|s#vout_window_detach_input(m_WindowHandle, 0, m_AvHandle)#vout_window_detach_input(m_WindowHandle, 1, m_AvHandle)#|vout_window_detach_input input type 1
stb_decoder_chip.cpp|s#vout_window_destroy(m_VoutHandle, m_WindowHandle, 0)#vout_window_destroy(m_VoutHandle, m_WindowHandle, 1)#|vout_window_destroy flags 1
stb_decoder_chip.cpp|s#vout_close_channel(m_VoutHandle, 0)#vout_close_channel(m_VoutHandle, 1)#|vout_close_channel flags 1
stb_decoder_chip.cpp|s#aout_close(m_AoutHandle, 0)#aout_close(m_AoutHandle, 1)#|aout_close flags 1
stb_decoder_chip.cpp|s#aout_deinit(0)#aout_deinit(1)#|aout_deinit flags 1
stb_decoder_chip.cpp|s#av_set_event_config(m_AvHandle, &m_EventConfig, kEventClassVideo)#av_set_event_config(m_AvHandle, \&m_EventConfig, 1)#|av_set_event_config third argument 1
stb_decoder_chip.cpp|s#AvEventConfig{kEventClassVideo,#AvEventConfig{1,#|event configuration class word 1
stb_decoder_chip.cpp|s#&StbVideoDecoder::AvEventCallback, 1}#\&StbVideoDecoder::AvEventCallback, 0}#|event configuration enable word 0
stb_decoder_chip.cpp|s#int((ip >> 24) & 0xFF), int((ip >> 16) & 0xFF)#int((ip >> 16) \& 0xFF), int((ip >> 24) \& 0xFF)#|av_prepare address with two bytes swapped
stb_decoder_chip.cpp|s#system_upgrade(package.c_str())#system_upgrade("/sdcard/update.zip")#|system_upgrade path without the root folder
stb_demux.cpp|s#av_reset(m_AvHandle, 1)#av_reset(m_AvHandle, 0)#|av_reset mode 0
stb_demux.cpp|s#{VIDEO_TYPE_H264, 5,#{VIDEO_TYPE_H264, 6,#|H.264 configured as video type 6
stb_demux.cpp|s#{AUDIO_TYPE_MPEG2, 1,#{AUDIO_TYPE_MPEG2, 0,#|MPEG-2 audio configured as audio type 0
stb_audio_output.cpp|s#aout_set_mute(m_AoutHandle, AOUT_DEVICE_ANALOG, mute)#aout_set_mute(m_AoutHandle, AOUT_DEVICE_HDMI, mute)#|aout_set_mute on device 2
stb_audio_output.cpp|s#aout_set_mute(m_AoutHandle, AOUT_DEVICE_ANALOG, mute)#aout_set_mute(m_AoutHandle, AOUT_DEVICE_ANALOG, !mute)#|aout_set_mute inverted
stb_audio_output.cpp|s#SetVolume(AOUT_DEVICE_ANALOG, false, dB)#SetVolume(AOUT_DEVICE_SPDIF, false, dB)#|aout_set_volume on device 4
stb_audio_output.cpp|s#passed = value - kMaxDb#passed = value#|aout_set_volume level without the 10 dB offset
stb_video_output.cpp|s#kRate50 = 64#kRate50 = 128#|display rate for 50 Hz is 128
stb_closed_caption.cpp|s#kCcInitMode = 2#kCcInitMode = 1#|cc_init mode 1
stb_closed_caption.cpp|s#kCcSourceDigital = 1#kCcSourceDigital = 2#|cc_creat source 2 for digital captions
stb_closed_caption.cpp|s#analog ? 0u#analog ? 1u#|cc_creat source 1 for line-21 captions
stb_closed_caption.cpp|/r = cc_set_window/s#cc_set_window(0, 0,#cc_set_window(0, 8,#|cc_set_window y 8 at bring-up
stb_closed_caption.cpp|/r = cc_set_window/s#cc_set_window(0, 0,#cc_set_window(8, 0,#|cc_set_window x 8 at bring-up
stb_closed_caption.cpp|s#kWindowWidth = 1280#kWindowWidth = 1920#|cc_set_window width 1920
stb_closed_caption.cpp|s#kWindowHeight = 720#kWindowHeight = 576#|cc_set_window height 576
stb_closed_caption.cpp|0,/attr.source = 1;/s#attr.source = 1;#attr.source = 0;#|bring-up caption attribute +0 is 0
stb_closed_caption.cpp|0,/attr.digital_mode = 3;/s#attr.digital_mode = 3;#attr.digital_mode = 2;#|bring-up caption attribute +52 is 2
stb_closed_caption.cpp|0,/attr.data_type = 1;/s#attr.data_type = 1;#attr.data_type = 2;#|bring-up caption attribute +4 is 2
stb_closed_caption.cpp|s#attr.analog_mode = 3;#attr.analog_mode = 1;#|line-21 caption attribute +28 is 1
stb_closed_caption.cpp|s#static_cast<uint32_t>(dataType) - 1#static_cast<uint32_t>(dataType)#|line-21 caption data type not less one
stb_closed_caption.cpp|s#attr.data_type = dataType;#attr.data_type = dataType + 1;#|digital caption data type plus one
stb_closed_caption.cpp|s#cc_send_VBI_enable(on)#cc_send_VBI_enable(!on)#|cc_send_VBI_enable inverted
stb_closed_caption.cpp|s#cc_show_subtitle_enable(on)#cc_show_subtitle_enable(!on)#|cc_show_subtitle_enable inverted
EOF
)

# Copies the tree (tracked and new files, not build/) into the scratch folder,
# touching only files that differ so the scratch build stays warm.
sync_tree() {
    mkdir -p "$SCRATCH"
    (cd "$SRC" && git ls-files -co --exclude-standard) | grep -v '^build/' | while read -r f; do
        [ -f "$SRC/$f" ] || continue
        if ! cmp -s "$SRC/$f" "$SCRATCH/$f"; then
            mkdir -p "$(dirname "$SCRATCH/$f")"
            cp "$SRC/$f" "$SCRATCH/$f"
        fi
    done
}

build() { cmake --build "$BUILD" -j2 --target $TARGETS >"$SCRATCH/build.log" 2>&1; }

# Runs the guarding tests; prints "TEST (first failing case)" of the first that fails.
first_catch() {
    local t out
    for t in $TESTS; do
        out=$(cd "$BUILD" && timeout 600 "./$t" 2>&1)
        if [ $? -ne 0 ]; then
            local case_name
            case_name=$(printf '%s\n' "$out" | sed -n 's/^\[  FAILED  \] \([^ ]*\).*/\1/p' | head -1)
            echo "$(basename "$t") ${case_name:-"(crashed or timed out)"}"
            return 0
        fi
    done
    return 1
}

sync_tree
cd "$SCRATCH" || exit 1
[ -f "$BUILD/build.ninja" ] || cmake --preset dev >/dev/null || exit 1
echo "scratch tree: $SCRATCH"
if ! build; then echo "the unmutated tree does not build (see $SCRATCH/build.log)"; exit 1; fi
if caught=$(first_catch); then echo "the unmutated tree fails: $caught"; exit 1; fi

tried=0 caught_count=0 n=0 missed=""
while IFS='|' read -r file script label; do
    n=$((n + 1))
    if [ $# -gt 0 ] && ! printf ' %s ' "$@" | grep -q " $n "; then continue; fi
    path="platform/$file"
    cp "$SRC/$path" "$SCRATCH/$path"
    sed -i -e "$script" "$SCRATCH/$path"
    if cmp -s "$SRC/$path" "$SCRATCH/$path"; then
        printf '%2d  NOT APPLIED  %s (%s: no match)\n' "$n" "$label" "$file"
        missed="$missed $n"
        continue
    fi
    tried=$((tried + 1))
    if ! build; then
        result="caught by the compiler"
        caught_count=$((caught_count + 1))
    elif result=$(first_catch); then
        result="caught by $result"
        caught_count=$((caught_count + 1))
    else
        result="NOT CAUGHT"
        missed="$missed $n"
    fi
    printf '%2d  %-58s %s\n' "$n" "$label" "$result"
    cp "$SRC/$path" "$SCRATCH/$path"  # back to the original, with a new time stamp
done <<<"$MUTATIONS"

echo "mutations tried: $tried, caught: $caught_count ($SECONDS s)"
[ -z "$missed" ] || { echo "not caught or not applied:$missed"; exit 1; }
