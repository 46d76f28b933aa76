#pragma once

#include <array>

#include <QString>

namespace sky::view {

// Display state of the map that is not saved: which network is shown, which overlay panel is open,
// the run-time toggles and the status text.
struct DisplayState {
    int ShownNetwork = 0;        // 0 IVAO, 1 VATSIM, 2 the comparison of both
    unsigned char PanelMode = 8; // 0 none; 1-2 info box; 3, 5 list panel; 4, 6 both; 8 while starting
    bool ShowCountries = true;
    bool ShowAbout = true;
    bool FriendsOnly = false;
    bool HoverCard = false;  // the card of the client under the resting pointer shows
    bool Replaying = false;  // the shown network's data are a stored snapshot, not the newest
    bool ShowTrails = false; // the tracks of every shown aircraft
    QString StatusText;
    // True once the traffic lists of network n (or 2, the comparison) reflect the tables.
    std::array<bool, 3> SceneBuilt = {false, false, false};
};

} // namespace sky::view
