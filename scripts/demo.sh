#!/usr/bin/env bash
# The daemon on the virtual board, seen from the host: starts stbavd on a pty
# made by `avhost session --pty`, plays a host session step by step (status on,
# service selection, manual and automatic output format, input changes made
# through the board's control socket) and prints, for each step, the status
# lines the host received beside the board's display state. Ends by itself
# (about 20 s) and stops everything it started.
#
#   scripts/demo.sh [BUILD_DIR]      (default build/dev; `make demo` builds first)
set -euo pipefail

cd "$(dirname "$0")/.."
BUILD=${1:-build/dev}
STBAVD=$BUILD/control/stbavd
AVHOST=$BUILD/tools/avhost
for exe in "$STBAVD" "$AVHOST"; do
  [ -x "$exe" ] || { echo "demo: $exe is missing; build first (make build)" >&2; exit 1; }
done
command -v socat >/dev/null || { echo "demo: socat is needed for the board's control socket (make deps)" >&2; exit 1; }

WORK=$(mktemp -d /tmp/stbav-demo-XXXXXX)
ROOT=$WORK/root
SOCK=$WORK/board.sock
HOST_OUT=$WORK/host.out
DAEMON_PID=""
HOST_PID=""
SHOWN=0  # host.out lines already printed

cleanup() {
  exec 3>&- 2>/dev/null || true
  if [ -n "$DAEMON_PID" ] && kill -0 "$DAEMON_PID" 2>/dev/null; then
    kill -TERM "$DAEMON_PID" 2>/dev/null || true
    wait "$DAEMON_PID" 2>/dev/null || true
  fi
  if [ -n "$HOST_PID" ] && kill -0 "$HOST_PID" 2>/dev/null; then
    kill -TERM "$HOST_PID" 2>/dev/null || true
    wait "$HOST_PID" 2>/dev/null || true
  fi
  rm -rf "$WORK"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# ---- the board ------------------------------------------------------------------
board() { printf '%s\n' "$*" | socat -t 5 - "UNIX-CONNECT:$SOCK"; }

format_name() {
  case $1 in
    1) echo PAL ;; 2) echo NTSC ;; 3) echo PAL-N ;; 4) echo NTSC-J ;; 6) echo 480p ;; 7) echo 480i ;;
    8) echo 576p ;; 9) echo 576i ;; 10) echo 720p ;; 11) echo 1080i ;; 12) echo 1080p ;;
    13) echo 2160p ;; 14) echo 4096x2160p ;; *) echo "?" ;;
  esac
}
rate_name() {
  case $1 in
    1) echo composite ;; 2) echo 23.976 Hz ;; 4) echo 24 Hz ;; 8) echo 25 Hz ;; 16) echo 29.97 Hz ;;
    32) echo 30 Hz ;; 64) echo 50 Hz ;; 128) echo 59.94 Hz ;; 256) echo 60 Hz ;; *) echo "?" ;;
  esac
}
# The value of KEY inside the JSON object OBJECT of the board's one-line state.
json_field() { sed -n "s/.*\"$2\":{[^{}]*\"$3\":\"\\{0,1\\}\\([^,\"}]*\\).*/\\1/p" <<<"$1"; }

show_board() {
  local state fmt rate vpid vtype dec
  state=$(board state)
  fmt=$(json_field "$state" display format)
  rate=$(json_field "$state" display rate)
  vpid=$(json_field "$state" player video_pid)
  vtype=$(json_field "$state" player video_type)
  dec=$(json_field "$state" player video_decoding)
  printf '   board: display %s @ %s (format %s, rate %s) | player video PID 0x%x, type %s, decoding %s\n' \
    "$(format_name "$fmt")" "$(rate_name "$rate")" "$fmt" "$rate" "${vpid:-0}" "$vtype" "$dec"
}

# ---- the host -------------------------------------------------------------------
host() { printf '%s\n' "$*" >&3; }

# Waits until a host line not yet shown matches the regular expression.
wait_host() {
  local deadline=$((SECONDS + ${2:-10}))
  until tail -n +"$((SHOWN + 1))" "$HOST_OUT" | grep -qE "$1"; do
    if [ "$SECONDS" -ge "$deadline" ]; then
      echo "demo: no '$1' from the daemon within ${2:-10} s" >&2
      exit 1
    fi
    sleep 0.1
  done
}

show_host() {
  local total
  total=$(wc -l <"$HOST_OUT")
  if [ "$total" -gt "$SHOWN" ]; then
    echo "   host received:"
    sed -n "$((SHOWN + 1)),${total}p" "$HOST_OUT" | grep ' < ' | sed 's/^/     /' || true
  fi
  SHOWN=$total
}

step() { printf '\n== %s\n' "$*"; }
sends() { printf '   host sends: %s\n' "$*"; }

# ---- set-up ---------------------------------------------------------------------
mkdir -p "$ROOT/vendor/etc"
cp etc/tevrin-log4cpp.init etc/version "$ROOT/vendor/etc/"
cat >"$WORK/input.scn" <<'EOF'
service 1 name="demo HD" pcr=0x100
video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9
audio pid=0x101 codec=mpeg2 rate=48000 channels=2
service 2 name="demo SD" pcr=0x200
video pid=0x200 codec=mpeg2 width=720 height=576 scan=tff fps=25 aspect=4:3
audio pid=0x201 codec=ac3 rate=48000 channels=5.1
EOF

mkfifo "$WORK/host.in"
"$AVHOST" session --pty <"$WORK/host.in" >"$HOST_OUT" 2>"$WORK/host.err" &
HOST_PID=$!
exec 3>"$WORK/host.in"
for _ in $(seq 100); do grep -q '^pty: ' "$HOST_OUT" && break; sleep 0.05; done
PTY=$(sed -n 's/^pty: //p' "$HOST_OUT")
[ -n "$PTY" ] || { echo "demo: avhost made no pty" >&2; cat "$WORK/host.err" >&2; exit 1; }
SHOWN=1

step "1. start: stbavd -d $PTY -R $ROOT, board input from a scenario (2 services)"
STBSIM_STREAM=$WORK/input.scn STBSIM_CONTROL=$SOCK \
  "$STBAVD" -d "$PTY" -R "$ROOT" -v 1 >"$WORK/daemon.out" 2>"$WORK/daemon.err" &
DAEMON_PID=$!
wait_host 'stbsystemReady'
show_host
show_board

step "2. enable status reporting: the full report, then a heartbeat every 2 s"
sends "stbsystemStatusEnable=1, apply"
host "send stbsystemStatusEnable=1"
host "apply"
wait_host 'videooutputAutoFormatStatus|videoPcrDisconStatus'
wait_host 'stbsystemHeartBeatCount.*' 5
sleep 2.2  # one more poll: only the heartbeat, nothing has changed
show_host

step "3. select service 1 (H.264 video 0x100, MPEG-2 audio 0x101)"
sends "serviceselectionPcr/Video/Audio1, codec types 2 and 2, service 1 \"demo HD\", apply"
host 'send serviceselectionPcr=0x100 serviceselectionVideo=0x100 serviceselectionAudio1=0x101 serviceselectionVideoCodecType=2 serviceselectionAudioCodecType1=2 serviceselectionServiceNum=1 serviceselectionServiceName="demo HD"'
host "apply"
wait_host 'videoWidth\[0\] = 1920'
wait_host 'videooutputCurrentOutputFormat.*1920x1080i'
show_host
show_board

step "4. manual output format 1920x1080p50"
sends "videooutputFormatMode=2 videooutputManualFormat=1920x1080p50, apply"
host "send videooutputFormatMode=2 videooutputManualFormat=1920x1080p50"
host "apply"
wait_host 'videooutputCurrentOutputFormat.*1920x1080p'
show_host
show_board

step "5. back to automatic: the output follows the input (1080i25)"
sends "videooutputFormatMode=1, apply"
host "send videooutputFormatMode=1"
host "apply"
wait_host 'videooutputCurrentOutputFormat.*1920x1080i'
show_host
show_board

step "6. the input turns 1280x720p50 (board control socket: video width=1280 ...)"
printf '   board answers: %s\n' "$(board video width=1280 height=720 scan=progressive fps=50)"
wait_host 'videoWidth\[0\] = 1280'
wait_host 'videooutputCurrentOutputFormat.*1280x720p'
show_host
show_board

step "7. the input turns 720x576i25 4:3"
printf '   board answers: %s\n' "$(board video width=720 height=576 scan=tff fps=25 aspect=4:3)"
wait_host 'videoWidth\[0\] = 720'
wait_host 'videooutputCurrentOutputFormat.*720x576i'
show_host
show_board

step "8. stop: SIGTERM to the daemon"
exec 3>&-
kill -TERM "$DAEMON_PID"
status=0
wait "$DAEMON_PID" || status=$?
DAEMON_PID=""
wait "$HOST_PID" 2>/dev/null || true
HOST_PID=""
left="none"
[ -e "$ROOT/data/var/run/tevrin.pid" ] && left="the pid file"
[ -e "$SOCK" ] && left="the board's socket"
echo "   stbavd exited with status $status; files left behind: $left"
[ "$status" -eq 0 ] && [ "$left" = none ]
