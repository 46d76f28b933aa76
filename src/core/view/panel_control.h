#pragma once

#include <functional>

#include <QDateTime>
#include <QString>

#include "view/panels.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class SceneControl;

// The overlay panels: a client's info box (list 40), the client list and the airport traffic board
// (list 41). Opens and closes them, turns their pages, and carries out their clicks and keys. The one
// writer of the panels' state; Escape, a resize, a download and centring close them through CloseAll.
class PanelControl {
public:
    // What the panels ask of the rest of the map.
    struct Actions {
        std::function<void(int network, const QString& vid)> OpenProfile; // a member's profile page
        std::function<void()> FriendsChanged;                             // keeps the friends list
        std::function<QString(const QString& icao)> Weather;              // an airport's METAR, or empty
        std::function<int(const ClientRef&)> RoutePoints;                 // places of a pilot's route found
        std::function<bool(const QString& callsign)> IsWatched;           // a station's watch button
        std::function<void(const QString& callsign)> ToggleWatch;
        std::function<void(const ClientRef&)> Go; // select and centre on a client
        // VATSIM's coming traffic: the moment its lists are read for, a prefile's route drawn on the
        // map (the places found), and an event's page opened in the browser.
        std::function<QDateTime()> Moment;
        std::function<int(const QString& callsign)> MarkPlan;
        std::function<void(const QString& address)> OpenWeb;
        // The chart buttons (shown only where these are given): a pilot's profile, an airport's movements.
        std::function<void(const ClientRef&)> ChartFlight;
        std::function<void(const QString& airport)> ChartAirport;
        // Live: a pilot's box says how old its position is (by this clock) and has a follow button.
        std::function<QDateTime()> LiveNow;
        std::function<bool()> Following;
        std::function<void()> ToggleFollow;
    };
    PanelControl(MapState& state, SceneControl& scene, render::GlApi& gl, Actions actions);

    void OpenInfoBox(const ClientRef& client);
    // The box of VATSIM's prefiled flight of this callsign, its route drawn on the map.
    void OpenPrefileBox(const QString& callsign);
    void OpenBoard(const QString& airport); // with its METAR when the weather can be fetched
    // The board of the airport a box's departure or destination line names, if line is one of them.
    void OpenBoardOfLine(const render::InfoBoxContent& info, int line);
    void OpenList(); // the pilots' page of the shown network
    // The search field's text filters the list's rows (from its first page) while it is open.
    void SetFilter(const QString& text);
    // The friend button of the info box: adds or removes its client and rebuilds what shows friends.
    void ToggleInfoClientFriend();

    // A click at (x, y) pixels or a released key while a panel is open: true when a panel took it.
    bool Click(int x, int y);
    bool Key(int keyCode);
    // Which panels are open, as the frame draws them.
    PanelMode Mode() const;
    // Closes every panel (Escape, a resize, a download, centring); the lists' pages and orders stay.
    void CloseAll();
    // Start-up has finished: the title box goes and the panels and camera keys work.
    void Ready();
    // The open panels recorded again (new data, a new GL context).
    void RecordAgain() { Rebuild(); }
    // The page of the open list or board as it shows; empty when neither is open.
    TableContent ShownTable();
    // A live pilot's box again, with the age of its position now.
    void AgeInfoBox();
    // The info box closes when its client is no longer selected; true when it was open.
    bool CloseInfoBox();

private:
    void Show();
    void Rebuild();
    bool LivePilotBox() const;
    TableContent Table(int rowsPerPage, int pageIndex) const; // the open list's or board's page
    void ClientClick(const PanelHit& hit);
    void PrefileClick(const PanelHit& hit);
    void ItemClick(const ClientRef& row, bool go); // a row of a prefile or an event

    MapState& m_state;
    SceneControl& m_scene;
    render::GlApi& m_gl;
    Actions m_actions;
};

} // namespace sky::view
