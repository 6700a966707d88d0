#!/usr/bin/env bash
# Records session.pcap again: session.txt (avhost's session language) run by
# `avhost session --pty --pcap` against stbavd on the virtual board (board.scn).
#   python/tests/data/record.sh [BUILD_DIR]      (default build/dev)
set -euo pipefail
cd "$(dirname "$0")"
TOP=$(cd ../../.. && pwd)
B=${1:-$TOP/build/dev}
W=$(mktemp -d /tmp/stbav-record-XXXX)
trap 'rm -rf "$W"' EXIT
mkdir -p "$W/root/vendor/etc"
cp "$TOP/etc/tevrin-log4cpp.init" "$TOP/etc/version" "$W/root/vendor/etc/"
"$B/tools/avhost" session --pty session.txt --pcap session.pcap >"$W/host.out" 2>"$W/host.err" &
H=$!
for _ in $(seq 100); do grep -qs '^pty: ' "$W/host.out" && break; sleep 0.05; done
PTY=$(sed -n 's/^pty: //p' "$W/host.out")
STBSIM_STREAM=$TOP/tests/tools/replay/board.scn STBSIM_CONTROL=$W/board.sock \
  "$B/control/stbavd" -d "$PTY" -R "$W/root" >"$W/d.out" 2>&1 &
D=$!
status=0
wait $H || status=$?
kill -TERM $D
wait $D || true
cat "$W/host.err" >&2
exit $status
