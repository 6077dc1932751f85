#pragma once

#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"

namespace UI
{

/// Finds, through fontconfig, a face that has a character the font in use lacks (Chinese,
/// Japanese or Korean text in a Latin face, for instance). The answers are kept for the life of
/// the process, so each character is asked about once per family and style; safe from any
/// thread.
class FontFallback
{
public:
    /// A face in a font file; an empty file means that no installed face has the character.
    struct Face
    {
        FilePath file;
        unsigned int index = 0;
    };

    /// The face fontconfig prefers for `codePoint` near `family`, `bold` and `italic`, checked to
    /// have it in its character set.
    static Face FindFace(unsigned int codePoint, String const& family, bool bold, bool italic);
};

} // namespace UI
