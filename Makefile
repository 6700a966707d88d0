# Entry points for people and CI. Every target first makes sure the Debian
# packages the project needs are installed (quietly, only what is missing).
#   make            build the dev preset
#   make test       build and run every test (dev preset)
#   make asan-test  the test suite under AddressSanitizer + UBSan
#   make tsan-test  the test suite under ThreadSanitizer
#   make demo       the daemon on the virtual board, seen from the host
#   make upgrade    the upgrade hand-off entry on the virtual board
#   make bench      build and run the benchmarks (release preset)
#   make fuzz       build the fuzz targets (clang) and run each FUZZ_SECONDS (default 60)
#   make soak       the daemon for SOAK_MINUTES (default 10) under line-rate traffic, garbage and faults
#   make cross-test build for 64-bit and 32-bit ARM and run the tests under qemu-user
#   make host-size  the C host library for a Cortex-M0: sizes, and no heap, stdio, .data or .bss

# One list: every Debian package that the builds, the tests, the fuzz targets and
# the packaging checks need. `make deps` installs what is missing (as root, or
# through sudo for a normal user: `sudo make deps`); every other target checks
# the list first, so a machine that has the packages never reaches apt again.
DEBS := build-essential cmake ninja-build pkg-config g++ clang lld \
        libgtest-dev libgmock-dev googletest libbenchmark-dev liblog4cpp5-dev \
        libavformat-dev libavcodec-dev libavutil-dev ffmpeg socat
DEBS += nlohmann-json3-dev libedit-dev libncurses-dev tmux
# pcap captures of the line and the tshark checks of the generated dissector.
DEBS += libpcap-dev tshark
# Manual pages (scdoc, linted with mandoc) and the completion tests (bash-completion).
DEBS += scdoc mandoc bash-completion
# `make deb`, `make install` and their checks (the README's install recipe runs in the tests).
DEBS += dpkg-dev lintian systemd
# The Python package for test rigs (python/): pytest for its tests and plugin, pyserial for real ports.
DEBS += python3-pytest python3-serial
# `make host-size`: the C host library built for a Cortex-M0 (bare-metal compiler and its C library headers).
DEBS += gcc-arm-none-eabi libnewlib-arm-none-eabi
JOBS ?= 2
FUZZ_SECONDS ?= 60
SOAK_MINUTES ?= 10
FUZZ_TARGETS := fuzz_serial_receive fuzz_op_array fuzz_board_commands fuzz_host_tool fuzz_host_decoder

.PHONY: all deps build test asan-test tsan-test demo bench clean upgrade fuzz soak
.PHONY: cross-deps cross-build cross-test

all: build

deps:
	@missing=""; for p in $(DEBS); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  if [ -n "$$STBAV_NO_INSTALL" ]; then \
	    echo "missing Debian packages:$$missing; install them first with 'sudo make deps'" >&2; exit 1; \
	  fi; \
	  echo "Installing:$$missing"; \
	  SUDO=; [ "$$(id -u)" = 0 ] || SUDO=sudo; \
	  $$SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing >/dev/null; \
	fi

build/%/build.ninja: | deps
	@cmake --preset $* >/dev/null

build: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS)

# The optimised build of the install recipe (build/package) is made here, before
# ctest: the README's `make install` block then only installs, inside the tests.
test: build package-build
	@ctest --preset dev

# The sanitizer, fuzz and ARM trees are built with clang and lld (about half the
# time of g++), each through scripts/build-preset.sh: one build per tree at a time.
asan-test: deps
	@JOBS=$(JOBS) scripts/build-preset.sh asan
	@ctest --preset asan

tsan-test: deps
	@JOBS=$(JOBS) scripts/build-preset.sh tsan
	@ctest --preset tsan

bench: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS)
	@for b in build/release/bench/bench_*; do [ -x "$$b" ] && "$$b"; done; true

# stbavd on the virtual board over a pty, driven by a scripted host session
# (avhost); prints what the host sees beside the board's display. About 20 s.
# Builds only what it runs (no tests, no benchmarks); `make test` builds the rest.
DEMO_TARGETS := stbavd stb_module avhost
demo: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS) --target $(DEMO_TARGETS)
	@scripts/demo.sh build/dev

# The upgrade hand-off entry on the virtual board; the board's journal shows the call.
upgrade: build
	@STBSIM_JOURNAL=1 ./build/dev/control/stbav-upgrade

# ARM builds: Debian's cross compilers, qemu-user to run the tests, and the target
# libraries (log4cpp, GoogleTest) unpacked from Debian's packages into
# build/sysroot/<arch> (kept between runs). The virtual board's FFmpeg part and
# the benchmarks stay out of these builds.
CROSS_DEBS := g++-aarch64-linux-gnu g++-arm-linux-gnueabihf qemu-user
CROSS_PRESETS := cross-aarch64 cross-armhf

cross-deps: deps
	@$(MAKE) --no-print-directory deps DEBS="$(CROSS_DEBS)"

build/sysroot/%/.complete: scripts/make-sysroot.sh | cross-deps
	@mkdir -p build && flock build/.sysroot-$*.lock scripts/make-sysroot.sh $* build/sysroot/$*

cross-build: cross-deps build/sysroot/arm64/.complete build/sysroot/armhf/.complete
	@for p in $(CROSS_PRESETS); do JOBS=$(JOBS) scripts/build-preset.sh $$p || exit 1; done

# Each tree's tests run as soon as it is built: under CI the next tree is built
# meanwhile in the background (ci-prebuild), on what qemu leaves idle.
cross-test: cross-deps build/sysroot/arm64/.complete build/sysroot/armhf/.complete
	@failed=""; for p in $(CROSS_PRESETS); do \
	  JOBS=$(JOBS) scripts/build-preset.sh $$p || exit 1; \
	  echo "== $$p: tests under qemu-user"; ctest --preset $$p || failed="$$failed $$p"; \
	done; \
	if [ -n "$$failed" ]; then echo "cross-test failed:$$failed"; exit 1; fi

# libFuzzer over the serial receive path, the op image, the board's parsers,
# avhost's parsers and the C host library's decoder; fails on any finding (see fuzz/run.sh).
fuzz: deps
	@JOBS=$(JOBS) scripts/build-preset.sh fuzz $(FUZZ_TARGETS)
	@fuzz/run.sh build/fuzz $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# CI (.ci/run) starts this in the background at the lowest priority once the
# packages are in: it builds the trees of the later steps in their order, with
# the CPU the earlier steps' tests leave idle. Each step still builds its own tree
# (waiting for the build under way there first), so a failure here only costs time.
.PHONY: ci-prebuild
ci-prebuild: cross-deps
	@JOBS=$(JOBS) scripts/build-preset.sh asan
	@JOBS=$(JOBS) scripts/build-preset.sh tsan
	@JOBS=$(JOBS) scripts/build-preset.sh fuzz $(FUZZ_TARGETS)
	@$(MAKE) --no-print-directory cross-build

# Not part of CI: a flood of 100 MiB, then SOAK_MINUTES of traffic (bench/soak_daemon.cpp).
soak: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS) --target soak_daemon
	@./build/release/bench/soak_daemon --minutes $(SOAK_MINUTES)

clean:
	rm -rf build

# MPEG-TS files that match the sample scenarios of etc/scenarios/, made with
# ffmpeg into build/streams/ (kept once made).
.PHONY: streams
streams: deps
	@scripts/make-streams.sh build/streams

# Rewrites the dictionary table of docs/host-guide.md from the daemon's tables
# (the test host_guide_dictionary_current fails while the committed copy is stale).
.PHONY: host-guide
host-guide: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS) --target host_guide_dictionary
	@build/dev/docs/host_guide_dictionary --update docs/host-guide.md

# Rewrites python/stbav/dictionary.py from the daemon's tables (the test
# python_dictionary_current fails while the committed copy is stale).
.PHONY: python-dictionary
python-dictionary: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS) --target python_dictionary
	@build/dev/python/python_dictionary --update python/stbav/dictionary.py

# Rewrites host/include/stbav/stbav_dictionary.h, the C host library's dictionary,
# from the daemon's tables (the test host_dictionary_current fails while it is stale).
.PHONY: host-dictionary
host-dictionary: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS) --target host_dictionary
	@build/dev/host/host_dictionary --update host/include/stbav/stbav_dictionary.h

# The C host library (host/) for a Cortex-M0 (arm-none-eabi-gcc -Os -mthumb), without
# and with the name table: .text/.rodata/.data/.bss; fails on .data/.bss of the codec,
# heap or stdio calls, a codec of 2 KB flash or more, a decoder state of 300 bytes or more.
.PHONY: host-size
host-size: deps
	@scripts/host-size.sh build/host-size

# Install and Debian packages from an optimised build without tests (build/package):
#   make install [PREFIX=/usr/local] [DESTDIR=/scratch]   stbavd, stbav-upgrade (sbin), avhost (bin), the
#                                  virtual board (lib/stbav), samples, manual pages, completions, service files
#   make deb                       build/package/packages/{stbavd,avhost,stbav-board,python3-stbav}_*.deb
#   make deb-check                 the packages' file lists, lintian, and the programs run from a scratch root
PREFIX ?= /usr/local
PKG_BUILD := build/package
PKG_CONFIGURE = CFLAGS="$$(dpkg-buildflags --get CFLAGS) $$(dpkg-buildflags --get CPPFLAGS)" \
  CXXFLAGS="$$(dpkg-buildflags --get CXXFLAGS) $$(dpkg-buildflags --get CPPFLAGS)" \
  LDFLAGS="$$(dpkg-buildflags --get LDFLAGS)" \
  cmake -S . -B $(PKG_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTBAV_BUILD_TESTS=OFF \
  -DSTBAV_BUILD_BENCH=OFF >/dev/null
.PHONY: install deb deb-check package-build
package-build: deps
	@$(PKG_CONFIGURE) -DCMAKE_INSTALL_PREFIX=/usr
	@cmake --build $(PKG_BUILD) -j $(JOBS)

install: deps
	@$(PKG_CONFIGURE) -DCMAKE_INSTALL_PREFIX=$(PREFIX)
	@cmake --build $(PKG_BUILD) -j $(JOBS)
	@DESTDIR=$(DESTDIR) cmake --install $(PKG_BUILD)

deb: package-build
	@rm -rf $(PKG_BUILD)/packages
	@cd $(PKG_BUILD) && cpack -G DEB >/dev/null
	@ls $(PKG_BUILD)/packages/*.deb

deb-check: deb
	@scripts/check-packages.sh $(PKG_BUILD)/packages

# Rewrites the golden journal of the daemon session (tests/e2e/golden/) after an
# intended change to the platform calls; review the diff before committing.
.PHONY: golden
golden: build
	@STBAV_UPDATE_GOLDEN=1 build/dev/tests/e2e/golden_journal_test
