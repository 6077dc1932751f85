#pragma once

#include "TvBase/Util/String.h"

namespace Util
{

/// The order people expect for names with numbers in them: "a2" before "a10". Both texts are cut
/// into runs of digits and runs of other bytes and compared run by run from the left: a digit
/// run comes before any other run; two digit runs compare by value, leading zeros ignored, and
/// at equal value the shorter run first ("a2" before "a02"); other runs compare byte by byte,
/// case-sensitive, a prefix first. When every run matched, the shorter text comes first.
/// A strict order, usable with `std::sort` and `std::map`; a null text counts as empty.
struct NaturalStrCmp
{
    bool operator()(String const& a, String const& b) const;
};

namespace detail
{
/// The end of the run that starts at `start` in `text` (`length` bytes), and in `isDigits`
/// whether it is a run of digits. `start` must be below `length`.
unsigned int classifyChunk(char const* text, unsigned int length, unsigned int start,
                           bool& isDigits);
} // namespace detail

} // namespace Util
