#include "Canvas/UI/Rect.h"

#include <cstdio>
#include <cstring>

namespace UI {

String Rect::ToString() const
{
    return String("[(%1,%2)-(%3,%4) %5x%6]")
        .Arg(left)
        .Arg(top)
        .Arg(right)
        .Arg(bottom)
        .Arg(Width())
        .Arg(Height());
}

checked_value<Rect> Rect::FromString(String const& text)
{
    int l, t, r, b, w, h, used = -1;
    char const* s = text.CStr();
    if (std::sscanf(s, "[(%d,%d)-(%d,%d) %dx%d]%n", &l, &t, &r, &b, &w, &h, &used) != 6 ||
        used < 0 || static_cast<std::size_t>(used) != std::strlen(s))
        return {};
    Rect rect(l, r, t, b);
    if (rect.Width() != w || rect.Height() != h)
        return {};
    return rect;
}

} // namespace UI
