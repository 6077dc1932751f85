#pragma once

#include <cstddef>

namespace Util
{
namespace detail
{

/// True when the property list in `text` (XML or binary) nests containers deeper than
/// `maximumDepth`, or when it is a binary list whose structure cannot be walked. The property
/// list library reads, copies, writes and frees nested values by recursion, so such a text
/// would exhaust the stack; this looks at the bytes alone, without recursion, before the
/// library sees them.
bool PropertyListNestsTooDeeply(char const* text, std::size_t length, unsigned int maximumDepth);

} // namespace detail
} // namespace Util
