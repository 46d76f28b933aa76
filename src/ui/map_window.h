#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>

#include <QMenu>
#include <QOpenGLWidget>
#include <QTimer>

#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"
#include "gl_backend.h"
#include "qt_http_client.h"
#include "companion_window.h"
#include "filter_bar.h"
#include "search_field.h"
#include "history/history_store.h"
#include "view/demo_live_feed.h"
#include "view/map_session.h"

namespace sky::ui {

class DesktopNotifications;
class StatisticsWindow;

// How the map window starts.
struct MapOptions {
    Folders Files; // the home folder and the shipped files
    Settings Config;
    Friends FriendList;
    float TwipsPerPixel = 15.0f;
    network::FeedAddresses Addresses;
    QString DownloadNetworks;           // "", "ivao", "vatsim" or "both": downloaded once "Ready" shows
    QString SnapshotPath;               // render one frame after start-up and downloads, save it, exit
    std::optional<geo::ViewState> View; // instead of stored view 1
    QString Input; // keys and clicks to apply once ready, e.g. "L;Right;click 400 300;shift+1"
    std::function<void(const QString&)> Report; // a problem the program runs on with
    bool PrintPanel = false;  // with the snapshot, the open list or board as text on standard output
    QString HistoryFile;      // a store to replay, read only; empty: the home folder's own
    QString StartNotice;      // said once in the status line when the map is ready (e.g. where downloads go)
    bool DemoHistory = false; // HistoryFile holds a made-up demo day: the charts say so
    QString Filter;           // the filter the map starts with (the filter bar's text)
    bool PrintStatus = false; // with the snapshot, the status line's text on standard output
    bool Demo = false;        // the demo feeds: live, VATSIM's moves (an in-process feed)
};

// The map window frmMap: a frameless window with its own title strip, drawing the globe with OpenGL.
// It turns window events into calls of the core's map session and owns nothing else of substance.
class MapWindow final : public QOpenGLWidget, public view::MapHost {
public:
    explicit MapWindow(MapOptions options);
    ~MapWindow() override;

    view::MapSession& Session() { return *m_session; }

    // MapHost
    void Redraw() override;
    void ShowCompanion() override;
    void ShowNetworkMessage(const QString& text) override;
    void EnableAutoDownload(bool enabled) override;
    void OpenUrl(const QString& address) override;
    void Report(const QString& text) override;
    void Notify(int network, const QString& callsign, const QString& text) override;
    void ShowAirportChart(int network, const QString& airport) override;
    void ShowFlightChart(int network, const QString& callsign, const QString& member) override;
    void FilterChanged() override;

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void StartUp();
    void ShutDown();
    // The GL context is about to go: what was made in it is freed while it is current.
    void ReleaseGl();
    // Puts the window into another top-level window and back: Qt drops the GL context and makes a new
    // one, as when a window changes its native window.
    void RemakeGlContext();
    // Ends the program with status; the history's writer has finished before.
    void Quit(int status);
    void ToggleMaximised();
    void RunKey(int keyCode, int modifiers);
    void SaveSnapshotAndExit();
    void ApplyInput(const QString& sequence);
    void PlaceFromSettings();
    void OpenPreferences();
    void OpenSearch();
    StatisticsWindow& Statistics(); // made on first use
    void OpenFilters();
    void AddFilterMenu(QMenu& menu);
    // The menu of the info box's friend button or a friends page row under (x, y); false when there is
    // none there.
    bool FriendMenu(const QPoint& at, const QPoint& global);
    void AskFriendName(const QString& member);
    // The measuring drag: armed by Shift+left or the middle button on the map, measuring once it moved.
    bool MeasurePress(QMouseEvent* event);
    bool MeasureMove(QMouseEvent* event);
    bool MeasureRelease(QMouseEvent* event);
    void ResizeBy(const QPoint& moved);

    MapOptions m_options;
    GlBackend m_gl;
    net::QtHttpClient m_http;
    std::unique_ptr<view::DemoLiveFeed> m_demoFeed;   // the demo's moving VATSIM feed, over m_http
    std::unique_ptr<history::HistoryStore> m_history; // before the session, which uses it
    std::unique_ptr<view::MapSession> m_session;
    std::unique_ptr<CompanionWindow> m_companion;    // made on first use
    std::unique_ptr<StatisticsWindow> m_statistics;  // made on first use
    SearchField* m_search = nullptr;                 // a child of the window
    FilterBar* m_filterBar = nullptr;                // a child of the window
    DesktopNotifications* m_notifications = nullptr; // a child of the window
    QTimer m_hoverTimer;                             // the pointer has rested: the card under it
    QPoint m_hoverAt;
    QTimer m_autoDownloadTimer;
    QTimer m_downloadTimer;
    QTimer m_settleTimer; // the view has come to rest a moment after the last wheel step or key
    QTimer m_minuteTimer; // what follows the clock (the night side)
    QTimer m_motionTimer; // live motion: ten steps a second while aircraft move and the map is visible
    bool m_started = false;
    bool m_shutDown = false;
    bool m_maximised = false;
    bool m_dragging = false;
    bool m_pressOnMap = false; // the left button went down on the map, not the title strip or an edge
    int m_wheelRemainder = 0;  // wheel units short of a whole step
    int m_resizeEdges = 0;     // the edges a drag resizes from, when the window does it itself
    QPoint m_resizeFrom;
    QRect m_resizeGeometry;
    Qt::MouseButton m_measureButton = Qt::NoButton; // the button of a measuring drag, while armed
    bool m_measuring = false;                       // the drag moved: the line follows it
    QPoint m_measureFrom;
    QPoint m_pressPosition;
    QPoint m_lastPosition;
    std::map<int, int> m_pressModifiers; // classic key code -> modifiers when it went down
};

} // namespace sky::ui
