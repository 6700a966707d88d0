// Shared set-up of the fuzz targets: every log category on at debug level into a
// sink that drops the lines (so the formatting code runs but nothing is printed),
// and the toolkit's print silenced. Called once from LLVMFuzzerInitialize.
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

inline void Quiet() {
    log4cpp::Category& root = log4cpp::Category::getRoot();
    root.removeAllAppenders();
    root.addAppender(new DropAppender());
    root.setPriority(log4cpp::Priority::DEBUG);
    KT::SetPrintSink([](const std::string&) {});
}

}  // namespace stbav_fuzz
