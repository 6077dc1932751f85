#pragma once

namespace UI
{

/// Horizontal placement of text against its point or box. Values other than these three count
/// as right.
enum HAlignment
{
    HAlignLeft = 0,
    HAlignCenter = 1,
    HAlignRight = 2
};

/// Vertical placement of text against its point or box. Values other than these three count as
/// bottom.
enum VAlignment
{
    VAlignTop = 0,
    VAlignCenter = 1,
    VAlignBottom = 2
};

} // namespace UI
