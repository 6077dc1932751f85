#include "Canvas/UI/FontFallback.h"

#include "Canvas/UI/Font.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <mutex>
#include <tuple>
#include <vector>

namespace UI
{

namespace
{

typedef std::tuple<String, bool, bool> StyleKey;
typedef std::tuple<unsigned int, String, bool, bool> CharacterKey;

// Answers by character are forgotten past this many, so that text full of distinct characters
// keeps the memory bounded.
std::size_t const answerLimit = 65536;

/// A face that may serve, with its own copy of its character set: what fontconfig hands out
/// belongs to its caches, which must all be given back before it ends at exit.
struct Candidate
{
    FontFallback::Face face;
    FcCharSet* chars;
};

/// The installed faces in fontconfig's order of preference for a family and style, trimmed to
/// those that add characters; none when fontconfig can't start.
std::vector<Candidate> sortFaces(String const& family, bool bold, bool italic)
{
    std::vector<Candidate> candidates;
    if (!Font::StartFontconfig())
        return candidates;
    FcPattern* const pattern = FcPatternCreate();
    if (!pattern)
        return candidates;
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
    for (int i = 0; sorted && i < sorted->nfont; ++i)
    {
        FcPattern* const font = sorted->fonts[i];
        FcCharSet* chars = nullptr;
        FcChar8* file = nullptr;
        int index = 0;
        if (FcPatternGetCharSet(font, FC_CHARSET, 0, &chars) != FcResultMatch ||
            FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch)
            continue;
        if (FcPatternGetInteger(font, FC_INDEX, 0, &index) != FcResultMatch || index < 0)
            index = 0;
        FcCharSet* const copy = FcCharSetCreate();
        if (!copy || !FcCharSetMerge(copy, chars, nullptr))
        {
            if (copy)
                FcCharSetDestroy(copy);
            continue;
        }
        Candidate candidate{FontFallback::Face(), copy};
        candidate.face.file = FilePath(String(reinterpret_cast<char const*>(file)));
        candidate.face.index = static_cast<unsigned int>(index);
        candidates.push_back(candidate);
    }
    if (sorted)
        FcFontSetDestroy(sorted);
    return candidates;
}

/// The first of `candidates` whose character set has `codePoint`.
FontFallback::Face firstFaceWith(std::vector<Candidate> const& candidates, unsigned int codePoint)
{
    for (Candidate const& candidate : candidates)
        if (FcCharSetHasChar(candidate.chars, codePoint))
            return candidate.face;
    return FontFallback::Face();
}

/// The faces by style and the answers by character, for the life of the process. The character
/// sets are our own copies, not fontconfig's cache objects, so they can be freed at exit even
/// after fontconfig has ended.
struct FallbackCache
{
    std::mutex lock;
    std::map<StyleKey, std::vector<Candidate>> facesByStyle;
    std::map<CharacterKey, FontFallback::Face> answers;

    ~FallbackCache()
    {
        for (auto& style : facesByStyle)
            for (Candidate& candidate : style.second)
                FcCharSetDestroy(candidate.chars);
    }
};

} // namespace

FontFallback::Face FontFallback::FindFace(unsigned int codePoint, String const& family, bool bold,
                                          bool italic)
{
    static FallbackCache cache;
    std::lock_guard<std::mutex> hold(cache.lock);
    CharacterKey const key(codePoint, family, bold, italic);
    auto const known = cache.answers.find(key);
    if (known != cache.answers.end())
        return known->second;
    StyleKey const style(family, bold, italic);
    auto faces = cache.facesByStyle.find(style);
    if (faces == cache.facesByStyle.end())
        faces = cache.facesByStyle.emplace(style, sortFaces(family, bold, italic)).first;
    Face const face = firstFaceWith(faces->second, codePoint);
    if (cache.answers.size() >= answerLimit)
        cache.answers.clear();
    cache.answers.emplace(key, face);
    return face;
}

} // namespace UI
