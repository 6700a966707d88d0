// stbavd -r: the FIFO policy and memory locking. Main thread, at start, before
// any other thread is built.
#include "control/daemon_realtime.h"

#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "toolkit/log.h"
#include "toolkit/sanitizer_build.h"

namespace {

constexpr int kCapIpcLock = 14;  // the capability that lifts the lock limit

// A sanitizer's shadow memory is terabytes of reserved address space: locking it
// all would exhaust the machine.
constexpr bool kSanitizerBuild = STBAV_SANITIZER_BUILD != 0;

// A line "Key:\tvalue" of /proc/self/status; "" when missing.
std::string StatusField(const std::string& key) {
    std::ifstream in("/proc/self/status");
    std::string line;
    while (std::getline(in, line))
        if (line.compare(0, key.size(), key) == 0) return line.substr(key.size());
    return "";
}

bool HasIpcLock() {
    const std::string caps = StatusField("CapEff:");
    if (caps.empty()) return false;
    const unsigned long long mask = std::strtoull(caps.c_str(), nullptr, 16);
    return (mask >> kCapIpcLock) & 1u;
}

const char* PolicyName(int policy) {
    switch (policy) {
        case SCHED_FIFO: return "SCHED_FIFO";
        case SCHED_RR: return "SCHED_RR";
        case SCHED_OTHER: return "SCHED_OTHER";
        default: return "another policy";
    }
}

// With MCL_FUTURE every later mapping (a thread's stack, the heap growing) is
// counted against the lock limit and fails beyond it: locking under a finite
// limit without the privilege would make the daemon fail later, at random.
void LockMemory(RealtimeResult& r) {
    rlimit limit{};
    if (getrlimit(RLIMIT_MEMLOCK, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        r.lockLimitKb = static_cast<long long>(limit.rlim_cur / 1024);
    if (kSanitizerBuild || (r.lockLimitKb >= 0 && !HasIpcLock())) {
        r.lockSkipped = true;
        return;
    }
    if (mlockall(MCL_CURRENT | MCL_FUTURE) != 0) {
        r.lockError = errno;
        return;
    }
    r.memoryLocked = true;
    const std::string locked = StatusField("VmLck:");
    if (!locked.empty()) r.lockedKb = std::atoll(locked.c_str());
}

}  // namespace

int RealtimePriorityMin() { return sched_get_priority_min(SCHED_FIFO); }
int RealtimePriorityMax() { return sched_get_priority_max(SCHED_FIFO); }

RealtimeResult EnterRealtime(int priority) {
    RealtimeResult r;
    sched_param param{};
    param.sched_priority = priority;
    // The calling thread only; threads created later inherit it (the default).
    r.schedError = pthread_setschedparam(pthread_self(), SCHED_FIFO, &param);
    r.scheduled = r.schedError == 0;
    LockMemory(r);
    sched_param now{};
    if (pthread_getschedparam(pthread_self(), &r.policy, &now) == 0) r.priority = now.sched_priority;

    log4cpp::Category& log = stbav::Logger("stbav.daemon");
    const std::string text = DescribeRealtime(r);
    if (r.scheduled && r.memoryLocked) {
        stbav::LogNotice(log, "real-time: %s", text.c_str());
    } else {
        stbav::LogWarn(log, "real-time: %s", text.c_str());
        std::fprintf(stderr, "stbavd: real-time -r %d: %s\n", priority, text.c_str());
    }
    return r;
}

std::string DescribeRealtime(const RealtimeResult& r) {
    char buf[320];
    std::string text;
    if (r.scheduled) {
        std::snprintf(buf, sizeof buf, "%s priority %d", PolicyName(r.policy), r.priority);
    } else {
        std::snprintf(buf, sizeof buf,
                      "SCHED_FIFO refused (%s: needs CAP_SYS_NICE or RLIMIT_RTPRIO, and real-time time in this "
                      "control group), running with normal scheduling (%s)",
                      std::strerror(r.schedError), PolicyName(r.policy));
    }
    text = buf;
    if (r.memoryLocked) {
        std::snprintf(buf, sizeof buf, ", memory locked (VmLck %lld kB)", r.lockedKb);
    } else if (r.lockSkipped && kSanitizerBuild) {
        text += ", memory not locked (a sanitizer build: its shadow memory cannot be locked)";
        return text;
    } else if (r.lockSkipped) {
        std::snprintf(buf, sizeof buf,
                      ", memory not locked (RLIMIT_MEMLOCK %lld kB without CAP_IPC_LOCK: later allocations would "
                      "fail; raise the limit to unlimited)",
                      r.lockLimitKb);
    } else {
        std::snprintf(buf, sizeof buf, ", memory not locked (mlockall: %s)", std::strerror(r.lockError));
    }
    return text + buf;
}
