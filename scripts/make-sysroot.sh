#!/usr/bin/env bash
# make-sysroot.sh ARCH DIR: the target libraries a cross build needs (log4cpp,
# GoogleTest, GoogleMock, nlohmann-json, libedit, ncurses, libpcap) unpacked from Debian's packages for ARCH (arm64 or
# armhf) into DIR. The C and C++ runtimes come with Debian's cross compilers
# (/usr/<triplet>), so DIR holds only what those lack.
#
# The machine's apt configuration is left alone: the package lists for ARCH go
# to a private apt state under DIR/../apt-ARCH, read from the machine's own
# sources, and the packages are unpacked with dpkg -x (nothing is installed).
# A second run with DIR complete does nothing.
set -euo pipefail

arch=${1:?usage: make-sysroot.sh arm64|armhf DIR}
dir=${2:?usage: make-sysroot.sh arm64|armhf DIR}
packages=(liblog4cpp5-dev liblog4cpp5v5 libgtest-dev libgmock-dev nlohmann-json3-dev
          # avhost: line editing, the live view, pcap captures, and what their libraries need at run time
          libedit-dev libedit2 libbsd0 libmd0 libncurses-dev libncurses6 libncursesw6 libtinfo6
          libpcap0.8-dev libpcap0.8 libdbus-1-dev libdbus-1-3 libsystemd0 libcap2 libgcrypt20 libgpg-error0 liblz4-1 liblzma5 libzstd1)

case "$arch" in
  arm64) triplet=aarch64-linux-gnu ;;
  armhf) triplet=arm-linux-gnueabihf ;;
  *) echo "make-sysroot.sh: unknown architecture '$arch' (arm64 or armhf)" >&2; exit 2 ;;
esac

stamp="$dir/.complete"
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "${packages[*]}" ]; then
  touch "$stamp"
  exit 0
fi

mkdir -p "$(dirname "$dir")"
dir=$(cd "$(dirname "$dir")" && pwd)/$(basename "$dir")
state=$(dirname "$dir")/apt-$arch
rm -rf "$dir" "$state"
mkdir -p "$dir" "$state/lists/partial" "$state/cache/archives/partial" "$state/debs"
: >"$state/status"

apt_opts=(
  -o "Dir::State=$state" -o "Dir::State::Lists=$state/lists" -o "Dir::State::status=$state/status"
  -o "Dir::Cache=$state/cache" -o "Dir::Cache::archives=$state/cache/archives"
  -o "APT::Architecture=$arch" -o "APT::Architectures=$arch"
  -o "Debug::NoLocking=1" -o "APT::Sandbox::User=root"
)

echo "sysroot $arch: package lists (private apt state in $state)"
# An index that fails to download (a mirror caught mid-update) only loses that
# suite: the packages usually come from the main one. The download below says
# clearly if something is missing.
if ! apt-get "${apt_opts[@]}" -qq update >"$state/update.log" 2>&1; then
  echo "sysroot $arch: some package lists failed to download (see $state/update.log); going on with the rest" >&2
fi

echo "sysroot $arch: ${packages[*]}"
if ! (cd "$state/debs" && apt-get "${apt_opts[@]}" -qq download "${packages[@]}" >"$state/download.log" 2>&1); then
  cat "$state/download.log" >&2
  echo "sysroot $arch: could not download the packages" >&2
  exit 1
fi
for deb in "$state/debs"/*.deb; do
  dpkg -x "$deb" "$dir"
done

# Some libraries unpack into /lib/<triplet> (ncurses, dbus, ...): merge them into
# /usr/lib/<triplet>, as a merged-/usr system has them, so that the linker's
# search path and the run-time library path need only the one folder.
if [ -d "$dir/lib/$triplet" ]; then
  mkdir -p "$dir/usr/lib/$triplet"
  cp -a "$dir/lib/$triplet/." "$dir/usr/lib/$triplet/"
  rm -rf "$dir/lib/$triplet"
fi

# Debian's .so links are absolute or relative inside /usr/lib/<triplet>; make the
# absolute ones point into the sysroot.
find "$dir" -type l | while read -r link; do
  target=$(readlink "$link")
  case "$target" in /*) ln -sfn "$dir$target" "$link" ;; esac
done

for f in "usr/lib/$triplet/pkgconfig/log4cpp.pc" "usr/lib/$triplet/libgtest.a" "usr/lib/$triplet/libgmock.a" \
         "usr/lib/$triplet/cmake/GTest/GTestConfig.cmake"; do
  [ -e "$dir/$f" ] || { echo "sysroot $arch: $f missing after unpacking" >&2; exit 1; }
done
rm -rf "$state/lists" "$state/cache"
echo "${packages[*]}" >"$stamp"
echo "sysroot $arch: ready in $dir"
