#pragma once

#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

namespace UI
{

/// Everything that says which face is drawn and how: a plain value, copied freely.
struct FontInfo
{
    /// Exact file of the face; empty means "look the face name up".
    FilePath fontFile;
    /// Face inside the file; unset means the first.
    checked_value<unsigned int> faceIndex;
    /// For instance "Arial".
    String faceName;
    /// Tried when the face name can't be found.
    String fallbackFaceName;
    /// Points at 72 dpi, so pixels.
    float size = 12.0f;
    /// Hashed and saved; no effect on drawing.
    int spacing = 0;
    /// Non-zero blends the mono-hinted shape into the grey one (see `UI::FreeTypeFont`).
    int sharpen = 0;
    /// 0 hints for monochrome; any other value hints normally; 1 also disables the blend.
    int antiAliasMode = 0;
    bool forceAutoHint = false;
    /// Use the face's kerning table when it has one.
    bool kerning = true;
    /// Saved with the width cache; no effect on drawing.
    bool extraFlag = false;
    bool bold = false;
    bool italic = false;
    bool underline = false;

    FontInfo() = default;
    FontInfo(String const& face, float pointSize) : faceName(face), size(pointSize) {}

    /// The identity of the look: a CRC-16 over the file path text (if any), the face index (4
    /// bytes, 0xFFFFFFFF when unset), the face name, the size's 4 bytes, spacing, sharpen and
    /// anti-alias mode (4 bytes each), then force auto-hint, bold, italic and underline (a byte
    /// each), shifted into the upper 16 bits. The fallback face, kerning and the extra flag are
    /// not part of it.
    unsigned int ComputeKey() const;
};

/// Orders by every field, file path text first; used as a map key by the width cache.
bool operator<(FontInfo const& a, FontInfo const& b);
/// True when every field is equal.
bool operator==(FontInfo const& a, FontInfo const& b);
inline bool operator!=(FontInfo const& a, FontInfo const& b)
{
    return !(a == b);
}

} // namespace UI
