// The processor base's change detection, the chip processor and the 2000 ms
// poll, driven on a hand-moved clock.
#include <gtest/gtest.h>

#include <string>
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
    } cases[] = {{0, 0, false, false}, {5, 5, false, false}, {5, 6, false, true}, {5, 5, true, true}, {0, 0, true, true}};
    for (const auto& c : cases) {
        unsigned short last = c.last;
        EXPECT_TRUE(probe.SendNewStatus(271u, 0u, c.value, last, c.force));
        EXPECT_EQ(last, c.value);
        auto sent = adapter.Take();
        ASSERT_EQ(sent.size(), c.sends ? 1u : 0u) << c.last << "->" << c.value << " force " << c.force;
        if (c.sends) {
            EXPECT_EQ(sent[0].Value(), c.value);
        }
    }
}

TEST_F(StatusMonitorTest, SendNewStatusCarriesTextAndDoesNotRepeatAFailedSend) {
    ProbeProcessor probe(sender);
    std::string lastName;
    adapter.SetResult(false);
    probe.SendNewStatus(226u, 0u, std::string("News 24"), lastName, false);
    adapter.SetResult(true);
    probe.SendNewStatus(226u, 0u, std::string("News 24"), lastName, false);
    auto sent = adapter.Take();
    ASSERT_EQ(sent.size(), 1u);  // the failed one was not retried
    EXPECT_EQ(sent[0].Text(), "News 24");
    EXPECT_EQ(lastName, "News 24");
}

// The chip's processor sends its reset status when forced, the heartbeat (always
// 0) on every poll, and after a Clear still only the heartbeat.
TEST_F(StatusMonitorTest, ReportingPollsAtOnceForcedThenEvery2000ms) {
    ChipStatusProcessor* chip = new ChipStatusProcessor(sender, d.chip);
    processors.push_back(KT::CSharedPtr<StatusProcessor>(chip));
    EXPECT_EQ(StatusMonitor::m_PollingIntervals[0], 2000u);

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
