#!/usr/bin/env bash
# Compiles the ```c blocks of the host guide's "Using the C library" section as
# one C99 program (gcc -Wall -Wextra -Wpedantic -Werror, against host/include and
# this build's libstbavhost.a) with a small harness appended, and runs it: the
# blocks must build and send and receive what they say.
#   guide_blocks_test.sh SOURCE_DIR LIBRARY
set -euo pipefail
SRC=$1
LIB=$2
WORK=$(mktemp -d /tmp/stbav-guide-c-XXXXXX)
trap 'rm -rf "$WORK"' EXIT
awk '/^## Using the C library/ {in_section = 1; next}
     /^## / {in_section = 0}
     in_section && /^```c$/ {in_block = 1; blocks++; next}
     in_block && /^```$/ {in_block = 0; next}
     in_block {print}
     END {if (blocks < 2) exit 1}' "$SRC/docs/host-guide.md" >"$WORK/guide.c" ||
  { echo "guide_blocks_test: fewer than two C blocks in \"Using the C library\""; exit 1; }
cat >>"$WORK/guide.c" <<'HARNESS'

/* Harness: the line is a buffer; what the guide's code sends is decoded back. */
static uint8_t line[4 * STBAV_MAX_FRAME];
static size_t line_len;
int uart_write(const uint8_t *bytes, size_t n) {
    size_t i;
    for (i = 0; i < n; ++i) line[line_len++] = bytes[i];
    return 0;
}
int main(void) {
    /* videoWidth (opId 0x010F, low byte first, so 0F goes as 12 2F) = 1920, split inside the escape */
    static const uint8_t width_report[] = {0x0F, 0x00, 0x12, 0x2F, 0x01, 0x01, 0x00, 0x02, 0x07, 0x80, 0x10};
    stbav_decoder_init(&rx);
    if (set_1080p50() != 0 || line_len == 0) return 1;
    on_received(line, line_len); /* three operations, none of them videoWidth */
    if (rx.frames != 3 || rx.bad_frames != 0 || picture_width != 0) return 2;
    on_received(width_report, 3);
    on_received(width_report + 3, sizeof width_report - 3);
    return picture_width == 1920 ? 0 : 3;
}
HARNESS
cc -std=c99 -Wall -Wextra -Wpedantic -Werror -DSTBAV_HOST_NAMES -I"$SRC/host/include" "$WORK/guide.c" "$LIB" \
  -o "$WORK/guide"
"$WORK/guide" || { echo "guide_blocks_test: the guide's code ran wrong (status $?)"; exit 1; }
echo "guide_blocks_test: the C blocks of \"Using the C library\" build and run"
