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

DEBS := build-essential cmake ninja-build pkg-config g++ clang \
        libgtest-dev libgmock-dev googletest libbenchmark-dev liblog4cpp5-dev \
        libavformat-dev libavcodec-dev libavutil-dev ffmpeg socat
JOBS ?= 2
FUZZ_SECONDS ?= 60
SOAK_MINUTES ?= 10
FUZZ_TARGETS := fuzz_serial_receive fuzz_op_array fuzz_board_commands fuzz_host_tool

.PHONY: all deps build test asan-test tsan-test demo bench clean upgrade fuzz soak

all: build

deps:
	@missing=""; for p in $(DEBS); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  SUDO=; [ "$$(id -u)" = 0 ] || SUDO=sudo; \
	  $$SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing >/dev/null; \
	fi

build/%/build.ninja: | deps
	@cmake --preset $* >/dev/null

build: deps build/dev/build.ninja
	@cmake --build --preset dev -j $(JOBS)

test: build
	@ctest --preset dev

asan-test: deps build/asan/build.ninja
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan

tsan-test: deps build/tsan/build.ninja
	@cmake --build --preset tsan -j $(JOBS)
	@ctest --preset tsan

bench: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS)
	@for b in build/release/bench/bench_*; do [ -x "$$b" ] && "$$b"; done; true

# stbavd on the virtual board over a pty, driven by a scripted host session
# (avhost); prints what the host sees beside the board's display. About 20 s.
demo: build
	@scripts/demo.sh build/dev

# The upgrade hand-off entry on the virtual board; the board's journal shows the call.
upgrade: build
	@STBSIM_JOURNAL=1 ./build/dev/control/stbav-upgrade

# libFuzzer over the serial receive path, the op image, the board's parsers and
# avhost's parsers; fails on any finding (see fuzz/run.sh).
fuzz: deps build/fuzz/build.ninja
	@cmake --build --preset fuzz -j $(JOBS) --target $(FUZZ_TARGETS)
	@fuzz/run.sh build/fuzz $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# Not part of CI: a flood of 100 MiB, then SOAK_MINUTES of traffic (bench/soak_daemon.cpp).
soak: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS) --target soak_daemon
	@./build/release/bench/soak_daemon --minutes $(SOAK_MINUTES)

clean:
	rm -rf build
