// A clock for the schedule, status and control tests: milliseconds that move only
// when the test says so. Read on any thread, moved on the test's thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "toolkit/kt_schedule.h"

namespace stbav_test {

class FakeClock : public KT::IClock {
public:
    uint64_t NowMs() const override { return m_Now.load(); }
    void Advance(uint64_t ms) { m_Now += ms; }

private:
    std::atomic<uint64_t> m_Now{100000};
};

}  // namespace stbav_test
