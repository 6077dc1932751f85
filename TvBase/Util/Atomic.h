#pragma once

/// Word-sized atomic helpers over 32-bit unsigned values and pointers. Reads and writes are
/// plain loads and stores of the full width; the increments set no memory barrier, so they
/// order nothing but themselves. Compare-exchange is a full barrier.
namespace Atomic
{

inline unsigned int AtomicRead(unsigned int const volatile& value)
{
    return __atomic_load_n(&value, __ATOMIC_RELAXED);
}

inline void* AtomicRead(void* const volatile& value)
{
    return __atomic_load_n(&value, __ATOMIC_RELAXED);
}

inline void AtomicWrite(unsigned int volatile& target, unsigned int value)
{
    __atomic_store_n(&target, value, __ATOMIC_RELAXED);
}

inline void AtomicWrite(void* volatile& target, void* value)
{
    __atomic_store_n(&target, value, __ATOMIC_RELAXED);
}

/// True when `target` held `expected` and now holds `newValue`; otherwise `target` is unchanged.
inline bool AtomicCompareExchange(unsigned int volatile& target, unsigned int newValue,
                                  unsigned int expected)
{
    return __atomic_compare_exchange_n(&target, &expected, newValue, false, __ATOMIC_SEQ_CST,
                                       __ATOMIC_SEQ_CST);
}

/// The value after the increment.
inline unsigned int AtomicIncrement(unsigned int volatile& target)
{
    return __atomic_add_fetch(&target, 1u, __ATOMIC_RELAXED);
}

/// The value after the decrement.
inline unsigned int AtomicDecrement(unsigned int volatile& target)
{
    return __atomic_sub_fetch(&target, 1u, __ATOMIC_RELAXED);
}

} // namespace Atomic
