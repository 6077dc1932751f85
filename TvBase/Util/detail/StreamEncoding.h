#pragma once

// The wire encoding shared by ByteStream and FileStream: a value's size on the wire and its
// bytes in a given byte order.

#include "TvBase/Util/DataStream.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Util
{
namespace detail
{

inline bool IsHostLittleEndian()
{
    std::uint16_t const probe = 1;
    unsigned char first;
    std::memcpy(&first, &probe, 1);
    return first == 1;
}

/// Whether values of this byte order are stored swapped against the host's.
inline bool NeedsSwap(DataStream::EndianType endian)
{
    if (endian == DataStream::NativeEndian)
        return false;
    if (endian == DataStream::LittleEndian)
        return !IsHostLittleEndian();
    return true;
}

template <typename T>
constexpr unsigned int WireSize()
{
    return std::is_same<T, bool>::value ? 1u : static_cast<unsigned int>(sizeof(T));
}

inline std::uint16_t Swap(std::uint16_t v)
{
    return __builtin_bswap16(v);
}
inline std::uint32_t Swap(std::uint32_t v)
{
    return __builtin_bswap32(v);
}
inline std::uint64_t Swap(std::uint64_t v)
{
    return __builtin_bswap64(v);
}

template <unsigned int Size>
struct UnsignedOfSize;
template <>
struct UnsignedOfSize<1>
{
    using Type = std::uint8_t;
};
template <>
struct UnsignedOfSize<2>
{
    using Type = std::uint16_t;
};
template <>
struct UnsignedOfSize<4>
{
    using Type = std::uint32_t;
};
template <>
struct UnsignedOfSize<8>
{
    using Type = std::uint64_t;
};

inline std::uint8_t Swap(std::uint8_t v)
{
    return v;
}

/// `long` and `unsigned long` on a 64-bit build: a swapped value keeps only its low four bytes,
/// swapped among themselves, with the high four zero. That is how the encoding has always stood.
template <typename T>
constexpr bool IsWideLong()
{
    return (std::is_same<T, long>::value || std::is_same<T, unsigned long>::value) &&
           sizeof(T) == 8;
}

/// Writes `value` as `WireSize<T>()` bytes at `out`.
template <typename T>
void Encode(T value, DataStream::EndianType endian, unsigned char* out)
{
    if constexpr (std::is_same<T, bool>::value)
    {
        out[0] = value ? 1 : 0;
    }
    else
    {
        using U = typename UnsignedOfSize<sizeof(T)>::Type;
        U bits;
        std::memcpy(&bits, &value, sizeof(T));
        if (NeedsSwap(endian))
        {
            if constexpr (IsWideLong<T>())
                bits = Swap(static_cast<std::uint32_t>(bits));
            else
                bits = Swap(bits);
        }
        std::memcpy(out, &bits, sizeof(T));
    }
}

/// Reads a value of `WireSize<T>()` bytes at `in`.
template <typename T>
T Decode(unsigned char const* in, DataStream::EndianType endian)
{
    if constexpr (std::is_same<T, bool>::value)
    {
        return in[0] != 0;
    }
    else
    {
        using U = typename UnsignedOfSize<sizeof(T)>::Type;
        U bits;
        std::memcpy(&bits, in, sizeof(T));
        if (NeedsSwap(endian))
        {
            if constexpr (IsWideLong<T>())
                bits = Swap(static_cast<std::uint32_t>(bits));
            else
                bits = Swap(bits);
        }
        T value;
        std::memcpy(&value, &bits, sizeof(T));
        return value;
    }
}

} // namespace detail
} // namespace Util
