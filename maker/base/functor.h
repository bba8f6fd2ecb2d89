// A holder for at most one callback.
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Base {

template <class Signature> class Functor;

// Empty from the start without any dynamic initialisation, so that a static one may be filled and
// asked while libraries are still being loaded.
template <class R, class... Args> class Functor<R(Args...)> {
public:
    using Pointer = R (*)(Args...);

    constexpr Functor() = default;
    constexpr Functor(std::nullptr_t) {}
    constexpr Functor(Pointer function) : m_function(function) {}
    template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, Functor> &&
             !std::is_pointer_v<std::decay_t<F>> && std::is_invocable_r_v<R, F &, Args...>)
        Functor(F &&callable)
    {
        // An empty function object would otherwise look installed.
        if constexpr (requires { callable == nullptr; }) {
            if (callable == nullptr) return;
        }
        m_callable = std::make_shared<const std::function<R(Args...)>>(std::forward<F>(callable));
    }

    bool empty() const { return !m_function && !m_callable; }
    explicit operator bool() const { return !empty(); }

    R operator()(Args... args) const
    {
        if (m_function) return m_function(std::forward<Args>(args)...);
        if (m_callable) return (*m_callable)(std::forward<Args>(args)...);
        throw std::logic_error("Base::Functor: called without a function");
    }

private:
    Pointer m_function = nullptr;
    std::shared_ptr<const std::function<R(Args...)>> m_callable;
};

} // namespace Base
