#include "Canvas/UI/Font.h"

#include "Canvas/UI/FontContext.h"
#include "Canvas/UI/FreeTypeFont.h"
#include "Canvas/UI/StringWidthCache.h"
#include "TvBase/Util/ConfigFile.h"

#include <fontconfig/fontconfig.h>

#include <cstdio>
#include <mutex>
#include <set>
#include <vector>

namespace UI
{

namespace
{

// There is no second renderer here: a font without a FreeType face stays silent. Developers
// hear about it once per face.
void reportNoRenderer(FontInfo const& info, char const* reason)
{
#ifndef NDEBUG
    static std::mutex guard;
    static std::set<String> reported;
    std::lock_guard<std::mutex> lock(guard);
    if (reported.insert(info.faceName).second)
        std::fprintf(stderr, "Font \"%s\" (%s) %s; its text measures 0 and draws nothing\n",
                     info.faceName.CStr(), info.fontFile.ToString().CStr(), reason);
#else
    (void)info;
    (void)reason;
#endif
}

// fontconfig is started once and its caches released at exit.
struct FontconfigSession
{
    bool started = FcInit() != FcFalse;
    ~FontconfigSession()
    {
        if (started)
            FcFini();
    }
};

bool readForceSystemRenderer()
{
    return Util::ConfigFile("com.tavorin").GetBool("ForceSystemFontRenderer", false);
}

} // namespace

bool Font::StartFontconfig()
{
    static FontconfigSession const session;
    return session.started;
}

Font::Font(FontContext* canvas, FontInfo const& fontInfo) : canvas(canvas), info(fontInfo)
{
    if (readForceSystemRenderer())
    {
        reportNoRenderer(info, "is forced to the system renderer, which this host lacks");
        return;
    }
    freeType.reset(new FreeTypeFont(canvas, info));
    if (!freeType->IsValid())
    {
        freeType.reset();
        reportNoRenderer(info, "can't be found or opened");
    }
}

Font::~Font() = default;

unsigned int Font::GetStringWidth(String const& text)
{
    StringWidthCache* const widths = canvas ? canvas->GetStringWidthCache() : nullptr;
    if (!widths || canvas->IsFontStringMappingFunctionRegistered())
        return getStringWidth(text);
    // The FreeType object's info names the face file actually opened, whose modified time
    // guards the cached widths.
    FontInfo const& keyInfo = freeType ? freeType->GetFontInfo() : info;
    checked_value<unsigned int> const cached = widths->GetCachedStringWidth(text, keyInfo);
    if (cached)
        return *cached;
    unsigned int const width = getStringWidth(text);
    widths->CacheStringWidth(text, keyInfo, width);
    return width;
}

unsigned int Font::getStringWidth(String const& text)
{
    if (!freeType)
        return 0;
    if (canvas && canvas->IsFontStringMappingFunctionRegistered())
        return freeType->GetStringWidth(canvas->ApplyFontStringMappingFunction(text));
    return freeType->GetStringWidth(text);
}

UI::Rect Font::RenderText(UI::Point const& point, String const& text, unsigned int color,
                          unsigned char alpha, UI::Rect const& clip, Native::DIBSection* section,
                          HAlignment hAlign, VAlignment vAlign, UI::Rect const& box)
{
    if (!freeType)
        return UI::Rect();
    String const mapped = canvas ? canvas->ApplyFontStringMappingFunction(text) : text;
    return freeType->RenderText(point, mapped, color, alpha, clip, section, hAlign, vAlign, box);
}

UI::Rect Font::RenderText(UI::Point const& point, String const& text, unsigned int color,
                          unsigned char alpha, UI::Rect const& clip, DIBits& bits,
                          HAlignment hAlign, VAlignment vAlign, UI::Rect const& box)
{
    if (!freeType)
        return UI::Rect();
    String const mapped = canvas ? canvas->ApplyFontStringMappingFunction(text) : text;
    return freeType->RenderText(point, mapped, color, alpha, clip, bits, hAlign, vAlign, box);
}

FilePath Font::GetNativeFont() const
{
    return freeType ? freeType->GetFontInfo().fontFile : FilePath();
}

int Font::GetAscent() const
{
    return freeType ? freeType->GetAscent() : 0;
}

int Font::GetDescent() const
{
    return freeType ? freeType->GetDescent() : 0;
}

int Font::GetHeight() const
{
    return freeType ? freeType->GetHeight() : 0;
}

FilePath Font::GetNSFontForInfo(FontInfo const& fontInfo)
{
    FilePath path = GetNSFontForInfo(fontInfo.faceName, fontInfo.bold, fontInfo.italic);
    if (path.IsEmpty())
        path = GetNSFontForInfo(fontInfo.fallbackFaceName, fontInfo.bold, fontInfo.italic);
    return path;
}

// fontconfig always offers some face. The match counts only when it is one of the families
// that the configuration binds to the name (the name itself and its strong aliases, such as the
// metric-compatible faces), not one of the generic defaults that follow them.
FilePath Font::GetNSFontForInfo(String const& faceName, bool bold, bool italic)
{
    if (faceName.IsEmpty() || !StartFontconfig())
        return FilePath();
    FcPattern* const pattern = FcPatternCreate();
    if (!pattern)
        return FilePath();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<FcChar8 const*>(faceName.CStr()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);

    std::vector<String> bound;
    FcValue value;
    FcValueBinding binding;
    for (int i = 0;
         FcPatternGetWithBinding(pattern, FC_FAMILY, i, &value, &binding) == FcResultMatch; ++i)
    {
        if (binding == FcValueBindingWeak || value.type != FcTypeString)
            break;
        bound.push_back(String(reinterpret_cast<char const*>(value.u.s)));
    }

    FilePath result;
    FcResult matchResult;
    FcPattern* const match = FcFontMatch(nullptr, pattern, &matchResult);
    if (match)
    {
        bool accepted = false;
        FcChar8* family = nullptr;
        for (int i = 0;
             !accepted && FcPatternGetString(match, FC_FAMILY, i, &family) == FcResultMatch; ++i)
            for (String const& name : bound)
                if (FcStrCmpIgnoreCase(family, reinterpret_cast<FcChar8 const*>(name.CStr())) == 0)
                    accepted = true;
        FcChar8* file = nullptr;
        if (accepted && FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch)
            result = FilePath(String(reinterpret_cast<char const*>(file)));
        FcPatternDestroy(match);
    }
    FcPatternDestroy(pattern);
    return result;
}

} // namespace UI
