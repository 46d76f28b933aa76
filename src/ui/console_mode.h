#pragma once

#include "launch.h"

namespace sky::ui {

// The Companion in a terminal: the map's session without a screen, reading the same settings and
// addresses as the map. Prints the welcome text, downloads when asked, then carries out one command per
// line of standard input and prints every line the console appends, until the input ends. What the map
// would show in its status line goes to standard error as it happens. Never writes the settings. Needs
// an application object.
int RunConsole(const LaunchOptions& launch);

} // namespace sky::ui
