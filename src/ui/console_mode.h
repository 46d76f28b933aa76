#pragma once

#include <array>

#include <QString>

#include "app/friends.h"
#include "app/settings.h"

namespace sky::ui {

struct ConsoleOptions {
    QString Home;
    Settings Config;
    Friends FriendList;
    std::array<QString, 2> StatusAddresses;
    std::array<QString, 2> JsonAddresses;
    QString DownloadNetworks; // "", "ivao", "vatsim" or "both"
};

// The Companion in a terminal: the map's session without a screen. Prints the welcome text, downloads
// when asked, then carries out one command per line of standard input and prints every line the
// console appends, until the input ends. Never writes the settings. Needs an application object.
int RunConsole(const ConsoleOptions& options);

} // namespace sky::ui
