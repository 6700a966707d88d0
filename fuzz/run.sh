#!/usr/bin/env bash
# Runs the fuzz targets of a fuzz build: first every saved regression input of a
# target (fuzz/regressions/TARGET/), then SECONDS of fuzzing from the seed
# corpus (fuzz/corpus/TARGET/) plus the corpus earlier runs of this build grew
# (BUILD/fuzz-corpus/TARGET/). Fails on the first finding; the input is left in
# BUILD/fuzz-artifacts/. One summary line per target: executions, exec/s,
# coverage (edges), features, corpus size. FUZZ_JOBS targets run at a time
# (default: one per core), each for its full SECONDS.
#   fuzz/run.sh BUILD SECONDS [TARGET...]     (default: every target)
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:?usage: fuzz/run.sh BUILD SECONDS [TARGET...]}"
seconds="${2:?usage: fuzz/run.sh BUILD SECONDS [TARGET...]}"
shift 2
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzz_serial_receive fuzz_op_array fuzz_board_commands fuzz_host_tool fuzz_host_decoder)
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
artifacts="$build/fuzz-artifacts"
mkdir -p "$artifacts"
# One target: its summary (or finding) goes to BUILD/fuzz-TARGET.summary; exit 1 on a failure.
run_target() {
  local t=$1 bin="$build/fuzz/$1" log="$build/fuzz-$1.log" out="$build/fuzz-$1.summary"
  [ -x "$bin" ] || { echo "fuzz: $t: not built ($bin)" >"$out"; return 1; }
  local regressions=("$here/regressions/$t"/*)
  if [ -e "${regressions[0]}" ]; then
    if ! "$bin" "${regressions[@]}" >"$log" 2>&1; then
      echo "fuzz: $t: a saved regression input fails again (log: $log)" >"$out"
      return 1
    fi
  fi
  local corpus="$build/fuzz-corpus/$t"
  mkdir -p "$corpus"
  "$bin" -max_total_time="$seconds" -timeout=25 -print_final_stats=1 -artifact_prefix="$artifacts/$t-" \
    "$corpus" "$here/corpus/$t" >"$log" 2>&1
  local rc=$?
  local done_line execs rate cov ft corp
  done_line="$(grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -1)"
  execs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  rate="$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")"
  cov="$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$done_line")"
  ft="$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$done_line")"
  corp="$(sed -n 's/.* corp: \([^ ]*\).*/\1/p' <<<"$done_line")"
  if [ $rc -ne 0 ]; then
    { echo "fuzz: $t: FINDING after ${execs:-?} executions (exit $rc); input in $artifacts, log: $log"
      grep -E 'ERROR|runtime error|SUMMARY' "$log" | head -5; } >"$out"
    return 1
  fi
  echo "fuzz: $t: ${seconds}s, ${execs} executions, ${rate} exec/s, cov ${cov} edges, ft ${ft}, corpus ${corp}" >"$out"
}

jobs_max="${FUZZ_JOBS:-$(nproc)}"
pids=()
for t in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs_max" ]; do wait -n || true; done
  run_target "$t" &
  pids+=($!)
done
status=0
for i in "${!targets[@]}"; do
  wait "${pids[$i]}" || status=1
  cat "$build/fuzz-${targets[$i]}.summary"
done
exit $status
