#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <QString>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/settings.h"
#include "companion/command_context.h"
#include "companion/console.h"
#include "geo/geodesy.h"
#include "network/download.h"
#include "refdata/fir_outlines.h"
#include "refdata/reference_data.h"
#include "view/display_state.h"
#include "view/download_timers.h"
#include "view/keyboard.h"
#include "view/panels.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

// What the session needs from the window it runs in.
class MapHost {
public:
    virtual ~MapHost() = default;
    // Draws a frame now (DrawScene), so a status text shows while work goes on.
    virtual void Redraw() = 0;
    virtual void ShowCompanion() = 0;
    // The network's broadcast message, as plain text in a box.
    virtual void ShowNetworkMessage(const QString& text) = 0;
    // The automatic download timer runs while enabled.
    virtual void EnableAutoDownload(bool enabled) = 0;
    // Opens a web address (only ever http or https) in the user's browser.
    virtual void OpenUrl(const QString& address) = 0;
};

// The selected client of the map: a pilot or a controller slot of the shown network.
struct Selection {
    int Network = 0;
    bool IsPilot = true;
    int Slot = 0;
};

// The map's whole state and its procedures: start-up, the download button, the scene build, keys,
// timers and mouse selection. Owned by the map window; a test builds one with a recording GL and a fake
// host and HTTP client.
class MapSession final : public MapCommands, public network::DownloadView, public companion::CompanionHost {
public:
    MapSession(QString home, Settings settings, Friends friends, render::GlApi& gl, MapHost& host,
               network::HttpClient& http);

    // Start-up from the point where the GL context exists: frame, title box and marks, reference data,
    // geography, then "Ready". Returns the path of a geography file that is missing, or empty.
    QString StartUp();

    // The download button: shows network (2: both, compared), downloads, rebuilds and redraws.
    void BtnDownload(int network);
    // Records the nine traffic lists of network (0 or 1) unless they are up to date, then sets the status.
    void BuildTrafficScene(int network);
    void BuildComparisonScene();

    // The client area changed size (pixels): frame, marks and client-count panel again; panels close.
    void Resize(int widthPx, int heightPx);
    // After any change of the view: symbols and labels follow the zoom band.
    void ViewChanged();

    void KeyDown(int keyCode, int modifiers);
    void KeyUp(int keyCode, int modifiers);
    void AutoDownloadTimerTick(); // once a second while the automatic download is enabled
    void DownloadTimerTick();     // once a second

    // Mouse: a left click selects the client nearest the pointer (within 12 pixels), or clears the
    // selection beside the globe; dragging turns the globe under the pointer; the wheel zooms.
    void Click(double x, double y);
    void Drag(double fromX, double fromY, double toX, double toY);
    void Wheel(int steps);
    void ClearSelection();

    // The panels: a client's info box, the client list (L), an airport's traffic board.
    void OpenInfoBox(const ClientRef& client);
    void OpenBoard(const QString& airport);
    // The friend button of the info box: adds or removes its client and rebuilds what shows friends.
    void ToggleInfoClientFriend();
    const PanelState& Panels() const { return m_panels; }

    void SetStatus(const QString& text); // sets the text and records the status line

    // The Companion: Enter in its input line with this text; true when a command was carried out.
    bool CompanionEnter(const QString& input);
    companion::CompanionConsole& Companion() { return m_companion; }

    // CompanionHost
    void CentreOn(float latitude, float longitude, const QString& name) override;
    void MarkAirport(float latitude, float longitude, const QString& code) override;
    void OpenProfile(int network, const QString& vid) override;

    // MapCommands
    void ShowCompanion() override;
    void Download(int network) override { BtnDownload(network); }
    void OpenListPanel() override;
    void RebuildScene(int network) override;
    void DeleteHighlight() override;
    void StatusChanged() override;
    void Redraw() override;
    // DownloadView
    void ShowStatus(const QString& text) override;
    void ShowNetworkMessage(const QString& text) override;
    void ClearTraffic(int network) override;
    void MarksChanged() override;

    // State, read by the window and the tests.
    const QString& Home() const { return m_home; }
    Settings& Config() { return m_settings; }
    const Friends& FriendList() const { return m_friends; }
    Friends& FriendList() { return m_friends; }
    DisplayState& Display() { return m_display; }
    geo::ViewState& View() { return m_view; }
    const ColourTable& Colours() const { return m_colours; }
    network::ClientTables& Tables() { return *m_tables; }
    network::DownloadState& Downloads() { return m_downloads; }
    const ReferenceData& Reference() const { return m_reference; }
    const std::optional<Selection>& Selected() const { return m_selection; }
    std::int16_t AutoDownloadCountdown() const { return m_autoCountdown; }
    int WidthPx() const { return m_width; }
    int HeightPx() const { return m_height; }

    // Injected for tests: the clock and the server choice.
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
    std::function<int(int)> Random;

private:
    KeyContext Keys();
    TimerContext Timers();
    network::DownloadContext DownloadContext();
    void RecordHighlight();
    void RebuildPanels();
    void SyncPanels();
    bool PanelClick(int x, int y);
    bool PanelKey(int keyCode);
    void ShowPanels();
    TableContent PanelTable(int rowsPerPage, int pageIndex) const; // the open list's or board's page
    QString AirportAt(double x, double y) const;                   // an airport in use within 8 pixels
    void RebuildPlanesIfZoomChanged();

    QString m_home;
    Settings m_settings;
    Friends m_friends;
    render::GlApi& m_gl;
    MapHost& m_host;
    network::HttpClient& m_http;
    ColourTable m_colours;
    ReferenceData m_reference;
    FirOutlines m_outlines;
    std::unique_ptr<network::ClientTables> m_tables;
    network::DownloadState m_downloads;
    DisplayState m_display;
    geo::ViewState m_view;
    std::optional<Selection> m_selection;
    std::int16_t m_autoCountdown = 0;
    int m_width = 800;
    int m_height = 600;
    std::array<int, 3> m_symbolBand = {0, 0, 0};
    std::array<bool, 3> m_detailedLabels = {false, false, false};
    companion::CompanionConsole m_companion;
    PanelState m_panels;
};

} // namespace sky::view
