// Printf-style logging over log4cpp categories, with the compiler checking every
// format string. Thread-safe as log4cpp is.
//   auto& cat = stbav::Logger("stbav.configmanager");
//   stbav::LogDebug(cat, "%s: OpId=%u", __func__, id);
#pragma once

#include <log4cpp/Category.hh>

namespace stbav {

log4cpp::Category& Logger(const char* name);

void LogError(log4cpp::Category& cat, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
void LogWarn(log4cpp::Category& cat, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
void LogNotice(log4cpp::Category& cat, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
void LogInfo(log4cpp::Category& cat, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
void LogDebug(log4cpp::Category& cat, const char* fmt, ...) __attribute__((format(printf, 2, 3)));

}  // namespace stbav
