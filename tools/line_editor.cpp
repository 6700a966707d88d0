// Interactive input through libedit's readline interface, driven by a poll loop
// so that received lines can be shown while a line is being typed.
#include "tools/line_editor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <editline/readline.h>

namespace avhost {

namespace {

// libedit's callbacks are plain functions: the state they need lives here.
std::vector<std::string> g_commands;
std::vector<std::string> g_names;
bool g_lineDone = false;
bool g_eof = false;
std::string g_line;

void OnLine(char* text) {
    g_lineDone = true;
    g_eof = text == nullptr;
    g_line = text != nullptr ? text : "";
    free(text);
}

const std::vector<std::string>* g_candidates = nullptr;

char* NextCandidate(const char* text, int state) {
    static size_t next = 0;
    if (state == 0) next = 0;
    const size_t length = std::strlen(text);
    while (g_candidates != nullptr && next < g_candidates->size()) {
        const std::string& c = (*g_candidates)[next++];
        if (c.compare(0, length, text) == 0) return strdup(c.c_str());
    }
    return nullptr;
}

// The first word completes to a command, later words to operation names
// (followed by '=' after send, by a blank elsewhere).
char** Complete(const char* text, int start, int) {
    const std::string before(rl_line_buffer, static_cast<size_t>(start));
    const bool first = before.find_first_not_of(" \t") == std::string::npos;
    g_candidates = first ? &g_commands : &g_names;
    rl_completion_append_character = !first && before.compare(before.find_first_not_of(" \t"), 4, "send") == 0
                                         ? '='
                                         : ' ';
    rl_attempted_completion_over = 1;  // no file names
    return rl_completion_matches(text, NextCandidate);
}

}  // namespace

LineEditor::LineEditor(const std::string& prompt, const std::string& historyFile, std::vector<std::string> commands,
                       std::vector<std::string> names)
    : m_prompt(prompt), m_historyFile(historyFile) {
    g_commands = std::move(commands);
    g_names = std::move(names);
    rl_readline_name = "avhost";
    rl_attempted_completion_function = Complete;
    using_history();
    stifle_history(1000);
    if (!m_historyFile.empty()) read_history(m_historyFile.c_str());
    if (pipe(m_wake) == 0) {
        fcntl(m_wake[0], F_SETFL, O_NONBLOCK);
        fcntl(m_wake[1], F_SETFL, O_NONBLOCK);
    }
}

LineEditor::~LineEditor() {
    if (!m_historyFile.empty()) write_history(m_historyFile.c_str());
    for (int fd : m_wake) {
        if (fd >= 0) close(fd);
    }
}

std::string LineEditor::DefaultHistoryFile() {
    const char* home = std::getenv("HOME");
    return home != nullptr && *home != '\0' ? std::string(home) + "/.avhost_history" : "";
}

void LineEditor::Print(const std::string& text) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_editing) {
        fputs(text.c_str(), stdout);
        fflush(stdout);
        return;
    }
    m_pending.push_back(text);
    const char byte = 1;
    if (write(m_wake[1], &byte, 1) < 0) {
        // The pipe is full: ReadLine already has a wake-up waiting.
    }
}

void LineEditor::ShowPending() {
    char sink[64];
    while (read(m_wake[0], sink, sizeof sink) > 0) {
    }
    std::deque<std::string> pending;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        pending.swap(m_pending);
    }
    if (pending.empty()) return;
    fputs("\r\x1b[K", stdout);  // the prompt line goes; the text takes its place
    for (const std::string& text : pending) fputs(text.c_str(), stdout);
    fflush(stdout);
    rl_forced_update_display();  // prompt and the line typed so far, again
}

bool LineEditor::ReadLine(std::string& line, const std::atomic<bool>* stop) {
    g_lineDone = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_editing = true;
    }
    rl_callback_handler_install(m_prompt.c_str(), OnLine);
    ShowPending();
    while (!g_lineDone && !(stop != nullptr && stop->load())) {
        pollfd fds[2] = {{STDIN_FILENO, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        if (poll(fds, 2, 200) <= 0) continue;
        if (fds[1].revents & POLLIN) ShowPending();
        if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) rl_callback_read_char();
    }
    rl_callback_handler_remove();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_editing = false;
        for (const std::string& text : m_pending) fputs(text.c_str(), stdout);
        m_pending.clear();
        fflush(stdout);
    }
    if (!g_lineDone || g_eof) {
        fputs("\n", stdout);
        return false;
    }
    line = g_line;
    if (line.find_first_not_of(" \t") != std::string::npos) add_history(line.c_str());
    return true;
}

}  // namespace avhost
