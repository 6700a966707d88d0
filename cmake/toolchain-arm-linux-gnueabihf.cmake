# 32-bit ARM (ARMv7, hard float) with Debian's g++-arm-linux-gnueabihf; tests under qemu-arm.
#   cmake --preset cross-armhf   (or -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-arm-linux-gnueabihf.cmake)
set(STBAV_TRIPLET arm-linux-gnueabihf)
set(STBAV_CPU arm)
set(STBAV_DEBIAN_ARCH armhf)
set(STBAV_QEMU_CPU arm)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-cross-common.cmake)
