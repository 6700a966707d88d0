#!/usr/bin/env bash
# Checks the Debian packages made by `make deb`: prints each package's fields and
# file list, runs lintian (fails on any error), unpacks all three into a scratch
# root and runs the programs from there (they must find the virtual board in the
# scratch root, not in the build tree), verifies the systemd unit, and imports
# the Python rigs from the scratch root with their pytest plugin found through
# the package's entry point, and builds a program against libstbavhost-dev
# through its pkg-config file.
#
#   scripts/check-packages.sh [PACKAGE_DIR]      (default build/package/packages; `make deb-check`)
set -euo pipefail

cd "$(dirname "$0")/.."
DIR=${1:-build/package/packages}
shopt -s nullglob
debs=("$DIR"/*.deb)
[ ${#debs[@]} -eq 5 ] || { echo "check-packages: expected 5 packages in $DIR, found ${#debs[@]}" >&2; exit 1; }
ROOT=$(mktemp -d /tmp/stbav-pkg-XXXXXX)
trap 'rm -rf "$ROOT"' EXIT
fail() { echo "check-packages: $*" >&2; exit 1; }

for deb in "${debs[@]}"; do
  echo "== $(basename "$deb")"
  dpkg-deb -f "$deb" Package Version Section Depends | sed 's/^/   /'
  dpkg-deb -c "$deb" | awk '$6 !~ /\/$/ { print "   " $1, $6, $7, $8 }'
  dpkg -x "$deb" "$ROOT"
done

echo "== lintian"
lint=$(lintian "${debs[@]}" 2>&1 | grep -v 'running with root privileges' || true)
echo "${lint:-   (nothing)}" | sed 's/^/   /'
if grep -q '^E:' <<<"$lint"; then fail "lintian reports errors"; fi

echo "== from the scratch root $ROOT"
board=$(ldd "$ROOT/usr/sbin/stbavd" | awk '/libstb_module/ { print $3 }')
echo "   stbavd loads the board from $board"
[[ $board == "$ROOT"/* ]] || fail "stbavd does not load the board from the scratch root"
echo "   \$ stbavd -h"
"$ROOT/usr/sbin/stbavd" -h 2>&1 | sed 's/^/     /'
[ "${PIPESTATUS[0]}" -eq 0 ] || fail "stbavd -h failed"
echo "   \$ avhost --version"
"$ROOT/usr/bin/avhost" --version >"$ROOT/avhost.out" 2>&1 || fail "avhost --version failed"
sed 's/^/     /' "$ROOT/avhost.out"
grep -q . "$ROOT/avhost.out" || fail "avhost printed nothing"

echo "== systemd unit"
unit="$ROOT/lib/systemd/system/stbavd@.service"
[ -f "$unit" ] || fail "no systemd unit in the stbavd package"
if command -v systemd-analyze >/dev/null; then
  # One instance of the template, with its programs looked up in the scratch root.
  mkdir -p "$ROOT/verify"
  sed "s#@SBIN@#$ROOT/usr/sbin#g" <(sed 's#=/usr/sbin/#=@SBIN@/#' "$unit") >"$ROOT/verify/stbavd@ttyS0.service"
  out=$(systemd-analyze verify --man=no "$ROOT/verify/stbavd@ttyS0.service" 2>&1 || echo "exit status $?")
  echo "${out:-   (clean)}" | sed 's/^/   /'
  [ -z "$out" ] || fail "systemd-analyze verify reports problems"
else
  echo "   systemd-analyze is not installed: not verified"
fi
echo "== python3-stbav from the scratch root"
pydir=$ROOT/usr/lib/python3/dist-packages
py_out=$(PYTHONPATH=$pydir /usr/bin/python3 -c '
import importlib.metadata as m, stbav
plugins = [e.value for e in m.entry_points(group="pytest11") if e.value.startswith("stbav")]
print("   stbav from", stbav.__file__, "| pytest11:", plugins, "| operations:", len(stbav.codec.BY_ID))
assert stbav.__file__.startswith("'"$pydir"'") and plugins == ["stbav.pytest_plugin"]
') || fail "the Python package does not import from the scratch root"
echo "$py_out"
if /usr/bin/python3 -c 'import pytest' 2>/dev/null; then
  help=$(PYTHONPATH=$pydir /usr/bin/python3 -m pytest -p no:cacheprovider --help)
  grep -q -- '--stbav-device' <<<"$help" || fail "pytest does not load the stbav plugin through the entry point"
  echo "   pytest --help shows --stbav-device (plugin loaded through the entry point)"
  echo "   \$ pytest python/examples with the packaged stbavd, board and samples"
  PYTHONPATH=$pydir /usr/bin/python3 -m pytest -q -p no:cacheprovider python/examples --stbavd "$ROOT/usr/sbin/stbavd" \
    --stbav-etc "$ROOT/usr/share/stbav" 2>&1 | tail -n 1 | sed 's/^/     /'
  [ "${PIPESTATUS[0]}" -eq 0 ] || fail "the examples fail with the packaged programs"
fi
echo "== libstbavhost-dev from the scratch root"
pcdir=$(dirname "$(find "$ROOT/usr/lib" -name stbavhost.pc | head -n 1)")
[ -f "$pcdir/stbavhost.pc" ] || fail "no stbavhost.pc in libstbavhost-dev"
cflags=$(PKG_CONFIG_PATH=$pcdir pkg-config --define-variable=prefix="$ROOT/usr" --cflags stbavhost)
libs=$(PKG_CONFIG_PATH=$pcdir pkg-config --define-variable=prefix="$ROOT/usr" --libs stbavhost)
echo "   pkg-config: $cflags $libs"
printf '#include <stbav/stbav_codec.h>\nint main(void) { unsigned char f[STBAV_MAX_FRAME];\n  return stbav_encode_apply(f, sizeof f, 0) == 7 && stbav_name(STBAV_OP_videoWidth) ? 0 : 1; }\n' \
  >"$ROOT/uses-host-lib.c"
# shellcheck disable=SC2086
cc -std=c99 -Wall -Wextra -Wpedantic $cflags "$ROOT/uses-host-lib.c" $libs -o "$ROOT/uses-host-lib" ||
  fail "a program does not build against libstbavhost-dev"
"$ROOT/uses-host-lib" || fail "the program built against libstbavhost-dev fails"
echo "   a C99 program builds and runs against the packaged headers and library"
echo "check-packages: all good"
