// The daemon as a process: the real stbavd on the virtual board, its serial
// line a pty whose master the test holds, playing the host with the project's
// own protocol code; the board watched and steered through its control socket
// and its journal. Every test ends with SIGTERM (the start-up test with SIGINT)
// and a clean exit (status 0, no sanitizer report in the daemon's stderr).
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "output/uhd_vid_format.h"
#include "tests/e2e/daemon_rig.h"
#include "toolkit/sanitizer_build.h"

using namespace e2e;  // the rig, its support and the operations' numbers

namespace {

// Display words of the board.
constexpr long long kDisplay720p = 10, kDisplay1080i = 11, kDisplay1080p = 12, kRate50 = 64;

const char* const kScenario =
    "service 1 name=\"e2e HD\" pcr=0x100\n"
    "video pid=0x100 codec=h264 width=1920 height=1080 scan=tff fps=25 aspect=16:9\n"
    "audio pid=0x101 codec=mpeg2 rate=48000 channels=2\n"
    "service 2 name=\"e2e SD\" pcr=0x200\n"
    "video pid=0x200 codec=mpeg2 width=720 height=576 scan=tff fps=25 aspect=4:3\n"
    "audio pid=0x201 codec=ac3 rate=48000 channels=5.1\n";

// Policy and real-time priority of every thread of a process (its threads
// listed in /proc/PID/task).
struct ThreadSched {
    std::string name;
    int priority;
    int policy;
};
std::vector<ThreadSched> ThreadSchedules(pid_t pid) {
    std::vector<ThreadSched> out;
    std::error_code ec;
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task", ec)) {
        std::string comm;
        const pid_t tid = std::atoi(task.path().filename().c_str());
        sched_param param{};
        // The thread may have ended meanwhile.
        if (!e2e::ReadFile(task.path() / "comm", comm) || sched_getparam(tid, &param) != 0) continue;
        out.push_back({comm.substr(0, comm.find('\n')), param.sched_priority, sched_getscheduler(tid)});
    }
    return out;
}

class DaemonTest : public ::testing::Test, protected e2e::DaemonRig {
protected:
    DaemonTest() : DaemonRig("# build identity\nversion=e2e-1.2.3\n") { e2e::WriteFile(m_Tmp / "input.scn", kScenario); }

    void StartDaemon(const std::vector<std::string>& extra = {}) { LaunchReady(m_Tmp / "input.scn", extra); }

    // Service 1 of the scenario: H.264 video (type 2) and MPEG-2 audio (type 2).
    void SelectService() {
        SendService(0x100, 0x100, 0x101, 2, 2, 1, "e2e HD");
        m_Host.SendApply();
    }
    // Status on and service 1 selected; true once the host is sent its picture width.
    bool Playing() {
        EnableStatus();
        SelectService();
        return m_Host.WaitForValue(kVideoWidth, 1920);
    }
    // The gaps between the heartbeats received since the last Clear, in ms.
    std::vector<uint64_t> HeartbeatGapsMs() const {
        std::vector<uint64_t> gaps;
        const HostOp* previous = nullptr;
        for (const HostOp& op : m_Host.Received()) {
            if (op.opId != kHeartBeat) continue;
            if (previous != nullptr) gaps.push_back((op.monoUs - previous->monoUs) / 1000);
            previous = &op;
        }
        return gaps;
    }
};

// (a) The host hears the version from the version file, then readiness; the
// shipped log configuration loads and the pid file names the daemon; every
// thread runs under normal scheduling (no -r). SIGHUP reads the log
// configuration again and the daemon goes on: after the file was changed to log
// into a file, the lines go there. SIGINT stops it as SIGTERM does (every other
// test ends with SIGTERM): status 0 and nothing left behind (the platform's
// tear-down, call by call, is in GoldenJournalTest).
TEST_F(DaemonTest, StartUpSignalsAndSigintStopLeaveNothingBehind) {
    StartDaemon();
    const HostOp* version = m_Host.Last(kSoftwareVersion);
    ASSERT_NE(nullptr, version);
    EXPECT_EQ("e2e-1.2.3", version->Text());
    EXPECT_EQ("stbav_ready", m_Host.Last(kReady)->Text());
    EXPECT_LT(version, m_Host.Last(kReady)) << "the version comes first";

    EXPECT_NE(std::string::npos,
              Stdout().find("Found debug-log configuration file: " + Root("/vendor/etc/tevrin-log4cpp.init")));
    EXPECT_EQ(std::to_string(m_Daemon.Pid()) + "\n", FileText("root/data/var/run/tevrin.pid"));
    for (const ThreadSched& t : ThreadSchedules(m_Daemon.Pid())) EXPECT_EQ(SCHED_OTHER, t.policy) << t.name;

    const std::string logFile = m_Tmp / "daemon.log";
    ASSERT_TRUE(e2e::WriteFile(Root("/vendor/etc/tevrin-log4cpp.init"),
                               "appender root pattern file " + logFile + " %p %c: %m%n\n"));
    ::kill(m_Daemon.Pid(), SIGHUP);
    std::string log;
    ASSERT_TRUE(e2e::WaitUntil([&] {
        return e2e::ReadFile(logFile, log) && log.find("NOTICE stbav.daemon: signal 1: log configuration " +
                                                       Root("/vendor/etc/tevrin-log4cpp.init") + " read again\n") !=
                                                  std::string::npos;
    })) << StderrTail();
    ASSERT_TRUE(m_Host.SendRaw({0x0F, 0x10}));  // an empty frame
    EnableStatus();
    EXPECT_TRUE(m_Host.WaitForOp(kHeartBeat)) << StderrTail();
    // SIGUSR1 logs the receiver's counters.
    ::kill(m_Daemon.Pid(), SIGUSR1);
    EXPECT_TRUE(e2e::WaitUntil([&] {
        return e2e::ReadFile(logFile, log) &&
               log.find("NOTICE stbav.uartadapter: UartRecv: frames received=3 decoded=2 failed=1\n") !=
                   std::string::npos;
    })) << log;
    StopCleanly(SIGINT);
    EXPECT_FALSE(e2e::FileExists(Root("/data/var/run/tevrin.pid")));
    EXPECT_FALSE(e2e::FileExists(Socket()));
}

// -r: every thread of the daemon (the board's included) runs under the FIFO
// policy at the priority given, with its memory locked, and serves the host as
// before (without -r every thread keeps normal scheduling: the start-up test).
TEST_F(DaemonTest, RealtimeOptionPutsEveryThreadUnderFifo) {
#ifdef STBAV_CHILD_LAUNCHER
    GTEST_SKIP() << "under qemu-user the policy and the lock would reach the emulator's own threads and memory";
#endif
    StartDaemon({"--realtime=7"});
    if (Stderr().find("SCHED_FIFO refused") != std::string::npos)
        GTEST_SKIP() << "this runner may not use the real-time policy:\n" << StderrTail();
    ASSERT_TRUE(Playing()) << StderrTail();
    std::set<std::string> names;
    for (const ThreadSched& t : ThreadSchedules(m_Daemon.Pid())) {
        names.insert(t.name);
        EXPECT_EQ(std::make_pair(SCHED_FIFO, 7), std::make_pair(t.policy, t.priority)) << t.name;
    }
    for (const char* name : {"UART Rx", "UART Px", "poller", "FfAvProbe"}) EXPECT_EQ(1u, names.count(name)) << name;
#if !STBAV_SANITIZER_BUILD
    // Every mapping, those from before the call included, is locked (the kernel's
    // own vdso pages aside).
    std::string status;
    ASSERT_TRUE(e2e::ReadFile("/proc/" + std::to_string(m_Daemon.Pid()) + "/status", status));
    const auto kb = [&](const std::string& key) {
        const size_t at = status.find(key);
        return at == std::string::npos ? -1L : std::atol(status.c_str() + at + key.size());
    };
    EXPECT_GE(kb("VmLck:"), kb("VmSize:") - 1024) << status;
#endif
}

// -r refused (no CAP_SYS_NICE and no RLIMIT_RTPRIO: root drops the capabilities
// with setpriv, anyone else has none): one clear line, then the daemon serves the
// host with normal scheduling.
TEST_F(DaemonTest, RealtimeRefusedIsSaidAndTheDaemonRunsOn) {
    if (geteuid() == 0) m_Wrapper = {"/usr/bin/setpriv", "--bounding-set=-sys_nice,-ipc_lock", "--inh-caps=-all"};
    StartDaemon({"-r", "50"});
    EXPECT_NE(std::string::npos, Stderr().find("stbavd: real-time -r 50: SCHED_FIFO refused (Operation not permitted"))
        << StderrTail();
    ASSERT_TRUE(Playing()) << StderrTail();
    for (const ThreadSched& t : ThreadSchedules(m_Daemon.Pid())) EXPECT_EQ(SCHED_OTHER, t.policy) << t.name;
}

// (b) Enabling status brings every item at once, then only the heartbeat every
// two seconds while nothing changes. (c) Service selection: the board decodes
// the service and the host's status shows it. (The player's reconfiguration
// and restart, call by call, is in
// GoldenJournalTest.DaemonSessionMatchesTheGoldenJournal.)
TEST_F(DaemonTest, StatusGivesFullReportThenHeartbeatsAndServiceSelectionReachesTheBoardAndTheHost) {
    StartDaemon();
    m_Host.Clear();
    EnableStatus();
    ASSERT_TRUE(m_Host.WaitForOp(kHeartBeat)) << StderrTail();
    m_Host.Drain(300);  // the rest of the first report
    std::set<unsigned> first;
    for (const HostOp& op : m_Host.Received()) first.insert(op.opId);
    for (unsigned id : {kReset, kHeartBeat, kSelAudioPid, kSelVideoPid, kSelServiceName, kVideoWidth, kVideoHeight,
                        kCurrentOutputFormat})
        EXPECT_EQ(1u, first.count(id)) << "opId " << id << " missing from the full report";

    m_Host.Clear();
    ASSERT_TRUE(m_Host.WaitForCount(kHeartBeat, 3, 15000));
    for (const HostOp& op : m_Host.Received())
        EXPECT_EQ(kHeartBeat, op.opId) << "only the heartbeat while nothing changes";
    for (uint64_t gap : HeartbeatGapsMs()) {
        EXPECT_GE(gap, 1000u);
        EXPECT_LE(gap, 4000u);
    }

    SelectService();
    for (const auto& [opId, value] : std::map<unsigned, uint64_t>{
             {kSelVideoPid, 0x100}, {kSelVideoType, 2}, {kSelAudioPid, 0x101}, {kSelAudioType, 2}, {kSelServiceNum, 1}})
        EXPECT_TRUE(m_Host.WaitForValue(opId, value)) << "opId " << opId;
    EXPECT_TRUE(m_Host.WaitFor([](const HostOp& op) { return op.opId == kSelServiceName && op.Text() == "e2e HD"; }));

    const FlatJson state = State();
    EXPECT_EQ(std::make_tuple("true", "true", "e2e HD"), std::make_tuple(state.Get("player.video_decoding"),
              state.Get("player.audio_decoding"), state.Get("player.service_name")));
}

// One daemon per root and per line: a second one on the same root names the
// first's pid; one on another root but the same line names the busy device;
// the first keeps its pid file and its line, and still applies: (d) manual
// 1080p50 sets the display's words; automatic brings back the input's 1080i25.
// (e) The input turns 720p50 while automatic: the display follows within a
// poll and the host sees the new picture.
TEST_F(DaemonTest, SecondDaemonRefusedThenManualThenAutomaticOutputFormatFollowingTheInput) {
    StartDaemon();
    ASSERT_TRUE(Playing()) << StderrTail();
    e2e::HostLine otherLine;
    ASSERT_TRUE(otherLine.IsOpen());
    struct Case {
        std::vector<std::string> args;
        std::string stderrHas;
    } const cases[] = {
        {{"-d", otherLine.DeviceName(), "-R", m_Tmp / "root"},
         "stbavd: already running (pid " + std::to_string(m_Daemon.Pid()) + ")"},
        {{"-d", m_Host.DeviceName(), "-R", m_Tmp / "root2"},
         "stbavd: cannot open the serial device " + m_Host.DeviceName() +
             ": in use by another program (a serial line has one user at a time)\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[3]);
        e2e::ChildProcess second;
        ASSERT_TRUE(second.Start(STBAVD_PATH, c.args, SanitizerEnvironment(), m_Tmp / "second.out",
                                 m_Tmp / "second.err"));
        int status = -1;
        ASSERT_TRUE(second.Wait(20000, status));
        const std::string err = FileText("second.err");
        EXPECT_EQ("exit 1", e2e::DescribeStatus(status)) << err;
        EXPECT_NE(std::string::npos, err.find(c.stderrHas)) << err;
    }
    EXPECT_EQ(std::to_string(m_Daemon.Pid()) + "\n", FileText("root/data/var/run/tevrin.pid"));

    SendManualFormat(Progressive50(1080, 1920));
    EXPECT_TRUE(DisplayIs(kDisplay1080p, kRate50)) << StderrTail();
    EXPECT_TRUE(m_Host.WaitForValue(kCurrentOutputFormat, Progressive50(1080, 1920)));

    m_Host.SendU8(kFormatMode, 1);
    m_Host.SendApply();
    ASSERT_TRUE(DisplayIs(kDisplay1080i, kRate50));
    EXPECT_TRUE(m_Host.WaitFor([](const HostOp& op) {
        return op.opId == kCurrentOutputFormat && UhdVidFormat(static_cast<uint32_t>(op.Value())).GetScanType() ==
                                                      VideoFormatBase::SCAN_TYPE_INTERLACED;
    }));

    m_Host.Clear();
    const uint64_t changed = e2e::MonotonicUs();
    ASSERT_EQ("ok\n", e2e::BoardCommand(Socket(), "video width=1280 height=720 scan=progressive fps=50"));
    EXPECT_TRUE(DisplayIs(kDisplay720p, kRate50));
    // One 2 s poll notices the change; the rest is slack for slow builds.
    EXPECT_LT((e2e::MonotonicUs() - changed) / 1000, 4500u);
    EXPECT_TRUE(m_Host.WaitForValue(kVideoWidth, 1280));
    EXPECT_TRUE(m_Host.WaitForValue(kVideoHeight, 720));
    EXPECT_TRUE(m_Host.WaitForValue(kVideoScanType, 2));  // progressive
}

// (f) A package uploaded over TCP lands in the root's sdcard/update.zip, and
// stbsystemUpdate 1 hands exactly that file to the board's upgrade service.
TEST_F(DaemonTest, UploadThenUpgrade) {
    const uint16_t port = e2e::FreeTcpPort();
    ASSERT_NE(0, port);
    StartDaemon({"-U", "-P", std::to_string(port)});

    std::string package(300 * 1024, '\0');
    std::mt19937 random(7);
    for (char& c : package) c = static_cast<char>(random());
    ASSERT_TRUE(e2e::WaitUntil([&] { return e2e::UploadTcp(port, package); })) << StderrTail();
    std::string stored;
    EXPECT_TRUE(e2e::WaitUntil([&] { return e2e::ReadFile(Root("/sdcard/update.zip"), stored) && stored == package; }))
        << "stored " << stored.size() << " of " << package.size() << " bytes";

    m_Host.SendU8(kSystemUpdate, 1);
    m_Host.SendApply();
    EXPECT_TRUE(e2e::WaitUntil([&] { return State().Get("upgrades.0") == Root("/sdcard/update.zip"); }))
        << e2e::BoardCommand(Socket(), "state");
}

// The command line and failed starts, each as its own process.
TEST_F(DaemonTest, CommandLineAndFailedStarts) {
    e2e::WriteFile(m_Tmp / "broken.scn", "video pid=0x100\n");  // a stream before any service
    struct Case {
        std::vector<std::string> args;  // after the common options when launched on the pty
        std::string stream;             // on the pty with this input when given
        std::string status;
        std::string stderrHas;
        std::string stdoutStarts = "";
    } const cases[] = {
        {{"-h"}, "", "exit 0",
         "morlin usage:\n  -h     show usage\n  -v n   logging level\n            0: error (default)\n"
         "            1: warning\n            2: notice\n            3: info\n            4: debug\n\n"},
        {{"-x"}, "", "exit 2", "morlin usage:"},
        {{"-v", "5"}, "", "exit 2", "bad value '5' for -v"},
        {{"-v"}, "", "exit 2", "-v needs a value"},
        {{"--log-level=5"}, "", "exit 2", "bad value '5' for -v"},
        {{"--bogus"}, "", "exit 2", "stbavd: unknown option '--bogus'\nmorlin usage:"},
        {{"-hU"}, "", "exit 0", "morlin usage:"},
        {{"--version"}, "", "exit 0", "", "stbavd "},
        {{"-U", "-P", "0"}, "", "exit 2", "bad value '0' for -P"},
        {{"-r", "0"}, "", "exit 2", "stbavd: bad value '0' for -r\nmorlin usage:"},
        {{"--realtime=100"}, "", "exit 2", "bad value '100' for -r"},
        {{"extra"}, "", "exit 2", "morlin usage:"},
        {{"-d", "/nonexistent/ttyS9", "-R", m_Tmp / "root"}, "", "exit 1",
         "stbavd: cannot open the serial device /nonexistent/ttyS9: No such file or directory\n"},
        {{"-d", "/dev/null", "-R", m_Tmp / "root"}, "", "exit 1",
         "stbavd: cannot open the serial device /dev/null: not a terminal (a serial line is needed)\n"},
        {{"-c", "/nonexistent/log.init"}, m_Tmp / "broken.scn", "exit 1",
         "system_init failed: 0x80a10004."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[0]);
        if (!c.stream.empty()) {
            Launch(c.stream, c.args);
        } else {
            ASSERT_TRUE(m_Daemon.Start(STBAVD_PATH, c.args, SanitizerEnvironment(), m_Tmp / "daemon.out",
                                       m_Tmp / "daemon.err"));
        }
        int status = -1;
        ASSERT_TRUE(m_Daemon.Wait(20000, status));
        EXPECT_EQ(c.status, e2e::DescribeStatus(status)) << StderrTail();
        EXPECT_NE(std::string::npos, Stderr().find(c.stderrHas)) << StderrTail();
        EXPECT_EQ(0u, Stdout().find(c.stdoutStarts)) << Stdout();
        EXPECT_FALSE(HasSanitizerReport(Stderr())) << StderrTail();
    }
    // The failed bring-up: a clear line, no pid file left.
    EXPECT_NE(std::string::npos, Stderr().find("stbavd: the decoder platform failed to come up"));
    EXPECT_NE(std::string::npos,
              Stdout().find("ERROR: Failed to initialize the debug logger with config file, /nonexistent/log.init"));
    EXPECT_FALSE(e2e::FileExists(Root("/data/var/run/tevrin.pid")));
}

// -U with an address: the receiver listens on that address only.
TEST_F(DaemonTest, UploadReceiverOnTheLoopbackAddressOnly) {
    const uint16_t port = e2e::FreeTcpPort();
    ASSERT_NE(0, port);
    StartDaemon({"--upload=127.0.0.1", "--upload-port=" + std::to_string(port)});
    char listening[64];
    std::snprintf(listening, sizeof listening, ": 0100007F:%04X 00000000:0000 0A ", port);  // 0A: LISTEN
    std::string tcp;
    EXPECT_TRUE(e2e::WaitUntil([&] {
        return e2e::ReadFile("/proc/net/tcp", tcp) && tcp.find(listening) != std::string::npos;
    })) << tcp;
    EXPECT_TRUE(e2e::UploadTcp(port, "package"));
}

// Every platform function, through the board's "fail" command. Those the daemon
// calls while it runs fail once and then on every call while the host enables
// status, selects a service and changes the output format: the daemon stays up,
// and once the fault is lifted the next apply reaches the board. Heartbeats keep
// their 2 s pace throughout. Those called only at bring-up (or on a change of
// the input's format, which this input has not) are not called while running
// (a fault there ends the start with 1, as the failed-start test shows for
// system_init); those of the tear-down all fail for good at the end, and
// SIGTERM still ends the daemon with 0.
TEST_F(DaemonTest, FaultSweepEveryPlatformFunction) {
    const char* const running[] = {"av_set_config",      "av_get_config",    "av_stop",
                                   "av_start_video",     "av_start_audio",   "av_get_status_info",
                                   "av_get_stream_info", "vout_display_get", "vout_display_set"};
    const char* const bringUp[] = {
        "system_init",       "av_init",          "av_create",          "av_prepare",
        "av_set_event_config", "av_search_progInfo", "av_stop_video",  "av_reset",
        "system_upgrade",    "vout_init",        "vout_open_channel",  "vout_window_create",
        "vout_window_attach_input", "aout_init", "aout_open",          "aout_set_volume",
        "aout_set_mute",     "aout_track_create", "aout_track_attach_input", "cc_init",
        "cc_creat",          "cc_set_window",    "cc_start",           "cc_getAttr",
        "cc_setAttr",        "vout_window_open", "cc_send_VBI_enable", "cc_show_subtitle_enable"};
    const char* const tearDown[] = {
        "system_deinit",      "av_destory",        "av_deinit",          "vout_deinit",
        "vout_close_channel", "vout_window_destroy", "vout_window_detach_input", "vout_window_close",
        "aout_deinit",        "aout_close",        "aout_track_destroy", "aout_track_detach_input",
        "cc_deinit",          "cc_destroy",        "cc_stop"};
    const uint32_t formats[2] = {Progressive50(1080, 1920), Progressive50(720, 1280)};
    const long long displays[2] = {kDisplay1080p, kDisplay720p};
    int turn = 0;
    const auto hostWorks = [&] {
        EnableStatus();
        // Services 1 and 2 in turn, so that each apply restarts the player.
        const unsigned service = 1 + turn % 2;
        SendService(service << 8, service << 8, (service << 8) + 1, 2, 2, service, service == 1 ? "e2e HD" : "e2e SD");
        SendManualFormat(formats[++turn % 2]);
    };
    const auto fail = [&](const std::string& fn, const char* count) {
        return e2e::BoardCommand(Socket(), "fail " + fn + " 0x80a100ff " + count) == "ok\n";
    };
    // Calls of fn still to fail, -1 when none; reads the line meanwhile, so that
    // heartbeats carry the time they came.
    const auto remaining = [&](const std::string& fn) {
        m_Host.Drain(5);
        const FlatJson state = State();
        for (int i = 0; state.Has("faults." + std::to_string(i) + ".function"); ++i)
            if (state.Get("faults." + std::to_string(i) + ".function") == fn)
                return state.Num("faults." + std::to_string(i) + ".remaining");
        return -1LL;
    };
    int status = 0;  // of the daemon, should it end

    StartDaemon();
    EnableStatus();
    ASSERT_TRUE(m_Host.WaitForOp(kHeartBeat)) << StderrTail();
    for (const std::string fn : running) {
        SCOPED_TRACE(fn);
        ASSERT_TRUE(fail(fn, "1"));
        hostWorks();
        EXPECT_TRUE(e2e::WaitUntil([&] { return remaining(fn) == -1; })) << "the daemon never called it";
        ASSERT_TRUE(fail(fn, "1000000"));
        hostWorks();
        EXPECT_TRUE(e2e::WaitUntil([&] { return remaining(fn) < 1000000; })) << "not called while failing for good";
        ASSERT_FALSE(m_Daemon.Wait(0, status)) << "the daemon ended\n" << StderrTail();
        ASSERT_TRUE(fail(fn, "0"));
        hostWorks();
        EXPECT_TRUE(e2e::WaitUntil([&] { return remaining(fn) == -1 && State().Num("display.format") ==
                                                                            displays[turn % 2]; }))
            << StderrTail();
    }
    // Faults on functions that only bring-up calls stay pending while the host works.
    for (const char* fn : bringUp) ASSERT_TRUE(fail(fn, "1"));
    hostWorks();
    EXPECT_TRUE(e2e::WaitUntil([&] {
        m_Host.Drain(5);
        return State().Num("display.format") == displays[turn % 2];
    }));
    ASSERT_FALSE(m_Daemon.Wait(0, status)) << "the daemon ended\n" << StderrTail();

    const std::vector<uint64_t> gaps = HeartbeatGapsMs();
    ASSERT_GE(gaps.size(), 2u) << "fewer than 3 heartbeats";
    // A stall is a missed heartbeat (two periods apart). Less is the scheduler's jitter,
    // which under qemu on a loaded machine reached 650 ms.
    EXPECT_LE(*std::max_element(gaps.begin(), gaps.end()), 4000u) << "heartbeats stalled";

    for (const char* fn : tearDown) ASSERT_TRUE(fail(fn, "1000000"));
    StopCleanly();
}

}  // namespace
