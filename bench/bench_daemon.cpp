// bench_daemon: figures of the running daemon on the virtual board, with the
// host played over a pty by this program (the e2e harness):
//   1. apply latency: from the last byte of an apply trigger written by the host
//      to the board's first resulting call (both CLOCK_MONOTONIC), over N
//      triggers that each switch the manual output format; status reporting is
//      off (after the first enable has brought the chip up) so that nothing
//      else runs on the poller (the probe thread's
//      av_get_stream_info, once a second, is not counted);
//   2. idle: CPU time and resident memory of the daemon over S seconds with
//      reporting on and a decoded service whose picture does not change, and the
//      status bytes the host receives meanwhile.
//   bench_daemon [--triggers N] [--idle S]      (defaults 100 and 60)
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "bench/daemon_rig.h"

namespace {

bool MeasureIdle(bench::DaemonRig& b, int seconds) {
    if (!bench::SettleIdle(b)) return false;
    const pid_t pid = b.daemon.Pid();
    const long long cpu0 = bench::CpuTicks(pid);
    const uint64_t bytes0 = b.host.BytesReceived();
    b.host.Clear();
    const uint64_t t0 = e2e::MonotonicUs();
    b.host.Drain(seconds * 1000);
    const double elapsed = static_cast<double>(e2e::MonotonicUs() - t0) / 1e6;
    const double cpu = static_cast<double>(bench::CpuTicks(pid) - cpu0) / static_cast<double>(sysconf(_SC_CLK_TCK));
    const double bytes = static_cast<double>(b.host.BytesReceived() - bytes0);
    std::set<unsigned> ids;
    for (const e2e::HostOp& op : b.host.Received()) ids.insert(op.opId);
    std::printf("idle %.1f s, reporting on, service decoded:\n", elapsed);
    std::printf("  CPU time        %.3f s (%.2f %% of one core)\n", cpu, 100.0 * cpu / elapsed);
    std::printf("  resident memory VmRSS %lld kB, peak VmHWM %lld kB, threads %lld\n",
                bench::StatusValue(pid, "VmRSS:"), bench::StatusValue(pid, "VmHWM:"),
                bench::StatusValue(pid, "Threads:"));
    std::printf("  status bytes    %.0f in %.1f s = %.0f bytes/min (%zu operations; opIds:", bytes, elapsed,
                bytes * 60.0 / elapsed, b.host.Received().size());
    for (unsigned id : ids) std::printf(" %u", id);
    std::printf(")\n");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int triggers = 100, idle = 60;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--triggers") == 0) triggers = std::atoi(argv[i + 1]);
        if (std::strcmp(argv[i], "--idle") == 0) idle = std::atoi(argv[i + 1]);
    }
    bench::DaemonRig b;
    if (!b.host.IsOpen() || !b.Start()) {
        std::fprintf(stderr, "bench_daemon: the daemon did not start\n");
        return 1;
    }
    std::vector<double> lat;
    std::string firstCalls;
    if (!bench::MeasureApply(b, triggers, "", lat, firstCalls) || lat.empty()) {
        std::fprintf(stderr, "bench_daemon: apply measurement failed\n");
        return 1;
    }
    std::sort(lat.begin(), lat.end());
    std::printf("apply trigger -> first platform call, %zu triggers (first call: %s):\n", lat.size(),
                firstCalls.c_str());
    std::printf("  median %.0f us, 90th %.0f us, worst %.0f us\n", lat[lat.size() / 2], lat[lat.size() * 9 / 10],
                lat.back());
    if (!MeasureIdle(b, idle)) {
        std::fprintf(stderr, "bench_daemon: idle measurement failed\n");
        return 1;
    }
    if (!b.Stop()) {
        std::fprintf(stderr, "bench_daemon: the daemon did not stop cleanly\n");
        return 1;
    }
    return 0;
}
