// Shared set-up of the fuzz targets that include it: libFuzzer's initialiser, run
// once before the first input, puts every log category on at debug level into a
// sink that drops the lines (so the formatting code runs but nothing is printed),
// and silences the toolkit's print. Each target is one source file, so the
// initialiser is defined here once per target.
#pragma once

#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>

#include "toolkit/kt_print.h"

namespace stbav_fuzz {

class DropAppender : public log4cpp::AppenderSkeleton {
public:
    DropAppender() : log4cpp::AppenderSkeleton("drop") {}
    void close() override {}
    bool requiresLayout() const override { return false; }
    void setLayout(log4cpp::Layout*) override {}

protected:
    void _append(const log4cpp::LoggingEvent&) override {}
};

}  // namespace stbav_fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    log4cpp::Category& root = log4cpp::Category::getRoot();
    root.removeAllAppenders();
    root.addAppender(new stbav_fuzz::DropAppender());
    root.setPriority(log4cpp::Priority::DEBUG);
    KT::SetPrintSink([](const std::string&) {});
    return 0;
}
