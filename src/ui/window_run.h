#pragma once

#include "launch.h"

namespace sky::ui {

// The map in its window: the folders, one program per home folder, the screen, the settings, then the
// window until it closes. Problems that leave the program able to run are said on standard error and in
// a message box that does not wait. Returns the process's exit code. Needs a QApplication.
int RunWindow(const LaunchOptions& launch);

} // namespace sky::ui
