#include "Canvas/UI/AnimationHandler.h"

#include "Canvas/UI/Window.h"
#include "TvBase/Util/ProcessInfo.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace UI
{

namespace
{

AnimationHandler::TextSetter textSetters[2] = {nullptr, nullptr};

/// from + (to - from) * t, rounded half away from zero.
int lerp(int from, int to, double t)
{
    return static_cast<int>(std::lround(from + (static_cast<double>(to) - from) * t));
}

} // namespace

AnimationHandler::AnimationHandler(Frame* frame) : frame(frame) {}

unsigned int AnimationHandler::now() const
{
    return clock ? clock() : static_cast<unsigned int>(Util::GetTickCountMillis());
}

void AnimationHandler::SetTextSetter(TextKind kind, TextSetter setter)
{
    textSetters[kind == MultiLineText ? 1 : 0] = setter;
}

// ---- starting

namespace
{

typedef AnimationHandler::Info Info;

/// What every request holds: its category, window, duration and end callback.
Info request(checked_value<unsigned int> const& category, Window* window, unsigned int ms,
             checked_value<AnimationHandler::Callback> const& finished)
{
    Info info;
    info.category = category;
    info.window = window;
    info.duration = ms;
    info.finished = finished;
    return info;
}

void addAlpha(Info& info, unsigned char from, unsigned char to, bool alsoBaseAlpha)
{
    info.hasAlpha = true;
    info.setBaseAlpha = alsoBaseAlpha;
    info.alphaFrom = from;
    info.alphaTo = to;
}

void addGeometry(Info& info, Rect const& from, Rect const& to)
{
    info.hasGeometry = true;
    info.rectFrom = from;
    info.rectTo = to;
}

void addTextLength(Info& info, AnimationHandler::TextKind kind, String const& from,
                   String const& to)
{
    info.hasTextLength = kind == AnimationHandler::SingleLineText;
    info.hasMultiTextLength = kind == AnimationHandler::MultiLineText;
    info.textFrom = from;
    info.textTo = to;
}

} // namespace

unsigned int AnimationHandler::Alpha(checked_value<unsigned int> const& category, Window* window,
                                     unsigned int ms, unsigned char from, unsigned char to,
                                     checked_value<unsigned int> const& after,
                                     checked_value<Callback> const& finished, bool force,
                                     bool alsoBaseAlpha)
{
    Info info = request(category, window, ms, finished);
    addAlpha(info, from, to, alsoBaseAlpha);
    return start(info, after, force);
}

unsigned int AnimationHandler::Geometry(checked_value<unsigned int> const& category, Window* window,
                                        unsigned int ms, Rect const& from, Rect const& to,
                                        checked_value<unsigned int> const& after,
                                        checked_value<Callback> const& finished, bool force)
{
    Info info = request(category, window, ms, finished);
    addGeometry(info, from, to);
    return start(info, after, force);
}

unsigned int AnimationHandler::AlphaGeometry(checked_value<unsigned int> const& category,
                                             Window* window, unsigned int ms,
                                             unsigned char alphaFrom, unsigned char alphaTo,
                                             Rect const& from, Rect const& to,
                                             checked_value<unsigned int> const& after,
                                             checked_value<Callback> const& finished, bool force,
                                             bool alsoBaseAlpha)
{
    Info info = request(category, window, ms, finished);
    addAlpha(info, alphaFrom, alphaTo, alsoBaseAlpha);
    addGeometry(info, from, to);
    return start(info, after, force);
}

unsigned int AnimationHandler::TextLength(checked_value<unsigned int> const& category,
                                          Window* textWindow, TextKind kind, unsigned int ms,
                                          String const& from, String const& to,
                                          checked_value<unsigned int> const& after,
                                          checked_value<Callback> const& finished, bool force)
{
    Info info = request(category, textWindow, ms, finished);
    addTextLength(info, kind, from, to);
    return start(info, after, force);
}

unsigned int AnimationHandler::AlphaTextLength(checked_value<unsigned int> const& category,
                                               Window* textWindow, TextKind kind, unsigned int ms,
                                               unsigned char alphaFrom, unsigned char alphaTo,
                                               String const& from, String const& to,
                                               checked_value<unsigned int> const& after,
                                               checked_value<Callback> const& finished, bool force)
{
    Info info = request(category, textWindow, ms, finished);
    addAlpha(info, alphaFrom, alphaTo, false);
    addTextLength(info, kind, from, to);
    return start(info, after, force);
}

unsigned int AnimationHandler::Generic(checked_value<unsigned int> const& category, Window* window,
                                       unsigned int ms, float from, float to,
                                       checked_value<unsigned int> const& after,
                                       checked_value<Callback> const& finished, bool force)
{
    Info info = request(category, window, ms, finished);
    info.generic = true;
    info.from = from;
    info.to = to;
    return start(info, after, force);
}

unsigned int AnimationHandler::start(Info info, checked_value<unsigned int> const& after,
                                     bool force)
{
    if (info.duration == 0 || !(enabled || force))
    {
        applyEnd(info);
        if (info.finished)
            (*info.finished)();
        return 0;
    }
    applyAt(info, 0.0);
    unsigned int id = 1;
    for (auto const& entry : animations)
    {
        if (entry.first != id)
            break;
        ++id;
    }
    info.start = now();
    if (after && animations.count(*after))
    {
        info.active = false;
        info.parent = *after;
    }
    animations[id] = info;
    return id;
}

// ---- applying values

void AnimationHandler::applyEnd(Info const& info)
{
    applyAt(info, 1.0);
}

void AnimationHandler::applyAt(Info const& info, double t)
{
    Window* w = info.window;
    if (!w)
        return;
    if (info.hasAlpha)
    {
        unsigned char v = info.alphaTo;
        if (info.alphaFrom != info.alphaTo)
            v = static_cast<unsigned char>(lerp(info.alphaFrom, info.alphaTo, t));
        w->SetAlpha(v);
        if (info.setBaseAlpha)
            w->SetBaseAlpha(v);
    }
    if (info.hasGeometry)
    {
        int left = lerp(info.rectFrom.left, info.rectTo.left, t);
        int top = lerp(info.rectFrom.top, info.rectTo.top, t);
        int right = lerp(info.rectFrom.right, info.rectTo.right, t);
        int bottom = lerp(info.rectFrom.bottom, info.rectTo.bottom, t);
        w->SetGeometry(left, top, right - left + 1, bottom - top + 1);
    }
    if (info.hasTextLength || info.hasMultiTextLength)
    {
        int length = lerp(static_cast<int>(info.textFrom.Length()),
                          static_cast<int>(info.textTo.Length()), t);
        TextSetter setter = textSetters[info.hasMultiTextLength ? 1 : 0];
        if (setter)
            setter(w, info.textTo.Left(static_cast<unsigned int>(std::max(length, 0))));
    }
    if (info.generic)
        w->UpdateGenericAnimation(static_cast<float>(info.from + (info.to - info.from) * t));
}

// ---- the tick

void AnimationHandler::tick()
{
    if (!enabled)
        return;
    unsigned int const t = now();
    std::vector<unsigned int> ids;
    ids.reserve(animations.size());
    for (auto const& entry : animations)
        ids.push_back(entry.first);

    std::vector<std::pair<unsigned int, unsigned int>> finished; // id, end tick
    for (unsigned int id : ids)
    {
        // A hook of an earlier animation may have ended this one or its window.
        auto it = animations.find(id);
        if (it == animations.end() || !it->second.active)
            continue;
        Info const& info = it->second;
        // Unsigned differences stay right across the clock's wrap; a start more than half the
        // range away lies ahead.
        unsigned int const elapsed = t - info.start;
        if (elapsed > 0x7FFFFFFFu)
            continue;
        double f = 1.0;
        if (info.duration != 0 && elapsed < info.duration)
            f = static_cast<double>(elapsed) / info.duration;
        if (elapsed >= info.duration)
            finished.emplace_back(id, info.start + info.duration);
        Info copy = info;
        applyAt(copy, f);
    }
    for (auto const& done : finished)
        endAnimation(done.first, false, done.second);
}

// ---- ending

void AnimationHandler::activateChildren(unsigned int id, unsigned int startTick)
{
    for (auto& entry : animations)
    {
        if (!entry.second.active && entry.second.parent == id)
        {
            entry.second.active = true;
            entry.second.parent = 0;
            entry.second.start = startTick;
        }
    }
}

void AnimationHandler::EndAnimation(unsigned int id, bool removeChildren)
{
    endAnimation(id, removeChildren, now());
}

void AnimationHandler::endAnimation(unsigned int id, bool removeChildren, unsigned int childStart)
{
    if (id == 0)
        return;
    auto it = animations.find(id);
    if (it == animations.end())
        return;
    if (removeChildren)
    {
        std::vector<unsigned int> waiting;
        for (auto const& entry : animations)
            if (!entry.second.active && entry.second.parent == id)
                waiting.push_back(entry.first);
        for (unsigned int child : waiting)
        {
            // A removed chain goes without its callbacks.
            auto c = animations.find(child);
            if (c != animations.end())
                c->second.finished = checked_value<Callback>();
            endAnimation(child, true, childStart);
        }
    }
    else
    {
        activateChildren(id, childStart);
    }
    it = animations.find(id);
    if (it == animations.end())
        return;
    checked_value<Callback> finished = it->second.finished;
    animations.erase(it);
    if (finished)
        (*finished)();
}

bool AnimationHandler::IsCategoryActive(checked_value<unsigned int> const& category) const
{
    return GetNumAnimations(category) != 0;
}

unsigned int AnimationHandler::GetNumAnimations(checked_value<unsigned int> const& category) const
{
    if (!category)
        return static_cast<unsigned int>(animations.size());
    unsigned int count = 0;
    for (auto const& entry : animations)
        if (entry.second.category == category)
            ++count;
    return count;
}

void AnimationHandler::RemoveCategory(checked_value<unsigned int> const& category)
{
    std::vector<unsigned int> ids;
    for (auto const& entry : animations)
        if (!category || entry.second.category == category)
            ids.push_back(entry.first);
    for (unsigned int id : ids)
        EndAnimation(id, false);
}

AnimationHandler::Info const* AnimationHandler::GetInfo(unsigned int id) const
{
    auto it = animations.find(id);
    return it == animations.end() ? nullptr : &it->second;
}

void AnimationHandler::onWindowDestroy(Window* window)
{
    unsigned int const t = now();
    std::vector<unsigned int> ids;
    for (auto const& entry : animations)
        if (entry.second.window == window)
            ids.push_back(entry.first);
    for (unsigned int id : ids)
    {
        animations.erase(id);
        // Others waiting for it go on as if it had ended now.
        activateChildren(id, t);
    }
}

} // namespace UI
