// LineEditor: the interactive input of `avhost session` on a terminal, through
// libedit: a prompt, history kept in a file, tab completion of the session's
// commands and of operation names, and lines printed by other threads (what the
// daemon sends) shown above the input line without breaking it. ReadLine runs on
// the main thread; Print may be called from any thread. One instance per process
// (libedit's readline interface is global).
#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace avhost {

class LineEditor {
public:
    // words: what Tab completes (commands first word, names after it).
    LineEditor(const std::string& prompt, const std::string& historyFile, std::vector<std::string> commands,
               std::vector<std::string> names);
    // Writes the history file.
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // Waits for one line typed (added to the history when not blank). False at
    // end of input (Ctrl-D) or once stop is set. Main thread.
    bool ReadLine(std::string& line, const std::atomic<bool>* stop);
    // Shows text (one or more lines, each ending in '\n') above the input line
    // while one is being edited, else at once. Any thread.
    void Print(const std::string& text);

    // The default history file: $HOME/.avhost_history, or "" without HOME.
    static std::string DefaultHistoryFile();

private:
    void ShowPending();  // main thread, while editing

    std::string m_prompt;
    std::string m_historyFile;
    int m_wake[2] = {-1, -1};  // self-pipe: Print wakes ReadLine

    std::mutex m_mutex;
    bool m_editing = false;           // guarded by m_mutex
    std::deque<std::string> m_pending;  // guarded by m_mutex
};

}  // namespace avhost
