# Entry points for people and CI. Every target first makes sure the Debian
# packages the project needs are installed (quietly, only what is missing).
#   make            build the dev preset
#   make test       build and run every test (dev preset)
#   make asan-test  the test suite under AddressSanitizer + UBSan
#   make tsan-test  the test suite under ThreadSanitizer
#   make demo       the daemon on the virtual board, seen from the host
#   make upgrade    the upgrade hand-off entry on the virtual board
#   make bench      build and run the benchmarks (release preset)
#   make cross-test build for 64-bit and 32-bit ARM and run the tests under qemu-user

DEBS := build-essential cmake ninja-build pkg-config g++ clang \
        libgtest-dev libgmock-dev googletest libbenchmark-dev liblog4cpp5-dev \
        libavformat-dev libavcodec-dev libavutil-dev ffmpeg socat
JOBS ?= 2

.PHONY: all deps build test asan-test tsan-test demo bench clean upgrade
.PHONY: cross-deps cross-build cross-test

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

# ARM builds: Debian's cross compilers, qemu-user to run the tests, and the target
# libraries (log4cpp, GoogleTest) unpacked from Debian's packages into
# build/sysroot/<arch> (kept between runs). The virtual board's FFmpeg part and
# the benchmarks stay out of these builds.
CROSS_DEBS := g++-aarch64-linux-gnu g++-arm-linux-gnueabihf qemu-user
CROSS_PRESETS := cross-aarch64 cross-armhf

cross-deps: deps
	@$(MAKE) --no-print-directory deps DEBS="$(CROSS_DEBS)"

build/sysroot/%/.complete: scripts/make-sysroot.sh | cross-deps
	@scripts/make-sysroot.sh $* build/sysroot/$*

cross-build: cross-deps build/sysroot/arm64/.complete build/sysroot/armhf/.complete
	@for p in $(CROSS_PRESETS); do \
	  cmake --preset $$p >/dev/null && cmake --build --preset $$p -j $(JOBS) || exit 1; \
	done

cross-test: cross-build
	@failed=""; for p in $(CROSS_PRESETS); do \
	  echo "== $$p: tests under qemu-user"; ctest --preset $$p || failed="$$failed $$p"; \
	done; \
	if [ -n "$$failed" ]; then echo "cross-test failed:$$failed"; exit 1; fi

clean:
	rm -rf build
