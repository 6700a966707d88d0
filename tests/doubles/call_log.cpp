// CallLog of the recording doubles: one lock around one vector.
#include "tests/doubles/call_log.h"

#include <utility>

namespace stbav_test {

void CallLog::Record(std::string call) {
    std::lock_guard<std::mutex> lock(m_Mutex);
    m_Calls.push_back(std::move(call));
}

std::vector<std::string> CallLog::Calls() const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Calls;
}

std::vector<std::string> CallLog::CallsWithPrefix(const std::string& prefix) const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    std::vector<std::string> out;
    for (const auto& c : m_Calls) {
        if (c.compare(0, prefix.size(), prefix) == 0) out.push_back(c);
    }
    return out;
}

size_t CallLog::Count(const std::string& prefix) const { return CallsWithPrefix(prefix).size(); }

size_t CallLog::Size() const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Calls.size();
}

void CallLog::Clear() {
    std::lock_guard<std::mutex> lock(m_Mutex);
    m_Calls.clear();
}

}  // namespace stbav_test
