// DaemonRig: the real stbavd on the virtual board as a child process, its
// serial line the master side of a HostLine, its fixed paths under a temporary
// root that holds the version file and the shipped log configuration. The
// board's control socket, journal and the daemon's stdout/stderr live in the
// same folder. Test thread only; a daemon still running at the end is stopped
// with SIGTERM and must exit 0 without a sanitizer report.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <string>
#include <vector>

#include "output/uhd_vid_format.h"
#include "tests/e2e/e2e_support.h"
#include "tests/e2e/host_line.h"
#include "tests/support/child_launcher.h"

namespace e2e {

// Operations the host sends.
enum : unsigned {
    kStatusEnable = 4, kSystemUpdate = 6, kStatusClear = 8, kAnalogPort = 18, kAnalogLevel = 20, kOverlayType = 155,
    kOverlayCcType = 156, kOverlayNtscType = 157, kOverlayDtvType = 158, kVideoCodecType = 242, kAudioCodecType = 243,
    kPcr = 245, kVideo = 246, kAudio = 247, kServiceName = 249, kServiceNum = 250, kLine21Cc = 254,
    kOutputInterface = 261, kFormatMode = 262, kManualFormat = 266,
};
// Operations the host receives.
enum : unsigned {
    kReset = 0, kHeartBeat = 1, kSoftwareVersion = 2, kReady = 3, kSamplingRate = 75, kSelAudioPid = 213,
    kSelAudioType = 214, kSelVideoPid = 220, kSelVideoType = 221, kSelServiceNum = 225, kSelServiceName = 226,
    kCurrentOutputFormat = 267, kVideoWidth = 271, kVideoHeight = 272, kVideoAspect = 273, kVideoFrameRate = 274,
    kVideoScanType = 275, kVideoProfile = 276, kVideoLevel = 277, kVideoChroma = 280, kVideoBitDepth = 283,
};

// The output format code of a progressive 16:9 picture at 50 Hz.
inline uint32_t Progressive50(uint32_t height, uint32_t width) {
    return UhdVidFormat(height, width, VideoFormatBase::SCAN_TYPE_PROGRESSIVE, VideoFormatBase::ASPECT_RATIO_16X9,
                        VideoFormatBase::FRAME_RATE_50).GetId();
}

class DaemonRig {
public:
    explicit DaemonRig(const std::string& versionFile) {
        WriteFile(Root("/vendor/etc/version"), versionFile);
        std::string logConfig;
        ReadFile(std::string(STBAV_ETC_DIR) + "/tevrin-log4cpp.init", logConfig);
        WriteFile(Root("/vendor/etc/tevrin-log4cpp.init"), logConfig);
    }
    virtual ~DaemonRig() {
        if (m_Daemon.Running()) StopCleanly();
    }

    std::string Root(const std::string& fixedPath) const { return m_Tmp / "root" + fixedPath; }
    std::string Socket() const { return m_Tmp / "board.sock"; }
    std::string JournalFile() const { return m_Tmp / "journal.txt"; }
    std::string Stderr() const { return FileText("daemon.err"); }
    std::string Stdout() const { return FileText("daemon.out"); }
    // The end of the daemon's stderr, for failure messages.
    std::string StderrTail() const {
        const std::string text = Stderr();
        return "--- daemon stderr (tail) ---\n" + text.substr(text.size() > 6000 ? text.size() - 6000 : 0);
    }

    // Starts stbavd on the host's pty with stream as the board's input; extra
    // options after the common ones.
    void Launch(const std::string& stream, const std::vector<std::string>& extra = {}) {
        ASSERT_TRUE(m_Host.IsOpen());
        std::vector<std::string> args = {"-d", m_Host.DeviceName(), "-R", m_Tmp / "root", "-v", "4"};
        args.insert(args.end(), extra.begin(), extra.end());
        std::vector<std::string> env = SanitizerEnvironment();
        env.insert(env.end(),
                   {"STBSIM_STREAM=" + stream, "STBSIM_CONTROL=" + Socket(), "STBSIM_JOURNAL=" + JournalFile()});
        std::string program = STBAVD_PATH;
        if (!m_Wrapper.empty()) {
            // e.g. setpriv, a program of the build machine: it runs the daemon
            // (under the emulator in a cross build) from its last arguments.
            args.insert(args.begin(), program);
            const std::vector<std::string> launcher = stbav_test::ChildLauncher();
            args.insert(args.begin(), launcher.begin(), launcher.end());
            args.insert(args.begin(), m_Wrapper.begin() + 1, m_Wrapper.end());
            program = m_Wrapper.front();
        }
        ASSERT_TRUE(m_Daemon.Start(program, args, env, m_Tmp / "daemon.out", m_Tmp / "daemon.err", !m_Wrapper.empty()));
    }
    // Launch, then wait for the ready report (operation 3) and the board's socket.
    void LaunchReady(const std::string& stream, const std::vector<std::string>& extra = {}) {
        Launch(stream, extra);
        ASSERT_TRUE(m_Host.WaitForOp(kReady)) << StderrTail();
        ASSERT_TRUE(WaitUntil([&] { return FileExists(Socket()); })) << StderrTail();
    }
    // SIGTERM (or sig); the daemon must end by itself with status 0 and no sanitizer report.
    void StopCleanly(int sig = SIGTERM) {
        int status = -1;
        const bool ended = m_Daemon.Stop(sig, 20000, status);
        EXPECT_TRUE(ended) << "the daemon did not end on signal " << sig << "\n" << StderrTail();
        if (!ended) return;
        EXPECT_EQ("exit 0", DescribeStatus(status)) << StderrTail();
        EXPECT_FALSE(HasSanitizerReport(Stderr())) << StderrTail();
    }

    void EnableStatus() {
        m_Host.SendU8(kStatusEnable, 1);
        m_Host.SendApply();
    }
    // The operations of a service selection (PCR, video and audio PIDs, codec
    // types, number, name), without the apply trigger.
    void SendService(unsigned pcr, unsigned video, unsigned audio, unsigned videoType, unsigned audioType,
                     unsigned number, const std::string& name) {
        m_Host.SendU16(kPcr, pcr);
        m_Host.SendU16(kVideo, video);
        m_Host.SendU16(kAudio, audio);
        m_Host.SendU8(kVideoCodecType, videoType);
        m_Host.SendU8(kAudioCodecType, audioType);
        m_Host.SendU16(kServiceNum, number);
        m_Host.SendText(kServiceName, name);
    }
    // Manual output format of this code, then the apply trigger.
    void SendManualFormat(uint32_t format) {
        m_Host.SendU8(kFormatMode, 2);
        m_Host.SendU32(kManualFormat, format);
        m_Host.SendApply();
    }

    FlatJson State() const {
        FlatJson state;
        const std::string text = BoardCommand(Socket(), "state");
        EXPECT_TRUE(state.Parse(text)) << text;
        return state;
    }
    // Polls the board's state until its display words are these.
    bool DisplayIs(long long format, long long rate) const {
        return WaitUntil([&] {
            const FlatJson s = State();
            return s.Num("display.format") == format && s.Num("display.rate") == rate;
        });
    }

protected:
    std::vector<std::string> m_Wrapper;  // a program that runs the daemon (empty: none)
    TempDir m_Tmp;
    HostLine m_Host;
    ChildProcess m_Daemon;

    // The text of a file in the temporary folder ("" when there is none).
    std::string FileText(const std::string& file) const {
        std::string text;
        ReadFile(m_Tmp / file, text);
        return text;
    }
};

}  // namespace e2e
