#include "Canvas/UI/Native/SDL/detail/KeyMapSDL.h"

#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/KeyCode.h"

namespace UI
{
namespace Native
{
namespace detail
{

unsigned short HostCharacterForKeySym(SDL_Keycode sym)
{
    if ((sym >= SDLK_a && sym <= SDLK_z) || (sym >= SDLK_0 && sym <= SDLK_9))
        return static_cast<unsigned short>(sym);
    if (sym >= SDLK_F1 && sym <= SDLK_F12)
        return static_cast<unsigned short>(KeyCode::CharF1 + (sym - SDLK_F1));
    if (sym >= SDLK_F13 && sym <= SDLK_F24)
        return static_cast<unsigned short>(KeyCode::CharF1 + 12 + (sym - SDLK_F13));
    if (sym >= SDLK_KP_1 && sym <= SDLK_KP_9)
        return static_cast<unsigned short>('1' + (sym - SDLK_KP_1));
    switch (sym)
    {
    case SDLK_KP_0:
        return '0';
    case SDLK_RETURN:
        return 13;
    case SDLK_KP_ENTER:
        return 3;
    case SDLK_BACKSPACE:
        return 127;
    case SDLK_TAB:
        return 9;
    case SDLK_ESCAPE:
        return 27;
    case SDLK_SPACE:
        return 32;
    case SDLK_UP:
        return KeyCode::CharUpArrow;
    case SDLK_DOWN:
        return KeyCode::CharDownArrow;
    case SDLK_LEFT:
        return KeyCode::CharLeftArrow;
    case SDLK_RIGHT:
        return KeyCode::CharRightArrow;
    case SDLK_DELETE:
        return KeyCode::CharDelete;
    case SDLK_HOME:
        return KeyCode::CharHome;
    case SDLK_END:
        return KeyCode::CharEnd;
    case SDLK_PAGEUP:
        return KeyCode::CharPageUp;
    case SDLK_PAGEDOWN:
        return KeyCode::CharPageDown;
    case SDLK_INSERT:
        return KeyCode::CharInsert;
    case SDLK_SEMICOLON:
    case SDLK_EQUALS:
    case SDLK_COMMA:
    case SDLK_MINUS:
    case SDLK_PERIOD:
    case SDLK_SLASH:
    case SDLK_BACKQUOTE:
    case SDLK_LEFTBRACKET:
    case SDLK_BACKSLASH:
    case SDLK_RIGHTBRACKET:
    case SDLK_QUOTE:
        // SDL names these keys by their unshifted US character.
        return static_cast<unsigned short>(sym);
    default:
        return 0;
    }
}

unsigned int KeyCodeForKeySym(SDL_Keycode sym)
{
    switch (sym)
    {
    case SDLK_LSHIFT:
    case SDLK_RSHIFT:
        return KeyCode::Shift;
    case SDLK_LCTRL:
    case SDLK_RCTRL:
        return KeyCode::Ctrl;
    case SDLK_LALT:
    case SDLK_RALT:
        return KeyCode::Alt;
    case SDLK_CAPSLOCK:
        return KeyCode::CapsLock;
    default:
        return KeyCode::GetKeycodeForUnicodeChar(HostCharacterForKeySym(sym));
    }
}

unsigned int ModifierFlags(Uint16 mod)
{
    unsigned int flags = 0;
    if (mod & KMOD_CTRL)
        flags |= FlagControl;
    if (mod & KMOD_SHIFT)
        flags |= FlagShift;
    if (mod & KMOD_GUI)
        flags |= FlagCommand;
    return flags;
}

unsigned int ButtonFlags(Uint32 state)
{
    unsigned int flags = 0;
    if (state & SDL_BUTTON_LMASK)
        flags |= FlagLeftButton;
    if (state & SDL_BUTTON_RMASK)
        flags |= FlagRightButton;
    return flags;
}

} // namespace detail
} // namespace Native
} // namespace UI
