#pragma once

#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/checked_value.h"

namespace Controller
{

/// A value that a control shows and changes: a `bool`, a `float` or an enumeration index.
/// Controls do not own their parameters; they bind to one and follow `valueChanged`.
///
/// A user gesture is bracketed by `grab` and `release`, with the grabbed flag set by whoever
/// opens the gesture (see `SetWithGesture`). The base `grab` and `release` do nothing; a host
/// that records gestures overrides them. Used on the user-interface thread only. Not copyable.
template <typename T>
class Param : public Object
{
public:
    Param() : Object("Param") {}
    ~Param() override = default;

    /// Stores a new value; a concrete parameter emits `valueChanged` when the value changed.
    virtual void set(T const& value) = 0;
    virtual T get() const = 0;
    /// Opens a user gesture. Does nothing here.
    virtual void grab() {}
    /// Closes a user gesture. Does nothing here.
    virtual void release() {}

    /// True while a gesture is open.
    bool IsGrabbed() const { return grabbed; }
    void SetGrabbed(bool isGrabbed) { grabbed = isGrabbed; }

    /// Writes `value` inside a gesture: when none is open, one is opened around the `set` (flag
    /// set, `grab`, `set`, `release`, flag cleared); when one is open, `set` alone, so that a
    /// user's gesture is not closed underneath them.
    void SetWithGesture(T const& value)
    {
        if (grabbed)
        {
            set(value);
            return;
        }
        grabbed = true;
        grab();
        set(value);
        release();
        grabbed = false;
    }

    /// Emits `valueChanged` with the current value, whether or not it changed. Views of another
    /// parameter connect their source's signal here.
    void emitChanged() { valueChanged(get()); }

    /// Emitted after each change of the value, with the value now stored.
    Signal<T const&> valueChanged;

private:
    bool grabbed = false;
};

/// A parameter of one value with a range, which announces range changes.
template <typename T>
class SingleParam : public Param<T>
{
public:
    /// Emitted with the new range when the range changes.
    Signal<value_range<T> const&> rangeChanged;
};

/// Closes, when destroyed, the gesture that was opened on a parameter: it calls the parameter's
/// `release` and clears its grabbed flag. Does not own the parameter, which must outlive it.
template <typename T>
class GrabbedParamHandle
{
public:
    explicit GrabbedParamHandle(Param<T>* grabbedParam) : param(grabbedParam) {}
    ~GrabbedParamHandle()
    {
        if (!param)
            return;
        param->release();
        param->SetGrabbed(false);
    }
    GrabbedParamHandle(GrabbedParamHandle const&) = delete;
    GrabbedParamHandle& operator=(GrabbedParamHandle const&) = delete;

private:
    Param<T>* param;
};

} // namespace Controller
