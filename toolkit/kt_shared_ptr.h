// KT::CSharedPtr<T>: reference-counted owning pointer, copyable, converting from
// a pointer to a derived type. The count is thread-safe (std::shared_ptr inside);
// the pointee is not locked.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace KT {

template <typename T>
class CSharedPtr {
public:
    CSharedPtr() = default;
    CSharedPtr(std::nullptr_t) {}
    // Takes ownership of p (may be null).
    explicit CSharedPtr(T* p) : m_ptr(p) {}
    template <typename U>
    explicit CSharedPtr(U* p) : m_ptr(p) {}
    template <typename U>
    CSharedPtr(const CSharedPtr<U>& other) : m_ptr(other.StdPtr()) {}
    explicit CSharedPtr(std::shared_ptr<T> p) : m_ptr(std::move(p)) {}

    T* operator->() const { return m_ptr.get(); }
    T& operator*() const { return *m_ptr; }
    T* Get() const { return m_ptr.get(); }
    bool IsNull() const { return !m_ptr; }
    explicit operator bool() const { return static_cast<bool>(m_ptr); }
    long UseCount() const { return m_ptr.use_count(); }
    void Reset() { m_ptr.reset(); }

    const std::shared_ptr<T>& StdPtr() const { return m_ptr; }

    friend bool operator==(const CSharedPtr& a, const CSharedPtr& b) { return a.m_ptr == b.m_ptr; }
    friend bool operator!=(const CSharedPtr& a, const CSharedPtr& b) { return a.m_ptr != b.m_ptr; }

private:
    std::shared_ptr<T> m_ptr;
};

template <typename T, typename... Args>
CSharedPtr<T> MakeShared(Args&&... args) {
    return CSharedPtr<T>(std::make_shared<T>(std::forward<Args>(args)...));
}

}  // namespace KT
