// KT::Atomic<T>: the toolkit's atomic value; std::atomic on this platform.
#pragma once

#include <atomic>

namespace KT {

template <typename T>
using Atomic = std::atomic<T>;

}  // namespace KT
