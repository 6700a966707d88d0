// LogCapture: records what one log4cpp category logs while a test runs, with
// its own lock so that lines written by worker threads (probe, board callback,
// receive thread) can be read from the test thread. Attach in the test,
// destroyed at the end of it; the category's priority is restored.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>

namespace hisiav_test {

struct LogLine {
    std::string level;    // "ERROR", "WARN", "INFO", "DEBUG", ...
    std::string message;  // as logged, with any line end of its own
};

class LogCapture : public log4cpp::AppenderSkeleton {
public:
    explicit LogCapture(const std::string& category)
        : log4cpp::AppenderSkeleton("capture:" + category), m_Category(log4cpp::Category::getInstance(category)) {
        m_OldPriority = m_Category.getPriority();
        m_Category.setPriority(log4cpp::Priority::DEBUG);
        m_Category.addAppender(*this);
    }
    ~LogCapture() override {
        m_Category.removeAppender(this);
        m_Category.setPriority(m_OldPriority);
    }

    std::vector<LogLine> Lines() const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Lines;
    }
    size_t Count(const std::string& level, const std::string& message) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        size_t n = 0;
        for (const auto& l : m_Lines) n += (l.level == level && l.message == message) ? 1 : 0;
        return n;
    }
    bool Has(const std::string& level, const std::string& message) const { return Count(level, message) > 0; }
    // Number of lines at any level whose message starts with prefix.
    size_t CountPrefix(const std::string& prefix) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        size_t n = 0;
        for (const auto& l : m_Lines) n += l.message.compare(0, prefix.size(), prefix) == 0 ? 1 : 0;
        return n;
    }
    // Waits (polling) until the line has been logged at least `times` times.
    bool WaitFor(const std::string& level, const std::string& message, size_t times = 1,
                 std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        auto deadline = std::chrono::steady_clock::now() + limit;
        while (Count(level, message) < times) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }
    void Clear() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Lines.clear();
    }

    void close() override {}
    bool requiresLayout() const override { return false; }
    void setLayout(log4cpp::Layout*) override {}

protected:
    void _append(const log4cpp::LoggingEvent& event) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Lines.push_back({log4cpp::Priority::getPriorityName(event.priority), event.message});
    }

private:
    log4cpp::Category& m_Category;
    log4cpp::Priority::Value m_OldPriority;
    mutable std::mutex m_Mutex;
    std::vector<LogLine> m_Lines;  // guarded by m_Mutex
};

// Polls pred every 2 ms until it holds or the limit passes.
template <typename Pred>
bool WaitUntil(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    auto deadline = std::chrono::steady_clock::now() + limit;
    while (!pred()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace hisiav_test
