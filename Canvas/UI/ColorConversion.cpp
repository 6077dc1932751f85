#include "Canvas/UI/ColorConversion.h"

#include <cstdio>

namespace UI
{

String ConvertColorToString(unsigned int color, bool withHash)
{
    unsigned int alpha = color >> 24;
    char text[16];
    int n = std::snprintf(text, sizeof text, "%s%06X", withHash ? "#" : "", color & 0xFFFFFFu);
    if (alpha != 255)
        std::snprintf(text + n, sizeof text - n, ".%02X", alpha);
    return String(text);
}

checked_value<unsigned int> ConvertStringToColor(String const& text)
{
    String s = text.StripWhiteSpace();
    if (s[0] == '#')
        s = s.Mid(1);
    unsigned int length = s.Length();
    if (length != 6 && length != 9)
        return checked_value<unsigned int>();
    checked_value<unsigned int> red = s.Mid(0, 2u).ToUInt(16);
    checked_value<unsigned int> green = s.Mid(2, 2u).ToUInt(16);
    checked_value<unsigned int> blue = s.Mid(4, 2u).ToUInt(16);
    if (!red || !green || !blue)
        return checked_value<unsigned int>();
    unsigned int alpha = 255;
    if (length == 9)
    {
        // Byte 6 is the separator and is not looked at.
        checked_value<unsigned int> a = s.Mid(7, 2u).ToUInt(16);
        if (!a)
            return checked_value<unsigned int>();
        alpha = *a;
    }
    return checked_value<unsigned int>((alpha << 24) | (*red << 16) | (*green << 8) | *blue);
}

} // namespace UI
