// stbavd: the daemon entry. Reads the options, sets up the debug log, locks and
// writes the pid file (one daemon per root), checks that the serial device is a
// free terminal (one daemon per line), brings the decoder platform up, starts the
// subsystem (and, with -U, the upgrade receiver), then serves signals on the main
// thread (SIGHUP: log configuration again; SIGUSR1: frame counters) until SIGTERM
// or SIGINT, and tears everything down in reverse order. With -r the process
// enters the real-time policy right after the log set-up, before any thread is
// built, so that every thread inherits it. Only wiring; the parts live in control/.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "control/daemon_log.h"
#include "control/daemon_options.h"
#include "control/daemon_pid_file.h"
#include "control/daemon_platform.h"
#include "control/daemon_realtime.h"
#include "control/daemon_signals.h"
#include "control/stb_av_subsystem.h"
#include "control/stb_receive_upgrade_file.h"
#include "control/process_entry.h"
#include "toolkit/fixed_paths.h"
#include "toolkit/kt_rs232.h"
#include "toolkit/log.h"

#ifndef STBAVD_VERSION
#define STBAVD_VERSION "unknown"
#endif

namespace {

// -h and bad options end here: the exit status, or -1 to go on.
int ReadCommandLine(int argc, char** argv, DaemonOptions& options) {
    std::string error;
    const DaemonCommand command = ParseDaemonOptions(argc, argv, options, error);
    if (command == DaemonCommand::kRun) return -1;
    if (command == DaemonCommand::kVersion) {
        std::printf("stbavd %s\n", STBAVD_VERSION);
        return 0;
    }
    if (command == DaemonCommand::kUsageError) std::fprintf(stderr, "stbavd: %s\n", error.c_str());
    PrintUsage();
    PrintDaemonOptionsUsage();
    return command == DaemonCommand::kHelp ? 0 : 2;
}

void SetUpLog(const DaemonOptions& options) {
    InitDebugLog(DaemonLogConfigFile(options.logConfigFile));
    std::fflush(stdout);
    SetDaemonLogLevel(options.logLevel);
    EnsureDaemonLogOutput();
}

// The host line must be a terminal that nobody else holds: the serial adapter
// would otherwise start no reader. The trial port is closed again (the adapter
// opens its own); its lock would refuse the adapter.
bool CheckSerialDevice(const std::string& device) {
    KT::CRs232 port;
    if (port.Open(device, 115200, KT::CRs232::FLOW_SOFTWARE)) return true;
    std::fprintf(stderr, "stbavd: cannot open the serial device %s\n", port.OpenErrorText(device).c_str());
    return false;
}

bool WritePidFile(DaemonPidFile& pidFile) {
    const std::string path = stbav::paths::Resolve(stbav::paths::kPidFile);
    pid_t holder = 0;
    switch (pidFile.Write(path, holder)) {
        case DaemonPidFile::Result::kWritten:
            return true;
        case DaemonPidFile::Result::kHeld:
            std::fprintf(stderr, "stbavd: already running (pid %d), pid file %s\n", static_cast<int>(holder),
                         path.c_str());
            return false;
        case DaemonPidFile::Result::kError:
            break;
    }
    std::fprintf(stderr, "stbavd: cannot write the pid file %s: %s\n", path.c_str(), std::strerror(errno));
    return false;
}

// Serves SIGHUP and SIGUSR1 until a stop signal comes; returns that one.
int ServeSignals(const sigset_t& signals, const DaemonOptions& options, const StbAvSubsystem& subsystem) {
    log4cpp::Category& log = stbav::Logger("stbav.daemon");
    for (;;) {
        const int sig = WaitForStopSignal(signals);
        if (IsStopSignal(sig)) return sig;
        if (sig == SIGHUP) {
            const std::string file = DaemonLogConfigFile(options.logConfigFile);
            ReloadDaemonLog(file, options.logLevel);
            std::fflush(stdout);
            stbav::LogNotice(log, "signal %d: log configuration %s read again", sig, file.c_str());
        } else if (sig == SIGUSR1) {
            subsystem.UartAdapter().LogFrameCounters(true);
        }
    }
}

// The subsystem (and, with -U, the upgrade receiver) from start to a stop signal.
void ServeUntilStopped(DaemonPlatform& platform, const DaemonOptions& options, const sigset_t& stopSignals) {
    log4cpp::Category& log = stbav::Logger("stbav.daemon");
    StbAvSubsystem subsystem(platform.Chip(), platform.Demux(), platform.AudioDecoders(), platform.VideoDecoder(),
                              platform.VideoOutput(), platform.AudioOutput(), platform.ClosedCaption(),
                              options.serialDevice);
    subsystem.StartProcess();
    std::unique_ptr<StbReceiveUpgradeFile> receiver;
    if (options.uploadReceiver) {
        // Under a fresh -R root the package's folder does not exist yet.
        MakeParentFolders(stbav::paths::Resolve(stbav::paths::kUpgradePackage));
        receiver.reset(new StbReceiveUpgradeFile(options.uploadAddress, options.uploadPort));
    }
    stbav::LogNotice(log, "running on %s", options.serialDevice.c_str());
    const int sig = ServeSignals(stopSignals, options, subsystem);
    stbav::LogNotice(log, "signal %d: stopping", sig);
    receiver.reset();
}  // the subsystem goes before the platform it holds by reference

// From bring-up to the end of tear-down. The exit status.
int RunDaemon(const DaemonOptions& options, const sigset_t& stopSignals) {
    DaemonPlatform platform(options.audioDecoderCount);
    if (platform.BringUp() != 0) {
        std::fprintf(stderr, "stbavd: the decoder platform failed to come up (StbControlInit); stopping\n");
        return 1;  // the platform's destructor releases what was obtained
    }
    ServeUntilStopped(platform, options, stopSignals);
    platform.TearDown();
    stbav::LogNotice(stbav::Logger("stbav.daemon"), "stopped");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const sigset_t stopSignals = BlockStopSignals();  // before any thread exists
    DaemonOptions options;
    const int status = ReadCommandLine(argc, argv, options);
    if (status >= 0) return status;
    stbav::paths::SetRoot(options.root);
    SetUpLog(options);
    if (options.realtimePriority > 0) EnterRealtime(options.realtimePriority);  // before any thread exists
    DaemonPidFile pidFile;  // removed when main returns
    if (!WritePidFile(pidFile)) return 1;
    if (!CheckSerialDevice(options.serialDevice)) return 1;
    return RunDaemon(options, stopSignals);
}
