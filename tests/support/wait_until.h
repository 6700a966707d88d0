// Test helper: polls a predicate every few milliseconds up to a generous deadline,
// so tests wait on conditions instead of sleeping. Test thread only.
#pragma once

#include <chrono>
#include <thread>

namespace stbav_test {

template <typename Pred>
bool WaitUntil(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(10),
               std::chrono::milliseconds poll = std::chrono::milliseconds(2)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!pred()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(poll);
    }
    return true;
}

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace stbav_test
