// A value that is kept apart, so that a variant of it and small kinds stays small.
#pragma once

#include <memory>
#include <utility>

namespace host {

// Copies copy the value. One that was moved from holds nothing and can only be assigned or destroyed.
template <class T> class Boxed {
public:
    Boxed(T value) : m_value(std::make_unique<T>(std::move(value))) {}
    Boxed(const Boxed &other) : m_value(std::make_unique<T>(*other.m_value)) {}
    Boxed(Boxed &&) noexcept = default;
    Boxed &operator=(const Boxed &other) { return *this = Boxed(other); }
    Boxed &operator=(Boxed &&) noexcept = default;
    ~Boxed() = default;

    T &operator*() { return *m_value; }
    const T &operator*() const { return *m_value; }

private:
    std::unique_ptr<T> m_value;
};

template <class T> T &unboxed(T &value) { return value; }
template <class T> T &unboxed(Boxed<T> &value) { return *value; }
template <class T> const T &unboxed(const Boxed<T> &value) { return *value; }

} // namespace host
