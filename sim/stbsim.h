// Control of the virtual decoder board from inside the process (unit tests and
// tools): reset, input, fault injection, journal and state. Every function may
// be called from any thread; none may be called from inside an event callback
// except the read-only ones (Journal*, State*).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/stb_module.h"
#include "sim/journal.h"

namespace stbsim {

// Error codes of the virtual board's C API (besides injected ones).
constexpr int kErrNotInitialised = static_cast<int>(0x80A10001u);  // system or family not initialised
constexpr int kErrInvalidHandle = static_cast<int>(0x80A10002u);   // handle never created, or destroyed
constexpr int kErrNullPointer = static_cast<int>(0x80A10003u);
constexpr int kErrInvalidParam = static_cast<int>(0x80A10004u);    // value out of range, wrong device
constexpr int kErrBadState = static_cast<int>(0x80A10005u);        // e.g. attach over another input
constexpr int kErrNoResource = static_cast<int>(0x80A10006u);      // a second player, channel, window ...
constexpr int kErrNotFound = static_cast<int>(0x80A10007u);        // no programme in the input
constexpr int kErrBadMode = static_cast<int>(0x80A10008u);         // a mode, flags or input-type argument
constexpr int kErrBadRecord = static_cast<int>(0x80A10009u);       // a word of an attribute record
constexpr int kErrInternal = static_cast<int>(0x80A100FFu);        // an unexpected failure inside the board

// A snapshot of the board (the JSON of State() has more).
struct BoardState {
    bool systemInitialised = false;
    struct {
        bool exists = false;
        uint32_t handle = 0;
        _AV_SETTING_S settings{};
        bool videoStarted = false, audioStarted = false;
        bool eventsEnabled = false;
        std::string preparedAddress;
        uint16_t videoPidInUse = 0, audioPidInUse = 0, pcrPidInUse = 0;
        bool videoDecoding = false, audioDecoding = false;
        uint32_t videoFrames = 0, audioFrames = 0;
        uint64_t audioPts = 0;
    } player;
    struct {
        bool initialised = false, channelOpen = false;
        uint32_t channelHandle = 0;
        VoutDisplayAttr attr{};
        bool windowExists = false, windowOpen = false;
        uint32_t windowHandle = 0, windowInput = 0;
        uint32_t windowOpenCount = 0;  // vout_window_open calls that succeeded
    } display;
    struct {
        bool initialised = false, open = false;
        uint32_t handle = 0;
        bool trackExists = false;
        uint32_t trackHandle = 0, trackInput = 0;
        int volume = 100;
        bool volumeLinear = true;
        bool mute = false;
    } audio;
    struct {
        bool initialised = false, created = false, started = false;
        uint32_t initMode = 0, createSource = 0;
        uint32_t window[4] = {0, 0, 0, 0};
        CcAttr attr{};
        bool vbi = false, subtitles = false;
    } captions;
    std::vector<std::string> upgrades;
};

// Back to power-on: threads stopped, nothing initialised, default input, no
// faults, empty journal. Environment variables are read again at the next call.
void Reset();

// Replace the input (scenario text, or a file of any kind the board reads).
// False with *error set ("line N: ..." for scenario text) and the input unchanged.
bool SetInputText(const std::string& text, std::string* error = nullptr);
bool SetInputFile(const std::string& path, std::string* error = nullptr);

// Changes the input now, as a scenario's "at" line would: video or audio
// assignments such as "pid=0x100 width=3840 height=2160".
bool ChangeVideo(const std::string& assignments, std::string* error = nullptr);
bool ChangeAudio(const std::string& assignments, std::string* error = nullptr);

// Makes the next count calls of a C function return code without effect
// (count 0 removes the fault). False for an unknown function name.
bool InjectFault(const std::string& function, int code, unsigned count = 1);

std::vector<JournalEntry> Journal();
std::string JournalText();
void ClearJournal();

BoardState State();
std::string StateJson();

// What the control socket answers to one command line.
std::string Command(const std::string& line);
// Serve the control socket at path (as STBSIM_CONTROL does); StopControl ends it.
bool StartControl(const std::string& path, std::string* error = nullptr);
void StopControl();

}  // namespace stbsim
