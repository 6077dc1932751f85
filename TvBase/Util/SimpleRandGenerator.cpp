#include "TvBase/Util/SimpleRandGenerator.h"

#include <cstring>
#include <ctime>

namespace Util
{

namespace
{
/// 1 / 32767 as the single with the bits 0x38000100, so that every build scales alike.
float scaleFromBits()
{
    std::uint32_t const bits = 0x38000100u;
    float scale;
    std::memcpy(&scale, &bits, sizeof scale);
    return scale;
}
} // namespace

SimpleRandGenerator::SimpleRandGenerator(checked_value<unsigned int> const& seed)
    : scale(scaleFromBits())
{
    Seed(seed);
}

void SimpleRandGenerator::Seed(checked_value<unsigned int> const& newSeed)
{
    seed = newSeed.IsPresent() ? newSeed.Get() : static_cast<std::uint32_t>(std::time(nullptr));
    state = seed;
}

unsigned int SimpleRandGenerator::GetNext()
{
    state = state * 214013u + 2531011u;
    return static_cast<unsigned int>((state >> 16) & 0x7FFF);
}

float SimpleRandGenerator::GetNextFloat()
{
    return static_cast<float>(GetNext()) * scale;
}

} // namespace Util
