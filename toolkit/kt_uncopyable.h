// KT::CUncopyable: derive from it (privately) to forbid copy and assignment.
// Header-only; no thread concerns.
#pragma once

namespace KT {

class CUncopyable {
protected:
    CUncopyable() = default;
    ~CUncopyable() = default;

public:
    CUncopyable(const CUncopyable&) = delete;
    CUncopyable& operator=(const CUncopyable&) = delete;
};

}  // namespace KT
