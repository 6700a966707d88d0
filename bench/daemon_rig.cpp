// The benchmarks' daemon rig and /proc readings. The bench's own thread.
#include "bench/daemon_rig.h"

#include <dirent.h>
#include <signal.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "output/uhd_vid_format.h"

namespace bench {
namespace {

const char* const kScenario =
    "service 1 name=\"bench\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n";

uint32_t Code(uint32_t height, uint32_t width) {
    return UhdVidFormat(height, width, VideoFormatBase::SCAN_TYPE_PROGRESSIVE, VideoFormatBase::ASPECT_RATIO_16X9,
                        VideoFormatBase::FRAME_RATE_50).GetId();
}

long long KeyValue(const std::string& path, const std::string& key) {
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line))
        if (line.compare(0, key.size(), key) == 0) return std::atoll(line.c_str() + key.size());
    return -1;
}

}  // namespace

bool DaemonRig::Start(const std::vector<std::string>& extra) {
    sock = tmp / "board.sock";
    e2e::WriteFile(tmp / "root/vendor/etc/version", "version=bench\n");
    e2e::WriteFile(tmp / "input.scn", kScenario);
    std::vector<std::string> args = {"-d", host.DeviceName(), "-R", tmp / "root"};
    args.insert(args.end(), extra.begin(), extra.end());
    const std::vector<std::string> env = {"STBSIM_STREAM=" + (tmp / "input.scn"), "STBSIM_CONTROL=" + sock};
    if (!daemon.Start(STBAVD_PATH, args, env, tmp / "daemon.out", tmp / "daemon.err")) return false;
    return host.WaitForOp(3) && e2e::WaitUntil([&] { return e2e::FileExists(sock); });
}

bool DaemonRig::Stop() {
    int status = 0;
    const bool ok = daemon.Stop(SIGTERM, 20000, status) && e2e::DescribeStatus(status) == "exit 0";
    host.Clear();
    return ok;
}

long long DaemonRig::Display() {
    e2e::FlatJson s;
    s.Parse(e2e::BoardCommand(sock, "state"));
    return s.Num("display.format");
}

void DaemonRig::SelectService() {
    host.SendU16(245, 0x100);
    host.SendU16(246, 0x100);
    host.SendU16(247, 0x101);
    host.SendU8(242, 2);
    host.SendU8(243, 2);
    host.SendApply();
}

bool MeasureApply(DaemonRig& b, int triggers, const std::string& callPrefix, std::vector<double>& latenciesUs,
                  std::string& firstCalls) {
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
        auto first = std::find_if(calls.begin(), calls.end(), [&](const e2e::JournalEntry& e) {
            if (e.timeUs < t) return false;
            return callPrefix.empty() ? e.name != "av_get_stream_info" : e.name.compare(0, callPrefix.size(), callPrefix) == 0;
        });
        if (first == calls.end()) return false;
        latenciesUs.push_back(static_cast<double>(first->timeUs - t));
        if (firstCalls.find(first->name) == std::string::npos)
            firstCalls += (firstCalls.empty() ? "" : ", ") + first->name;
    }
    return true;
}

bool SettleIdle(DaemonRig& b) {
    b.host.SendU8(262, 1);  // automatic
    b.host.SendU8(4, 1);    // status on
    b.host.SendApply();
    b.SelectService();
    if (!b.host.WaitForValue(271, 1920)) return false;
    b.host.Drain(4500);  // the output format follows and is reported; then nothing changes
    return true;
}

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

long long StatusValue(pid_t pid, const std::string& key) {
    return KeyValue("/proc/" + std::to_string(pid) + "/status", key);
}

long long ContextSwitches(pid_t pid) {
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    DIR* dir = opendir(tasks.c_str());
    if (dir == nullptr) return -1;
    long long sum = 0;
    while (dirent* e = readdir(dir)) {
        if (e->d_name[0] == '.') continue;
        const std::string status = tasks + "/" + e->d_name + "/status";
        sum += std::max(0LL, KeyValue(status, "voluntary_ctxt_switches:")) +
               std::max(0LL, KeyValue(status, "nonvoluntary_ctxt_switches:"));
    }
    closedir(dir);
    return sum;
}

double Quantile(const std::vector<double>& sorted, double q) {
    if (sorted.empty()) return 0;
    const size_t i = static_cast<size_t>(std::ceil(q * static_cast<double>(sorted.size()))) ;
    return sorted[std::min(sorted.size() - 1, i == 0 ? 0 : i - 1)];
}

}  // namespace bench
