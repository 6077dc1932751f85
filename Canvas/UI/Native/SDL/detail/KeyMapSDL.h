#pragma once

#include <SDL.h>

namespace UI
{
namespace Native
{
namespace detail
{

/// The host character that SDL's key `sym` stands for, in the toolkit's numbering (letters
/// lower-case, arrows 63232 onwards, function keys 63236 onwards, keypad Enter 3); 0 for keys
/// that send none, such as the modifiers.
unsigned short HostCharacterForKeySym(SDL_Keycode sym);
/// The toolkit's key code of SDL's key `sym`: through the host character, or for the modifier
/// keys directly; 0 for keys the toolkit doesn't name.
unsigned int KeyCodeForKeySym(SDL_Keycode sym);
/// The toolkit's modifier bits (8 Control, 16 Shift, 32 Command) of SDL's `mod`.
unsigned int ModifierFlags(Uint16 mod);
/// The toolkit's button bits (1 left, 4 right) of SDL's button `state`.
unsigned int ButtonFlags(Uint32 state);

} // namespace detail
} // namespace Native
} // namespace UI
