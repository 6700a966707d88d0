// HangWatchdog: every test process arms it at start-up from STBAV_TEST_WATCHDOG
// (seconds; the build sets it a little under ctest's limit for the test). When the
// process is still running then, it writes each thread's name, state, wait
// channel and current system call to stderr and aborts: a hang names its threads
// in the test's output instead of being stopped by ctest with nothing to show.
// With core dumps on (`ulimit -c unlimited` before ctest) the abort also leaves a
// core; under qemu-user, qemu writes the guest's own (qemu_<prog>_<time>_<pid>.core)
// in the test's folder. Armed on the main thread; the report runs in the signal
// handler of whichever thread takes SIGALRM, on raw system calls only.
#pragma once

namespace stbav_test {

// Arms (or re-arms) the watchdog to fire after `seconds` (0 disarms it).
void ArmHangWatchdog(unsigned seconds);

}  // namespace stbav_test
