// LogCapture: records what one or more log4cpp categories log while a test
// runs, with its own lock so that lines written by worker threads can be read
// from the test thread. Built by the test before any thread logs, destroyed
// after they stopped; each category's priority is restored.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>

#include "tests/support/wait_until.h"

namespace stbav_test {

class LogCapture : public log4cpp::AppenderSkeleton {
public:
    explicit LogCapture(const std::string& category) : LogCapture(std::vector<std::string>{category}) {}
    explicit LogCapture(const std::vector<std::string>& categories) : log4cpp::AppenderSkeleton("capture") {
        for (const std::string& name : categories) {
            log4cpp::Category& cat = log4cpp::Category::getInstance(name);
            m_Attached.push_back({&cat, cat.getPriority()});
            cat.setPriority(log4cpp::Priority::DEBUG);
            cat.addAppender(*this);  // not owned by the category
        }
    }
    ~LogCapture() override {
        for (const Attached& a : m_Attached) {
            a.category->removeAppender(this);
            a.category->setPriority(a.priority);
        }
    }

    // Every line as "LEVEL category: message", in the order logged.
    std::vector<std::string> Lines() const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        std::vector<std::string> out;
        for (const Line& l : m_Lines) out.push_back(l.level + " " + l.category + ": " + l.message);
        return out;
    }
    size_t Count(const std::string& level, const std::string& message) const {
        return CountIf([&](const Line& l) { return l.level == level && l.message == message; });
    }
    bool Has(const std::string& level, const std::string& message) const { return Count(level, message) > 0; }
    // Whole lines as Lines() gives them.
    size_t Count(const std::string& line) const {
        return CountIf([&](const Line& l) { return l.level + " " + l.category + ": " + l.message == line; });
    }
    bool Contains(const std::string& line) const { return Count(line) > 0; }
    // Lines at any level whose message starts with prefix.
    size_t CountPrefix(const std::string& prefix) const {
        return CountIf([&](const Line& l) { return l.message.compare(0, prefix.size(), prefix) == 0; });
    }
    // Waits (polling) until the message has been logged at least `times` times.
    bool WaitFor(const std::string& level, const std::string& message, size_t times = 1,
                 std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        return WaitUntil([&] { return Count(level, message) >= times; }, limit);
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
        m_Lines.push_back({log4cpp::Priority::getPriorityName(event.priority), event.categoryName, event.message});
    }

private:
    struct Line {
        std::string level, category, message;
    };
    struct Attached {
        log4cpp::Category* category;
        log4cpp::Priority::Value priority;
    };
    template <typename Pred>
    size_t CountIf(Pred pred) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        size_t n = 0;
        for (const Line& l : m_Lines) n += pred(l) ? 1 : 0;
        return n;
    }

    mutable std::mutex m_Mutex;
    std::vector<Line> m_Lines;  // guarded by m_Mutex
    std::vector<Attached> m_Attached;
};

}  // namespace stbav_test
