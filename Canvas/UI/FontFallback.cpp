#include "Canvas/UI/FontFallback.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <mutex>
#include <tuple>

namespace UI
{

namespace
{

typedef std::tuple<String, bool, bool> StyleKey;
typedef std::tuple<unsigned int, String, bool, bool> CharacterKey;

// Answers by character are forgotten past this many, so that text full of distinct characters
// keeps the memory bounded.
std::size_t const answerLimit = 65536;

/// The installed faces in fontconfig's order of preference for a family and style, trimmed to
/// those that add characters; null when fontconfig can't start.
FcFontSet* sortFaces(String const& family, bool bold, bool italic)
{
    // Starting again is harmless; the session in Font.cpp ends fontconfig at exit.
    if (FcInit() == FcFalse)
        return nullptr;
    FcPattern* const pattern = FcPatternCreate();
    if (!pattern)
        return nullptr;
    if (!family.IsEmpty())
        FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<FcChar8 const*>(family.CStr()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcFontSet* const sorted = FcFontSort(nullptr, pattern, FcTrue, nullptr, &result);
    FcPatternDestroy(pattern);
    return sorted;
}

/// The first face of `faces` whose character set has `codePoint`.
FontFallback::Face firstFaceWith(FcFontSet const* faces, unsigned int codePoint)
{
    FontFallback::Face found;
    for (int i = 0; faces && i < faces->nfont; ++i)
    {
        FcPattern* const candidate = faces->fonts[i];
        FcCharSet* chars = nullptr;
        FcChar8* file = nullptr;
        int index = 0;
        if (FcPatternGetCharSet(candidate, FC_CHARSET, 0, &chars) != FcResultMatch ||
            !FcCharSetHasChar(chars, codePoint) ||
            FcPatternGetString(candidate, FC_FILE, 0, &file) != FcResultMatch)
            continue;
        if (FcPatternGetInteger(candidate, FC_INDEX, 0, &index) != FcResultMatch || index < 0)
            index = 0;
        found.file = FilePath(String(reinterpret_cast<char const*>(file)));
        found.index = static_cast<unsigned int>(index);
        break;
    }
    return found;
}

} // namespace

FontFallback::Face FontFallback::FindFace(unsigned int codePoint, String const& family, bool bold,
                                          bool italic)
{
    static std::mutex lock;
    // Kept to the end of the process and never released: fontconfig may have ended by the
    // time static objects go.
    static auto* const facesByStyle = new std::map<StyleKey, FcFontSet*>;
    static auto* const answers = new std::map<CharacterKey, Face>;
    std::lock_guard<std::mutex> hold(lock);
    CharacterKey const key(codePoint, family, bold, italic);
    auto const known = answers->find(key);
    if (known != answers->end())
        return known->second;
    StyleKey const style(family, bold, italic);
    auto faces = facesByStyle->find(style);
    if (faces == facesByStyle->end())
        faces = facesByStyle->emplace(style, sortFaces(family, bold, italic)).first;
    Face const face = firstFaceWith(faces->second, codePoint);
    if (answers->size() >= answerLimit)
        answers->clear();
    answers->emplace(key, face);
    return face;
}

} // namespace UI
