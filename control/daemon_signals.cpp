// Signal handling of the daemon. Main thread.
#include "control/daemon_signals.h"

#include <pthread.h>

#include <cerrno>

sigset_t BlockStopSignals() {
    signal(SIGPIPE, SIG_IGN);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGHUP);
    sigaddset(&set, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return set;
}

int WaitForStopSignal(const sigset_t& signals) {
    for (;;) {
        int sig = 0;
        const int r = sigwait(&signals, &sig);
        if (r == 0) return sig;
        if (r != EINTR) return SIGTERM;  // cannot wait any more: stop as if asked
    }
}
