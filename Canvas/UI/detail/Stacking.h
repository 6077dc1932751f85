#pragma once

#include "TvBase/Util/checked_value.h"

#include <algorithm>
#include <vector>

namespace UI
{

class Window;

namespace detail
{

/// Stacking order of a list of windows (a window's children or a frame's top-level windows):
/// index 0 is the bottom, the last entry the top.

/// Moves `w` just above `above`, or to the top when `above` is null or not in the list. False
/// (and nothing changes) when `w` is not in the list.
inline bool RaiseInStack(std::vector<Window*>& stack, Window* w, Window* above)
{
    auto it = std::find(stack.begin(), stack.end(), w);
    if (it == stack.end())
        return false;
    stack.erase(it);
    auto target = above ? std::find(stack.begin(), stack.end(), above) : stack.end();
    stack.insert(target == stack.end() ? stack.end() : target + 1, w);
    return true;
}

/// Moves `w` just below `below`, or to the bottom when `below` is null or not in the list.
/// False (and nothing changes) when `w` is not in the list.
inline bool LowerInStack(std::vector<Window*>& stack, Window* w, Window* below)
{
    auto it = std::find(stack.begin(), stack.end(), w);
    if (it == stack.end())
        return false;
    stack.erase(it);
    auto target = below ? std::find(stack.begin(), stack.end(), below) : stack.end();
    stack.insert(target == stack.end() ? stack.begin() : target, w);
    return true;
}

inline checked_value<unsigned int> IndexInStack(std::vector<Window*> const& stack, Window* w)
{
    auto it = std::find(stack.begin(), stack.end(), w);
    if (it == stack.end())
        return checked_value<unsigned int>();
    return static_cast<unsigned int>(it - stack.begin());
}

} // namespace detail
} // namespace UI
