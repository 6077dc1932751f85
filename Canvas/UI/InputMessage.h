#pragma once

namespace UI
{

/// Kinds of mouse message that a host hands to a frame.
enum MouseMessage
{
    MouseLeftPress = 0,
    MouseLeftRelease = 1,
    MouseLeftDoubleClick = 2,
    MouseRightPress = 3,
    MouseRightRelease = 4,
    MouseRightDoubleClick = 5,
    MouseMove = 6,
    MouseWheel = 7,
    /// Sent by the host only to refresh the cursor.
    MouseCursorUpdate = 8
};

/// Kinds of keyboard message that a host hands to a frame.
enum KeyboardMessage
{
    KeyPress = 0,
    KeyRelease = 1,
    KeyCharacter = 2
};

/// Modifier and button bits of the `flags` that accompany mouse and key messages.
enum InputFlags : unsigned int
{
    /// Set while the left button is held.
    FlagLeftButton = 1,
    /// Set while the right button is held.
    FlagRightButton = 4,
    FlagControl = 8,
    FlagShift = 16,
    FlagCommand = 32
};

} // namespace UI
