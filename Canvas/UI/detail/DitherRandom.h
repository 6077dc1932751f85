#pragma once

#include <cstdint>

namespace UI
{
namespace detail
{

/// The toolkit's fixed linear congruential sequence (state * 214013 + 2531011 in a 64-bit word,
/// output bits 16 to 30), kept here so that the dithered blit needs nothing above the drawing
/// layer. The dither pattern is part of the look: a given seed gives the same noise every time.
class DitherRandom
{
public:
    explicit DitherRandom(unsigned int seed) : state(seed) {}

    /// 0 to 32767.
    unsigned int GetNext()
    {
        state = state * 214013u + 2531011u;
        return static_cast<unsigned int>((state >> 16) & 0x7FFF);
    }

private:
    std::uint64_t state;
};

} // namespace detail
} // namespace UI
