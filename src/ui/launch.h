#pragma once

#include <array>
#include <cstdio>
#include <optional>

#include <QString>

#include "app/home_folder.h"
#include "app/settings.h"
#include "geo/geodesy.h"
#include "network/download.h"

namespace sky::ui {

// What the command line asks of a run, in both the window and the terminal.
struct LaunchOptions {
    QString HomeOption;                   // --home
    bool Demo = false;                    // --demo
    std::array<QString, 2> StatusOptions; // --ivao-status, --vatsim-status
    QString DownloadNetworks;             // --download: "", "ivao", "vatsim" or "both"
    QString SnapshotPath;                 // --snapshot
    QString Input;                        // --keys
    std::optional<geo::ViewState> View;   // --view
    bool PrintPanel = false;              // --print-panel
    QString HistoryFile;                  // --history: another store, read only
    bool DemoHistory = false;             // --demo-history: a made-up day, charted and replayed
    QString Filter;                       // --filter: the filter the map starts with
    bool PrintStatus = false;             // --print-status
    bool Live = false;                    // --live: Live on for this run
};

// Where each network's data come from, as the map and the terminal both read them: the status file
// (command line, demo, settings, else the default) and a JSON feed read directly (settings, else the
// network's default, none when a status file was chosen on the command line or the demo is shown).
network::FeedAddresses ChooseAddresses(const LaunchOptions& launch, const Settings& settings,
                                       const Folders& folders);

// With --demo the weather commands and the weather layer answer from the bundled demo reports, never
// from the internet.
void UseDemoWeather(const LaunchOptions& launch, const Folders& folders, Settings& settings);

// The folders of a run, the home folder made when it is missing. A problem is said through report
// (what and where); a home folder that cannot be made is replaced by a temporary one, so the program
// still runs. When the home folder's data/ cannot be written, the downloads go to the user's cache
// folder (else a temporary one), and downloadNotice says which folder could not be written and where
// the files go.
Folders PrepareFolders(const LaunchOptions& launch, const std::function<void(const QString&)>& report,
                       QString* downloadNotice = nullptr);

// Writes text to a stream of the terminal as UTF-8, with the terminal's line ends, at once.
void PrintText(std::FILE* stream, const QString& text);
// The same for one line.
inline void PrintLine(std::FILE* stream, const QString& text) {
    PrintText(stream, text + u'\n');
}

} // namespace sky::ui
