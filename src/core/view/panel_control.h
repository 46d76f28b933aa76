#pragma once

#include <functional>

#include <QString>

#include "view/panels.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class SceneControl;

// The overlay panels: a client's info box (list 40), the client list and the airport traffic board
// (list 41). Opens and closes them, turns their pages, and carries out their clicks and keys.
// PanelMode follows the panels' state; Escape, a resize, a download or centring close them by setting
// PanelMode to 0, which the controller notices before the next use.
class PanelControl {
public:
    // openProfile opens a member's profile page; friendsChanged keeps the friends list after a change.
    PanelControl(MapState& state, SceneControl& scene, render::GlApi& gl,
                 std::function<void(int network, const QString& vid)> openProfile,
                 std::function<void()> friendsChanged);

    void OpenInfoBox(const ClientRef& client);
    void OpenBoard(const QString& airport);
    void OpenList(); // the pilots' page of the shown network
    // The friend button of the info box: adds or removes its client and rebuilds what shows friends.
    void ToggleInfoClientFriend();

    // A click at (x, y) pixels or a released key while a panel is open: true when a panel took it.
    bool Click(int x, int y);
    bool Key(int keyCode);
    // Clears what PanelMode 0 closed (Escape, a resize, a download, centring).
    void Sync();
    // The info box closes when its client is no longer selected; true when it was open.
    bool CloseInfoBox();

private:
    void Show();
    void Rebuild();
    TableContent Table(int rowsPerPage, int pageIndex) const; // the open list's or board's page
    void ClientClick(const PanelHit& hit);

    MapState& m_state;
    SceneControl& m_scene;
    render::GlApi& m_gl;
    std::function<void(int, const QString&)> m_openProfile;
    std::function<void()> m_friendsChanged;
};

} // namespace sky::view
