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
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "output/uhd_vid_format.h"
#include "tests/e2e/e2e_support.h"
#include "tests/e2e/host_line.h"

namespace {

const char* const kScenario =
    "service 1 name=\"bench\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n";

uint32_t Code(uint32_t height, uint32_t width) {
    return UhdVidFormat(height, width, VideoFormatBase::SCAN_TYPE_PROGRESSIVE, VideoFormatBase::ASPECT_RATIO_16X9,
                        VideoFormatBase::FRAME_RATE_50).GetId();
}

// utime + stime of the process, in clock ticks.
long long CpuTicks(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string all((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const size_t close = all.rfind(')');
    if (close == std::string::npos) return -1;
    std::istringstream rest(all.substr(close + 2));
    std::string field;
    long long utime = 0, stime = 0;
    for (int i = 3; i <= 15 && rest >> field; ++i) {
        if (i == 14) utime = std::atoll(field.c_str());
        if (i == 15) stime = std::atoll(field.c_str());
    }
    return utime + stime;
}

// A "VmRSS:"-style line of /proc/PID/status, in kB.
long long StatusKb(pid_t pid, const std::string& key) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(in, line))
        if (line.compare(0, key.size(), key) == 0) return std::atoll(line.c_str() + key.size());
    return -1;
}

struct Bench {
    e2e::TempDir tmp;
    e2e::HostLine host;
    e2e::ChildProcess daemon;
    std::string sock;

    bool Start() {
        sock = tmp / "board.sock";
        e2e::WriteFile(tmp / "root/vendor/etc/version", "version=bench\n");
        e2e::WriteFile(tmp / "input.scn", kScenario);
        const std::vector<std::string> args = {"-d", host.DeviceName(), "-R", tmp / "root"};
        const std::vector<std::string> env = {"STBSIM_STREAM=" + (tmp / "input.scn"), "STBSIM_CONTROL=" + sock};
        if (!daemon.Start(STBAVD_PATH, args, env, tmp / "daemon.out", tmp / "daemon.err")) return false;
        return host.WaitForOp(3) && e2e::WaitUntil([&] { return e2e::FileExists(sock); });
    }
    long long Display() {
        e2e::FlatJson s;
        s.Parse(e2e::BoardCommand(sock, "state"));
        return s.Num("display.format");
    }
    void SelectService() {
        host.SendU16(245, 0x100);
        host.SendU16(246, 0x100);
        host.SendU16(247, 0x101);
        host.SendU8(242, 2);
        host.SendU8(243, 2);
        host.SendApply();
    }
};

// Trigger i switches between 1080p50 (display 12) and 720p50 (display 10).
bool MeasureApply(Bench& b, int triggers, std::vector<double>& latenciesUs, std::string& firstCalls) {
    // The first status enable brings the chip up (binds the output handles);
    // reporting then goes off again so that no poll shares the poller.
    b.host.SendU8(4, 1);
    b.host.SendApply();
    if (!b.host.WaitForOp(1)) return false;
    b.host.SendU8(4, 2);
    b.host.SendU8(262, 2);  // manual
    b.host.SendU32(266, Code(720, 1280));
    b.host.SendApply();
    if (!e2e::WaitUntil([&] { return b.Display() == 10; })) return false;
    e2e::BoardCommand(b.sock, "reset-journal");
    std::vector<uint64_t> written;
    for (int i = 0; i < triggers; ++i) {
        const bool to1080 = i % 2 == 0;
        b.host.SendU32(266, to1080 ? Code(1080, 1920) : Code(720, 1280));
        written.push_back(b.host.SendApply());
        if (!e2e::WaitUntil([&] { return b.Display() == (to1080 ? 12 : 10); })) return false;
    }
    const std::vector<e2e::JournalEntry> calls = e2e::ParseJournal(e2e::BoardCommand(b.sock, "journal"));
    for (uint64_t t : written) {
        auto first = std::find_if(calls.begin(), calls.end(), [t](const e2e::JournalEntry& e) {
            return e.timeUs >= t && e.name != "av_get_stream_info";
        });
        if (first == calls.end()) return false;
        latenciesUs.push_back(static_cast<double>(first->timeUs - t));
        if (firstCalls.find(first->name) == std::string::npos) firstCalls += (firstCalls.empty() ? "" : ", ") + first->name;
    }
    return true;
}

bool MeasureIdle(Bench& b, int seconds) {
    b.host.SendU8(262, 1);  // automatic
    b.host.SendU8(4, 1);    // status on
    b.host.SendApply();
    b.SelectService();
    if (!b.host.WaitForValue(271, 1920)) return false;
    b.host.Drain(4500);  // the output format follows and is reported; then nothing changes
    const pid_t pid = b.daemon.Pid();
    const long long cpu0 = CpuTicks(pid);
    const uint64_t bytes0 = b.host.BytesReceived();
    b.host.Clear();
    const uint64_t t0 = e2e::MonotonicUs();
    b.host.Drain(seconds * 1000);
    const double elapsed = static_cast<double>(e2e::MonotonicUs() - t0) / 1e6;
    const double cpu = static_cast<double>(CpuTicks(pid) - cpu0) / static_cast<double>(sysconf(_SC_CLK_TCK));
    const double bytes = static_cast<double>(b.host.BytesReceived() - bytes0);
    std::set<unsigned> ids;
    for (const e2e::HostOp& op : b.host.Received()) ids.insert(op.opId);
    std::printf("idle %.1f s, reporting on, service decoded:\n", elapsed);
    std::printf("  CPU time        %.3f s (%.2f %% of one core)\n", cpu, 100.0 * cpu / elapsed);
    std::printf("  resident memory VmRSS %lld kB, peak VmHWM %lld kB, threads %lld\n", StatusKb(pid, "VmRSS:"),
                StatusKb(pid, "VmHWM:"), StatusKb(pid, "Threads:"));
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
    Bench b;
    if (!b.host.IsOpen() || !b.Start()) {
        std::fprintf(stderr, "bench_daemon: the daemon did not start\n");
        return 1;
    }
    std::vector<double> lat;
    std::string firstCalls;
    if (!MeasureApply(b, triggers, lat, firstCalls) || lat.empty()) {
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
    int status = 0;
    if (!b.daemon.Stop(SIGTERM, 20000, status) || e2e::DescribeStatus(status) != "exit 0") {
        std::fprintf(stderr, "bench_daemon: the daemon did not stop cleanly\n");
        return 1;
    }
    return 0;
}
