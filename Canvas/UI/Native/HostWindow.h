#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"

struct CGColorSpace;

namespace UI
{

class Frame;

namespace Native
{

/// The door between a frame and one native top-level window. A host window owns its frame
/// (when it made it) and the frame's draw context; the frame calls only the operations below.
/// The run loop behind `PostUpdateMessage` belongs to the implementation, which also decides how
/// posted updates coalesce.
class HostWindow : public Object
{
public:
    explicit HostWindow(String const& name) : Object(name) {}
    ~HostWindow() override = default;

    HostWindow(HostWindow const&) = delete;
    HostWindow& operator=(HostWindow const&) = delete;

    /// Asks the run loop to call `UI::Frame::HandleUpdateMessage` soon. Never paints at once.
    virtual void PostUpdateMessage() = 0;
    /// Tells the native window that `rect` (frame coordinates) is out of date.
    virtual void InvalidateRect(Rect rect) = 0;
    /// The color space handed to the draw context's `End`; may be null.
    virtual CGColorSpace* GetColorSpace() = 0;
    /// The native window's client origin on the screen.
    virtual Point GetScreenPos() = 0;

    // What the frame asks of the platform while it routes input; each answers for the
    // platform as a whole, the host window being the frame's only door to it.

    /// True when this native window holds the keyboard focus.
    virtual bool IsHoldingFocus() = 0;
    /// Gives this native window the keyboard focus.
    virtual void SetNativeFocus() = 0;
    /// Makes `cursor` the screen's current cursor.
    virtual void SetCurrentCursor(Cursor const& cursor) = 0;
    /// The mouse position in screen coordinates.
    virtual Point GetCursorScreenPos() = 0;
    /// True while Caps Lock is on.
    virtual bool IsCapsLockOn() = 0;
};

} // namespace Native
} // namespace UI
