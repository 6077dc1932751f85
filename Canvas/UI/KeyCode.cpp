#include "Canvas/UI/KeyCode.h"

#include "Canvas/UI/Native/PlatformSupportFactory.h"

namespace UI
{

namespace
{

struct Named
{
    unsigned int code;
    char const* name;
};

Named const kNames[] = {
    {8, "Bkspce"},       {9, "Tab"},         {13, "Return"}, {16, "Shift"},      {17, "Ctrl"},
    {18, "Alt"},         {20, "CapsLock"},   {27, "Esc"},    {32, "Space"},      {33, "PageUp"},
    {34, "PageDown"},    {35, "End"},        {36, "Home"},   {37, "Left Arrow"}, {38, "Up Arrow"},
    {39, "Right Arrow"}, {40, "Down Arrow"}, {45, "Ins"},    {46, "Del"},        {186, ";"},
    {187, "="},          {188, ","},         {189, "-"},     {190, "."},         {191, "/"},
    {192, "`"},          {219, "["},         {220, "\\"},    {221, "]"},         {222, "'"},
    {4096, "Enter"}};

/// The punctuation keys of a US keyboard: the code, its unshifted and its shifted character.
struct Punctuation
{
    unsigned int code;
    char plain;
    char shifted;
};

Punctuation const kPunctuation[] = {{186, ';', 0},   {187, '=', '+'}, {188, ',', '<'},
                                    {189, '-', '_'}, {190, '.', '>'}, {191, '/', '?'},
                                    {192, '`', '~'}, {219, '[', '{'}, {220, '\\', '|'},
                                    {221, ']', '}'}, {222, '\'', '"'}};

/// The shifted digits: "!" is on the 1 key, ")" on the 0 key.
char const kShiftedDigits[] = ")!@#$%^&*(";

/// The special keys and the host characters they send.
struct Special
{
    unsigned short character;
    unsigned int code;
};

Special const kSpecials[] = {{KeyCode::CharUpArrow, 38},   {KeyCode::CharDownArrow, 40},
                             {KeyCode::CharLeftArrow, 37}, {KeyCode::CharRightArrow, 39},
                             {KeyCode::CharDelete, 46},    {KeyCode::CharHome, 36},
                             {KeyCode::CharEnd, 35},       {KeyCode::CharPageUp, 33},
                             {KeyCode::CharPageDown, 34},  {KeyCode::CharInsert, 45}};

} // namespace

bool KeyCode::IsCtrlPressed()
{
    return Native::PlatformSupportFactory::IsCtrlPressed();
}

bool KeyCode::IsShiftPressed()
{
    return Native::PlatformSupportFactory::IsShiftPressed();
}

bool KeyCode::IsAltPressed()
{
    return Native::PlatformSupportFactory::IsAltPressed();
}

bool KeyCode::IsCommandPressed()
{
    return Native::PlatformSupportFactory::IsCommandPressed();
}

bool KeyCode::IsCommandCtrlPressed()
{
    return IsCommandPressed() || IsCtrlPressed();
}

bool KeyCode::IsCapsLockOn()
{
    return Native::PlatformSupportFactory::IsCapsLockOn();
}

bool KeyCode::IsScrollLockPressed()
{
    return Native::PlatformSupportFactory::IsScrollLockPressed();
}

String KeyCode::GetKeycodeDescription(unsigned int code)
{
    if ((code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z'))
    {
        char const text[2] = {static_cast<char>(code), 0};
        return String(text);
    }
    if (code >= 112 && code <= 135)
        return String("F%1").Arg(code - 111);
    for (Named const& n : kNames)
        if (n.code == code)
            return String(n.name);
    return String("?");
}

unsigned short KeyCode::GetKeycodeDescriptionUnicode(unsigned int code)
{
    if ((code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z'))
        return static_cast<unsigned short>(code);
    switch (code)
    {
    case Enter:
        return 3;
    case Backspace:
        return 127;
    case Tab:
    case Return:
    case Escape:
    case Space:
        return static_cast<unsigned short>(code);
    default:
        break;
    }
    for (Punctuation const& p : kPunctuation)
        if (p.code == code)
            return static_cast<unsigned char>(p.plain);
    for (Special const& s : kSpecials)
        if (s.code == code)
            return s.character;
    if (code >= 112 && code <= 135)
        return static_cast<unsigned short>(code + 63124);
    return 0;
}

unsigned int KeyCode::GetKeycodeForUnicodeChar(unsigned short c)
{
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'))
        return c;
    if (c >= 'a' && c <= 'z')
        return c - 32u;
    if (c >= CharF1 && c <= CharF1 + 23)
        return c - 63124u;
    switch (c)
    {
    case 3:
        return Enter;
    case 9:
    case 25: // back-tab, as shift-Tab sends it
        return Tab;
    case 13:
    case 27:
    case 32:
        return c;
    case 127:
        return Backspace;
    default:
        break;
    }
    for (Special const& s : kSpecials)
        if (s.character == c)
            return s.code;
    for (unsigned int d = 0; d < 10; ++d)
        if (c == static_cast<unsigned char>(kShiftedDigits[d]))
            return '0' + d;
    // The colon has no entry on purpose: ":" gives 0 while ";" gives 186.
    for (Punctuation const& p : kPunctuation)
        if (c == static_cast<unsigned char>(p.plain) ||
            (p.shifted && c == static_cast<unsigned char>(p.shifted)))
            return p.code;
    return 0;
}

} // namespace UI
