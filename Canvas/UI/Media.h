#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <array>

namespace UI
{
class DIBits;

/// Skin images: PNG resources decoded into `UI::DIBits`, shared by name and optionally baked
/// through a gamma table. For the user-interface thread only: the cache is not locked.
namespace Media
{

/// The gammas that `GetPNGBits` maps onto exponents from 1.4 (the minimum, darkest) to 0.6 (the
/// maximum, brightest). It runs from -1 to 1, so that its middle, gamma 0, maps to exponent 1 and
/// agrees with the rule that gamma 0 means "as stored".
extern value_range<float> const GAMMA_CORRECTION_RANGE;

/// The resource `name` from `Util::ResourceManager::Get()`, decoded. With `useCache` the bits
/// are shared with every other holder of the same name and gamma, and a new decode replaces a
/// cache entry made at another gamma (older holders keep theirs). A missing or undecodable
/// resource gives a null pointer; callers draw nothing then.
boost::shared_ptr<UI::DIBits> GetPNGBits(String const& name, bool useCache, float gamma);
/// `size` bytes of PNG at `data`, decoded and gamma-corrected; never cached. Damaged, truncated
/// or oversized input gives a null pointer, never a crash.
boost::shared_ptr<UI::DIBits> GetPNGBits(unsigned int size, unsigned char const* data, float gamma);
/// Puts `bits` in the cache under `name` as made at `gamma`; the cache keeps only a weak
/// reference, so the entry lives as long as some holder does.
void CachePNGBits(String const& name, boost::shared_ptr<UI::DIBits> const& bits, float gamma);

/// The table that gamma `gamma` bakes into red, green and blue: entry i is
/// round(pow(i / 255, e) * 255) with e = 1.4 - 0.8 * (gamma - min) / (max - min) over
/// `GAMMA_CORRECTION_RANGE` (e = 1.4 when the range is empty).
std::array<unsigned char, 256> MakeGammaTable(float gamma);

/// The images decoded at least once, by name (for the design tools and tests). Dead entries are
/// still listed until replaced.
std::size_t GetCacheSize();

} // namespace Media
} // namespace UI
