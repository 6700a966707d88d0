#!/usr/bin/env bash
# Writes the MPEG-TS files that match the sample scenarios in etc/scenarios/
# (same services, PIDs, codecs, sizes, scan, rates and aspect), made with ffmpeg
# from its test sources: one second each, tiny bit rates. Files that are already
# there are kept (delete them to make them anew).
#
#   scripts/make-streams.sh [OUTDIR]      (default build/streams; `make streams`)
set -euo pipefail

cd "$(dirname "$0")/.."
OUT=${1:-build/streams}
command -v ffmpeg >/dev/null || { echo "make-streams: ffmpeg is needed (make deps)" >&2; exit 1; }
mkdir -p "$OUT"

# stream NAME FFMPEG-ARGUMENTS...: makes OUT/NAME.ts unless it is there.
stream() {
  local name=$1 file=$OUT/$1.ts
  shift
  if [ -s "$file" ]; then
    echo "$file (kept)"
    return
  fi
  if ! ffmpeg -hide_banner -loglevel error -nostdin -y "$@" -f mpegts "$file.part" </dev/null; then
    rm -f "$file.part"
    echo "make-streams: ffmpeg could not make $file" >&2
    exit 1
  fi
  mv "$file.part" "$file"
  echo "$file"
}

tone=(-f lavfi -i sine=frequency=1000:sample_rate=48000)

stream sd-mpeg2-576i25 -f lavfi -i testsrc2=size=720x576:rate=25 "${tone[@]}" -t 1 -map 0:v -map 1:a \
  -c:v mpeg2video -b:v 300k -flags +ildct+ilme -top 1 -aspect 4:3 -c:a mp2 -b:a 128k -ac 2 \
  -metadata service_name="SD MPEG-2" -mpegts_service_id 101 -mpegts_pmt_start_pid 0x100 \
  -streamid 0:0x101 -streamid 1:0x102

stream h264-1080i25 -f lavfi -i testsrc2=size=1920x1080:rate=25 "${tone[@]}" -t 1 -map 0:v -map 1:a \
  -c:v libx264 -preset superfast -b:v 300k -flags +ildct+ilme -x264-params tff=1 -c:a ac3 -ac 6 -b:a 192k \
  -metadata service_name="HD H.264" -mpegts_service_id 202 -mpegts_pmt_start_pid 0x200 \
  -streamid 0:0x201 -streamid 1:0x202

stream h264-720p5994 -f lavfi -i testsrc2=size=1280x720:rate=60000/1001 \
  -f lavfi -i sine=frequency=1000:sample_rate=44100 -t 1 -map 0:v -map 1:a \
  -c:v libx264 -preset superfast -b:v 300k -c:a aac -b:a 96k -ac 2 \
  -metadata service_name="HD 720p" -mpegts_service_id 303 -mpegts_pmt_start_pid 0x300 \
  -streamid 0:0x301 -streamid 1:0x302

# A flat picture: x265 spends its time on analysis, a 4K test pattern doubles it.
stream hevc-2160p50-10bit -f lavfi -i color=c=gray:size=3840x2160:rate=50 "${tone[@]}" -t 1 -map 0:v -map 1:a \
  -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le -b:v 100k -x265-params log-level=error \
  -c:a eac3 -ac 6 -b:a 192k -metadata service_name="UHD HEVC" -mpegts_service_id 404 \
  -mpegts_pmt_start_pid 0x400 -streamid 0:0x401 -streamid 1:0x402
