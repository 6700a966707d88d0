// stbavd -r PRIO: puts the process under the real-time FIFO policy at PRIO and
// locks its memory, so that an apply trigger is served within a fraction of a
// frame time even when every core is busy. Main thread, before any other thread
// exists: threads inherit the policy of the thread that creates them, so every
// thread the daemon (and the media library) builds afterwards runs under it.
// Refusals are reported and the daemon goes on with normal scheduling.
#pragma once

#include <string>

// The lowest and highest priority -r accepts (the FIFO policy's range).
int RealtimePriorityMin();
int RealtimePriorityMax();

struct RealtimeResult {
    bool scheduled = false;     // the FIFO policy was granted
    int schedError = 0;         // errno of the refusal
    bool memoryLocked = false;  // current and future pages are locked
    int lockError = 0;          // errno of the refusal (0 with lockSkipped)
    bool lockSkipped = false;   // not attempted: a finite lock limit without the privilege, or
                                // a sanitizer build
    long long lockLimitKb = -1; // RLIMIT_MEMLOCK in kB; -1 unlimited
    int policy = 0;             // what the calling thread runs under afterwards
    int priority = 0;
    long long lockedKb = -1;    // VmLck after locking; -1 unknown
};

// Asks for the FIFO policy at priority for the calling thread (and so for every
// thread it creates later), then locks memory. Logs what it got on "stbav.daemon"
// and writes a refusal on standard error as well.
RealtimeResult EnterRealtime(int priority);

// "SCHED_FIFO priority 50, memory locked (VmLck 5120 kB)", or what was refused.
std::string DescribeRealtime(const RealtimeResult& result);
