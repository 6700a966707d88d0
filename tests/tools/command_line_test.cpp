// avhost's GNU-style command line: the forms getopt_long accepts, and the
// usage errors that stay errors.
#include "tools/command_line.h"

#include <gtest/gtest.h>

#include <tuple>

namespace avhost {
namespace {

TEST(CommandLine, AcceptsTheGnuFormsOfEveryOption) {
    const struct {
        std::vector<std::string> words;
        std::string device, capture;
        double duration;
        bool verbose, json;
    } cases[] = {
        {{"monitor", "--device=/dev/x", "--duration=1.5"}, "/dev/x", "", 1.5, false, false},
        {{"monitor", "-d/dev/x", "--duration", "2"}, "/dev/x", "", 2, false, false},
        {{"-v", "monitor", "--json", "-d", "/dev/x"}, "/dev/x", "", -1, true, true},
        {{"monitor", "-vd/dev/x", "--capture=c.txt"}, "/dev/x", "c.txt", -1, true, false},  // bundled
        {{"monitor", "--dev=/dev/x", "--js"}, "/dev/x", "", -1, false, true},                // abbreviated
    };
    for (const auto& c : cases) {
        CommandLine cl;
        std::string error;
        ASSERT_TRUE(ParseCommandLine(c.words, cl, error)) << c.words[1] << ": " << error;
        EXPECT_EQ(std::tie(cl.device, cl.capture, cl.duration, cl.verbose, cl.json),
                  std::tie(c.device, c.capture, c.duration, c.verbose, c.json));
    }
    CommandLine cl;
    std::string error;
    ASSERT_TRUE(ParseCommandLine({"replay", "s.cap", "--pty", "--only=videoWidth,videoHeight", "--skip", "apply",
                                  "--fast"}, cl, error)) << error;
    EXPECT_EQ(cl.only, (std::vector<std::string>{"videoWidth", "videoHeight"}));
    EXPECT_EQ(cl.skip, (std::vector<std::string>{"apply"}));
    EXPECT_TRUE(cl.fast);
    EXPECT_EQ(cl.args, (std::vector<std::string>{"s.cap"}));
    ASSERT_TRUE(ParseCommandLine({"--version"}, cl, error));
    EXPECT_TRUE(cl.version);
    EXPECT_EQ(VersionText().rfind("avhost stbav-", 0), 0u) << VersionText();
}

TEST(CommandLine, UsageErrorsNameTheWord) {
    const struct {
        std::vector<std::string> words;
        const char* error;
    } cases[] = {
        {{"monitor", "--pty", "-x"}, "monitor: unknown option \"-x\""},
        {{"monitor", "--pty", "--frob=1"}, "monitor: unknown option \"--frob\""},
        {{"monitor", "--pty", "--duration"}, "monitor: --duration needs a value"},
        {{"monitor", "-d"}, "monitor: -d needs a value"},
        {{"monitor", "--pty", "--json", "--csv"}, "monitor: give --json or --csv, not both"},
        {{"--frob"}, "unknown option \"--frob\""},
        {{"replay", "s.cap", "--pty", "--fast", "--", "--not-an-option"},
         "replay: unexpected argument \"--not-an-option\""},
    };
    for (const auto& c : cases) {
        CommandLine cl;
        std::string error;
        EXPECT_FALSE(ParseCommandLine(c.words, cl, error)) << c.error;
        EXPECT_EQ(error, c.error);
    }
}

}  // namespace
}  // namespace avhost
