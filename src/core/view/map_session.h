#pragma once

#include <QString>

#include "companion/command_context.h"
#include "companion/console.h"
#include "search/search_index.h"
#include "view/alert_control.h"
#include "view/coming_control.h"
#include "view/download_control.h"
#include "view/filter_control.h"
#include "view/history_control.h"
#include "view/keyboard.h"
#include "view/live_control.h"
#include "view/motion_control.h"
#include "view/map_host.h"
#include "view/map_state.h"
#include "view/measure_control.h"
#include "view/panel_control.h"
#include "view/pointer_control.h"
#include "view/scene_control.h"
#include "view/weather_control.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

// The map: its state and the parts that work on it, wired together. The window turns its events into
// calls of the parts (Pointer() for the mouse, Downloader() for the button and timers) and of the keys
// here; a test builds one with a recording GL, a fake host and a fake HTTP client.
class MapSession final : private MapCommands, private companion::CompanionHost {
public:
    // history may be null: the map then keeps nothing of what it saw. The networks' data come from
    // addresses (the window and the terminal choose them from the command line and the settings).
    MapSession(Folders files, Settings settings, Friends friends, render::GlApi& gl, MapHost& host,
               network::HttpClient& http, history::HistoryStore* history = nullptr,
               const network::FeedAddresses& addresses = network::DefaultStatusFiles());

    // Start-up from the point where the GL context exists: frame, title box and marks, reference data,
    // geography, then "Ready". Returns the path of a geography file that is missing (the map goes on
    // without it), or empty.
    QString StartUp();
    // The download the command line asks for once the map is ready: "ivao", "vatsim" or "both"; any
    // other text downloads nothing.
    void DownloadOnStart(const QString& networks);
    // The client area changed size (pixels): what depends on it is recorded again; panels close.
    void Resize(int widthPx, int heightPx);
    // A new GL context: every list is recorded again in it (the reference data stay as read).
    void RecordAllLists();
    // Once a minute: what follows the clock (the night side, the weather layer).
    void MinuteTick() {
        m_scene.RecordNight(m_download.Now());
        m_weather.Follow();
    }
    // What the next frame is drawn from (the view clamped once, as each frame does).
    render::FrameInputs Frame() { return m_scene.Frame(); }

    void KeyDown(int keyCode, int modifiers);
    void KeyUp(int keyCode, int modifiers);
    // The Companion: Enter in its input line with this text; true when a command was carried out.
    bool CompanionEnter(const QString& input);
    // Settings changed in the Preferences take effect at once: a new theme colours every list (the
    // open panels close), the table limits, the automatic download and the labels follow.
    void ApplyPreferences(const Settings& changed);

    // The friends or the watch list changed in another program on this home folder (the terminal
    // Companion): they are read again and what shows them follows. Called now and then (every second).
    void CheckSharedFiles();

    // The search field: what matches the text in the shown network (both when compared) and among the
    // airports and FIRs, best first; the text also filters the open list. Choosing a result selects,
    // centres and opens a client's info box, marks, centres and opens an airport's board, or centres
    // on a FIR.
    std::vector<search::SearchResult> Search(const QString& text);
    void ChooseSearchResult(const search::SearchResult& result);
    // Selects the client of network with this callsign, centres on it and opens its info box (showing
    // that network when another one is shown); false when it is not online.
    bool GoTo(int network, const QString& callsign);
    void GoTo(const network::ClientRef& client);
    // The chart of the history was clicked: the stored snapshot of network with this id is replayed
    // (shown live when it is the newest), showing that network.
    void ReplaySnapshot(int network, qint64 snapshotId);

    // The name the user gave a friend (member number), or empty. NameFriend sets it (an empty name
    // removes it), keeps it in data/friendnames.dat at once and shows it in the labels, the lists, the
    // search, the hover cards and the alerts.
    QString FriendName(const QString& member) const { return m_state.FriendNames.Value(member); }
    void NameFriend(const QString& member, const QString& name);

    // The parts, whose methods change what they own.
    SceneControl& Scene() { return m_scene; }
    FilterControl& Filters() { return m_filters; }
    MeasureControl& Measurer() { return m_measure; }
    DownloadControl& Downloader() { return m_download; }
    LiveControl& Live() { return m_live; }
    MotionControl& Motion() { return m_motion; }
    PanelControl& PanelController() { return m_panelControl; }
    PointerControl& Pointer() { return m_pointer; }
    HistoryControl& History() { return m_history; }
    AlertControl& Alerts() { return m_alerts; }
    ComingControl& Coming() { return m_coming; }
    companion::CompanionConsole& Companion() { return m_companion; }

    // The state, read by the window and the tests; changed only through the parts above.
    const MapState& State() const { return m_state; }
    const QString& Home() const { return m_state.Home; }
    const Settings& Config() const { return m_state.Config; }
    const Friends& FriendList() const { return m_state.FriendList; }
    const DisplayState& Display() const { return m_state.Display; }
    const geo::ViewState& View() const { return m_state.View; }
    const ColourTable& Colours() const { return m_state.Colours; }
    const network::ClientTables& Tables() const { return m_state.AllTables(); }
    const network::DownloadState& Downloads() const { return m_state.Downloads; }
    const coming::ComingState& ComingLists() const { return m_state.Coming; }
    const ReferenceData& Reference() const { return m_state.Reference; }
    const std::optional<Selection>& Selected() const { return m_state.Selected; }
    const PanelState& Panels() const { return m_state.Panels; }

private:
    // MapCommands: what the keys ask of the map.
    void ShowCompanion() override;
    void Download(int network) override { m_download.BtnDownload(network); }
    QStringList Watch(const QString& line) override;
    void OpenListPanel() override { m_panelControl.OpenList(); }
    void RebuildScene(int network) override { m_scene.RebuildScene(network); }
    void DeleteHighlight() override { m_scene.DeleteHighlight(); }
    void SetStatus(const QString& text) override { m_scene.SetStatus(text); }
    void SetView(const geo::ViewState& view) override { m_scene.SetView(view); }
    void ClosePanels() override { m_panelControl.CloseAll(); }
    void Redraw() override { m_scene.Redraw(); }
    // CompanionHost: what the Companion's commands ask of the map.
    void CentreOn(float latitude, float longitude, const QString& name) override;
    void MarkAirport(float latitude, float longitude, const QString& code) override;
    void OpenProfile(int network, const QString& vid) override;
    void ReplayStep(int direction) override;
    void ReplayLive() override;
    void ToggleTrails() override;
    // The chart buttons of the panels, handed to the window.
    void ChartFlight(const network::ClientRef& client);
    void ChartAirport(const QString& airport);

    KeyContext Keys();
    QString DataFolder() const; // where the reference data and geography are read from
    // Closes the panels and turns the map to face the point, so it shows where it went.
    void CentreAndClose(float latitude, float longitude, const QString& name, float zoom = 16.0f);
    void SaveFriends();
    void Tell(int network, const QString& callsign, const QString& text);
    // A prefile's route drawn as a flight's; the number of its places found.
    int MarkPlan(const QString& callsign);
    // The weather layer's, else from the weather server while no other fetch runs; or empty.
    QString Metar(const QString& icao);
    // An airport's weather and runways in use for its hover card, as far as known.
    QStringList AirportLines(const QString& airport) const;

    MapState m_state;
    render::GlApi& m_gl;
    MapHost& m_host;
    network::HttpClient& m_http;
    SceneControl m_scene;
    PanelControl m_panelControl;
    DownloadControl m_download;
    LiveControl m_live;
    MotionControl m_motion;
    PointerControl m_pointer;
    HistoryControl m_history;
    AlertControl m_alerts;
    ComingControl m_coming;
    FilterControl m_filters;
    MeasureControl m_measure;
    WeatherControl m_weather;
    companion::CompanionConsole m_companion;
    search::SearchIndex m_search;
    QString m_searchData;   // what the search's clients were taken from
    int m_namesChanged = 0; // the friends' names changed this often, for the search
};

} // namespace sky::view
