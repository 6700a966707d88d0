# Shared part of the ARM toolchain files: Debian's g++ cross compiler for
# STBAV_TRIPLET, the target libraries from a sysroot made by
# scripts/make-sysroot.sh, and qemu-user as the emulator that runs the tests.
# Included by toolchain-aarch64-linux-gnu.cmake and toolchain-arm-linux-gnueabihf.cmake.
#
# STBAV_SYSROOT (cache or environment) names the folder with the target
# libraries; by default build/sysroot/<Debian architecture> of this tree. For the
# board, point it at a folder that also holds the vendor's media library
# (usr/lib/libstb_module.so or usr/lib/<triplet>/libstb_module.so).

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${STBAV_CPU})

# STBAV_CROSS_COMPILER picks the compiler: "gcc" (the default) or "clang", which
# builds for the same triplet against the same runtimes and links with lld (what
# the cross presets use: it builds in about half the time).
if(NOT STBAV_CROSS_COMPILER)
  if(DEFINED ENV{STBAV_CROSS_COMPILER})
    set(STBAV_CROSS_COMPILER $ENV{STBAV_CROSS_COMPILER})
  else()
    set(STBAV_CROSS_COMPILER gcc)
  endif()
endif()
set(STBAV_CROSS_COMPILER "${STBAV_CROSS_COMPILER}" CACHE STRING "Cross compiler: gcc or clang")
set(ENV{STBAV_CROSS_COMPILER} "${STBAV_CROSS_COMPILER}")
if(STBAV_CROSS_COMPILER STREQUAL "clang")
  set(CMAKE_C_COMPILER clang)
  set(CMAKE_CXX_COMPILER clang++)
  set(CMAKE_C_COMPILER_TARGET ${STBAV_TRIPLET})
  set(CMAKE_CXX_COMPILER_TARGET ${STBAV_TRIPLET})
  set(STBAV_CROSS_LINKER_FLAG "-fuse-ld=lld")
else()
  set(CMAKE_C_COMPILER ${STBAV_TRIPLET}-gcc)
  set(CMAKE_CXX_COMPILER ${STBAV_TRIPLET}-g++)
  set(STBAV_CROSS_LINKER_FLAG "")
endif()

if(NOT STBAV_SYSROOT)
  if(DEFINED ENV{STBAV_SYSROOT})
    set(STBAV_SYSROOT $ENV{STBAV_SYSROOT})
  else()
    get_filename_component(STBAV_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/${STBAV_DEBIAN_ARCH}" ABSOLUTE)
  endif()
endif()
set(STBAV_SYSROOT "${STBAV_SYSROOT}" CACHE PATH "Target libraries (log4cpp, GoogleTest) for ${STBAV_TRIPLET}")
# try_compile projects read this toolchain file again: hand them the same folder.
set(ENV{STBAV_SYSROOT} "${STBAV_SYSROOT}")

# The C and C++ runtimes of Debian's cross compiler live in /usr/<triplet>.
set(STBAV_TARGET_RUNTIME /usr/${STBAV_TRIPLET})
set(CMAKE_FIND_ROOT_PATH "${STBAV_SYSROOT}" "${STBAV_TARGET_RUNTIME}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE ${STBAV_TRIPLET})

# pkg-config reads the target's .pc files only, and prefixes their paths.
set(ENV{PKG_CONFIG_LIBDIR} "${STBAV_SYSROOT}/usr/lib/${STBAV_TRIPLET}/pkgconfig:${STBAV_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${STBAV_SYSROOT}")
set(ENV{PKG_CONFIG_PATH} "")

foreach(_kind EXE SHARED MODULE)
  set(CMAKE_${_kind}_LINKER_FLAGS_INIT "${STBAV_CROSS_LINKER_FLAG} -Wl,-rpath-link,${STBAV_SYSROOT}/usr/lib/${STBAV_TRIPLET}")
endforeach()

# Tests run under qemu-user, called explicitly (no binfmt needed). -L lets the
# target's dynamic loader and C library be found; the build's own libraries and
# the sysroot's are found through the binaries' build RPATH.
find_program(STBAV_QEMU qemu-${STBAV_QEMU_CPU} PATHS /usr/bin NO_CMAKE_FIND_ROOT_PATH)
if(STBAV_QEMU)
  # The sysroot's libraries that the build's own are linked against come by
  # RUNPATH; what those libraries need in turn (libbsd under libedit, ...) by
  # the guest's LD_LIBRARY_PATH.
  set(CMAKE_CROSSCOMPILING_EMULATOR "${STBAV_QEMU};-L;${STBAV_TARGET_RUNTIME};-E;LD_LIBRARY_PATH=${STBAV_SYSROOT}/usr/lib/${STBAV_TRIPLET}")
endif()
