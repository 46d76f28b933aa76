#pragma once

#include <QString>

#include "geo/geodesy.h"
#include "network/client_records.h"
#include "render/panel_layout.h"

namespace sky {
struct Settings;
class Friends;
} // namespace sky

namespace sky::view {

struct DisplayState;

// What a key can ask of the map beyond changing the state it is handed.
class MapCommands {
public:
    virtual ~MapCommands() = default;
    virtual void ShowCompanion() = 0;
    // The download button: shows network (0, 1, or 2 for both), downloads and rebuilds the scene.
    virtual void Download(int network) = 0;
    virtual void OpenListPanel() = 0;
    // Marks the scene of network stale and builds it again.
    virtual void RebuildScene(int network) = 0;
    virtual void DeleteHighlight() = 0;
    // Sets the status text; the status line is recorded again.
    virtual void SetStatus(const QString& text) = 0;
    // Moves the camera (the next frame clamps it).
    virtual void SetView(const geo::ViewState& view) = 0;
    // Closes the open panels (Escape, centring on oneself).
    virtual void ClosePanels() = 0;
    virtual void Redraw() = 0;
    // The history: the shown network's stored snapshots back (-1) or forward (+1), back to live, and
    // the tracks of every shown aircraft on or off.
    virtual void ReplayStep(int direction) { (void)direction; }
    virtual void ReplayLive() {}
    virtual void ToggleTrails() {}
};

// The state the keys read and change: the switches and stored views, and the display toggles; the
// view, the status and the panels they change through the commands.
struct KeyContext {
    Settings& Config;
    DisplayState& Display;
    const geo::ViewState& View;
    render::PanelMode Panels;
    const Friends& FriendList;
    const network::ClientTables& Tables;
    MapCommands& Commands;
};

// A key held down: the camera keys (arrows, F11, F12), repeated while held. Nothing while a panel is
// open or with Shift alone held.
void KeyDown(KeyContext& context, int keyCode, int modifiers);

// A key released: every other command, in a fixed order of tests (see the key table in README).
void KeyUp(KeyContext& context, int keyCode, int modifiers);

// Centres the view on the user's own connection on the shown network: controllers first, then pilots,
// the last match winning. Nothing happens when the user is not online.
void CentreOnMyself(KeyContext& context);

// Friends only (F2), on or off: off at once; on when a friend is online on the shown network (either
// in the comparison), else "No friends online". The scene is built again.
void FriendsFilter(KeyContext& context);

// The number of clients of a network whose member number is on the friends list.
int FriendsOnline(const network::NetworkData& data, const Friends& friends);

} // namespace sky::view
