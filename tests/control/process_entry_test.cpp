// Tests of the debug-log set-up and the upgrade entry point (run as a child
// process linked against a media library that fails every upgrade); the usage
// text is checked on the daemon itself (DaemonTest.CommandLineAndFailedStarts).
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include <gtest/gtest.h>
#include <log4cpp/Category.hh>

#include "control/process_entry.h"
#include "tests/e2e/e2e_support.h"
#include "tests/support/child_launcher.h"

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

// Runs the upgrade entry with the given arguments; its standard output and exit status.
std::string RunUpgradeEntry(const std::string& args, int& status) {
    std::string output;
    FILE* child = popen((stbav_test::ChildLauncherPrefix() + UPGRADE_ENTRY + " " + args).c_str(), "r");
    if (!child) return output;
    char buf[256];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, child)) > 0) output.append(buf, n);
    status = pclose(child);
    return output;
}

TEST(UpgradeEntry, HandsOffTheFixedPackageAndExitsZeroWhateverHappens) {
    for (const char* args : {"", "-h", "-v 4 --bogus extra"}) {
        SCOPED_TRACE(args);
        int status = -1;
        std::string out = RunUpgradeEntry(args, status);
        EXPECT_EQ(out,
                  "### Enter system upgrade ..., please 'logcat |grep pdate' to see more infos ### \n"
                  "system_upgrade(/sdcard/update.zip)\n");
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

}  // namespace
