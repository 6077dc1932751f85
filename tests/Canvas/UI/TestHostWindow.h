#pragma once

// An in-memory stand-in for the host window door: it records what the frame asks of the
// platform and answers the platform queries from plain fields.

#include "Canvas/UI/Native/HostWindow.h"

#include <vector>

namespace UI
{
namespace Test
{

class TestHostWindow : public Native::HostWindow
{
public:
    TestHostWindow() : HostWindow("Test Host Window") {}

    void PostUpdateMessage() override { ++posts; }
    void InvalidateRect(Rect rect) override { invalidated.push_back(rect); }
    CGColorSpace* GetColorSpace() override { return nullptr; }
    Point GetScreenPos() override { return screenPos; }
    bool IsHoldingFocus() override { return holdingFocus; }
    void SetNativeFocus() override
    {
        ++nativeFocusRequests;
        holdingFocus = true;
    }
    void SetCurrentCursor(Cursor const& c) override { cursors.push_back(c); }
    Point GetCursorScreenPos() override { return cursorScreenPos; }
    bool IsCapsLockOn() override { return capsLock; }

    /// Shown or hidden as the platform would report it.
    void SetShown(bool shown) { visible = shown; }
    /// The address the frame uses as its native handle.
    void* Handle() { return this; }

    int posts = 0;
    std::vector<Rect> invalidated;
    std::vector<Cursor> cursors;
    Point screenPos;
    Point cursorScreenPos = Point(500, 500);
    bool holdingFocus = true;
    bool capsLock = false;
    int nativeFocusRequests = 0;
};

} // namespace Test
} // namespace UI
