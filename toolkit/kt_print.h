// KT::MyPrintf: the toolkit's debug print, for low-level protocol messages. It
// goes through one process-wide sink (standard error by default) that tests can
// replace to capture lines. KT::EmptyPrint: the disabled print; compiles to nothing.
// Any thread; the sink is called under a lock.
#pragma once

#include <functional>
#include <string>

namespace KT {

void MyPrintf(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

template <typename... Args>
inline void EmptyPrint(const char*, Args&&...) {}

// Replaces the sink; an empty function restores standard error. Returns the old one.
using PrintSink = std::function<void(const std::string&)>;
PrintSink SetPrintSink(PrintSink sink);

}  // namespace KT
