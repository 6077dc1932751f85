#pragma once

#include <cstddef>

/// A value and a flag that says whether it is present. Default construction means "not present"
/// (with a zero value); construction from a value means present. Optional arguments and fallible
/// results both use it: failure is a value here, never an exception.
template <typename T>
struct checked_value
{
    T value;
    bool present;

    checked_value() : value(), present(false) {}
    checked_value(T const& v) : value(v), present(true) {}

    bool IsPresent() const { return present; }
    explicit operator bool() const { return present; }
    T const& operator*() const { return value; }
    T const& Get() const { return value; }
    /// The value when present, otherwise `fallback`.
    T GetOr(T const& fallback) const { return present ? value : fallback; }

    friend bool operator==(checked_value const& a, checked_value const& b)
    {
        return a.present == b.present && (!a.present || a.value == b.value);
    }
    friend bool operator!=(checked_value const& a, checked_value const& b) { return !(a == b); }
};

/// Minimum and maximum, in this order.
template <typename T>
struct value_range
{
    T minimum;
    T maximum;

    value_range() : minimum(), maximum() {}
    value_range(T const& lo, T const& hi) : minimum(lo), maximum(hi) {}

    bool Contains(T const& v) const { return !(v < minimum) && !(maximum < v); }
};

/// A pointer and an element count; does not own the elements.
template <typename T>
struct array_ref
{
    T* data;
    std::size_t count;

    array_ref() : data(nullptr), count(0) {}
    array_ref(T* p, std::size_t n) : data(p), count(n) {}

    T* begin() const { return data; }
    T* end() const { return data + count; }
    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    T& operator[](std::size_t i) const { return data[i]; }
};
