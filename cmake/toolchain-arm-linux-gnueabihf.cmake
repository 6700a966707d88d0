# 32-bit ARM (ARMv7, hard float) with Debian's g++-arm-linux-gnueabihf; tests under qemu-arm.
#   cmake --preset cross-armhf   (or -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-arm-linux-gnueabihf.cmake)
set(STBAV_TRIPLET arm-linux-gnueabihf)
set(STBAV_CPU arm)
set(STBAV_DEBIAN_ARCH armhf)
set(STBAV_QEMU_CPU arm)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-cross-common.cmake)

# GCC notes on every std::vector iterator over a struct with 64-bit members that
# the way such values are passed changed in GCC 7.1. That matters only when linking
# C++ built by a GCC older than 7.1; the vendor's media library has a C API that
# takes its structures by pointer. Silenced to keep the build output readable.
set(CMAKE_C_FLAGS_INIT "-Wno-psabi")
set(CMAKE_CXX_FLAGS_INIT "-Wno-psabi")
