# 64-bit ARM (aarch64) with Debian's g++-aarch64-linux-gnu; tests under qemu-aarch64.
#   cmake --preset cross-aarch64   (or -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-aarch64-linux-gnu.cmake)
set(STBAV_TRIPLET aarch64-linux-gnu)
set(STBAV_CPU aarch64)
set(STBAV_DEBIAN_ARCH arm64)
set(STBAV_QEMU_CPU aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-cross-common.cmake)
