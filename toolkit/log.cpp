// Printf-style front end of log4cpp categories. Any thread.
#include "toolkit/log.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace stbav {
namespace {

std::string Format(const char* fmt, va_list args) {
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (n <= 0) return std::string();
    std::vector<char> buf(static_cast<size_t>(n) + 1);
    std::vsnprintf(buf.data(), buf.size(), fmt, args);
    return std::string(buf.data(), static_cast<size_t>(n));
}

void Emit(log4cpp::Category& cat, log4cpp::Priority::Value prio, const char* fmt, va_list args) {
    if (!cat.isPriorityEnabled(prio)) return;
    cat.log(prio, Format(fmt, args));
}

}  // namespace

log4cpp::Category& Logger(const char* name) { return log4cpp::Category::getInstance(name); }

#define STBAV_LOG_FN(fn, prio)                               \
    void fn(log4cpp::Category& cat, const char* fmt, ...) {   \
        va_list args;                                         \
        va_start(args, fmt);                                  \
        Emit(cat, log4cpp::Priority::prio, fmt, args);        \
        va_end(args);                                         \
    }

STBAV_LOG_FN(LogError, ERROR)
STBAV_LOG_FN(LogWarn, WARN)
STBAV_LOG_FN(LogNotice, NOTICE)
STBAV_LOG_FN(LogInfo, INFO)
STBAV_LOG_FN(LogDebug, DEBUG)

#undef STBAV_LOG_FN

}  // namespace stbav
