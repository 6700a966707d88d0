// Helpers shared by the status and control tests: an adapter that records the
// operations it is asked to send (its port does not exist), a clock the test
// moves by hand, and a capture of log4cpp lines that any thread may write.
#pragma once

#include <log4cpp/Category.hh>
#include <log4cpp/LayoutAppender.hh>
#include <log4cpp/PatternLayout.hh>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "toolkit/kt_schedule.h"
#include "transport/uart_adapter.h"

namespace hisiav_test {

// One operation as it would have gone on the line.
struct SentOp {
    unsigned int opId = 0;
    int opType = 0;
    std::vector<unsigned char> index;
    std::vector<unsigned char> data;

    // The value bytes folded most significant first (sign-less).
    uint64_t Value() const {
        uint64_t v = 0;
        for (unsigned char b : data) v = (v << 8) | b;
        return v;
    }
    std::string Text() const { return std::string(data.begin(), data.end()); }
    unsigned int Index() const { return index.empty() ? 0u : index.back(); }
};

inline SentOp ToSentOp(const SsOp& op) {
    SentOp s;
    s.opId = op.GetOpId();
    s.opType = static_cast<int>(op.GetOpType());
    s.index = op.GetIndexList();
    s.data = op.GetRawData();
    return s;
}

inline std::vector<unsigned int> OpIds(const std::vector<SentOp>& ops) {
    std::vector<unsigned int> ids;
    for (const SentOp& op : ops) ids.push_back(op.opId);
    return ids;
}

class RecordingAdapter : public CUartAdapter {
public:
    RecordingAdapter() : CUartAdapter(std::string("/dev/hisiav-status-test-none")) {}

    bool SendOperation(SsOp& op) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Sent.push_back(ToSentOp(op));
        return m_Result;
    }
    // The operations sent so far, and forgets them.
    std::vector<SentOp> Take() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        std::vector<SentOp> out;
        out.swap(m_Sent);
        return out;
    }
    void SetResult(bool result) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Result = result;
    }

private:
    mutable std::mutex m_Mutex;
    std::vector<SentOp> m_Sent;  // guarded by m_Mutex
    bool m_Result = true;        // guarded by m_Mutex
};

// Milliseconds that move only when the test says so.
class FakeClock : public KT::IClock {
public:
    uint64_t NowMs() const override { return m_Now.load(); }
    void Advance(uint64_t ms) { m_Now += ms; }

private:
    std::atomic<uint64_t> m_Now{100000};
};

// Collects the lines of the named categories ("%p %c: %m") at debug level while
// it lives. Build it before any thread logs and destroy it after they stopped.
class LogCapture {
public:
    explicit LogCapture(const std::vector<std::string>& categories) {
        for (const std::string& name : categories) {
            log4cpp::Category& cat = log4cpp::Category::getInstance(name);
            auto* appender = new Appender(this);
            m_Attached.push_back({&cat, appender, cat.getPriority()});
            cat.setPriority(log4cpp::Priority::DEBUG);
            cat.addAppender(appender);  // the category owns it
        }
    }
    ~LogCapture() {
        for (Attached& a : m_Attached) {
            a.category->removeAppender(a.appender);
            a.category->setPriority(a.priority);
        }
    }
    std::vector<std::string> Lines() const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Lines;
    }
    bool Contains(const std::string& line) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        for (const std::string& l : m_Lines)
            if (l == line) return true;
        return false;
    }
    size_t Count(const std::string& line) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        size_t n = 0;
        for (const std::string& l : m_Lines) n += (l == line);
        return n;
    }
    void Clear() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Lines.clear();
    }

private:
    class Appender : public log4cpp::LayoutAppender {
    public:
        explicit Appender(LogCapture* owner) : LayoutAppender("capture"), m_Owner(owner) {
            auto* layout = new log4cpp::PatternLayout();
            layout->setConversionPattern("%p %c: %m");
            setLayout(layout);
        }
        void close() override {}

    protected:
        void _append(const log4cpp::LoggingEvent& event) override { m_Owner->Add(_getLayout().format(event)); }

    private:
        LogCapture* m_Owner;
    };
    struct Attached {
        log4cpp::Category* category;
        Appender* appender;
        log4cpp::Priority::Value priority;
    };

    void Add(std::string line) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Lines.push_back(std::move(line));
    }

    mutable std::mutex m_Mutex;
    std::vector<std::string> m_Lines;  // guarded by m_Mutex
    std::vector<Attached> m_Attached;
};

}  // namespace hisiav_test
