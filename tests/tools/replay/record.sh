#!/usr/bin/env bash
# Records a session for the replay tests: runs NAME.txt (avhost's session
# language) against stbavd on the virtual board (board.scn) and writes NAME.cap;
# then `avhost replay --fast --update` (through the replay test set-up, or by
# hand) writes NAME.chk.
#   tests/tools/replay/record.sh NAME [BUILD_DIR]     (run inside tests/tools/replay)
set -euo pipefail
TOP=$(cd "$(dirname "$0")/../../.." && pwd)
B=${2:-$TOP/build/dev}
name=$1
W=$(mktemp -d /tmp/avhost-record-XXXX)
mkdir -p $W/root/vendor/etc
cp $TOP/etc/tevrin-log4cpp.init $W/root/vendor/etc/; echo version=stbav-replay > $W/root/vendor/etc/version
$B/tools/avhost session --pty $name.txt --capture $name.cap > $W/host.out 2> $W/host.err &
H=$!
for i in $(seq 100); do grep -qs '^pty: ' $W/host.out && break; sleep 0.05; done
PTY=$(sed -n 's/^pty: //p' $W/host.out)
STBSIM_STREAM=$PWD/board.scn STBSIM_CONTROL=$W/board.sock $B/control/stbavd -d $PTY -R $W/root > $W/d.out 2> $W/d.err &
D=$!
wait $H || echo "session status $?"
kill -TERM $D; wait $D || true
cat $W/host.err
rm -rf $W
