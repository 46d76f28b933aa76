#include "view/scene_control.h"

#include <cmath>

#include <QDir>
#include <QFile>

#include "geo/projection.h"
#include "render/aircraft_layer.h"
#include "conditions/sun.h"
#include "render/filter_mark.h"
#include "render/frame.h"
#include "render/night_layer.h"
#include "render/panel_layout.h"
#include "render/sector_layer.h"
#include "render/text.h"
#include "view/map_host.h"
#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace {

// The frame's title strip, side bands and status band, which labels keep off.
constexpr int kStripPx = 20;
constexpr int kSideBandPx = 6;

} // namespace

SceneControl::SceneControl(MapState& state, render::GlApi& gl, MapHost& host)
    : m_state(state), m_gl(gl), m_host(host) {}

render::LabelView SceneControl::CurrentLabelView() const {
    const MapState& s = m_state;
    const int w = s.WidthPx, h = s.HeightPx;
    render::LabelView v;
    v.View = s.View;
    geo::ClampView(v.View);
    v.WidthPx = w;
    v.HeightPx = h;
    v.Selected = s.Selected;
    const Settings& c = s.Config;
    v.Planes = c.ShowPlanes;
    v.PlaneLabels = c.ShowPlaneLabels;
    v.Atc = c.ShowATC;
    v.AtcLabels = c.ShowATCLabels;
    v.Airports = c.ShowAirports;
    v.AirportLabels = c.ShowAirportLabels;
    v.Reserved = {{0, 0, w, kStripPx + 2},
                  {0, h - kStripPx, w, kStripPx},
                  {0, 0, kSideBandPx, h},
                  {w - kSideBandPx, 0, kSideBandPx, h},
                  render::ClientCountPanelBox(m_gl, s.AllTables(), w)};
    if (s.Shown().Narrows())
        v.Reserved.push_back(render::FilterCountBox(m_gl, FilterMark()));
    const render::PanelLayout layout = render::LayoutPanels(w, h);
    const render::PanelMode panels = PanelModeOf(s.Panels);
    if (render::ShowsTable(panels))
        v.Reserved.push_back(layout.ListPanel);
    if (render::ShowsInfoBox(panels))
        v.Reserved.push_back(layout.InfoBox);
    // The highlight's callsign keeps its place above the selected client's own label.
    if (s.Selected) {
        const network::ClientSummary selected = network::Summarise(s.AllTables(), *s.Selected);
        const auto point = geo::LatLonToScreen(selected.Latitude, selected.Longitude, w, h, v.View);
        if (point)
            v.Reserved.push_back({int(point->X) + render::kHighlightTextDx,
                                  int(point->Y) - render::kHighlightTextDy - 11,
                                  render::TextWidth(m_gl, selected.Callsign, true), 14});
    }
    return v;
}

render::FilterMarkInputs SceneControl::FilterMark() const {
    const MapState& s = m_state;
    render::FilterMarkInputs in{render::ClientCountPanelBox(m_gl, s.AllTables(), s.WidthPx), 0, 0,
                                filter::FilterText(s.Filters.Filter, s.Display.FriendsOnly)};
    const filter::Visibility shown = s.Shown();
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (n == s.Display.ShownNetwork || s.Display.ShownNetwork == 2) {
            in.ShownPilots += filter::ShownPilots(shown, s.AllTables()[n]);
            in.AllPilots += s.AllTables()[n].PilotCount;
        }
    }
    return in;
}

SceneControl::LabelKey SceneControl::CurrentLabelKey() const {
    const MapState& s = m_state;
    const Settings& c = s.Config;
    return LabelKey{s.Display.ShownNetwork,
                    c.DeclutterLabels,
                    {c.ShowPlanes, c.ShowPlaneLabels, c.ShowATC, c.ShowATCLabels, c.ShowAirports,
                     c.ShowAirportLabels, s.Display.FriendsOnly},
                    s.Selected,
                    PanelModeOf(s.Panels),
                    s.WidthPx,
                    s.HeightPx};
}

render::TrafficInputs SceneControl::Inputs(const render::LabelView* labels, int scene, bool planCrowds) {
    MapState& s = m_state;
    render::TrafficInputs inputs{s.AllTables(),
                                 s.FriendList,
                                 s.Display.FriendsOnly,
                                 s.Colours,
                                 s.Outlines,
                                 s.Config.ShowActualHeading,
                                 s.View.ViewZ,
                                 s.Config.DeclutterLabels ? labels : nullptr,
                                 &s.Shapes};
    inputs.Filter = &s.Filters.Filter;
    inputs.FriendNames = &s.FriendNames;
    inputs.NamesInstead = s.Config.FriendNamesInstead;
    if (planCrowds)
        m_crowds = render::PlanCrowds(inputs, scene == 2 ? std::vector<int>{0, 1} : std::vector<int>{scene});
    inputs.Crowds = &m_crowds;
    inputs.WindowHeightPx = s.HeightPx;
    for (size_t n = 0; n < inputs.Drawn.size(); ++n)
        inputs.Drawn[n] = DrawnPlanes(int(n));
    return inputs;
}

const std::vector<geo::LatLon>* SceneControl::DrawnPlanes(int network) const {
    const MapState& s = m_state;
    const size_t n = size_t(network);
    const bool current = s.Config.Live && !s.Display.Replaying &&
                         s.DrawnStamp[n] == s.AllTables()[n].UpdateStamp &&
                         s.DrawnPlanes[n].size() == size_t(s.AllTables()[n].PilotCount) + 1;
    return current ? &s.DrawnPlanes[n] : nullptr;
}

void SceneControl::RecordMotion() {
    const int shown = m_state.Display.ShownNetwork;
    if (!m_state.Display.SceneBuilt[size_t(shown)])
        return;
    const render::LabelView labels = CurrentLabelView();
    const render::TrafficInputs inputs = Inputs(&labels, shown, false);
    render::MoveSymbols(m_gl, shown, inputs);
    render::MoveLabels(m_labels, inputs);
    render::RecordPlaneLabels(m_gl, shown, m_labels, inputs);
    if (m_state.Display.ShowTrails)
        render::SetTrailEnds(m_gl, m_trailEnds, DrawnPlanes(m_trailsNetwork));
    if (m_state.Selected && m_state.Selected->IsPilot) {
        m_moving = true;
        RecordHighlight();
        m_moving = false;
    }
}

void SceneControl::PlacedFor(int scene) {
    m_symbolBand[size_t(scene)] = render::SymbolBand(m_state.View.ViewZ);
    m_detailedLabels[size_t(scene)] = m_state.View.ViewZ >= render::kDetailedLabelZoom;
    m_labelKey = CurrentLabelKey();
    m_labelViewState = m_state.View;
}

void SceneControl::BuildTrafficScene(int network) {
    DisplayState& display = m_state.Display;
    const network::NetworkData& data = m_state.AllTables()[network];
    if (data.ConnectedClients == 0)
        return;
    if (!display.SceneBuilt[network]) {
        if (!display.FriendsOnly && !m_quiet) {
            SetStatus(u"Setting up map..."_s);
            Redraw();
        }
        m_state.Selected.reset();
        const render::LabelView labels = CurrentLabelView();
        m_labels = render::BuildTrafficLists(m_gl, network, Inputs(&labels, network));
        PlacedFor(network);
        ScalesRecorded(network, true, true);
    }
    if (data.ConnectedClients > 0) {
        if (!display.FriendsOnly)
            display.StatusText = network::NetworkName(network) + u" data of "_s +
                                 network::StampTime(data.UpdateStamp) + u"Z displayed"_s;
        // The IVAO data file is not kept once it is drawn.
        if (network == 0)
            QFile::remove(QDir(m_state.Files.DownloadFolder()).filePath(u"whazzup.txt"_s));
    } else {
        display.StatusText = u"No data to display"_s;
    }
    StatusChanged();
    RecordNight(m_nightTime);
    FilterMarkChanged();
    // A rebuild for the filter is drawn by the filter's part, once, with its own status text.
    if (!m_quiet)
        Redraw();
    display.SceneBuilt[network] = true;
}

void SceneControl::BuildComparisonScene() {
    const network::ClientTables& tables = m_state.AllTables();
    const QString status = render::ComparisonStatusText(tables);
    if (tables[0].ConnectedClients > 0 && tables[1].ConnectedClients > 0 && !m_state.Display.SceneBuilt[2]) {
        if (!m_quiet) {
            SetStatus(u"Setting up map..."_s);
            Redraw();
        }
        m_state.Selected.reset();
        const render::LabelView labels = CurrentLabelView();
        m_labels = render::BuildComparisonLists(m_gl, Inputs(&labels, 2));
        PlacedFor(2);
        ScalesRecorded(2, true, true);
        m_state.Display.SceneBuilt[2] = true;
    }
    SetStatus(status);
    FilterMarkChanged();
}

void SceneControl::MarkStale(int network) {
    m_state.Display.SceneBuilt[size_t(network)] = false;
}

void SceneControl::MarkAllStale() {
    m_state.Display.SceneBuilt = {false, false, false};
}

void SceneControl::Refilter(bool pilotsOnly) {
    const int shown = m_state.Display.ShownNetwork;
    const std::optional<Selection> selected = m_state.Selected;
    const bool built = m_state.Display.SceneBuilt[size_t(shown)];
    MarkAllStale();
    if (pilotsOnly && built) {
        const render::LabelView labels = CurrentLabelView();
        m_labels = render::BuildPilotLists(m_gl, shown, Inputs(&labels, shown));
        PlacedFor(shown);
        ScalesRecorded(shown, true, false);
        m_state.Display.SceneBuilt[size_t(shown)] = true;
    } else {
        m_quiet = true;
        RebuildScene(shown);
        m_quiet = false;
    }
    if (selected && m_state.Shown().Shows(m_state.AllTables(), *selected))
        Select(*selected);
    else if (selected)
        DeleteHighlight();
    FilterMarkChanged();
}

void SceneControl::ShowNetwork(int network) {
    m_state.Display.ShownNetwork = network;
}

void SceneControl::RebuildScene(int network) {
    m_state.Display.SceneBuilt[network] = false;
    render::SetTrailEnds(m_gl, m_trailEnds, DrawnPlanes(m_trailsNetwork)); // none once motion stops
    if (network == 2)
        BuildComparisonScene();
    else
        BuildTrafficScene(network);
}

void SceneControl::ViewChanged() {
    geo::ClampView(m_state.View);
    const int shown = m_state.Display.ShownNetwork;
    const float zoom = m_state.View.ViewZ;
    const bool detailed = zoom >= render::kDetailedLabelZoom;
    if (m_state.Selected && render::SymbolBand(zoom) != m_highlightBand)
        RecordHighlight();
    if (!m_state.Display.SceneBuilt[shown])
        return;
    const bool sameBand =
        render::SymbolBand(zoom) == m_symbolBand[shown] && detailed == m_detailedLabels[shown];
    const bool newMask = render::SymbolMaskTexture(zoom, m_state.HeightPx) != m_symbolMask[shown];
    const bool newDetail = render::SectorDetail(zoom, m_state.HeightPx) != m_sectorDetail[shown];
    if (sameBand && !newMask && !newDetail)
        return;
    const render::LabelView labels = CurrentLabelView();
    const render::TrafficInputs inputs = Inputs(&labels, shown);
    if (newDetail)
        render::BuildSectorLists(m_gl, shown, inputs);
    if (sameBand) {
        // The symbols' edges stay a pixel wide as they grow or shrink on screen within the band.
        if (newMask)
            render::BuildSymbolList(m_gl, shown, inputs);
    } else {
        m_labels = render::BuildPlaneLists(m_gl, shown, inputs);
        PlacedFor(shown);
    }
    ScalesRecorded(shown, newMask || !sameBand, newDetail);
}

void SceneControl::ScalesRecorded(int scene, bool symbols, bool sectors) {
    if (symbols)
        m_symbolMask[size_t(scene)] = render::SymbolMaskTexture(m_state.View.ViewZ, m_state.HeightPx);
    if (sectors)
        m_sectorDetail[size_t(scene)] = render::SectorDetail(m_state.View.ViewZ, m_state.HeightPx);
}

void SceneControl::RebuildLabels() {
    const int shown = m_state.Display.ShownNetwork;
    const render::LabelView labels = CurrentLabelView();
    const auto grouped = m_crowds.Grouped;
    const render::TrafficInputs inputs = Inputs(&labels, shown);
    // The selection or a switch may have taken an aircraft out of its crowd, or put it back.
    if (m_crowds.Grouped != grouped) {
        m_labels = render::BuildPlaneLists(m_gl, shown, inputs);
        ScalesRecorded(shown, true, false);
    } else {
        m_labels = render::BuildLabelLists(m_gl, shown, inputs);
    }
    PlacedFor(shown);
}

void SceneControl::ViewSettled() {
    geo::ClampView(m_state.View);
    const geo::ViewState& v = m_state.View;
    const bool moved = v.ViewX != m_labelViewState.ViewX || v.ViewY != m_labelViewState.ViewY ||
                       v.ViewZ != m_labelViewState.ViewZ;
    // A resized window, too, shows new room and new places for labels.
    const bool changed = moved || !m_labelKey || !(*m_labelKey == CurrentLabelKey());
    if (m_state.Config.DeclutterLabels && changed &&
        m_state.Display.SceneBuilt[m_state.Display.ShownNetwork]) {
        RebuildLabels();
        m_host.Redraw();
    }
}

void SceneControl::Resize(int widthPx, int heightPx) {
    m_state.WidthPx = std::max(widthPx, 1);
    m_state.HeightPx = std::max(heightPx, 1);
    render::BuildFrame(m_gl, m_state.Colours, m_state.WidthPx, m_state.HeightPx, m_state.Display.StatusText);
    ClientCountChanged();
    MarksChanged();
    ViewChanged(); // the symbols are drawn from a mask made for the window's height
}

void SceneControl::SetStatus(const QString& text) {
    m_state.Display.StatusText = text;
    StatusChanged();
}

void SceneControl::StatusChanged() {
    render::BuildStatusLine(m_gl, m_state.Display.StatusText, m_state.WidthPx, m_state.HeightPx);
}

void SceneControl::MarksChanged() {
    std::array<bool, 2> marked{};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        const network::NetworkDownloadState& d = m_state.Downloads.Networks[n];
        marked[n] = d.DownloadReady || d.DownloadFailed;
    }
    render::BuildNetworkMarks(m_gl, m_state.Colours, m_state.WidthPx, m_state.HeightPx, marked);
}

void SceneControl::ClientCountChanged() {
    render::BuildClientCountPanel(m_gl, m_state.AllTables(), m_state.Colours, m_state.WidthPx,
                                  m_state.HeightPx);
    FilterMarkChanged();
}

void SceneControl::FilterMarkChanged() {
    if (m_state.Shown().Narrows())
        render::BuildFilterMark(m_gl, m_state.Colours, m_state.WidthPx, m_state.HeightPx, FilterMark());
    else
        render::DeleteFilterMark(m_gl);
}

void SceneControl::TextChanged() {
    ClientCountChanged();
    if (m_state.Display.SceneBuilt[m_state.Display.ShownNetwork])
        RebuildLabels();
    if (m_state.Selected)
        RecordHighlight();
}

void SceneControl::ThemeChanged() {
    render::SetBackground(m_gl, m_state.Colours);
    Resize(m_state.WidthPx, m_state.HeightPx);
    DisplayState& display = m_state.Display;
    const int shown = display.ShownNetwork;
    const bool built = display.SceneBuilt[size_t(shown)];
    display.SceneBuilt = {false, false, false};
    const std::optional<Selection> selected = m_state.Selected;
    const QString status = display.StatusText;
    if (built)
        RebuildScene(shown);
    m_state.Selected = selected;
    RecordHighlight();
    SetStatus(status);
}

void SceneControl::ClearTraffic(int network) {
    render::DeleteTrafficLists(m_gl, network);
    DeleteHighlight();
    m_state.Display.SceneBuilt[network] = false;
}

void SceneControl::Select(const network::ClientRef& client) {
    m_state.Selected = client;
    RecordHighlight();
}

void SceneControl::RecordHighlight() {
    if (!m_state.Selected) {
        render::DeleteHighlight(m_gl);
        return;
    }
    const Selection& s = *m_state.Selected;
    const network::ClientSummary client = network::Summarise(m_state.AllTables(), s);
    geo::LatLon at{client.Latitude, client.Longitude};
    // The ring goes round the aircraft where live motion draws it.
    const std::vector<geo::LatLon>* drawn = s.IsPilot ? DrawnPlanes(s.Network) : nullptr;
    if (drawn && size_t(s.Slot) < drawn->size())
        at = (*drawn)[size_t(s.Slot)];
    m_highlightBand = render::SymbolBand(m_state.View.ViewZ);
    std::optional<render::FlightPaths> paths;
    if (m_paths && s.IsPilot) {
        // A motion step moves the paths worked out for the data shown; anything else asks again.
        const QString& stamp = m_state.AllTables()[size_t(s.Network)].UpdateStamp;
        if (!m_moving || !m_pathsFor || !(*m_pathsFor == s) || m_pathsStamp != stamp)
            m_reportedPaths = m_paths(s);
        m_pathsFor = s;
        m_pathsStamp = stamp;
        paths = m_reportedPaths;
        // The track flown ends where the aircraft is drawn, not where it was reported, and the route
        // ahead starts there.
        if (drawn && !paths->Flown.empty() && !paths->Flown.back().empty())
            paths->Flown.back().back() = at;
        if (drawn && !paths->Ahead.empty())
            paths->Ahead.front() = at;
    }
    render::BuildHighlight(m_gl, m_state.Colours,
                           {at, client.Callsign, 1.8 * render::SymbolSize(m_state.View.ViewZ), s.Network,
                            paths ? &*paths : nullptr});
}

void SceneControl::RecordNight(const QDateTime& clock, bool force) {
    const int shown = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    const network::NetworkData& data = m_state.AllTables()[shown];
    QDateTime moment = clock;
    if (data.ConnectedClients > 0) {
        const QDateTime stamped = QDateTime::fromString(data.UpdateStamp, u"yyyyMMddHHmmss"_s);
        if (stamped.isValid())
            moment = QDateTime(stamped.date(), stamped.time(), Qt::UTC);
    }
    if (!force && m_nightTime.isValid() && std::abs(m_nightTime.secsTo(moment)) < 60)
        return;
    m_nightTime = moment;
    render::BuildNight(m_gl, conditions::SubsolarPoint(moment));
}

void SceneControl::RecordAllTrails(const render::AllTrails& trails) {
    m_trailsNetwork = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    m_trailEnds = trails.Ends;
    render::BuildAllTrails(m_gl, m_state.Colours, m_trailsNetwork, trails.Lines);
    render::SetTrailEnds(m_gl, m_trailEnds, DrawnPlanes(m_trailsNetwork));
}

void SceneControl::DeleteHighlight() {
    m_state.Selected.reset();
    render::DeleteHighlight(m_gl);
}

void SceneControl::MarkAirport(float latitude, float longitude, const QString& code) {
    m_state.Selected.reset();
    render::BuildAirportMark(m_gl, m_state.Colours, {latitude, longitude}, code);
}

void SceneControl::MarkPlan(geo::LatLon where, const QString& callsign, const render::FlightPaths& paths) {
    m_state.Selected.reset();
    render::BuildHighlight(m_gl, m_state.Colours,
                           {where, callsign, 1.8 * render::SymbolSize(m_state.View.ViewZ), 1, &paths});
}

void SceneControl::SetView(const geo::ViewState& view) {
    m_state.View = view;
}

QString SceneControl::AirportLabelAt(double x, double y) const {
    if (!m_state.Display.SceneBuilt[size_t(m_state.Display.ShownNetwork)])
        return {};
    render::LabelView view;
    view.View = m_state.View;
    view.WidthPx = m_state.WidthPx;
    view.HeightPx = m_state.HeightPx;
    return m_labels.AirportAt(view, x, y);
}

render::FrameInputs SceneControl::Frame() {
    geo::ClampView(m_state.View);
    m_land.Need(m_gl, m_state.Colours, m_state.View, m_state.HeightPx);
    const DisplayState& d = m_state.Display;
    const render::PanelMode panels = PanelModeOf(m_state.Panels);
    // A panel that opens hides the card of what the pointer rested on.
    const bool card = d.HoverCard && !render::AnyPanelOpen(panels);
    return render::FrameInputs{m_state.Config,
                               m_state.Colours,
                               m_state.View,
                               d.ShownNetwork,
                               panels,
                               d.ShowCountries,
                               d.ShowAbout,
                               d.FriendsOnly,
                               card,
                               d.ShowTrails,
                               m_state.WidthPx,
                               m_state.HeightPx,
                               m_state.Shown().Narrows(),
                               m_state.Measure.has_value()};
}

void SceneControl::CentreOn(float latitude, float longitude, const QString& name, float zoom) {
    m_state.View.ViewY = -latitude;
    m_state.View.ViewX = longitude;
    m_state.View.ViewZ = zoom;
    SetStatus(u"Centered on "_s + name);
    Redraw();
    ViewSettled();
}

void SceneControl::CentreIn(const render::PixelRect& area) {
    const double cx = m_state.WidthPx / 2.0, cy = m_state.HeightPx / 2.0;
    const double tx = area.X + area.Width / 2.0, ty = area.Y + area.Height / 2.0;
    // The point now that far on the other side of the centre goes to the centre.
    const auto across =
        geo::ScreenToLatLon(2.0 * cx - tx, 2.0 * cy - ty, m_state.WidthPx, m_state.HeightPx, m_state.View);
    if (!across)
        return;
    m_state.View.ViewX = across->Lon;
    m_state.View.ViewY = -across->Lat;
    Redraw();
    ViewSettled();
}

void SceneControl::Redraw() {
    ViewChanged();
    const int shown = m_state.Display.ShownNetwork;
    if (m_state.Display.SceneBuilt[shown] && m_labelKey && !(*m_labelKey == CurrentLabelKey()))
        RebuildLabels();
    m_host.Redraw();
}

} // namespace sky::view
