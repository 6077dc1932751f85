#include "Canvas/UI/Native/SDL/detail/KeyMapSDL.h"

#include "Canvas/UI/InputMessage.h"

#include <gtest/gtest.h>

using namespace UI::Native::detail;

TEST(KeyMapSDL, KeySymbolsBecomeTheToolkitsCodes)
{
    EXPECT_EQ(KeyCodeForKeySym(SDLK_a), 65u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_z), 90u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_0), 48u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_KP_7), 55u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_RETURN), 13u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_KP_ENTER), 4096u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_BACKSPACE), 8u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_TAB), 9u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_ESCAPE), 27u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_SPACE), 32u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_F1), 112u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_F12), 123u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_F13), 124u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_F24), 135u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_UP), 38u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_DOWN), 40u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_LEFT), 37u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_RIGHT), 39u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_HOME), 36u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_END), 35u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_PAGEUP), 33u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_PAGEDOWN), 34u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_INSERT), 45u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_DELETE), 46u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_SEMICOLON), 186u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_EQUALS), 187u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_COMMA), 188u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_MINUS), 189u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_PERIOD), 190u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_SLASH), 191u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_BACKQUOTE), 192u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_LEFTBRACKET), 219u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_BACKSLASH), 220u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_RIGHTBRACKET), 221u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_QUOTE), 222u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_LSHIFT), 16u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_RCTRL), 17u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_LALT), 18u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_CAPSLOCK), 20u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_VOLUMEUP), 0u);
    EXPECT_EQ(KeyCodeForKeySym(SDLK_PRINTSCREEN), 0u);
}

TEST(KeyMapSDL, ModifierAndButtonBits)
{
    EXPECT_EQ(ModifierFlags(KMOD_NONE), 0u);
    EXPECT_EQ(ModifierFlags(KMOD_LCTRL), unsigned(UI::FlagControl));
    EXPECT_EQ(ModifierFlags(KMOD_RSHIFT), unsigned(UI::FlagShift));
    EXPECT_EQ(ModifierFlags(KMOD_LGUI), unsigned(UI::FlagCommand));
    EXPECT_EQ(ModifierFlags(KMOD_LCTRL | KMOD_LSHIFT | KMOD_CAPS | KMOD_NUM), 24u);
    EXPECT_EQ(ModifierFlags(KMOD_LALT), 0u);
    EXPECT_EQ(ButtonFlags(SDL_BUTTON_LMASK), 1u);
    EXPECT_EQ(ButtonFlags(SDL_BUTTON_RMASK), 4u);
    EXPECT_EQ(ButtonFlags(SDL_BUTTON_MMASK), 0u);
    EXPECT_EQ(ButtonFlags(SDL_BUTTON_LMASK | SDL_BUTTON_RMASK), 5u);
}
