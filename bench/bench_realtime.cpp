// bench_realtime: apply latency of the running daemon on the virtual board with
// and without -r (the real-time policy), on a quiet machine and with one busy
// loop per core, printed side by side; then idle CPU, wake-ups and memory with
// and without -r. The host is played over a pty by this program.
//   - latency: from the last byte of an apply trigger written on the pty to the
//     board's first vout_display_* call (journal, CLOCK_MONOTONIC), N triggers
//     per case, each a fresh daemon;
//   - the busy loops are plain processes (normal scheduling), one per core;
//   - this program's own thread runs under the FIFO policy one step above the
//     daemon when it may, so that the busy loops cannot delay its time stamp of
//     the write (the figures then show the daemon's delay only); children it
//     starts get normal scheduling back;
//   - idle: S seconds with reporting on and a decoded service: CPU time, context
//     switches of all threads (wake-ups), VmRSS and VmLck.
//   bench_realtime [--triggers N] [--idle S] [--prio P]     (defaults 200, 20, 50)
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/daemon_rig.h"

namespace {

// Busy loops, one process each, under normal scheduling; killed by the destructor.
class BusyLoops {
public:
    explicit BusyLoops(int count) {
        for (int i = 0; i < count; ++i) {
            const pid_t pid = fork();
            if (pid == 0) {
                volatile unsigned long spin = 0;
                for (;;) ++spin;
            }
            if (pid > 0) m_Pids.push_back(pid);
        }
    }
    ~BusyLoops() {
        for (pid_t pid : m_Pids) kill(pid, SIGKILL);
        for (pid_t pid : m_Pids) waitpid(pid, nullptr, 0);
    }

private:
    std::vector<pid_t> m_Pids;
};

struct Case {
    std::string label;
    int busy;
    bool realtime;
    std::vector<double> us;  // sorted latencies
};

bool RunCase(Case& c, int triggers, int prio, std::string& refusal) {
    BusyLoops loops(c.busy);
    bench::DaemonRig rig;
    std::vector<std::string> extra;
    if (c.realtime) extra = {"-r", std::to_string(prio)};
    if (!rig.host.IsOpen() || !rig.Start(extra)) return false;
    std::string stderrText;
    e2e::ReadFile(rig.tmp / "daemon.err", stderrText);
    if (stderrText.find("refused") != std::string::npos) refusal = stderrText;
    std::string firstCalls;
    if (!bench::MeasureApply(rig, triggers, "vout_display_", c.us, firstCalls)) return false;
    std::sort(c.us.begin(), c.us.end());
    return rig.Stop();
}

bool RunIdle(bool realtime, int prio, int seconds) {
    bench::DaemonRig b;
    std::vector<std::string> extra;
    if (realtime) extra = {"-r", std::to_string(prio)};
    if (!b.host.IsOpen() || !b.Start(extra)) return false;
    if (!bench::SettleIdle(b)) return false;
    const pid_t pid = b.daemon.Pid();
    const long long cpu0 = bench::CpuTicks(pid);
    const long long switches0 = bench::ContextSwitches(pid);
    const uint64_t t0 = e2e::MonotonicUs();
    b.host.Drain(seconds * 1000);
    const double elapsed = static_cast<double>(e2e::MonotonicUs() - t0) / 1e6;
    const double cpu = static_cast<double>(bench::CpuTicks(pid) - cpu0) / static_cast<double>(sysconf(_SC_CLK_TCK));
    const double wakeups = static_cast<double>(bench::ContextSwitches(pid) - switches0) / elapsed;
    std::printf("  %-10s %6.3f %%   %7.1f /s   VmRSS %6lld kB   VmLck %6lld kB   threads %lld\n",
                realtime ? ("-r " + std::to_string(prio)).c_str() : "plain", 100.0 * cpu / elapsed, wakeups,
                bench::StatusValue(pid, "VmRSS:"), bench::StatusValue(pid, "VmLck:"),
                bench::StatusValue(pid, "Threads:"));
    return b.Stop();
}

double LoadAverage() {
    double load = -1;
    if (FILE* f = std::fopen("/proc/loadavg", "r")) {
        if (std::fscanf(f, "%lf", &load) != 1) load = -1;
        std::fclose(f);
    }
    return load;
}

}  // namespace

int main(int argc, char** argv) {
    int triggers = 200, idle = 20, prio = 50;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--triggers") == 0) triggers = std::atoi(argv[i + 1]);
        if (std::strcmp(argv[i], "--idle") == 0) idle = std::atoi(argv[i + 1]);
        if (std::strcmp(argv[i], "--prio") == 0) prio = std::atoi(argv[i + 1]);
    }
    const int cores = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    sched_param param{};
    param.sched_priority = std::min(prio + 1, sched_get_priority_max(SCHED_FIFO));
    const bool measurerRt = sched_setscheduler(0, SCHED_FIFO | SCHED_RESET_ON_FORK, &param) == 0;
    std::printf("apply trigger -> first vout_display_* call, %d triggers per case, %d cores, load average %.2f at "
                "start%s\n", triggers, cores, LoadAverage(),
                measurerRt ? "" : " (this program may not run real-time: its time stamps may be late)");
    std::vector<Case> cases = {
        {"quiet, plain", 0, false, {}},
        {"quiet, -r " + std::to_string(prio), 0, true, {}},
        {std::to_string(cores) + " busy loops, plain", cores, false, {}},
        {std::to_string(cores) + " busy loops, -r " + std::to_string(prio), cores, true, {}},
    };
    std::string refusal;
    for (Case& c : cases) {
        if (!RunCase(c, triggers, prio, refusal)) {
            std::fprintf(stderr, "bench_realtime: case '%s' failed\n", c.label.c_str());
            return 1;
        }
    }
    std::printf("  %-26s %8s %8s %8s %8s   (us)\n", "case", "p50", "p90", "p99", "max");
    for (const Case& c : cases)
        std::printf("  %-26s %8.0f %8.0f %8.0f %8.0f\n", c.label.c_str(), bench::Quantile(c.us, 0.5),
                    bench::Quantile(c.us, 0.9), bench::Quantile(c.us, 0.99), c.us.back());
    if (!refusal.empty()) std::printf("  -r was refused here, its rows ran with normal scheduling:\n%s", refusal.c_str());
    std::printf("idle %d s, reporting on, service decoded (load average %.2f): CPU of one core, wake-ups "
                "(context switches of all threads), memory\n", idle, LoadAverage());
    for (bool realtime : {false, true}) {
        if (!RunIdle(realtime, prio, idle)) {
            std::fprintf(stderr, "bench_realtime: idle run failed\n");
            return 1;
        }
    }
    return 0;
}
