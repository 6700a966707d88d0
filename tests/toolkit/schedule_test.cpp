// Tests of KT::CSchedule: order of due events, repeating events, cancel rules,
// actions that add and cancel, and the poller thread woken by other threads.
// Most run on a fake clock through RunDue(); a few run a real poller thread.
#include <algorithm>
#include <atomic>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/fake_clock.h"
#include "tests/support/wait_until.h"
#include "toolkit/kt_schedule.h"
#include "toolkit/kt_thread.h"

namespace {

using stbav_test::FakeClock;  // the status tests' hand-moved clock
using stbav_test::WaitUntil;

class ScheduleTest : public ::testing::Test {
protected:
    // An action that appends its name to the run log.
    KT::CSchedule::Action Log(const std::string& name) {
        return [this, name] { runs.push_back(name); };
    }
    // Moves the clock on by ms, then runs what is due; how many ran.
    size_t After(uint64_t ms) {
        clock.Advance(ms);
        return schedule.RunDue();
    }
    std::string Runs() {
        std::string all;
        for (const auto& r : runs) all += r;
        runs.clear();
        return all;
    }

    FakeClock clock;
    KT::CSchedule schedule{&clock};
    std::vector<std::string> runs;
};

TEST_F(ScheduleTest, DueEventsRunInDueOrderThenInsertionOrder) {
    schedule.Add(Log("A"), 10, false);
    schedule.Add(Log("B"), 5, false);
    schedule.Add(Log("C"), 10, false);
    clock.Advance(3);
    schedule.Add(Log("D"), 2, false);  // due at 5 too, added after B
    schedule.Add(Log("E"), 0, false);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(Runs(), "E");
    EXPECT_EQ(After(6), 2u);  // now 9: only B and D are due
    EXPECT_EQ(Runs(), "BD");
    EXPECT_EQ(After(1), 2u);
    EXPECT_EQ(Runs(), "AC");
    EXPECT_EQ(schedule.PendingCount(), 0u);
    EXPECT_EQ(schedule.RunDue(), 0u);
}

TEST_F(ScheduleTest, RepeatingEventIsRearmedAfterEachRun) {
    schedule.Add(Log("R"), 100, true);
    EXPECT_EQ(After(99), 0u);
    EXPECT_EQ(After(1), 1u);
    EXPECT_EQ(After(100), 1u);
    // A late pass runs it once, not once per missed period; the next run is a
    // full period after this one.
    EXPECT_EQ(After(350), 1u);
    EXPECT_EQ(After(99), 0u);
    EXPECT_EQ(After(1), 1u);
    EXPECT_EQ(Runs(), "RRRR");
    EXPECT_EQ(schedule.PendingCount(), 1u);
    // With no delay it runs once per pass.
    schedule.Add(Log("Z"), 0, true);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(schedule.RunDue(), 1u);
    EXPECT_EQ(Runs(), "ZZ");
}

TEST_F(ScheduleTest, CancelRulesAlsoFromInsideAnAction) {
    auto pending = schedule.Add(Log("P"), 10, false);
    auto done = schedule.Add(Log("D"), 0, false);
    KT::CSchedule::CEvent never;
    schedule.RunDue();
    EXPECT_EQ(Runs(), "D");

    auto copy = pending;
    EXPECT_TRUE(schedule.Cancel(pending));
    EXPECT_FALSE(pending.IsValid());
    EXPECT_FALSE(schedule.Cancel(copy));  // already cancelled
    EXPECT_FALSE(schedule.Cancel(done));  // already ran
    EXPECT_FALSE(schedule.Cancel(never));
    EXPECT_EQ(After(10), 0u);
    EXPECT_EQ(schedule.PendingCount(), 0u);

    // An action may cancel itself or another due event; a one-shot itself not.
    KT::CSchedule::CEvent self, victim;
    bool selfCancel = false, victimCancel = false;
    self = schedule.Add(
        [&] {
            runs.push_back("S");
            selfCancel = schedule.Cancel(self);
            victimCancel = schedule.Cancel(victim);
        },
        10, true);
    victim = schedule.Add(Log("V"), 10, false);  // due with S, after it
    EXPECT_EQ(After(10), 1u);
    EXPECT_TRUE(selfCancel);  // a repeating event that stops being re-armed
    EXPECT_TRUE(victimCancel);
    EXPECT_EQ(After(100), 0u);
    EXPECT_EQ(Runs(), "S");
    // A one-shot cancelling itself while it runs finds nothing to stop.
    KT::CSchedule::CEvent once;
    bool result = true;
    once = schedule.Add([&] { result = schedule.Cancel(once); }, 0, false);
    schedule.RunDue();
    EXPECT_FALSE(result);
}

// The status poll pattern: a one-shot that adds itself again.
TEST_F(ScheduleTest, ActionMayAddItselfAgain) {
    std::function<void()> poll = [&] {
        runs.push_back("P");
        schedule.Add(poll, 2000, false);
    };
    schedule.Add(poll, 2000, false);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(After(2000), 1u);
    EXPECT_EQ(Runs(), "PPP");
    EXPECT_EQ(schedule.PendingCount(), 1u);
}

// From here on a real poller thread runs the schedule on the monotonic clock.
class PollerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(poller.Run()); }
    void TearDown() override { poller.Cancel(); }

    KT::CSchedule schedule;
    KT::CThread poller{KT::MakeFunctor(&schedule, &KT::CSchedule::ProcessSchedule), "poller", 0};
};

TEST_F(PollerTest, EventAddedFromAnotherThreadWakesTheSleepingPoller) {
    std::atomic<int> ran{0};
    schedule.Add([&] { ++ran; }, 60000, false);  // the poller now sleeps for a minute
    schedule.Add([&] { ran += 10; }, 0, false);
    ASSERT_TRUE(WaitUntil([&] { return ran.load() == 10; }));
    schedule.Add([&] { ran += 100; }, 5, false);
    ASSERT_TRUE(WaitUntil([&] { return ran.load() == 110; }));
    EXPECT_EQ(schedule.PendingCount(), 1u);
}

TEST_F(PollerTest, CancellingTheRunningRepeatingEventStopsItsRearm) {
    std::atomic<bool> inside{false};
    std::atomic<bool> release{false};
    std::atomic<int> runs{0};
    auto event = schedule.Add(
        [&] {
            ++runs;
            inside = true;
            while (!release.load()) std::this_thread::yield();
        },
        0, true);
    ASSERT_TRUE(WaitUntil([&] { return inside.load(); }));
    EXPECT_TRUE(schedule.Cancel(event));
    release = true;
    // Something queued after it runs, so the poller has finished the cancelled one.
    std::atomic<bool> after{false};
    schedule.Add([&] { after = true; }, 0, false);
    ASSERT_TRUE(WaitUntil([&] { return after.load(); }));
    EXPECT_EQ(runs.load(), 1);
    EXPECT_EQ(schedule.PendingCount(), 0u);
}

// Cancel() returning true for a one-shot means it was still pending, so it must
// never run: cancel half of many short events while the poller runs them.
TEST_F(PollerTest, EventCancelledWhilePendingNeverRuns) {
    constexpr int kEvents = 400;
    std::vector<std::atomic<bool>> ran(kEvents);
    std::vector<KT::CSchedule::CEvent> events(kEvents);
    std::vector<bool> cancelled(kEvents, false);
    std::mt19937 random(12345);
    for (int i = 0; i < kEvents; ++i) {
        // Every tenth is far off, so some cancels surely find their event pending.
        unsigned delay = i % 10 == 0 ? 60000 : random() % 3;
        events[i] = schedule.Add([&ran, i] { ran[i] = true; }, delay, false);
    }
    for (int i = 0; i < kEvents; i += 2) cancelled[i] = schedule.Cancel(events[i]);
    ASSERT_TRUE(WaitUntil([&] { return schedule.PendingCount() == 0; }));
    std::atomic<bool> last{false};
    schedule.Add([&] { last = true; }, 0, false);
    ASSERT_TRUE(WaitUntil([&] { return last.load(); }));
    for (int i = 0; i < kEvents; ++i) EXPECT_EQ(ran[i].load(), !cancelled[i]) << "event " << i;
    EXPECT_GE(std::count(cancelled.begin(), cancelled.end(), true), kEvents / 10);
}

TEST_F(PollerTest, AddAndCancelFromManyThreadsWhileItRuns) {
    std::atomic<int> ran{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                schedule.Add([&] { ++ran; }, 0, false);
                auto drop = schedule.Add([&] { ran += 1000; }, 60000, true);
                schedule.Cancel(drop);
            }
        });
    }
    for (auto& t : threads) t.join();
    ASSERT_TRUE(WaitUntil([&] { return ran.load() == 800; }));
    EXPECT_EQ(schedule.PendingCount(), 0u);
}

}  // namespace
