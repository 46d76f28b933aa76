#pragma once

#include <array>
#include <functional>
#include <optional>

#include <QDateTime>
#include <QString>

#include "geo/geodesy.h"
#include "network/client_records.h"
#include "render/crowds.h"
#include "render/draw_scene.h"
#include "render/filter_mark.h"
#include "render/highlight.h"
#include "render/land_layer.h"
#include "render/traffic_scene.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class MapHost;

// The map's display lists as the state asks for them: the traffic scene of a network or of the
// comparison, the symbols and labels of the zoom band in view, the highlight of the selection, the
// frame, the status line, the client-count panel and the network marks. Labels are placed for the view
// they are seen in: again when the zoom band changes, when the view comes to rest after a drag or zoom,
// and when what they must keep clear of changes (switches, selection, panels, window size). Every change
// that the user should see ends in Redraw. The one writer of the shown network, the status text, the
// scene flags, the camera, the selection and the window size. Owned by the map session.
class SceneControl {
public:
    SceneControl(MapState& state, render::GlApi& gl, MapHost& host);

    // Records the traffic lists of network (0 or 1) unless they are up to date, then sets the
    // status text ("IVAO data of 1423Z displayed").
    void BuildTrafficScene(int network);
    // Lists 30 to 38 and the comparison's status text.
    void BuildComparisonScene();
    // Marks the scene of network (0, 1 or 2) stale and builds it again.
    void RebuildScene(int network);
    // The tables of network (0, 1 or 2) changed: its scene is built again when next shown.
    void MarkStale(int network);
    // Every scene is stale (the filter or the friends' names changed): each is built again when shown.
    void MarkAllStale();
    // The shown scene recorded again at once for what the filter now lets through, without "Setting up
    // map...", the selection kept while it still shows; the other scenes follow when shown. With
    // pilotsOnly (the stations pass as before) only the lists that show pilots are recorded.
    void Refilter(bool pilotsOnly = false);
    // The network shown from now on (0, 1 or 2 for the comparison); builds nothing.
    void ShowNetwork(int network);
    // After any change of the view: symbols and labels follow the zoom band.
    void ViewChanged();
    // The view has come to rest (a drag ended, the wheel or keys paused): labels are placed for it.
    void ViewSettled();
    // The client area changed size (pixels): frame, marks and client-count panel again.
    void Resize(int widthPx, int heightPx);

    void SetStatus(const QString& text); // sets the text and records the status line
    void MarksChanged();                 // records the network marks from the download flags
    void ClientCountChanged();           // records the client-count panel and the filter's marks
    void FilterMarkChanged();            // records the filter's marks (list 63), or deletes them
    // The glyphs changed size (another screen scale): what prints text is recorded again.
    void TextChanged();
    // The colours changed: the frame, marks, count panel, traffic and highlight are recorded again in
    // them.
    void ThemeChanged();
    // The network's traffic lists, the count panel and the highlight go (before new data).
    void ClearTraffic(int network);

    // Live motion moved the aircraft: the shown scene's symbols move in their vertex arrays, their labels
    // (each kept beside its symbol, not placed again) and the selection's ring are recorded at the drawn
    // positions.
    void RecordMotion();
    // Where live motion draws network's pilots now, by slot; null when it does not (off, replaying, or
    // worked out for other data).
    const std::vector<geo::LatLon>* DrawnPlanes(int network) const;

    // Selects a client and records its highlight (list 42): a ring round it and its callsign.
    void Select(const network::ClientRef& client);
    // The highlight again, for the selection as it is (deleted when nothing is selected).
    void RecordHighlight();
    void DeleteHighlight(); // the selection goes with it
    // Marks an airport with its code in the highlight list; the selection goes.
    void MarkAirport(float latitude, float longitude, const QString& code);
    // Marks a flight filed but not flying in the highlight list: a ring at where (its departure), its
    // callsign and its route dashed, as a selected flight's; the selection goes.
    void MarkPlan(geo::LatLon where, const QString& callsign, const render::FlightPaths& paths);
    // Moves the camera; the next frame clamps it.
    void SetView(const geo::ViewState& view);
    // Turns the map to face the point at zoom 16 (or another) and says "Centered on " + name. The
    // caller closes the panels, so the map shows where it went.
    void CentreOn(float latitude, float longitude, const QString& name, float zoom = 16.0f);
    // Turns the map, at its zoom, so that the point at the centre shows in the middle of area instead
    // (pixels): what a panel over the map leaves free.
    void CentreIn(const render::PixelRect& area);

    // Draws a frame now: the zoom band and the labels' surroundings are checked first.
    void Redraw();
    // What the next frame is drawn from: the view clamped (once per frame, as the frame does it), the
    // display state and the open panels. The land of the view's detail is recorded first if it is not.
    render::FrameInputs Frame();

    // Where the selected flight has been and is going, drawn with its highlight: the flown track solid,
    // the route ahead dashed, in the network's colour.
    using PathSource = std::function<render::FlightPaths(const network::ClientRef&)>;
    void SetPathSource(PathSource source) { m_paths = std::move(source); }
    // land.dat's bytes (empty: none), read again after a theme or a new context: the land is recorded
    // anew, a detail band at a time as frames need it.
    void SetLand(QByteArray bytes) { m_land.Reset(std::move(bytes)); }
    // The night side (list 64) for the time the map shows: the shown data's, or clock's without data.
    // Recorded again only when that time moved by a minute or more (or force).
    void RecordNight(const QDateTime& clock, bool force = false);
    // The tracks of every shown aircraft (list 60), recorded when the data change; live motion draws
    // them on to where each aircraft is drawn.
    void RecordAllTrails(const render::AllTrails& trails);

    // What the labels are placed for now (the view, the window, what they keep clear of).
    render::LabelView CurrentLabelView() const;
    // The crowds of parked aircraft the shown scene draws as one mark per airport.
    const render::CrowdPlan& Crowds() const { return m_crowds; }
    // The airport whose label (its code, or its stations' label) covers pixel (x, y); empty if none.
    QString AirportLabelAt(double x, double y) const;

private:
    // What a placement of labels depends on besides the view.
    struct LabelKey {
        int Shown = 0;
        bool Declutter = false;
        std::array<bool, 7> Switches{};
        std::optional<network::ClientRef> Selected;
        render::PanelMode Panels = render::PanelMode::None;
        int WidthPx = 0, HeightPx = 0;
        bool operator==(const LabelKey&) const = default;
    };
    LabelKey CurrentLabelKey() const;
    render::FilterMarkInputs FilterMark() const; // what the filter's marks say now
    // What the traffic builders draw from; the crowds are planned again for it.
    render::TrafficInputs Inputs(const render::LabelView* labels, int scene, bool planCrowds = true);
    void RebuildLabels(); // the three label lists of the shown scene, for the view as it is
    void PlacedFor(int scene);
    // The symbols or sectors of a scene were recorded for the view as it is.
    void ScalesRecorded(int scene, bool symbols, bool sectors);
    void StatusChanged(); // records the status line from the state's text

    MapState& m_state;
    render::GlApi& m_gl;
    MapHost& m_host;
    std::array<int, 3> m_symbolBand = {0, 0, 0};
    std::array<int, 3> m_symbolMask = {0, 0, 0};   // the symbols' mask, made for their size on screen
    std::array<int, 3> m_sectorDetail = {0, 0, 0}; // the sectors' level of detail
    std::array<bool, 3> m_detailedLabels = {false, false, false};
    std::optional<LabelKey> m_labelKey; // of the last placement
    geo::ViewState m_labelViewState;
    int m_highlightBand = 0;
    PathSource m_paths;
    bool m_moving = false;                        // a motion step records the highlight
    std::optional<network::ClientRef> m_pathsFor; // what the paths below were asked for, in data of
    QString m_pathsStamp;                         // this stamp
    render::FlightPaths m_reportedPaths;
    std::vector<std::pair<geo::LatLon, int>> m_trailEnds; // of the trails recorded, by slot of the shown
    int m_trailsNetwork = 0;                              // as the source gave them, to where it was reported
    bool m_quiet = false;       // a rebuild for the filter: no "Setting up map..." first
    render::CrowdPlan m_crowds; // of the shown scene's symbols as last recorded
    render::LabelPlan m_labels; // the shown scene's labels as last placed
    QDateTime m_nightTime;      // what the night side was recorded for
    render::LandLists m_land;
};

} // namespace sky::view
