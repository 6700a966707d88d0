// Process-level test support: a temporary root folder, the daemon as a child
// process, the virtual board's control socket and a flat view of its state JSON.
// Everything here runs on the test's own thread; the child is killed by the
// destructor if a test ends before stopping it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace e2e {

// Polls pred every few milliseconds until it holds or timeoutMs passed.
bool WaitUntil(const std::function<bool()>& pred, int timeoutMs = 10000);

// A fresh folder under /tmp, removed with everything in it by the destructor.
class TempDir {
public:
    TempDir();
    ~TempDir();
    const std::string& Path() const { return m_Path; }
    std::string operator/(const std::string& relative) const { return m_Path + "/" + relative; }

private:
    std::string m_Path;
};

bool WriteFile(const std::string& path, const std::string& content);  // creates the missing folders
bool ReadFile(const std::string& path, std::string& content);
bool FileExists(const std::string& path);

// A TCP port that was free a moment ago, outside the kernel's ephemeral range
// (see tests/support/free_port.h).
uint16_t FreeTcpPort();
// Connects to 127.0.0.1:port, writes every byte, closes. False on any failure.
bool UploadTcp(uint16_t port, const std::string& bytes);

// One command over the board's control socket; the whole answer, or "" when
// the socket cannot be reached.
std::string BoardCommand(const std::string& socketPath, const std::string& command);

// A JSON document flattened to "a.b.0.c" -> scalar text (strings unquoted,
// true/false/null as written). Enough for the board's state.
class FlatJson {
public:
    // False for text that is not one JSON value.
    bool Parse(const std::string& text);
    bool Has(const std::string& path) const { return m_Values.count(path) != 0; }
    std::string Get(const std::string& path) const;
    // The value as a number; def when missing or not a number.
    long long Num(const std::string& path, long long def = -1) const;

private:
    std::map<std::string, std::string> m_Values;
};

// The calls of a journal (one call per line, "[stbsim: ]TIME NAME(...) = R"):
// time stamp (µs, CLOCK_MONOTONIC), name, and the line from the name on.
struct JournalEntry {
    uint64_t timeUs = 0;
    std::string name;
    std::string call;
};
std::vector<JournalEntry> ParseJournal(const std::string& text);

// The daemon under test as a child process. stdout and stderr go to files.
class ChildProcess {
public:
    ~ChildProcess();  // SIGKILL and reap when still running

    // Starts program with args; env entries ("NAME=VALUE") are added to (or
    // replace) the test's own environment. False when the spawn failed. In a
    // cross build program runs under the emulator, unless hostProgram says it
    // is one of the build machine's own (a wrapper that starts the emulator).
    bool Start(const std::string& program, const std::vector<std::string>& args,
               const std::vector<std::string>& env, const std::string& stdoutFile, const std::string& stderrFile,
               bool hostProgram = false);
    bool Running() const { return m_Pid > 0; }
    pid_t Pid() const { return m_Pid; }
    // Waits up to timeoutMs for the child to end; true with its wait status.
    bool Wait(int timeoutMs, int& status);
    // Sends sig, then Wait.
    bool Stop(int sig, int timeoutMs, int& status);

private:
    pid_t m_Pid = -1;
};

// "exit 0", "exit 2", "signal 9", for messages.
std::string DescribeStatus(int status);

// Environment entries for a child under a sanitizer build: a report ends it
// with status 97 (ASan, UBSan) or 98 (TSan), on top of the options the test's
// own environment already sets.
std::vector<std::string> SanitizerEnvironment();
// True when text (a child's stderr) holds a sanitizer report.
bool HasSanitizerReport(const std::string& text);

}  // namespace e2e
