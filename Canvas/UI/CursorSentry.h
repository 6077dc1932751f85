#pragma once

#include "Canvas/UI/Cursor.h"
#include "Canvas/UI/Frame.h"

namespace UI
{

/// Shows a cursor on a frame for a scope (the wait cursor of a slow command) and the standard
/// one again when the scope ends.
class CursorSentry
{
public:
    CursorSentry(Frame* frame, Cursor::CursorShape shape) : frame(frame)
    {
        if (frame)
            frame->SetCurrentCursor(Cursor(shape));
    }
    ~CursorSentry()
    {
        if (frame)
            frame->SetCurrentCursor(Cursor());
    }
    CursorSentry(CursorSentry const&) = delete;
    CursorSentry& operator=(CursorSentry const&) = delete;

private:
    Frame* frame;
};

} // namespace UI
