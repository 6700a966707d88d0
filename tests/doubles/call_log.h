// CallLog: the one ordered record of every call made into the recording doubles
// of the decoder interfaces, shared by all fakes of a FakeDecoderSet so that a
// test can assert the order across interfaces. Any thread may record or read.
// Calls render as "IVideoOutput::SetFormat(1920,1080,2,6,1,2,1)": integers and
// enumerations as decimal numbers, bools as true/false, strings in quotes.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace stbav_test {

class CallLog {
public:
    void Record(std::string call) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Calls.push_back(std::move(call));
    }
    // Every call so far, oldest first.
    std::vector<std::string> Calls() const { return CallsWithPrefix(""); }
    // The calls that start with prefix, e.g. "IVideoOutput::" or "IAudioOutput::SetMute".
    std::vector<std::string> CallsWithPrefix(const std::string& prefix) const {
        std::lock_guard<std::mutex> lock(m_Mutex);
        std::vector<std::string> out;
        for (const auto& c : m_Calls) {
            if (c.compare(0, prefix.size(), prefix) == 0) out.push_back(c);
        }
        return out;
    }
    // Number of calls that start with prefix.
    size_t Count(const std::string& prefix) const { return CallsWithPrefix(prefix).size(); }
    void Clear() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Calls.clear();
    }

private:
    mutable std::mutex m_Mutex;
    std::vector<std::string> m_Calls;  // guarded by m_Mutex
};

// Argument rendering used by the fakes.
inline std::string RenderArg(bool v) { return v ? "true" : "false"; }
inline std::string RenderArg(const std::string& v) { return "\"" + v + "\""; }
template <typename T>
std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>, std::string> RenderArg(T v) {
    if constexpr (std::is_enum_v<T>) {
        return RenderArg(static_cast<std::underlying_type_t<T>>(v));
    } else {
        return std::to_string(v);
    }
}

// "Iface::Op(a,b,c)"
template <typename... Args>
std::string RenderCall(const std::string& iface, const char* op, const Args&... args) {
    std::string s = iface + "::" + op + "(";
    [[maybe_unused]] bool first = true;
    ((s += (first ? "" : ","), s += RenderArg(args), first = false), ...);
    return s + ")";
}

}  // namespace stbav_test
