// The processor base's change detection, the chip processor and the 2000 ms
// poll, driven on a hand-moved clock.
#include <gtest/gtest.h>

#include <vector>

#include "status/chip_status_processor.h"
#include "status/status_monitor.h"
#include "tests/status/status_fixture.h"

using stbav_test::OpIds;
using stbav_test::StatusFixture;
using Ids = std::vector<unsigned int>;

namespace {

// Exposes the base's SendNewStatus.
class ProbeProcessor : public StatusProcessor {
public:
    using StatusProcessor::StatusProcessor;
    bool Process(bool) override { return false; }
    void Clear() override {}
};

class StatusMonitorTest : public StatusFixture {};

}  // namespace

TEST_F(StatusMonitorTest, SendNewStatusSendsOnlyChangesUnlessForced) {
    ProbeProcessor probe(sender);
    struct Case {
        unsigned short last;
        unsigned short value;
        bool force;
        bool sends;
        bool fails;  // the write fails: the value counts as sent all the same, and is not sent again
    } cases[] = {{0, 0, false, false, false}, {5, 5, false, false, false}, {5, 6, false, true, false},
                 {5, 5, true, true, false},   {0, 0, true, true, false},    {5, 6, false, true, true}};
    for (const auto& c : cases) {
        adapter.result = !c.fails;
        unsigned short last = c.last;
        EXPECT_TRUE(probe.SendNewStatus(271u, 0u, c.value, last, c.force));
        EXPECT_EQ(last, c.value);
        auto sent = adapter.Take();
        ASSERT_EQ(sent.size(), c.sends ? 1u : 0u)
            << c.last << "->" << c.value << " force " << c.force << " fails " << c.fails;
        for (const auto& op : sent) EXPECT_EQ(op.Value(), c.value);
    }
}

// The chip's processor sends its reset status when forced, the heartbeat (always
// 0) on every poll, and after a Clear still only the heartbeat.
TEST_F(StatusMonitorTest, ReportingPollsAtOnceForcedThenEvery2000ms) {
    ChipStatusProcessor* chip = new ChipStatusProcessor(sender, d.chip);
    processors.push_back(KT::CSharedPtr<StatusProcessor>(chip));

    monitor.StartReporting();
    EXPECT_EQ(OpIds(adapter.Take()), (Ids{0, 1}));
    clock.Advance(1999);
    EXPECT_EQ(schedule.RunDue(), 0u);
    clock.Advance(1);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(OpIds(adapter.Take()), (Ids{1}));
    chip->Clear();
    clock.Advance(2000);
    EXPECT_EQ(schedule.RunDue(), 1u);
    auto sent = adapter.Take();
    ASSERT_EQ(OpIds(sent), (Ids{1}));
    EXPECT_EQ(sent[0].Value(), 0u);

    monitor.StopReporting();
    monitor.StopReporting();  // nothing pending: nothing happens
    clock.Advance(10000);
    EXPECT_EQ(schedule.RunDue(), 0u);
    EXPECT_TRUE(adapter.Take().empty());
}
