// Tests of the debug-log set-up and the upgrade entry point (run as a child
// process linked against a media library that fails every upgrade); the usage
// text is checked on the daemon itself (DaemonTest.CommandLineAndFailedStarts).
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <log4cpp/Category.hh>

#include "control/process_entry.h"
#include "tests/e2e/e2e_support.h"
#include "tests/tools/child_process.h"

namespace {

// A good file sets the priorities; a missing or malformed one is reported and
// start-up goes on.
TEST(InitDebugLog, ConfiguresLog4cppFromTheFileOrReportsWhyNot) {
    const e2e::TempDir tmp;
    const std::string good = tmp / "good.init", malformed = tmp / "malformed.init", missing = tmp / "no/log.init";
    ASSERT_TRUE(e2e::WriteFile(good, "# debug log\npriority stbav.entrytest NOTICE\n"));
    ASSERT_TRUE(e2e::WriteFile(malformed, "this is not a logging configuration\n"));
    log4cpp::Category::getInstance("stbav.entrytest").setPriority(log4cpp::Priority::DEBUG);
    for (const std::string& config : {good, missing, malformed}) {
        testing::internal::CaptureStdout();
        InitDebugLog(config);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  config == good ? "Found debug-log configuration file: " + config + "\n\n"
                                 : "ERROR: Failed to initialize the debug logger with config file, " + config + "\n");
    }
    EXPECT_EQ(log4cpp::Category::getInstance("stbav.entrytest").getPriority(), log4cpp::Priority::NOTICE);
}

TEST(UpgradeEntry, HandsOffTheFixedPackageAndExitsZeroWhateverHappens) {
    const std::vector<std::string> argvs[] = {{UPGRADE_ENTRY}, {UPGRADE_ENTRY, "-h"},
                                              {UPGRADE_ENTRY, "-v", "4", "--bogus", "extra"}};
    for (const std::vector<std::string>& argv : argvs) {
        SCOPED_TRACE(argv.size());
        ChildProcess entry(argv);
        EXPECT_EQ(entry.Wait(), 0);
        EXPECT_EQ(entry.Stdout(),
                  "### Enter system upgrade ..., please 'logcat |grep pdate' to see more infos ### \n"
                  "system_upgrade(/sdcard/update.zip)\n");
    }
}

}  // namespace
