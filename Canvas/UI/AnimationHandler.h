#pragma once

#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/function.hpp>

#include <map>

namespace UI
{

class Frame;
class Window;

/// Moves a window's alpha, geometry, text length or one generic value along a straight line
/// over time, once a frame tick. Each frame owns one; animations run on the main thread.
///
/// Every start operation takes a category (animations of one category can be asked about and
/// ended together), a window, a duration in ms, the id of an animation to wait for (this one then
/// starts the moment that one ends), a callback run when it ends, and `force`, which runs it even
/// while the handler is disabled. It returns the new id, or 0 when the end value was applied at
/// once (duration 0, or disabled without force); the callback then runs at once too.
class AnimationHandler : public Trackable
{
public:
    typedef boost::function<void()> Callback;
    /// Sets `text` on `window` when it is of the text class the setter stands for; false when it
    /// isn't, and the step is skipped.
    typedef bool (*TextSetter)(Window* window, String const& text);
    /// Which text class a text-length animation drives.
    enum TextKind
    {
        SingleLineText,
        MultiLineText
    };

    struct Info
    {
        checked_value<unsigned int> category;
        bool active = true;
        /// The animation this one waits for; 0 for none.
        unsigned int parent = 0;
        unsigned int start = 0;
        unsigned int duration = 0;
        Window* window = nullptr;
        bool hasAlpha = false;
        bool hasGeometry = false;
        bool hasTextLength = false;
        bool hasMultiTextLength = false;
        bool generic = false;
        bool setBaseAlpha = false;
        unsigned char alphaFrom = 0;
        unsigned char alphaTo = 0;
        Rect rectFrom;
        Rect rectTo;
        String textFrom;
        String textTo;
        float from = 0.0f;
        float to = 0.0f;
        checked_value<Callback> finished;
    };

    explicit AnimationHandler(Frame* frame);
    AnimationHandler(AnimationHandler const&) = delete;
    AnimationHandler& operator=(AnimationHandler const&) = delete;

    Frame* GetFrame() const { return frame; }
    /// While disabled, `tick` does nothing and new animations end at once unless forced.
    void SetEnabled(bool on) { enabled = on; }
    bool IsEnabled() const { return enabled; }
    /// The millisecond clock; by default `Util::GetTickCountMillis`. Tests drive a fake one.
    void SetClock(boost::function<unsigned int()> const& clock) { this->clock = clock; }

    unsigned int Alpha(checked_value<unsigned int> const& category, Window* window, unsigned int ms,
                       unsigned char from, unsigned char to,
                       checked_value<unsigned int> const& after = checked_value<unsigned int>(),
                       checked_value<Callback> const& finished = checked_value<Callback>(),
                       bool force = false, bool alsoBaseAlpha = false);
    unsigned int Geometry(checked_value<unsigned int> const& category, Window* window,
                          unsigned int ms, Rect const& from, Rect const& to,
                          checked_value<unsigned int> const& after = checked_value<unsigned int>(),
                          checked_value<Callback> const& finished = checked_value<Callback>(),
                          bool force = false);
    unsigned int
    AlphaGeometry(checked_value<unsigned int> const& category, Window* window, unsigned int ms,
                  unsigned char alphaFrom, unsigned char alphaTo, Rect const& from, Rect const& to,
                  checked_value<unsigned int> const& after = checked_value<unsigned int>(),
                  checked_value<Callback> const& finished = checked_value<Callback>(),
                  bool force = false, bool alsoBaseAlpha = false);
    /// Types `to` out from the length of `from`: the text becomes `to.Left(length)`.
    unsigned int
    TextLength(checked_value<unsigned int> const& category, Window* textWindow, TextKind kind,
               unsigned int ms, String const& from, String const& to,
               checked_value<unsigned int> const& after = checked_value<unsigned int>(),
               checked_value<Callback> const& finished = checked_value<Callback>(),
               bool force = false);
    unsigned int AlphaTextLength(
        checked_value<unsigned int> const& category, Window* textWindow, TextKind kind,
        unsigned int ms, unsigned char alphaFrom, unsigned char alphaTo, String const& from,
        String const& to, checked_value<unsigned int> const& after = checked_value<unsigned int>(),
        checked_value<Callback> const& finished = checked_value<Callback>(), bool force = false);
    /// Hands the value to `Window::UpdateGenericAnimation` each tick.
    unsigned int Generic(checked_value<unsigned int> const& category, Window* window,
                         unsigned int ms, float from, float to,
                         checked_value<unsigned int> const& after = checked_value<unsigned int>(),
                         checked_value<Callback> const& finished = checked_value<Callback>(),
                         bool force = false);

    /// Ends `id` now (0 and unknown ids do nothing); its callback runs after it is erased.
    /// Animations waiting for it start now, or with `removeChildren` end with it (no callback).
    void EndAnimation(unsigned int id, bool removeChildren);
    /// True when an animation of `category` (any, when not present) exists.
    bool IsCategoryActive(checked_value<unsigned int> const& category) const;
    unsigned int GetNumAnimations(checked_value<unsigned int> const& category) const;
    /// Ends every animation of `category` (every one, when not present).
    void RemoveCategory(checked_value<unsigned int> const& category);
    Info const* GetInfo(unsigned int id) const;

    /// Moves every running animation to now and ends those past their time.
    void tick();
    /// Forgets every animation of `window` without running callbacks.
    void onWindowDestroy(Window* window);

    /// Installed by the text widgets, so that text-length animations reach them.
    static void SetTextSetter(TextKind kind, TextSetter setter);

private:
    unsigned int start(Info info, checked_value<unsigned int> const& after, bool force);
    void applyEnd(Info const& info);
    void applyAt(Info const& info, double t);
    void activateChildren(unsigned int id, unsigned int startTick);
    void endAnimation(unsigned int id, bool removeChildren, unsigned int childStart);
    unsigned int now() const;

    Frame* frame;
    bool enabled = true;
    std::map<unsigned int, Info> animations;
    boost::function<unsigned int()> clock;
};

} // namespace UI
