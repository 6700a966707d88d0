#!/usr/bin/env bash
# A real session against stbavd on the virtual board, captured by avhost as pcap
# (and as a text capture converted with `avhost decode --pcap-out`), dissected by
# tshark with the committed tools/stbav.lua; checks the decoded fields of every
# value type the dictionary uses, a chunked value, an unknown opId, a stray end
# marker, a value of the wrong size and an unescaped special byte; avhost reads
# its pcap back (decode, replay).
#   dissector_test.sh AVHOST STBAVD SOURCE_DIR
set -euo pipefail
AVHOST=$1 STBAVD=$2 TOP=$3
W=$(mktemp -d /tmp/stbav-wireshark-XXXX)
trap 'kill $D 2>/dev/null || true; rm -rf $W' EXIT
D=
chmod 755 $W
long=$(printf 'N%.0s' $(seq 300))
cat > $W/session.txt <<SCRIPT
expect stbsystemReady 10
send serviceselectionServiceName=$long
send stbsystemCheckReady=1 analogaudioOutputLevel=-6 audiopidlockPid=0x101 avssconfigGenlockAvail=1
send videoWidth=1920 videooutputFormatMode=2 videooutputManualFormat=1920x1080p50
raw 0F 0F 00 90 01 01 00 01 05 10
raw 10
send stbsystemCheckReady=1
raw 0F 0F 00 07 00 01 00 02 00 01 10
raw 0F 0F 00 14 00 01 00 01 11 10
apply
expect stbsystemReady 5
wait 0.2
SCRIPT
# Runs avhost (ARGS... --pty) as the host of a fresh daemon on the virtual board
# (its own root and control socket each time: nothing the first daemon saved
# changes what the second one does); a sanitizer report of the daemon fails.
runs=0
with_daemon() {
  runs=$((runs + 1))
  mkdir -p $W/root$runs/vendor/etc
  cp $TOP/etc/tevrin-log4cpp.init $W/root$runs/vendor/etc/
  echo version=stbav-wireshark > $W/root$runs/vendor/etc/version
  # Output files of their own: a previous run's "pty:" line must not be taken
  # before the new avhost has truncated the file.
  "$AVHOST" "$@" --pty > $W/host$runs.out 2> $W/host$runs.err &
  local h=$!
  for i in $(seq 200); do grep -qs '^pty: ' $W/host$runs.out && break; sleep 0.05; done
  local pty=$(sed -n 's/^pty: //p' $W/host$runs.out)
  STBSIM_STREAM=$TOP/tests/tools/replay/board.scn STBSIM_CONTROL=$W/board$runs.sock $STBAVD -d $pty -R $W/root$runs \
    > $W/d$runs.out 2> $W/d$runs.err &
  D=$!
  local status=0
  wait $h || status=$?
  kill -TERM $D; wait $D || true; D=
  if grep -qE "Sanitizer|runtime error:" $W/d$runs.err; then cat $W/d$runs.err; return 1; fi
  return $status
}
with_daemon session $W/session.txt --capture $W/session.cap --pcap $W/session.pcap ||
  { echo "FAILED: the session:"; cat $W/host1.err; exit 1; }

# The text capture converted gives the same records as the live pcap.
$AVHOST decode $W/session.cap --pcap-out $W/converted.pcap > /dev/null
# tshark without privileges where possible.
TSHARK=(tshark)
if [ "$(id -u)" = 0 ] && command -v setpriv > /dev/null; then
  TSHARK=(setpriv --reuid=nobody --regid=nogroup --clear-groups tshark)
fi
cp $TOP/tools/stbav.lua $W/
dissect() {  # FILE FIELD...
  local file=$1; shift
  local args=()
  for f in "$@"; do args+=(-e "$f"); done
  HOME=$W "${TSHARK[@]}" -r $file -X lua_script:$W/stbav.lua -T fields -E separator='|' "${args[@]}" 2> $W/tshark.err
}
fail=0
# Columns of the field lines: 1 dir, 2 op, 3 opid, 4 index, 5 type, 6 uint8, 7 int8,
# 8 int16, 9 uint16, 10 uint32, 11 bool, 12 string, 13 text, 14 meaning, 15 chunk, 16 expert, 17 format.
check() {  # DESCRIPTION FILE DIR OP COLUMN VALUE [EXPERT TEXT]
  if ! awk -F'|' -v dir="$3" -v op="$4" -v col="$5" -v value="$6" -v expert="${7:-}" \
      '$1 == dir && $2 == op && $col == value && index($16, expert) { found = 1 } END { exit !found }' $2; then
    echo "FAILED: $1: no record with dir $3, op $4, column $5 = '$6'${7:+, expert info '$7'}"; fail=1
  fi
}
for pcap in session.pcap converted.pcap; do
  dissect $W/$pcap stbav.dir stbav.op stbav.opid stbav.index stbav.type stbav.value.uint8 stbav.value.int8 \
      stbav.value.int16 stbav.value.uint16 stbav.value.uint32 stbav.value.bool stbav.value.string \
      stbav.value.text stbav.meaning stbav.chunk _ws.expert.message stbav.format > $W/$pcap.fields
  f=$W/$pcap.fields
  [ -s $f ] || { echo "FAILED: $pcap: tshark gave no records"; cat $W/tshark.err; fail=1; continue; }
  check "$pcap VT_UINT8" $f 0 stbsystemCheckReady 6 1
  check "$pcap index" $f 0 stbsystemCheckReady 4 0
  check "$pcap VT_INT8" $f 0 analogaudioOutputLevel 7 -6
  check "$pcap VT_INT16" $f 0 audiopidlockPid 8 257
  check "$pcap VT_UINT16" $f 0 videoWidth 9 1920
  check "$pcap VT_UINT32 (format code)" $f 0 videooutputManualFormat 10 1661796352
  check "$pcap format code text" $f 0 videooutputManualFormat 17 "1920x1080p 16x9 50.00fps"
  check "$pcap VT_BOOL" $f 0 avssconfigGenlockAvail 11 1
  check "$pcap enumerated value" $f 0 videooutputFormatMode 14 manual
  check "$pcap VT_STRING, first chunk" $f 0 serviceselectionServiceName 12 "$(printf 'N%.0s' $(seq 240))"
  check "$pcap chunk 1" $f 0 serviceselectionServiceName 15 1 "Chunk 1 of a value longer than 240 bytes (240 bytes here)"
  check "$pcap VT_STRING, second chunk" $f 0 serviceselectionServiceName 12 "$(printf 'N%.0s' $(seq 60))"
  check "$pcap chunk 2" $f 0 serviceselectionServiceName 15 2 "Chunk 2 of a value longer than 240 bytes (60 bytes here)"
  check "$pcap daemon text under a numeric type" $f 1 stbsystemReady 13 stbav_ready "11 bytes under VT_INT8 (1 bytes)"
  check "$pcap unknown opId" $f 0 "#400" 3 400 "opId 400 (0x0190) is not in the dictionary"
  check "$pcap stray end marker" $f 0 "" 1 0 "End marker outside a frame"
  check "$pcap value of the wrong size" $f 0 stbsystemCheckReady 5 VT_UINT8 "2 bytes under VT_UINT8 (1 bytes)"
  check "$pcap unescaped special byte" $f 0 analogaudioOutputLevel 7 17 "Unescaped 0x11 inside a frame: taken as data"
  check "$pcap apply trigger" $f 0 apply 3 0
done
if ! cmp -s <(cut -d'|' -f1-15,17 $W/session.pcap.fields) <(cut -d'|' -f1-15,17 $W/converted.pcap.fields); then
  echo "FAILED: the converted text capture dissects differently from the live pcap:"
  diff <(cut -d'|' -f1-15,17 $W/session.pcap.fields) <(cut -d'|' -f1-15,17 $W/converted.pcap.fields) | head -20
  fail=1
fi
# avhost reads its pcap back like the text capture.
diff <($AVHOST decode $W/session.cap | cut -c9-) <($AVHOST decode $W/session.pcap | cut -c9-) > $W/decode.diff ||
  { echo "FAILED: avhost decode of the pcap differs from the text capture:"; head -20 $W/decode.diff; fail=1; }
# avhost replays its pcap: the daemon answers as in the recorded session.
with_daemon replay $W/session.pcap --fast ||
  { echo "FAILED: avhost replay of the pcap:"; cat $W/host2.out $W/host2.err; fail=1; }
if [ $fail != 0 ]; then
  echo "--- fields of session.pcap:"; cat $W/session.pcap.fields
  cat $W/tshark.err
fi
exit $fail
