#!/usr/bin/env bash
# build-preset.sh PRESET [TARGET...]: configures build/PRESET when it is new,
# then builds it (only TARGETs when given), with JOBS jobs (default 2).
# One build at a time per tree: the build holds build/.PRESET.lock, so a step of
# CI that needs a tree the background prebuild (.ci/run) is building waits for it
# and then finishes whatever is left.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:?usage: build-preset.sh PRESET [TARGET...]}
shift
mkdir -p build
exec 9>"build/.$preset.lock"
flock 9
# Configured again when the presets or toolchain files changed since (a compiler
# of its own, for one), else left to cmake --build.
want=$(cat CMakePresets.json cmake/*.cmake | sha1sum)
stamp="build/$preset/.preset-stamp"
if [ ! -f "build/$preset/build.ninja" ] || [ "$(cat "$stamp" 2>/dev/null)" != "$want" ]; then
  cmake --preset "$preset" >/dev/null
  echo "$want" >"$stamp"
fi
targets=()
[ $# -eq 0 ] || targets=(--target "$@")
cmake --build --preset "$preset" -j "${JOBS:-2}" "${targets[@]}"
