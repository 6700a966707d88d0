// The pure parts of replay (what is sent, what is compared, the difference) and
// of the live view's model.
#include "tools/replayer.h"

#include <gtest/gtest.h>

#include "tests/tools/op_text.h"
#include "tools/top_view.h"

namespace avhost {
namespace {

TEST(Replayer, ScriptKeepsHostBytesAndComparesDaemonFramesWithoutHeartbeats) {
    const OpCatalog catalog;
    const Replayer replayer(catalog);
    std::vector<CaptureChunk> chunks;
    std::string error;
    ASSERT_TRUE(CaptureReader::Read("# avhost capture 1\n"
                                    "0.100 < 0F 00 03 00 01 00 02 6F 6B 10\n"           // stbsystemReady "ok"
                                    "0.200 > 0F 0F 00 07 00 01 00 01 01 10\n"           // stbsystemCheckReady = 1
                                    "1.000 < 0F 00 01 00 01 00 01 05 10\n"              // heartbeat: left out
                                    "1.100 < 0F 00 12 2F 01 01 00 02 07 80 10 41\n"     // videoWidth, stray byte
                                    "1.200 > 0F 06 00 00 00 00 10\n",
                                    '<', chunks, error)) << error;
    const ReplayScript script = replayer.Script(chunks);
    ASSERT_EQ(script.steps.size(), 2u);
    EXPECT_EQ(HexString(script.steps[0].bytes), "0F 0F 00 07 00 01 00 01 01 10");
    EXPECT_EQ(script.steps[0].answersBefore, 1u);
    EXPECT_EQ(script.steps[1].answersBefore, 3u);
    EXPECT_EQ(script.daemonLines, (std::vector<std::string>{"< stbsystemReady[0] = \"ok\"",
                                                            "< videoWidth[0] = 1920", "< stray bytes: 41"}));
    EXPECT_EQ(Replayer::DefaultExpectedPath("dir/a.cap"), "dir/a.chk");
    EXPECT_EQ(Replayer::DefaultExpectedPath("dir/a.pcap"), "dir/a.chk");
    EXPECT_EQ(Replayer::ParseExpected(Replayer::ExpectedText("a.cap", script.daemonLines)), script.daemonLines);
}

TEST(Replayer, DifferenceShowsMissingChangedAndExtraLines) {
    EXPECT_EQ(Replayer::Difference({"a", "b"}, {"a", "b"}), "");
    EXPECT_EQ(Replayer::Difference({"a", "b", "c", "d"}, {"a", "x", "c", "d", "e"}),
              "@@ expected frame 2 @@\n- b\n+ x\n@@ expected frame 5 @@\n+ e\n");
    EXPECT_EQ(Replayer::Difference({"a", "b"}, {}), "@@ expected frame 1 @@\n- a\n- b\n");
}

TEST(TopModel, KeepsTheLatestValueAndCountsChangesFramesAndErrors) {
    const OpCatalog catalog;
    TopModel model(catalog, 2);
    const std::vector<LineFrame> frames = FramesOf(Hex("0F 00 12 2F 01 01 00 02 07 80 10 "   // videoWidth 1920
                                                       "0F 00 12 2F 01 01 00 02 02 D0 10 "   // videoWidth 720
                                                       "0F 00 01 10"));                      // not an op
    ASSERT_EQ(frames.size(), 3u);
    for (size_t i = 0; i < frames.size(); ++i) model.Add(1.0 + i, '<', frames[i]);
    const TopModel::Snapshot s = model.Take();
    ASSERT_EQ(s.items.size(), 1u);
    const auto& item = s.items[0];
    // the oldest event dropped
    EXPECT_EQ(std::make_tuple(item.first, item.second.value, item.second.changes, item.second.changed, s.frames,
                              s.errors, s.events.size()),
              std::make_tuple("videoWidth[0]", "720", 1u, 2.0, 3u, 1u, 2u));
}

}  // namespace
}  // namespace avhost
