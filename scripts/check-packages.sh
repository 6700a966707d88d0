#!/usr/bin/env bash
# Checks the Debian packages made by `make deb`: prints each package's fields and
# file list, runs lintian (fails on any error), unpacks all three into a scratch
# root and runs the programs from there (they must find the virtual board in the
# scratch root, not in the build tree), and verifies the systemd unit.
#
#   scripts/check-packages.sh [PACKAGE_DIR]      (default build/package/packages; `make deb-check`)
set -euo pipefail

cd "$(dirname "$0")/.."
DIR=${1:-build/package/packages}
shopt -s nullglob
debs=("$DIR"/*.deb)
[ ${#debs[@]} -eq 3 ] || { echo "check-packages: expected 3 packages in $DIR, found ${#debs[@]}" >&2; exit 1; }
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
echo "check-packages: all good"
