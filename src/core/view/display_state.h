#pragma once

#include <array>

#include <QString>

namespace sky::view {

// Display state of the map that is not saved: which network is shown, the run-time toggles and the
// status text. Each field names the part that writes it; every other part reads it or asks that part.
// Which panels are open is the panels' own state (PanelState, through PanelModeOf).
struct DisplayState {
    int ShownNetwork = 0;      // SceneControl::ShowNetwork: 0 IVAO, 1 VATSIM, 2 the comparison of both
    bool ShowCountries = true; // the keys (C)
    bool ShowAbout = true;     // MapSession::StartUp: the title box until "Ready"
    bool FriendsOnly = false;  // the keys (F2)
    bool HoverCard = false;    // PointerControl: the card of the client under the resting pointer shows
    bool Replaying = false;    // HistoryControl: the shown network's data are a stored snapshot
    bool ShowTrails = false;   // MapSession::ToggleTrails: the tracks of every shown aircraft
    QString StatusText;        // SceneControl::SetStatus
    // SceneControl: true once the traffic lists of network n (or 2, the comparison) reflect the tables.
    std::array<bool, 3> SceneBuilt = {false, false, false};
};

} // namespace sky::view
