// KT::CSlice<T>: a view of a contiguous buffer (pointer + size) with indexing and
// Subslice. It does not own the memory; the owner keeps it alive. No locking.
#pragma once

#include <cstddef>
#include <vector>

namespace KT {

template <typename T>
class CSlice {
public:
    CSlice() = default;
    CSlice(T* data, std::size_t size) : m_data(data), m_size(size) {}
    explicit CSlice(std::vector<T>& v) : m_data(v.data()), m_size(v.size()) {}

    T* Data() const { return m_data; }
    std::size_t Size() const { return m_size; }
    bool Empty() const { return m_size == 0; }
    T& operator[](std::size_t i) const { return m_data[i]; }

    // The part [start, start + length), clipped to this slice.
    CSlice Subslice(std::size_t start, std::size_t length) const {
        if (start > m_size) start = m_size;
        if (length > m_size - start) length = m_size - start;
        return CSlice(m_data + start, length);
    }

private:
    T* m_data = nullptr;
    std::size_t m_size = 0;
};

}  // namespace KT
