#pragma once

#include <Qt>

namespace sky::ui {

// The classic key code of a Qt key (letters, digits, arrows, F1-F12, Escape, Space, Enter), or 0 for
// a key the map does not know. Shifted digits arrive as their symbols ("!" for Shift+1 on a US
// keyboard, "\"" for Shift+2 on a German one) and count as their digit.
int ClassicKeyCode(int qtKey);

// The classic modifier mask: 1 Shift, 2 Ctrl, 4 Alt.
int ClassicModifiers(Qt::KeyboardModifiers modifiers);

} // namespace sky::ui
