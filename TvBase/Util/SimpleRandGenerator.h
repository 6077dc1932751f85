#pragma once

#include "TvBase/Util/checked_value.h"

#include <cstdint>

namespace Util
{

/// A small linear congruential generator whose series is part of the contract: the same seed
/// always gives the same numbers (seed 1 gives 41, 18467, 6334, ...), so dithering and other
/// noise look the same on every paint. Not for anything that must be unpredictable.
class SimpleRandGenerator
{
public:
    /// Seeds with `seed`, or with the time when it is not present.
    explicit SimpleRandGenerator(
        checked_value<unsigned int> const& seed = checked_value<unsigned int>());

    /// Stores `seed` (or the time) as both the seed and the state.
    void Seed(checked_value<unsigned int> const& seed);
    unsigned int GetSeed() const { return seed; }

    /// state = state * 214013 + 2531011; gives bits 16 to 30 of the state, 0 to 32767.
    unsigned int GetNext();
    /// `GetNext()` times 1 / 32767 as a single, 0 to 1 inclusive.
    float GetNextFloat();

private:
    std::uint32_t seed = 0;
    std::uint64_t state = 0;
    float scale;
};

} // namespace Util
