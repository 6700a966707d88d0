// The signals of the daemon: SIGTERM and SIGINT stop it, SIGHUP re-reads the
// log configuration, SIGUSR1 logs the serial line's frame counters. They are
// blocked in every thread (the mask is inherited by the threads created later)
// and taken synchronously by the main thread with sigwait, so no handler runs at
// all. SIGPIPE is ignored: a closed peer is an error result, not a kill.
#pragma once

#include <signal.h>

// Blocks the daemon's signals in the calling thread and ignores SIGPIPE. Call at
// the top of main, before any thread exists. Returns the blocked set.
sigset_t BlockStopSignals();

// Waits, without spinning, until one of the set arrives; returns its number.
int WaitForStopSignal(const sigset_t& signals);

// True for the signals that end the daemon (SIGTERM, SIGINT).
inline bool IsStopSignal(int sig) { return sig == SIGTERM || sig == SIGINT; }
