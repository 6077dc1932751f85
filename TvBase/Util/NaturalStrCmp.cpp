#include "TvBase/Util/NaturalStrCmp.h"

#include <cstring>

namespace Util
{

namespace detail
{

unsigned int classifyChunk(char const* text, unsigned int length, unsigned int start,
                           bool& isDigits)
{
    auto const digit = [](char c) { return c >= '0' && c <= '9'; };
    isDigits = digit(text[start]);
    unsigned int end = start + 1;
    while (end < length && digit(text[end]) == isDigits)
        ++end;
    return end;
}

} // namespace detail

namespace
{

/// Negative, zero or positive as `a` sorts before, with or after `b`, for two digit runs.
int compareDigits(char const* a, unsigned int lengthA, char const* b, unsigned int lengthB)
{
    unsigned int zerosA = 0;
    while (zerosA < lengthA && a[zerosA] == '0')
        ++zerosA;
    unsigned int zerosB = 0;
    while (zerosB < lengthB && b[zerosB] == '0')
        ++zerosB;
    unsigned int const restA = lengthA - zerosA;
    unsigned int const restB = lengthB - zerosB;
    if (restA != restB)
        return restA < restB ? -1 : 1;
    if (int const bytes = std::memcmp(a + zerosA, b + zerosB, restA))
        return bytes;
    // The same value: fewer leading zeros first.
    return lengthA == lengthB ? 0 : (lengthA < lengthB ? -1 : 1);
}

/// The same for two runs of other bytes: byte by byte, then a prefix first.
int compareOthers(char const* a, unsigned int lengthA, char const* b, unsigned int lengthB)
{
    unsigned int const common = lengthA < lengthB ? lengthA : lengthB;
    if (int const bytes = std::memcmp(a, b, common))
        return bytes;
    return lengthA == lengthB ? 0 : (lengthA < lengthB ? -1 : 1);
}

} // namespace

bool NaturalStrCmp::operator()(String const& a, String const& b) const
{
    char const* const textA = a.CStr();
    char const* const textB = b.CStr();
    unsigned int const lengthA = a.Length();
    unsigned int const lengthB = b.Length();
    unsigned int posA = 0;
    unsigned int posB = 0;
    while (posA < lengthA && posB < lengthB)
    {
        bool digitsA = false;
        bool digitsB = false;
        unsigned int const endA = detail::classifyChunk(textA, lengthA, posA, digitsA);
        unsigned int const endB = detail::classifyChunk(textB, lengthB, posB, digitsB);
        if (digitsA != digitsB)
            return digitsA;
        int const order = digitsA
                              ? compareDigits(textA + posA, endA - posA, textB + posB, endB - posB)
                              : compareOthers(textA + posA, endA - posA, textB + posB, endB - posB);
        if (order != 0)
            return order < 0;
        posA = endA;
        posB = endB;
    }
    // Every run matched: the text that ran out first sorts first; equal texts are not less.
    return posA >= lengthA && posB < lengthB;
}

} // namespace Util
