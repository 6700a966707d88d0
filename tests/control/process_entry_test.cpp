// Tests of the debug-log set-up and the upgrade entry point (run as a child
// process linked against a media library that fails every upgrade); the usage
// text is checked on the daemon itself (DaemonTest.CommandLineAndFailedStarts).
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <log4cpp/Category.hh>

#include "control/process_entry.h"
#include "tests/e2e/e2e_support.h"

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
    const std::vector<std::string> argLists[] = {{}, {"-h"}, {"-v", "4", "--bogus", "extra"}};
    for (const std::vector<std::string>& args : argLists) {
        SCOPED_TRACE(args.size());
        const e2e::TempDir tmp;
        e2e::ChildProcess entry;
        ASSERT_TRUE(entry.Start(UPGRADE_ENTRY, args, {}, tmp / "out", tmp / "err"));
        int status = -1;
        ASSERT_TRUE(entry.Wait(20000, status));
        std::string out;
        e2e::ReadFile(tmp / "out", out);
        EXPECT_EQ(out,
                  "### Enter system upgrade ..., please 'logcat |grep pdate' to see more infos ### \n"
                  "system_upgrade(/sdcard/update.zip)\n");
        EXPECT_EQ(e2e::DescribeStatus(status), "exit 0");
    }
}

}  // namespace
