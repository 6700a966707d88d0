// The virtual board's journal: every call of the C API with its arguments,
// result and CLOCK_MONOTONIC time. Guarded by its own mutex, so it can be
// written from any thread; the oldest entries are dropped past a cap.
#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace stbsim {

struct JournalEntry {
    int64_t timeUs = 0;  // CLOCK_MONOTONIC, microseconds, when the call returned (set by CJournal::Add)
    std::string name;    // the C function
    std::string args;    // "name=value, ..." including what the call returned through pointers
    int result = 0;
    std::string reason;        // why the board refused the call, or empty
    bool inCallback = false;   // made from inside the board's event callback
    // "TIME NAME(ARGS) = RESULT[ in callback][ # REASON]", the result in hex when it is not 0.
    std::string ToString() const;
};

class CJournal {
public:
    static constexpr size_t kMaxEntries = 20000;

    // Stamps e with the time now, so the entries are in the order the calls returned.
    void Add(JournalEntry e);
    std::vector<JournalEntry> Entries() const;
    std::string Text() const;  // one entry per line
    void Clear();
    // Copies every new entry to a stream as it is added ("1" or "stderr": standard
    // error; anything else: appended to the file of that name). Empty: no echo.
    void SetEcho(const std::string& target);

private:
    mutable std::mutex m_mutex;
    std::deque<JournalEntry> m_entries;  // guarded by m_mutex
    FILE* m_echo = nullptr;              // guarded by m_mutex
    bool m_echoOwned = false;
};

int64_t MonotonicUs();

}  // namespace stbsim
