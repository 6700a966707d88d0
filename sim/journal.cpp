// Journal of the virtual board's calls.
#include "sim/journal.h"

#include <time.h>

namespace stbsim {

int64_t MonotonicUs() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000000 + ts.tv_nsec / 1000;
}

std::string JournalEntry::ToString() const {
    char res[24];
    if (result == 0) snprintf(res, sizeof res, "0");
    else snprintf(res, sizeof res, "%#x", static_cast<unsigned>(result));
    std::string line = std::to_string(timeUs) + " " + name + "(" + args + ") = " + res;
    if (inCallback) line += " in callback";
    if (!reason.empty()) line += " # " + reason;
    return line;
}

void CJournal::Add(JournalEntry e) {
    std::lock_guard<std::mutex> lock(m_mutex);
    e.timeUs = MonotonicUs();
    if (m_echo) {
        fprintf(m_echo, "stbsim: %s\n", e.ToString().c_str());
        fflush(m_echo);
    }
    m_entries.push_back(std::move(e));
    if (m_entries.size() > kMaxEntries) m_entries.pop_front();
}

std::vector<JournalEntry> CJournal::Entries() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return std::vector<JournalEntry>(m_entries.begin(), m_entries.end());
}

std::string CJournal::Text() const {
    std::string out;
    for (const auto& e : Entries()) out += e.ToString() + "\n";
    return out;
}

void CJournal::Clear() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.clear();
}

void CJournal::SetEcho(const std::string& target) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_echoOwned && m_echo) fclose(m_echo);
    m_echo = nullptr;
    m_echoOwned = false;
    if (target.empty()) return;
    if (target == "1" || target == "stderr") {
        m_echo = stderr;
    } else {
        m_echo = fopen(target.c_str(), "a");
        m_echoOwned = m_echo != nullptr;
    }
}

}  // namespace stbsim
