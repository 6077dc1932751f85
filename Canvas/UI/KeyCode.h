#pragma once

#include "TvBase/Util/String.h"

namespace UI
{

/// The toolkit's key codes: PC-style virtual key codes, the same on every host. Letters and
/// digits are their upper-case ASCII values; 13 is Return and 4096 is Enter (the key that sends
/// the host's enter character). Host characters are the toolkit's own numbering of special keys
/// (function keys 63236 onwards, arrows 63232 to 63235, and so on), which each host translates
/// its key events into.
class KeyCode
{
public:
    KeyCode() = delete;

    // Codes with a name of their own.
    static unsigned int const Backspace = 8;
    static unsigned int const Tab = 9;
    static unsigned int const Return = 13;
    static unsigned int const Shift = 16;
    static unsigned int const Ctrl = 17;
    static unsigned int const Alt = 18;
    static unsigned int const CapsLock = 20;
    static unsigned int const Escape = 27;
    static unsigned int const Space = 32;
    static unsigned int const PageUp = 33;
    static unsigned int const PageDown = 34;
    static unsigned int const End = 35;
    static unsigned int const Home = 36;
    static unsigned int const LeftArrow = 37;
    static unsigned int const UpArrow = 38;
    static unsigned int const RightArrow = 39;
    static unsigned int const DownArrow = 40;
    static unsigned int const Insert = 45;
    static unsigned int const Delete = 46;
    /// F1; F1 to F24 are 112 to 135.
    static unsigned int const F1 = 112;
    static unsigned int const Enter = 4096;

    // Host characters of the special keys.
    static unsigned short const CharUpArrow = 63232;
    static unsigned short const CharDownArrow = 63233;
    static unsigned short const CharLeftArrow = 63234;
    static unsigned short const CharRightArrow = 63235;
    /// F1; F1 to F24 are 63236 to 63259.
    static unsigned short const CharF1 = 63236;
    static unsigned short const CharDelete = 63272;
    static unsigned short const CharHome = 63273;
    static unsigned short const CharEnd = 63275;
    static unsigned short const CharPageUp = 63276;
    static unsigned short const CharPageDown = 63277;
    static unsigned short const CharInsert = 63302;

    // Modifier state, asked of `UI::Native::PlatformSupportFactory`.
    static bool IsCtrlPressed();
    static bool IsShiftPressed();
    static bool IsAltPressed();
    static bool IsCommandPressed();
    /// Command or Control: the shortcut modifier on any host.
    static bool IsCommandCtrlPressed();
    static bool IsCapsLockOn();
    static bool IsScrollLockPressed();

    /// The key's name as shown to the user ("Return", "F2", "A", ";"); "?" for unknown codes.
    static String GetKeycodeDescription(unsigned int code);
    /// The host character that the key sends unshifted; 0 when it sends none.
    static unsigned short GetKeycodeDescriptionUnicode(unsigned int code);
    /// The key that produces the host character `c` on a US keyboard; 0 when none does.
    static unsigned int GetKeycodeForUnicodeChar(unsigned short c);
};

} // namespace UI
