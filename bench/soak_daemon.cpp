// soak_daemon: the daemon on the virtual board for a long run, the host played
// over a pty by this program (the e2e harness). Not part of CI.
//   1. flood: MiB of random bytes, then a valid apply (after the resynchronising
//      bytes 00 10 0F a host sends after garbage); the daemon's peak resident
//      memory before and after, and the time from the apply to the board;
//   2. soak: MINUTES at the line's rate (115200 bit/s, about 11.5 kB/s) of applies
//      that each switch the service and the output format, status on, an input
//      change every 5 s, a burst of random bytes every 7 s, and a fault in a
//      status function every 11 s. Every apply must reach the board (its
//      format on the display within 2 s). Resident memory and open descriptors
//      at start (after a 45 s warm-up), every minute and at the end, frames sent, applies sent and seen on
//      the board, CPU time.
//   soak_daemon [--minutes M] [--flood-mib N]      (defaults 10 and 100)
#include <dirent.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/daemon_rig.h"
#include "output/uhd_vid_format.h"
#include "tests/e2e/e2e_support.h"
#include "tests/e2e/host_line.h"

namespace {

const char* const kScenario =
    "service 1 name=\"soak HD\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n"
    "service 2 name=\"soak SD\" pcr=0x200\n"
    "video pid=0x200 codec=mpeg2 width=720 height=576 scan=tff fps=25 aspect=4:3\n"
    "audio pid=0x201 codec=ac3 rate=48000 channels=5.1\n";

constexpr double kLineBytesPerSecond = 115200.0 / 10.0;  // 8N1

uint32_t Code(uint32_t height, uint32_t width) {
    return UhdVidFormat(height, width, VideoFormatBase::SCAN_TYPE_PROGRESSIVE, VideoFormatBase::ASPECT_RATIO_16X9,
                        VideoFormatBase::FRAME_RATE_50).GetId();
}

int OpenFds(pid_t pid) {
    DIR* dir = opendir(("/proc/" + std::to_string(pid) + "/fd").c_str());
    if (dir == nullptr) return -1;
    int n = 0;
    while (dirent* e = readdir(dir)) n += e->d_name[0] != '.';
    closedir(dir);
    return n;
}

struct Soak {
    e2e::TempDir tmp;
    e2e::HostLine host;
    e2e::ChildProcess daemon;
    std::string sock;
    std::mt19937 random{20261123};
    uint64_t framesSent = 0;
    uint64_t bytesSent = 0;

    bool Start() {
        sock = tmp / "board.sock";
        e2e::WriteFile(tmp / "root/vendor/etc/version", "version=soak\n");
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
    void Count(uint64_t frames, uint64_t bytes) {
        framesSent += frames;
        bytesSent += bytes;
    }
    // One apply: status on, service 1 or 2, manual format 1080p50 or 720p50.
    void Apply(unsigned service, bool to1080) {
        host.SendU8(4, 1);
        host.SendU16(245, service << 8);
        host.SendU16(246, service << 8);
        host.SendU16(247, (service << 8) + 1);
        host.SendU8(242, 2);
        host.SendU8(243, 2);
        host.SendU16(250, service);
        host.SendU8(262, 2);
        host.SendU32(266, to1080 ? Code(1080, 1920) : Code(720, 1280));
        host.SendApply();
        Count(10, 10 * 9);
    }
    void Garbage(size_t bytes) {
        std::vector<unsigned char> junk(bytes);
        for (unsigned char& b : junk) b = static_cast<unsigned char>(random());
        junk.insert(junk.end(), {0x00, 0x10, 0x0F});  // what a host sends to get back in step
        host.SendRaw(junk);
        bytesSent += junk.size();
    }
    void Report(const char* when) {
        const pid_t pid = daemon.Pid();
        std::printf("%-6s VmRSS %lld kB, VmHWM %lld kB, open descriptors %d, threads %lld\n", when,
                    bench::StatusValue(pid, "VmRSS:"), bench::StatusValue(pid, "VmHWM:"), OpenFds(pid),
                    bench::StatusValue(pid, "Threads:"));
    }
};

bool Flood(Soak& s, int mib) {
    s.Apply(1, false);
    if (!e2e::WaitUntil([&] { return s.Display() == 10; })) return false;
    s.host.Drain(500);
    const pid_t pid = s.daemon.Pid();
    const long long hwm0 = bench::StatusValue(pid, "VmHWM:"), rss0 = bench::StatusValue(pid, "VmRSS:");
    const auto t0 = std::chrono::steady_clock::now();
    std::vector<unsigned char> chunk(1 << 20);
    for (int i = 0; i < mib; ++i) {
        for (unsigned char& b : chunk) b = static_cast<unsigned char>(s.random());
        if (!s.host.SendRaw(chunk)) return false;
        s.host.Drain(0);  // whatever the daemon said meanwhile
    }
    const double writeSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    s.Garbage(0);
    s.host.SendU32(266, Code(1080, 1920));
    const uint64_t sent = s.host.SendApply();
    uint64_t seen = 0;
    const bool applied = e2e::WaitUntil([&] {
        if (s.Display() != 12) return false;
        seen = e2e::MonotonicUs();
        return true;
    }, 5000);
    const long long hwm1 = bench::StatusValue(pid, "VmHWM:"), rss1 = bench::StatusValue(pid, "VmRSS:");
    std::printf("flood: %d MiB of random bytes written in %.2f s (%.1f MiB/s)\n", mib, writeSeconds,
                mib / writeSeconds);
    std::printf("  peak resident VmHWM %lld -> %lld kB (growth %lld kB), VmRSS %lld -> %lld kB\n", hwm0, hwm1,
                hwm1 - hwm0, rss0, rss1);
    if (applied)
        std::printf("  the apply after it on the board after %.1f ms (display polled)\n", (seen - sent) / 1000.0);
    else
        std::printf("  the apply after it did NOT reach the board within 5 s\n");
    return applied;
}

int RunSoak(Soak& s, double minutes) {
    const pid_t pid = s.daemon.Pid();
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    // Warm-up: 45 s of applies (the board's journal fills to its cap of 20000
    // calls meanwhile; it lives in the daemon's process), then the baseline.
    for (int i = 0; elapsed() < 45; ++i) {
        s.Apply(1 + i % 2, i % 2 == 0);
        s.host.Drain(20);
    }
    s.host.Drain(2000);
    s.Report("start");
    const long long cpu0 = bench::CpuTicks(pid);
    const uint64_t frames0 = s.framesSent;
    const uint64_t bytes0 = s.bytesSent;
    const auto soakStart = std::chrono::steady_clock::now();
    const auto soakSeconds = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - soakStart).count();
    };
    uint64_t applies = 0, applied = 0, lost = 0, bursts = 0, faults = 0, changes = 0;
    double nextChange = 5, nextBurst = 7, nextFault = 11, nextReport = 60;
    const char* const kStatusFunctions[] = {"av_get_status_info", "av_get_stream_info", "vout_display_get"};
    const char* const kChanges[] = {"video pid=0x100 width=1280 height=720 fps=50",
                                    "video pid=0x100 width=1920 height=1080 fps=25"};
    while (soakSeconds() < minutes * 60) {
        const double t = soakSeconds();
        if (t >= nextReport) {
            char when[16];
            std::snprintf(when, sizeof when, "%.0f min", t / 60);
            s.Report(when);
            std::fflush(stdout);
            nextReport += 60;
        }
        if (t >= nextChange) {
            e2e::BoardCommand(s.sock, kChanges[changes++ % 2]);
            nextChange += 5;
        }
        if (t >= nextBurst) {
            s.Garbage(4096);
            ++bursts;
            nextBurst += 7;
        }
        if (t >= nextFault) {
            e2e::BoardCommand(s.sock, std::string("fail ") + kStatusFunctions[faults++ % 3] + " 0x80a100ff 3");
            nextFault += 11;
        }
        const bool to1080 = applies % 2 == 0;
        s.Apply(1 + applies % 2, to1080);
        ++applies;
        const bool ok = e2e::WaitUntil([&] {
            s.host.Drain(2);
            return s.Display() == (to1080 ? 12 : 10);
        }, 2000);
        ok ? ++applied : ++lost;
        // Keep to the line's rate: the bytes sent so far take this long at 115200 bit/s.
        const double due = static_cast<double>(s.bytesSent - bytes0) / kLineBytesPerSecond;
        while (soakSeconds() < due) s.host.Drain(10);
        if (lost > 0 && lost % 10 == 1) std::printf("  %.0f s: %llu applies lost so far\n", soakSeconds(),
                                                    static_cast<unsigned long long>(lost));
    }
    const double secs = soakSeconds();
    const double cpu = static_cast<double>(bench::CpuTicks(pid) - cpu0) / static_cast<double>(sysconf(_SC_CLK_TCK));
    s.Report("end");
    std::printf("soak: %.1f min; %llu frames (%llu bytes, %.0f bytes/s incl. garbage) sent; %llu applies sent, %llu "
                "on the board, %llu lost; %llu garbage bursts, %llu input changes, %llu injected faults\n",
                secs / 60, static_cast<unsigned long long>(s.framesSent - frames0),
                static_cast<unsigned long long>(s.bytesSent - bytes0), (s.bytesSent - bytes0) / secs,
                static_cast<unsigned long long>(applies), static_cast<unsigned long long>(applied),
                static_cast<unsigned long long>(lost), static_cast<unsigned long long>(bursts),
                static_cast<unsigned long long>(changes), static_cast<unsigned long long>(faults));
    std::printf("  daemon CPU %.2f s (%.2f %% of one core); %.0f s in all\n", cpu, 100.0 * cpu / secs, elapsed());
    return lost == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    double minutes = 10;
    int mib = 100;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--minutes") == 0) minutes = std::atof(argv[i + 1]);
        if (std::strcmp(argv[i], "--flood-mib") == 0) mib = std::atoi(argv[i + 1]);
    }
    Soak s;
    if (!s.host.IsOpen() || !s.Start()) {
        std::fprintf(stderr, "soak_daemon: the daemon did not start\n");
        return 1;
    }
    s.Report("begin");
    std::fflush(stdout);
    bool ok = mib <= 0 || Flood(s, mib);
    if (minutes > 0) ok = RunSoak(s, minutes) == 0 && ok;
    int status = 0;
    if (!s.daemon.Stop(SIGTERM, 20000, status) || e2e::DescribeStatus(status) != "exit 0") {
        std::fprintf(stderr, "soak_daemon: the daemon did not stop cleanly (%s)\n", e2e::DescribeStatus(status).c_str());
        return 1;
    }
    std::printf("stopped: exit 0\n");
    return ok ? 0 : 1;
}
