// KT::CFunctor<Signature>: a callable bound to an object's member function (or any
// callable). Copyable; calling an empty functor does nothing and returns a
// value-initialised result. No locking: the bound object must outlive it.
#pragma once

#include <functional>
#include <utility>

namespace KT {

template <typename Signature>
class CFunctor;

template <typename R, typename... Args>
class CFunctor<R(Args...)> {
public:
    CFunctor() = default;
    template <typename F>
    CFunctor(F f) : m_fn(std::move(f)) {}
    template <typename C>
    CFunctor(C* object, R (C::*method)(Args...))
        : m_fn([object, method](Args... a) { return (object->*method)(std::forward<Args>(a)...); }) {}

    R operator()(Args... args) const {
        if (!m_fn) return R();
        return m_fn(std::forward<Args>(args)...);
    }
    bool IsEmpty() const { return !m_fn; }

private:
    std::function<R(Args...)> m_fn;
};

// Binds a member function: KT::MakeFunctor(this, &Foo::Bar).
template <typename C, typename R, typename... Args>
CFunctor<R(Args...)> MakeFunctor(C* object, R (C::*method)(Args...)) {
    return CFunctor<R(Args...)>(object, method);
}

}  // namespace KT
