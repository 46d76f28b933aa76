#pragma once

#include <cstdint>

namespace sky::view {

// The classic key code (see keys.h) of a key by where it sits on the keyboard, whatever the layout
// prints on it: the X keyboard's key code (the Linux input code plus 8), as X11 and Wayland report it.
// The digit row gives 1 to 0 on US, UK, German and French keyboards alike (on a French one the 3 key
// prints '"' unshifted), the letter keys the letter of a US keyboard at that place. 0 for a key the map
// does not know; the caller then goes by the character.
int ClassicKeyFromKeycode(std::uint32_t xkbKeycode);

} // namespace sky::view
