#!/usr/bin/env bash
# Runs every ```sh command block of the READMEs and the host guide, so that a
# recipe that stops working fails the suite. Each block runs as written, from
# the source folder, in a fresh `bash -e` with a time limit, with two
# relocations: build/dev/ becomes this build's folder and /tmp/ a private
# folder of this run (so parallel runs do not meet). Blocks that cannot run
# here are mirrored, each by a named check below; a block that is neither run
# nor mirrored fails the test.
#   doc_commands_test.sh SOURCE_DIR BUILD_DIR
set -uo pipefail
SRC=$(cd "$1" && pwd)
BUILD=$(cd "$2" && pwd)
FILES=(README.md sim/README.md docs/host-guide.md)
LIMIT=120  # seconds per block (make test has built build/package before the tests run)
# A recipe that runs make (make install, make streams) uses the packages that are
# installed: the tests never install any (make deps does, once). A missing one
# fails the block with the list and the command that installs it.
export STBAV_NO_INSTALL=1

WORK=$(mktemp -d /tmp/stbav-doc-XXXXXX)
trap 'rm -rf "$WORK"' EXIT
cd "$SRC" || exit 2
failures=0
blocks=0

# Mirror: `make demo` and `make test` are what CI runs (.ci/run); running them
# from inside the tests would recurse.
mirror_make_demo() {
  grep -qxE '(step )?make demo' .ci/run && grep -qxE '(step )?make test' .ci/run || {
    echo "  .ci/run must run 'make demo' and 'make test'"
    return 1
  }
  grep -q '^make demo ' "$1" && grep -q '^make test ' "$1"
}

# Mirror: the daemon on a real serial port; here a pty stands in for the USB
# adapter. The daemon must come up on it and stop with status 0 on SIGTERM.
mirror_real_port() {
  local cmd pty err pid i status
  cmd=$(head -n 1 "$1")
  socat pty,raw,echo=0,link="$WORK/ttyUSB0" pty,raw,echo=0,link="$WORK/host" &
  local socat_pid=$!
  for i in $(seq 100); do [ -e "$WORK/ttyUSB0" ] && break; sleep 0.05; done
  cmd=${cmd//\/tmp\//$WORK/}
  cmd=${cmd//build\/dev\//$BUILD/}
  cmd=${cmd//\/dev\/ttyUSB0/$WORK/ttyUSB0}
  err=$WORK/real-port.err
  bash -c "exec $cmd" 2>"$err" &
  pid=$!
  for i in $(seq 200); do grep -q 'running on' "$err" && break; sleep 0.05; done
  kill -TERM "$pid"
  wait "$pid"
  status=$?
  kill "$socat_pid" 2>/dev/null
  wait "$socat_pid" 2>/dev/null
  grep -q 'running on' "$err" && [ "$status" -eq 0 ] || {
    echo "  the daemon did not run on the pty (exit status $status):"
    sed 's/^/    /' "$err"
    return 1
  }
}

# The check for a block whose first line starts with the key, or "" to run it.
mirror_for() {
  case $1 in
    "make demo"*) echo mirror_make_demo ;;
    "build/dev/control/stbavd -d /dev/ttyUSB0"*) echo mirror_real_port ;;
    *) echo "" ;;
  esac
}

run_block() {
  local file=$1 n=$2 block=$3 mirror started status
  mirror=$(mirror_for "$(head -n 1 "$block")")
  started=$SECONDS
  if [ -n "$mirror" ]; then
    "$mirror" "$block" >"$block.out" 2>&1
    status=$?
  else
    # /tmp/ first: the build folder may itself lie under /tmp.
    sed -e "s#/tmp/#$WORK/#g" -e "s#build/dev/#$BUILD/#g" "$block" >"$block.sh"
    # A session of its own, so that what a failed block left running (a
    # daemon, socat) is stopped with it.
    setsid timeout "$LIMIT" bash -e "$block.sh" >"$block.out" 2>&1 </dev/null &
    local leader=$!
    wait "$leader"
    status=$?
    kill -TERM -- "-$leader" 2>/dev/null
  fi
  blocks=$((blocks + 1))
  if [ "$status" -eq 0 ]; then
    printf 'ok   %s block %d (%s, %d s)\n' "$file" "$n" "${mirror:-run}" $((SECONDS - started))
  else
    printf 'FAIL %s block %d (%s, exit status %d): %s\n' "$file" "$n" "${mirror:-run}" "$status" "$(head -n 1 "$block")"
    tail -n 30 "$block.out" | sed 's/^/    /'
    failures=$((failures + 1))
  fi
}

for file in "${FILES[@]}"; do
  n=0
  in_block=0
  while IFS= read -r line || [ -n "$line" ]; do
    if [ $in_block -eq 0 ] && [ "$line" = '```sh' ]; then
      n=$((n + 1))
      in_block=1
      block="$WORK/$(echo "$file" | tr / _).$n"
      : >"$block"
    elif [ $in_block -eq 1 ] && [ "$line" = '```' ]; then
      in_block=0
      run_block "$file" "$n" "$block"
    elif [ $in_block -eq 1 ]; then
      printf '%s\n' "$line" >>"$block"
    fi
  done <"$file"
done

echo "$blocks command blocks, $failures failed"
[ "$blocks" -gt 0 ] && [ "$failures" -eq 0 ]
