// CBoard: the state model of the virtual decoder board behind the C API.
// Calls arrive on any thread; all state is guarded by one mutex, and callbacks
// into the daemon are made from the board's event thread without holding it.
// The board is created on first use and lives until the process ends.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/stb_module.h"
#include "sim/control_server.h"
#include "sim/journal.h"
#include "sim/stbsim.h"
#include "sim/stream_model.h"

namespace stbsim {

// A count that grows at perSec while running; read at any time.
struct RunningCount {
    double base = 0;
    int64_t anchorUs = 0;
    double perSec = 0;
    double At(int64_t nowUs) const { return base + (nowUs > anchorUs ? (nowUs - anchorUs) * perSec / 1e6 : 0); }
    void Settle(int64_t nowUs) {
        base = At(nowUs);
        anchorUs = nowUs;
    }
};

class CBoard {
public:
    static CBoard& Instance();
    // The board if it was ever created, else nullptr (for library unload).
    static CBoard* Existing();
    static bool IsFunction(const std::string& name);

    // ---- the C API; each returns 0 or an error code (see stbsim.h).
    int SystemInit(uint32_t mode);
    int SystemDeinit();
    int SystemUpgrade(const char* path);

    int AvInit(uint32_t* initResult, const IpInputParams* params);
    int AvCreate(uint32_t* handle, const AvCreateAttr* attr);
    int AvPrepare(const char* address);
    int AvSetEventConfig(uint32_t handle, const AvEventConfig* config, uint32_t eventClass);
    int AvStart(uint32_t handle, bool video, bool audio);
    int AvStop(uint32_t handle, bool video, bool audio);
    int AvReset(uint32_t handle);
    int AvSetConfig(uint32_t handle, const _AV_SETTING_S* settings);
    int AvGetConfig(uint32_t handle, _AV_SETTING_S* settings);
    int AvSearchProgInfo(_AV_SETTING_S* settings);
    int AvGetStatusInfo(uint32_t handle, AvStatusInfo* status);
    int AvGetStreamInfo(uint32_t handle, AvStreamInfo* info);
    int AvDestroy(uint32_t handle);
    int AvDeinit();

    int VoutInit(VoutInitInfo* info);
    int VoutDeinit();
    int VoutOpenChannel(uint32_t* handle, const OutputOpenAttr* attr);
    int VoutCloseChannel(uint32_t handle);
    int VoutDisplayGet(uint32_t handle, VoutDisplayAttr* attr);
    int VoutDisplaySet(uint32_t handle, const VoutDisplayAttr* attr);
    int VoutWindowCreate(uint32_t voutHandle, uint32_t* windowHandle);
    int VoutWindowDestroy(uint32_t voutHandle, uint32_t windowHandle);
    int VoutWindowAttach(uint32_t windowHandle, uint32_t avHandle, bool attach);
    int VoutWindowOpen(uint32_t windowHandle, bool open);

    int AoutInit(AoutInitInfo* info);
    int AoutDeinit();
    int AoutOpen(uint32_t* handle, const OutputOpenAttr* attr);
    int AoutClose(uint32_t handle);
    int AoutSetVolume(uint32_t handle, uint32_t device, bool linear, int value);
    int AoutSetMute(uint32_t handle, uint32_t device, bool mute);
    int AoutTrackCreate(uint32_t aoutHandle, uint32_t* trackHandle);
    int AoutTrackDestroy(uint32_t trackHandle);
    int AoutTrackAttach(uint32_t trackHandle, uint32_t avHandle, bool attach);

    int CcInit(const CcInitParam* param);
    int CcDeinit();
    int CcCreate(const CcCreateParam* param);
    int CcDestroy();
    int CcSetWindow(uint32_t x, uint32_t y, uint32_t w, uint32_t h);
    int CcStart(bool start);
    int CcGetAttr(CcAttr* attr);
    int CcSetAttr(const CcAttr* attr);
    int CcEnable(bool vbi, bool enable);

    // ---- control
    // Once per process (and after Reset): reads STBSIM_JOURNAL and STBSIM_CONTROL.
    void OnCall();
    // True (and the code) if an injected fault consumes this call.
    bool TakeFault(const char* function, int* code);
    bool InjectFault(const std::string& function, int code, unsigned count);
    CJournal& Journal() { return m_journal; }
    // True on the board's event thread (inside a callback into the daemon).
    bool OnEventThread();
    void Reset();
    bool SetInput(const StreamInput& input);
    bool LoadInputFile(const std::string& path, std::string* error);
    bool ChangeNow(const TimedChange& change, std::string* error);
    BoardState State();
    std::string StateJson();
    std::string Command(const std::string& line);
    bool StartControl(const std::string& path, std::string* error);
    void StopControl();
    // Stops the board's threads; called when the library is unloaded.
    void Shutdown();

private:
    struct Player {
        bool exists = false;
        uint32_t handle = 0;
        _AV_SETTING_S settings{};
        bool videoStarted = false, audioStarted = false;
        AvEventConfig events{};
        bool eventsEnabled = false;
        RunningCount videoFrames, audioFrames;
        uint16_t ptsPid = 0;  // audio stream whose clock the PTS follows, 0 when not decoding
        uint64_t heldPts = 0;
        bool reported = false;  // a video format has been reported (last one below)
        VideoStream lastFormat;
    };
    struct Display {
        bool init = false, open = false;
        uint32_t handle = 0;
        VoutDisplayAttr attr{};
        bool window = false, windowOpen = false;
        uint32_t windowHandle = 0, windowInput = 0, windowOpenCount = 0;
    };
    struct AudioOut {
        bool init = false, open = false;
        uint32_t handle = 0;
        bool track = false;
        uint32_t trackHandle = 0, trackInput = 0;
        int volume = 100;
        bool volumeLinear = true, mute = false;
    };
    struct Captions {
        bool init = false, created = false, started = false;
        uint32_t initMode = 0, createSource = 0;
        uint32_t window[4] = {0, 0, 0, 0};
        CcAttr attr{};
        bool vbi = false, subtitles = false;
    };
    struct Fault {
        int code = 0;
        unsigned remaining = 0;
    };
    struct PendingEvent {
        uint32_t handle = 0;
        AvEventCallback_t callback = nullptr;
        AvVideoFormatEvent data{};
    };
    using Lock = std::unique_lock<std::mutex>;

    CBoard();
    void PowerOn();
    void MarkPtsChange(const TimedChange& c, int64_t atUs);
    // Brings the model to now: applies due scenario changes, settles counters,
    // queues a format event if the decoded picture changed. Needs the lock.
    void Sync(int64_t nowUs);
    void Retune(int64_t nowUs);
    void DetectFormatChange();
    void InstallInput(StreamInput input, int64_t nowUs);
    const VideoStream* DecodedVideo() const;
    const AudioStream* DecodedAudio() const;
    uint64_t StreamPts(const AudioStream& a, int64_t nowUs) const;
    uint64_t PlayerPts(int64_t nowUs) const;
    void FillStatus(AvStatusInfo* s, int64_t nowUs) const;
    void FillStreamInfo(AvStreamInfo* info) const;
    bool LivePlayer(uint32_t handle) const { return m_player.exists && handle == m_player.handle; }
    uint32_t NewHandle(uint32_t kind);
    void ResetOutputs();
    void WaitNoCallback(Lock& lock);
    void EventLoop();
    void EventLoopBody();
    static std::string CallbackArgs(const PendingEvent& e);
    void StartEventThread();
    void StopEventThread();
    void WriteInputJson(class CJsonWriter& w, int64_t nowUs);
    std::string RunCommand(const std::string& verb, const std::string& rest);

    std::mutex m_mutex;
    std::condition_variable m_cv;  // events queued, input changed, stop, callback done
    // Guarded by m_mutex:
    bool m_system = false, m_avInit = false;
    std::string m_preparedAddress;
    Player m_player;
    Display m_display;
    AudioOut m_aout;
    Captions m_cc;
    std::vector<std::string> m_upgrades;
    StreamInput m_input;
    int64_t m_inputLoadedUs = 0;
    size_t m_nextChange = 0;  // first change of m_input.changes not yet applied
    std::map<std::string, Fault> m_faults;
    uint32_t m_handleSeq = 0;
    std::deque<PendingEvent> m_events;
    bool m_callbackInFlight = false;
    bool m_eventStop = false;
    bool m_envRead = false;
    std::thread m_eventThread;
    std::thread::id m_eventThreadId;

    CJournal m_journal;  // has its own lock
    std::unique_ptr<CControlServer> m_control;  // serialises its own start/stop
};

}  // namespace stbsim
