// Tests of KT::CThread, KT::CSemaphore and KT::CMsgQ: the worker loop, thread
// names, and that Cancel() reaches a worker blocked in any toolkit wait; and of
// the tests' own hang watchdog, with a worker that never returns.
#include <sys/prctl.h>

#include <atomic>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/hang_watchdog.h"
#include "tests/support/wait_until.h"
#include "toolkit/kt_msgq.h"
#include "toolkit/kt_schedule.h"
#include "toolkit/kt_semaphore.h"
#include "toolkit/kt_thread.h"

namespace {

using stbav_test::SecondsSince;
using stbav_test::WaitUntil;
using Clock = std::chrono::steady_clock;

constexpr unsigned kLongWaitMs = 60000;

// The worker names itself with the first fifteen characters (the kernel's limit).
TEST(CThread, CallsBodyUntilItReturnsFalseUnderItsName) {
    std::atomic<int> calls{0};
    std::string seen;  // written by the worker; read once it has ended
    KT::CThread thread(
        [&] {
            char name[32] = {};
            prctl(PR_GET_NAME, name, 0, 0, 0);
            seen = name;
            return ++calls < 5;
        },
        "a-rather-long-thread-name", 0);
    for (int round = 1; round <= 2; ++round) {  // a thread whose body ended may be run again
        EXPECT_FALSE(thread.IsRunning());
        calls = 0;
        ASSERT_TRUE(thread.Run());
        ASSERT_TRUE(WaitUntil([&] { return !thread.IsRunning(); }));
        EXPECT_EQ(calls.load(), 5) << round;
    }
    EXPECT_EQ(seen, "a-rather-long-t");
}

TEST(CThread, RunTwiceCancelAnyNumberOfTimesAndDestroyWhileRunning) {
    KT::CThread never([] { return true; }, "never", 0);
    never.Cancel();
    never.Cancel();
    std::atomic<int> entered{0};
    auto start = Clock::now();
    {
        KT::CThread thread(
            [&] {
                ++entered;
                return KT::CThread::Sleep(kLongWaitMs);
            },
            "sleeper", 0);
        ASSERT_TRUE(thread.Run());
        EXPECT_FALSE(thread.Run());
        ASSERT_TRUE(WaitUntil([&] { return entered.load() == 1; }));
        thread.Cancel();
        EXPECT_FALSE(thread.IsRunning());
        thread.Cancel();
        ASSERT_TRUE(thread.Run());  // the destructor cancels this one
        ASSERT_TRUE(WaitUntil([&] { return entered.load() == 2; }));
    }
    EXPECT_LT(SecondsSince(start), 5.0);
}

// Each case blocks the worker in one kind of toolkit wait that would last a minute.
struct BlockingWait {
    const char* name;
    std::function<bool()> wait;  // what the wait returned
    bool expected;
};

TEST(CThread, CancelCutsShortEveryToolkitWaitEvenRightAfterRun) {
    KT::CSemaphore semaphore(0);
    KT::CMsgQ<int> queue;
    KT::CSchedule farSchedule;
    farSchedule.Add([] {}, kLongWaitMs, false);
    KT::CSchedule emptySchedule;
    int item = 0;
    const BlockingWait cases[] = {
        {"Sleep", [] { return KT::CThread::Sleep(kLongWaitMs); }, false},
        {"CSemaphore::Wait", [&] { return semaphore.Wait(kLongWaitMs); }, false},
        {"CMsgQ::Dequeue", [&] { return queue.Dequeue(kLongWaitMs, item); }, false},
        {"ProcessSchedule with a far event", [&] { return farSchedule.ProcessSchedule(); }, true},
        {"ProcessSchedule with no event", [&] { return emptySchedule.ProcessSchedule(); }, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::atomic<bool> entered{false};
        std::atomic<int> result{-1};
        KT::CThread thread(
            [&] {
                entered = true;
                result = c.wait() ? 1 : 0;
                return true;
            },
            "blocked", 0);
        ASSERT_TRUE(thread.Run());
        ASSERT_TRUE(WaitUntil([&] { return entered.load(); }));
        auto start = Clock::now();
        thread.Cancel();
        EXPECT_LT(SecondsSince(start), 5.0);
        EXPECT_EQ(result.load(), c.expected ? 1 : 0);
        // A cancel that lands between the worker's flag check and its wait must not be
        // lost; cancelling right after Run() hits every point of that window sooner or later.
        start = Clock::now();
        for (int i = 0; i < 300; ++i) {
            KT::CThread quick([&] { return c.wait() == c.expected; }, "quick", 0);
            quick.Run();
            quick.Cancel();
        }
        EXPECT_LT(SecondsSince(start), 30.0);
    }
    EXPECT_EQ(semaphore.Count(), 0u);
}

// A test stuck in a wait is aborted by the watchdog with every thread named.
TEST(HangWatchdog, NamesEachThreadOfAStuckTestAndAborts) {
    EXPECT_DEATH(
        {
            stbav_test::ArmHangWatchdog(1);
            KT::CSemaphore never(0);
            KT::CThread stuck([&] { return !never.Wait(kLongWaitMs); }, "stuck-worker", 0);
            stuck.Run();
            never.Wait(kLongWaitMs);
        },
        "still running after 1 s; its threads:\n.*thread [0-9]+ \"stuck-worker\" state .*aborting");
}

TEST(CSemaphore, CountsSignalsAndTimesOut) {
    KT::CSemaphore semaphore(2);
    semaphore.Signal();
    EXPECT_EQ(semaphore.Count(), 3u);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(semaphore.Wait(0));
    EXPECT_FALSE(semaphore.Wait(0));
    auto start = Clock::now();
    EXPECT_FALSE(semaphore.Wait(50));
    EXPECT_GE(SecondsSince(start), 0.049);
    std::thread signaller([&] { semaphore.Signal(); });  // wakes a waiter on another thread
    EXPECT_TRUE(semaphore.Wait(kLongWaitMs));
    signaller.join();
}

// A cancelled worker takes no count, and a signal it absorbed reaches the others.
TEST(CSemaphore, CancelledWaiterLeavesTheCountToOthers) {
    KT::CSemaphore semaphore(0);
    std::atomic<int> taken{0}, waiting{0};
    const auto waiter = [&] {
        ++waiting;
        if (semaphore.Wait(kLongWaitMs)) ++taken;
        return true;
    };
    KT::CThread doomed(waiter, "doomed", 0);  // a worker waiting again after each wait
    std::thread other(waiter);
    ASSERT_TRUE(doomed.Run());
    ASSERT_TRUE(WaitUntil([&] { return waiting.load() == 2; }));
    doomed.Cancel();
    semaphore.Signal();
    other.join();
    EXPECT_EQ(taken.load(), 1);
    EXPECT_EQ(semaphore.Count(), 0u);
}

// A bounded queue refuses when full and has room again once one is taken; a
// bound below one means unbounded; order is kept either way.
TEST(CMsgQ, BoundedQueueRefusesWhenFullBelowOneIsUnboundedOrderIsKept) {
    for (int max : {2, 0, -1}) {
        SCOPED_TRACE(max);
        KT::CMsgQ<int> queue(max);
        const int fill = max > 0 ? max : 5000;
        for (int i = 0; i < fill; ++i) ASSERT_TRUE(queue.Enqueue(i));
        EXPECT_EQ(queue.Enqueue(fill), max < 1);
        int out = -1;
        ASSERT_TRUE(queue.Dequeue(0, out));
        EXPECT_EQ(out, 0);
        EXPECT_TRUE(queue.Enqueue(fill + 1));
        EXPECT_EQ(queue.Size(), static_cast<size_t>(max < 1 ? fill + 1 : fill));
        for (int want = 1; want <= fill + 1; ++want) {
            if (want == fill && max > 0) continue;  // the refused one
            ASSERT_TRUE(queue.Dequeue(0, out));
            ASSERT_EQ(out, want);
        }
        auto start = Clock::now();  // empty, no time-out: at once, the item untouched
        EXPECT_FALSE(queue.Dequeue(0, out));
        EXPECT_LT(SecondsSince(start), 1.0);
        EXPECT_EQ(out, fill + 1);
    }
}

TEST(CMsgQ, ManyProducersAndConsumersSeeEachItemOnce) {
    constexpr int kProducers = 4;
    constexpr int kPerProducer = 2000;
    KT::CMsgQ<int> queue;
    std::mutex seenMutex;
    std::multiset<int> seen;
    std::atomic<int> received{0};
    std::vector<std::thread> threads;
    for (int c = 0; c < 2; ++c) {
        threads.emplace_back([&] {
            int item;
            while (received.load() < kProducers * kPerProducer) {
                if (!queue.Dequeue(20, item)) continue;
                std::lock_guard<std::mutex> lock(seenMutex);
                seen.insert(item);
                ++received;
            }
        });
    }
    for (int p = 0; p < kProducers; ++p) {
        threads.emplace_back([&queue, p] {
            for (int i = 0; i < kPerProducer; ++i) queue.Enqueue(p * kPerProducer + i);
        });
    }
    for (auto& t : threads) t.join();
    ASSERT_EQ(seen.size(), static_cast<size_t>(kProducers * kPerProducer));
    int expected = 0;
    for (int v : seen) EXPECT_EQ(v, expected++);
}

}  // namespace
