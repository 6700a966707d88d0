// stbavd: the daemon entry. Reads the options, sets up the debug log, writes the
// pid file, brings the decoder platform up, starts the subsystem (and, with -U,
// the upgrade receiver), then waits on the main thread for SIGTERM or SIGINT and
// tears everything down in reverse order. Only wiring; the parts live in control/.
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
#include "control/daemon_signals.h"
#include "control/stb_av_subsystem.h"
#include "control/stb_receive_upgrade_file.h"
#include "control/process_entry.h"
#include "toolkit/fixed_paths.h"
#include "toolkit/log.h"

namespace {

// -h and bad options end here: the exit status, or -1 to go on.
int ReadCommandLine(int argc, char** argv, DaemonOptions& options) {
    std::string error;
    const DaemonCommand command = ParseDaemonOptions(argc, argv, options, error);
    if (command == DaemonCommand::kRun) return -1;
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

// The host line must exist: the serial adapter would otherwise start no reader.
bool CheckSerialDevice(const std::string& device) {
    const int fd = open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) {
        std::fprintf(stderr, "stbavd: cannot open the serial device %s: %s\n", device.c_str(), std::strerror(errno));
        return false;
    }
    close(fd);
    return true;
}

bool WritePidFile(DaemonPidFile& pidFile) {
    const std::string path = stbav::paths::Resolve(stbav::paths::kPidFile);
    if (pidFile.Write(path)) return true;
    std::fprintf(stderr, "stbavd: cannot write the pid file %s: %s\n", path.c_str(), std::strerror(errno));
    return false;
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
        receiver.reset(new StbReceiveUpgradeFile(options.uploadPort));
    }
    stbav::LogNotice(log, "running on %s", options.serialDevice.c_str());
    const int sig = WaitForStopSignal(stopSignals);
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
    if (!CheckSerialDevice(options.serialDevice)) return 1;
    DaemonPidFile pidFile;  // removed when main returns
    if (!WritePidFile(pidFile)) return 1;
    return RunDaemon(options, stopSignals);
}
