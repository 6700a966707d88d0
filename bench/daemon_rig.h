// The running daemon on the virtual board for the benchmarks: a fresh root and
// scenario, stbavd as a child on a pty whose master this program holds as the
// host, and the apply-latency and /proc measurements they share. The bench's
// own (single) thread only.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"
#include "tests/e2e/host_line.h"

namespace bench {

struct DaemonRig {
    e2e::TempDir tmp;
    e2e::HostLine host;
    e2e::ChildProcess daemon;
    std::string sock;

    // Starts stbavd with extra options after the common ones; waits for
    // "stbav_ready" and the board's socket.
    bool Start(const std::vector<std::string>& extra = {});
    // SIGTERM; true when the daemon ended with status 0.
    bool Stop();
    long long Display();  // the board's display format code
    void SelectService(); // the scenario's one service, H.264 and MPEG-2 audio
};

// Apply latency over N triggers that each switch the manual output format
// between 1080p50 and 720p50: from the last byte of the apply trigger written
// by the host to the board's first call whose name starts with callPrefix (""
// for any call but the probe thread's av_get_stream_info), both CLOCK_MONOTONIC.
// Status reporting is off (after the first enable has brought the chip up) so
// that no poll shares the poller. firstCalls collects the names found.
bool MeasureApply(DaemonRig& rig, int triggers, const std::string& callPrefix, std::vector<double>& latenciesUs,
                  std::string& firstCalls);

// Automatic output, status reporting on, the scenario's service selected and
// decoded, then 4.5 s for the output format to follow and be reported: from
// then on nothing changes. False when the picture is never reported.
bool SettleIdle(DaemonRig& rig);

// utime + stime of the process, in clock ticks.
long long CpuTicks(pid_t pid);
// A "VmRSS:"-style line of /proc/PID/status, in kB (or a count); -1 when missing.
long long StatusValue(pid_t pid, const std::string& key);
// Context switches of every thread of the process (voluntary + involuntary):
// how often its threads woke up.
long long ContextSwitches(pid_t pid);

// The q-quantile (0..1) of sorted values.
double Quantile(const std::vector<double>& sorted, double q);

}  // namespace bench
