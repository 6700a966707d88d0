// The daemon's log level and stderr fallback. Main thread, at start.
#include "control/daemon_log.h"

#include <unistd.h>

#include <log4cpp/Category.hh>
#include <memory>
#include <vector>
#include <log4cpp/FileAppender.hh>
#include <log4cpp/PatternLayout.hh>

#include "control/process_entry.h"
#include "toolkit/fixed_paths.h"

void SetDaemonLogLevel(int level) {
    static const log4cpp::Priority::Value kLevels[] = {
        log4cpp::Priority::ERROR, log4cpp::Priority::WARN, log4cpp::Priority::NOTICE,
        log4cpp::Priority::INFO, log4cpp::Priority::DEBUG,
    };
    if (level < 0) level = 0;
    if (level > 4) level = 4;
    log4cpp::Category::getRoot().setPriority(kLevels[level]);
}

bool EnsureDaemonLogOutput() {
    log4cpp::Category& root = log4cpp::Category::getRoot();
    if (!root.getAllAppenders().empty()) return false;
    // The appender writes to its own copy of the descriptor and closes it.
    auto* appender = new log4cpp::FileAppender("stderr", dup(STDERR_FILENO));
    auto* layout = new log4cpp::PatternLayout();
    layout->setConversionPattern("%d{%H:%M:%S,%l} %-6p %c: %m%n");
    appender->setLayout(layout);
    root.addAppender(appender);  // the category owns it from here
    return true;
}

std::string DaemonLogConfigFile(const std::string& option) {
    return option.empty() ? stbav::paths::Resolve(stbav::paths::kLogConfigFile) : option;
}

void ReloadDaemonLog(const std::string& configFile, int level) {
    std::unique_ptr<std::vector<log4cpp::Category*>> categories(log4cpp::Category::getCurrentCategories());
    for (log4cpp::Category* cat : *categories) {
        cat->removeAllAppenders();
        if (cat != &log4cpp::Category::getRoot()) cat->setPriority(log4cpp::Priority::NOTSET);
    }
    InitDebugLog(configFile);
    SetDaemonLogLevel(level);
    EnsureDaemonLogOutput();
}
