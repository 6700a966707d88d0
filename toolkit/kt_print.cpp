// KT::MyPrintf and its replaceable sink. Any thread.
#include "toolkit/kt_print.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <vector>

namespace KT {
namespace {

std::mutex& SinkMutex() {
    static std::mutex m;
    return m;
}

PrintSink& Sink() {
    static PrintSink sink;  // guarded by SinkMutex()
    return sink;
}

}  // namespace

void MyPrintf(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string text;
    if (n > 0) {
        std::vector<char> buf(static_cast<size_t>(n) + 1);
        std::vsnprintf(buf.data(), buf.size(), fmt, args);
        text.assign(buf.data(), static_cast<size_t>(n));
    }
    va_end(args);

    std::lock_guard<std::mutex> lock(SinkMutex());
    if (Sink()) {
        Sink()(text);
    } else {
        std::fputs(text.c_str(), stderr);
        if (text.empty() || text.back() != '\n') std::fputc('\n', stderr);
    }
}

PrintSink SetPrintSink(PrintSink sink) {
    std::lock_guard<std::mutex> lock(SinkMutex());
    PrintSink old = Sink();
    Sink() = std::move(sink);
    return old;
}

}  // namespace KT
