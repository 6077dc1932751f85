#pragma once

namespace UI
{

/// Direction of bars, splitters and dotted lines. Any value other than 0 counts as vertical.
enum Orientation : int
{
    Horizontal = 0,
    Vertical = 1,
};

} // namespace UI
