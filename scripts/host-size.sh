#!/usr/bin/env bash
# The C host library (host/) built for a Cortex-M0 with Debian's bare-metal
# compiler (-Os -mthumb -mcpu=cortex-m0), without and with the name table
# (STBAV_HOST_NAMES): prints .text/.rodata/.data/.bss per object and in all, and
# fails when the codec has .data or .bss of its own, when its flash (text and
# read-only data of encoder, decoder and dictionary, without names) reaches
# 2048 bytes, when the decoder state reaches 300 bytes, or when nm shows a call
# to the heap or to stdio.
#   scripts/host-size.sh [BUILD_DIR]      (default build/host-size)
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
out="${1:-$here/build/host-size}"
cc=arm-none-eabi-gcc
command -v "$cc" >/dev/null || { echo "host-size: $cc missing; install gcc-arm-none-eabi first with 'sudo make deps'" >&2; exit 1; }
flags=(-std=c99 -Os -mthumb -mcpu=cortex-m0 -ffunction-sections -fdata-sections -Wall -Wextra -Wpedantic -Werror
       -I"$here/host/include")
codec=(stbav_encode stbav_decode stbav_dictionary)
status=0
for variant in plain names; do
  dir="$out/$variant"
  mkdir -p "$dir"
  extra=()
  [ "$variant" = names ] && extra=(-DSTBAV_HOST_NAMES)
  for src in "$here"/host/src/*.c; do
    "$cc" "${flags[@]}" "${extra[@]}" -c "$src" -o "$dir/$(basename "${src%.c}").o"
  done
  rm -f "$dir/libstbavhost.a"
  arm-none-eabi-ar rcs "$dir/libstbavhost.a" "$dir"/*.o
  echo "== Cortex-M0, -Os -mthumb, $([ "$variant" = names ] && echo "with the name table" || echo "without names")"
  printf '%-22s %7s %7s %7s %7s\n' object .text .rodata .data .bss
  total_codec=0
  for o in "$dir"/*.o; do
    read -r text ro data bss < <(arm-none-eabi-size -A "$o" | awk '
      $1 ~ /^\.text/ {t += $2} $1 ~ /^\.rodata/ {r += $2} $1 ~ /^\.data/ {d += $2} $1 ~ /^\.bss/ {b += $2}
      END {print t+0, r+0, d+0, b+0}')
    name="$(basename "${o%.o}")"
    printf '%-22s %7d %7d %7d %7d\n' "$name" "$text" "$ro" "$data" "$bss"
    for c in "${codec[@]}"; do
      if [ "$c" = "$name" ]; then
        total_codec=$((total_codec + text + ro))
        if [ $((data + bss)) -ne 0 ]; then echo "host-size: $name has .data/.bss ($data/$bss bytes)"; status=1; fi
      fi
    done
  done
  echo "codec (encoder + decoder + dictionary) flash: $total_codec bytes"
  if [ "$variant" = plain ] && [ "$total_codec" -ge 2048 ]; then
    echo "host-size: the codec takes $total_codec bytes of flash without names (goal: under 2048)"; status=1
  fi
  # No heap, no stdio: nothing of the kind among the undefined symbols.
  # (calls between the library's own objects are left out.)
  defined="$(arm-none-eabi-nm -g --defined-only "$dir"/*.o | awk 'NF == 3 {print $3}' | sort -u)"
  undefined="$(arm-none-eabi-nm -u "$dir"/*.o | awk 'NF == 2 {print $2}' | sort -u | comm -23 - <(echo "$defined"))"
  echo "symbols taken from outside the library: $(echo ${undefined:-none})"
  if grep -Ex '(malloc|calloc|realloc|free|_sbrk|.*printf|puts|putchar|fputs|fwrite|fopen|fclose|abort|exit)' \
      <<<"$undefined"; then
    echo "host-size: the library calls the heap or stdio"; status=1
  fi
  # Objects in .data/.bss, by nm (none expected in any object).
  if arm-none-eabi-nm "$dir"/*.o | grep -E ' [bBdD] '; then echo "host-size: data or bss objects above"; status=1; fi
done
# The decoder's state: sizeof as the target compiler lays it out.
printf '#include "stbav/stbav_codec.h"\nchar decoder_size[sizeof(stbav_decoder)];\n' >"$out/sizeof.c"
"$cc" "${flags[@]}" -c "$out/sizeof.c" -o "$out/sizeof.o"
state=$((16#$(arm-none-eabi-nm -S "$out/sizeof.o" | awk '/decoder_size/ {print $2}')))
echo "decoder state (sizeof stbav_decoder on Cortex-M0): $state bytes"
if [ "$state" -ge 300 ]; then echo "host-size: decoder state $state bytes (goal: under 300)"; status=1; fi
exit $status
