#include "Canvas/UI/FontInfo.h"

#include "TvBase/Util/CRC16.h"

#include <cstring>
#include <tuple>

namespace UI
{

namespace
{

void addBytes(unsigned short& crc, void const* data, unsigned int size)
{
    Util::CRC16(crc, static_cast<char const*>(data), size);
}

void addText(unsigned short& crc, String const& text)
{
    addBytes(crc, text.CStr(), text.Length());
}

void addByte(unsigned short& crc, bool value)
{
    Util::CRC16(crc, static_cast<char>(value ? 1 : 0));
}

// Every field in declared order; strings compare by their bytes.
auto fields(FontInfo const& i)
{
    return std::make_tuple(i.fontFile.GetInternal(), i.faceIndex.present, i.faceIndex.value,
                           i.faceName, i.fallbackFaceName, i.size, i.spacing, i.sharpen,
                           i.antiAliasMode, i.forceAutoHint, i.kerning, i.extraFlag, i.bold,
                           i.italic, i.underline);
}

} // namespace

unsigned int FontInfo::ComputeKey() const
{
    unsigned short crc = 0;
    if (!fontFile.IsEmpty())
        addText(crc, fontFile.GetInternal());
    unsigned int const index = faceIndex.present ? faceIndex.value : 0xFFFFFFFFu;
    addBytes(crc, &index, 4);
    addText(crc, faceName);
    addBytes(crc, &size, 4);
    addBytes(crc, &spacing, 4);
    addBytes(crc, &sharpen, 4);
    addBytes(crc, &antiAliasMode, 4);
    addByte(crc, forceAutoHint);
    addByte(crc, bold);
    addByte(crc, italic);
    addByte(crc, underline);
    return static_cast<unsigned int>(crc) << 16;
}

bool operator<(FontInfo const& a, FontInfo const& b)
{
    return fields(a) < fields(b);
}

bool operator==(FontInfo const& a, FontInfo const& b)
{
    return fields(a) == fields(b);
}

} // namespace UI
