#pragma once

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

/// Block operations on arrays, element count first, for `unsigned char`, `short`, `int`,
/// `unsigned int`, `float` and `double`. `Copy`, `Move`, `Set` and `Zero` behave as `memcpy`,
/// `memmove` and `memset` in element units. No vendor performance library stands behind them:
/// they are plain loops and C library calls, which compilers vectorise well.
namespace IPP
{

namespace detail
{
template <typename T>
struct IsBlockType
    : std::integral_constant<
          bool, std::is_same<T, unsigned char>::value || std::is_same<T, short>::value ||
                    std::is_same<T, int>::value || std::is_same<T, unsigned int>::value ||
                    std::is_same<T, float>::value || std::is_same<T, double>::value>
{
};

/// `value` in the range of `To`: integers saturate at its limits; a floating value going to an
/// integer is rounded to nearest (halves away from zero) first, and NaN gives 0.
template <typename To, typename From>
To convertOne(From value)
{
    if constexpr (std::is_floating_point<To>::value || std::is_same<To, From>::value)
        return static_cast<To>(value);
    else if constexpr (std::is_floating_point<From>::value)
    {
        if (std::isnan(value))
            return 0;
        From const rounded = std::round(value);
        if (rounded <= static_cast<From>(std::numeric_limits<To>::min()))
            return std::numeric_limits<To>::min();
        if (rounded >= static_cast<From>(std::numeric_limits<To>::max()))
            return std::numeric_limits<To>::max();
        return static_cast<To>(rounded);
    }
    else
    {
        // Integers: compare in the widest signed type, which holds every value of all four.
        long long const wide = static_cast<long long>(value);
        if (wide < static_cast<long long>(std::numeric_limits<To>::min()))
            return std::numeric_limits<To>::min();
        if (wide > static_cast<long long>(std::numeric_limits<To>::max()))
            return std::numeric_limits<To>::max();
        return static_cast<To>(wide);
    }
}
} // namespace detail

/// `count` elements from `source` to `destination`, which must not overlap.
template <typename T>
void Copy(unsigned int count, T const* source, T* destination)
{
    static_assert(detail::IsBlockType<T>::value, "not a block type");
    if (count)
        std::memcpy(destination, source, count * sizeof(T));
}

/// `count` elements from `source` to `destination`, which may overlap.
template <typename T>
void Move(unsigned int count, T const* source, T* destination)
{
    static_assert(detail::IsBlockType<T>::value, "not a block type");
    if (count)
        std::memmove(destination, source, count * sizeof(T));
}

/// `count` elements of `destination` set to `value`.
template <typename T>
void Set(unsigned int count, T value, T* destination)
{
    static_assert(detail::IsBlockType<T>::value, "not a block type");
    for (unsigned int i = 0; i < count; ++i)
        destination[i] = value;
}

/// `count` elements of `destination` set to zero.
template <typename T>
void Zero(unsigned int count, T* destination)
{
    static_assert(detail::IsBlockType<T>::value, "not a block type");
    if (count)
        std::memset(destination, 0, count * sizeof(T));
}

/// `count` elements converted from `source` to `destination`: saturated to the destination's
/// range, floating values rounded to nearest when the destination is an integer, NaN to 0.
template <typename From, typename To>
void Convert(unsigned int count, From const* source, To* destination)
{
    static_assert(detail::IsBlockType<From>::value && detail::IsBlockType<To>::value,
                  "not a block type");
    for (unsigned int i = 0; i < count; ++i)
        destination[i] = detail::convertOne<To>(source[i]);
}

/// Blocks aligned to 64 bytes for `count` elements (at least one), released with `Free`; null
/// when memory is short.
unsigned char* Malloc_Byte(unsigned int count);
float* Malloc_Float(unsigned int count);
short* Malloc_Int16(unsigned int count);
double* Malloc_Double(unsigned int count);
/// Releases a block of the `Malloc_` functions; null is allowed.
void Free(void* block);

/// 0: there is no library to initialise, so initialisation always succeeded.
int GetIppInitStatus();
/// True: see `GetIppInitStatus`.
bool DidIppInitSucceed();

/// Image helpers over rows of 32-bit pixels (0xAARRGGBB, channels by bit position), `width`
/// by `height`, rows `stepBytes` apart. Nothing happens for a width or height below 1.
/// Every pixel set to `value`.
void ImageSet(unsigned int value, unsigned int* pixels, int stepBytes, int width, int height);
/// Each of the four 8-bit channels plus the matching byte of `value` (same layout as the
/// pixels), saturated at 255.
void ImageAddConstant_InPlace(unsigned int value, unsigned int* pixels, int stepBytes, int width,
                              int height);
/// Each of the four 8-bit channels multiplied by `alpha` / 255, rounded to nearest: a
/// premultiplied image faded to `alpha`.
void ImagePreMultiplyAlphaConstant_InPlace(unsigned char alpha, unsigned int* pixels, int stepBytes,
                                           int width, int height);

} // namespace IPP
