#include "view/scene_control.h"

#include <cmath>

#include <QDir>
#include <QFile>

#include "geo/projection.h"
#include "render/aircraft_layer.h"
#include "render/frame.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/panel_layout.h"
#include "render/text.h"
#include "view/map_host.h"
#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace lists = render::lists;

namespace {

// The frame's title strip, side bands and status band, which labels keep off.
constexpr int kStripPx = 20;
constexpr int kSideBandPx = 6;

// The highlight's callsign stands this far up and right of its client.
constexpr int kHighlightTextDx = 9;
constexpr int kHighlightTextDy = 9;

void HighlightColour(render::GlApi& gl, const ColourTable& c) {
    gl.Colour(c.Red[kSlotHighlight], c.Green[kSlotHighlight], c.Blue[kSlotHighlight], 1.0f);
}

// A ring of radius (in the globe's units) round a point, flat on the globe there.
void Ring(render::GlApi& gl, float lat, float lon, double radius) {
    const double phi = lat * geo::DegToRad, lambda = lon * geo::DegToRad;
    const geo::Vec3 centre = geo::OnGlobe(lat, lon);
    const geo::Vec3 east{std::cos(lambda), 0.0, -std::sin(lambda)};
    const geo::Vec3 north{-std::sin(phi) * std::sin(lambda), std::cos(phi),
                          -std::sin(phi) * std::cos(lambda)};
    gl.Begin(render::Primitive::LineLoop);
    constexpr int kSegments = 24;
    for (int i = 0; i < kSegments; ++i) {
        const double a = 2.0 * 3.141592653589793 * i / kSegments;
        const geo::Vec3 p = centre + east * (radius * std::cos(a)) + north * (radius * std::sin(a));
        gl.Vertex(float(p.X), float(p.Y), float(p.Z));
    }
    gl.End();
}

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
    const render::PanelLayout layout = render::LayoutPanels(w, h);
    switch (s.Display.PanelMode) {
    case 1:
    case 2:
        v.Reserved.push_back(layout.InfoBox);
        break;
    case 3:
    case 5:
        v.Reserved.push_back(layout.ListPanel);
        break;
    case 4:
    case 6:
        v.Reserved.push_back(layout.ListPanel);
        v.Reserved.push_back(layout.InfoBox);
        break;
    default:
        break;
    }
    // The highlight's callsign keeps its place above the selected client's own label.
    if (s.Selected) {
        const network::NetworkData& data = s.AllTables()[s.Selected->Network];
        const bool pilot = s.Selected->IsPilot;
        const auto& p = data.Pilots[size_t(pilot ? s.Selected->Slot : 0)];
        const auto& r = data.Controllers[size_t(pilot ? 0 : s.Selected->Slot)];
        const auto point = geo::LatLonToScreen(pilot ? p.Latitude : r.DisplayLatitude,
                                               pilot ? p.Longitude : r.DisplayLongitude, w, h, v.View);
        if (point)
            v.Reserved.push_back({int(point->X) + kHighlightTextDx, int(point->Y) - kHighlightTextDy - 11,
                                  render::TextWidth(m_gl, pilot ? p.Callsign : r.Callsign, true), 14});
    }
    return v;
}

SceneControl::LabelKey SceneControl::CurrentLabelKey() const {
    const MapState& s = m_state;
    const Settings& c = s.Config;
    return LabelKey{s.Display.ShownNetwork,
                    c.DeclutterLabels,
                    {c.ShowPlanes, c.ShowPlaneLabels, c.ShowATC, c.ShowATCLabels, c.ShowAirports,
                     c.ShowAirportLabels, s.Display.FriendsOnly},
                    s.Selected,
                    s.Display.PanelMode,
                    s.WidthPx,
                    s.HeightPx};
}

render::TrafficInputs SceneControl::Inputs(const render::LabelView* labels) {
    MapState& s = m_state;
    return render::TrafficInputs{s.AllTables(),
                                 s.FriendList,
                                 s.Display.FriendsOnly,
                                 s.Colours,
                                 s.Outlines,
                                 s.Config.ShowActualHeading,
                                 s.View.ViewZ,
                                 s.Config.DeclutterLabels ? labels : nullptr,
                                 &s.Shapes};
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
        if (!display.FriendsOnly) {
            SetStatus(u"Setting up map..."_s);
            Redraw();
        }
        m_state.Selected.reset();
        const render::LabelView labels = CurrentLabelView();
        render::BuildTrafficLists(m_gl, network, Inputs(&labels));
        PlacedFor(network);
    }
    if (data.ConnectedClients > 0) {
        if (!display.FriendsOnly)
            display.StatusText = network::NetworkName(network) + u" data of "_s + data.UpdateStamp.mid(8, 4) +
                                 u"Z displayed"_s;
        // The IVAO data file is not kept once it is drawn.
        if (network == 0)
            QFile::remove(QDir(m_state.Home).filePath(u"data/whazzup.txt"_s));
    } else {
        display.StatusText = u"No data to display"_s;
    }
    StatusChanged();
    Redraw();
    display.SceneBuilt[network] = true;
}

void SceneControl::BuildComparisonScene() {
    const network::ClientTables& tables = m_state.AllTables();
    const QString status = render::ComparisonStatusText(tables);
    if (tables[0].ConnectedClients > 0 && tables[1].ConnectedClients > 0 && !m_state.Display.SceneBuilt[2]) {
        SetStatus(u"Setting up map..."_s);
        Redraw();
        m_state.Selected.reset();
        const render::LabelView labels = CurrentLabelView();
        render::BuildComparisonLists(m_gl, Inputs(&labels));
        PlacedFor(2);
        m_state.Display.SceneBuilt[2] = true;
    }
    SetStatus(status);
}

void SceneControl::RebuildScene(int network) {
    m_state.Display.SceneBuilt[network] = false;
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
    if (render::SymbolBand(zoom) == m_symbolBand[shown] && detailed == m_detailedLabels[shown])
        return;
    const render::LabelView labels = CurrentLabelView();
    render::BuildPlaneLists(m_gl, shown, Inputs(&labels));
    PlacedFor(shown);
}

void SceneControl::RebuildLabels() {
    const int shown = m_state.Display.ShownNetwork;
    const render::LabelView labels = CurrentLabelView();
    render::BuildLabelLists(m_gl, shown, Inputs(&labels));
    PlacedFor(shown);
}

void SceneControl::ViewSettled() {
    geo::ClampView(m_state.View);
    const geo::ViewState& v = m_state.View;
    const bool moved = v.ViewX != m_labelViewState.ViewX || v.ViewY != m_labelViewState.ViewY ||
                       v.ViewZ != m_labelViewState.ViewZ;
    if (m_state.Config.DeclutterLabels && moved && m_state.Display.SceneBuilt[m_state.Display.ShownNetwork]) {
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
    if (m_state.Display.PanelMode != 8)
        m_state.Display.PanelMode = 0;
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
}

void SceneControl::TextChanged() {
    ClientCountChanged();
    if (m_state.Display.SceneBuilt[m_state.Display.ShownNetwork])
        RebuildLabels();
    if (m_state.Selected)
        RecordHighlight();
}

void SceneControl::ThemeChanged() {
    const ColourTable& c = m_state.Colours;
    m_gl.ClearColour(c.Red[kSlotScreenBackground], c.Green[kSlotScreenBackground],
                     c.Blue[kSlotScreenBackground], 0.0f);
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
    for (int offset = 0; offset < lists::kTrafficListCount; ++offset)
        m_gl.DeleteList(lists::TrafficBase(network) + offset);
    m_gl.DeleteList(lists::kClientCount);
    DeleteHighlight();
    m_state.Display.SceneBuilt[network] = false;
}

void SceneControl::RecordHighlight() {
    m_gl.DeleteList(lists::kHighlight);
    if (!m_state.Selected)
        return;
    const Selection& s = *m_state.Selected;
    const network::NetworkData& data = m_state.AllTables()[s.Network];
    float lat = 0, lon = 0;
    QString callsign;
    if (s.IsPilot) {
        const auto& p = data.Pilots[size_t(s.Slot)];
        lat = p.Latitude;
        lon = p.Longitude;
        callsign = p.Callsign;
    } else {
        const auto& c = data.Controllers[size_t(s.Slot)];
        lat = c.DisplayLatitude;
        lon = c.DisplayLongitude;
        callsign = c.Callsign;
    }
    m_highlightBand = render::SymbolBand(m_state.View.ViewZ);
    m_gl.NewList(lists::kHighlight);
    if (m_paths && s.IsPilot)
        RecordPaths(m_paths(s), s.Network);
    HighlightColour(m_gl, m_state.Colours);
    // A ring well outside the symbol, so the selection stands out at any zoom.
    Ring(m_gl, lat, lon, 1.8 * render::SymbolSize(m_state.View.ViewZ));
    m_gl.RasterPos(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
    m_gl.BitmapMove(kHighlightTextDx, kHighlightTextDy);
    render::PrintBoldText(m_gl, callsign);
    m_gl.EndList();
}

void SceneControl::RecordPaths(const FlightPaths& paths, int network) {
    const ColourTable& c = m_state.Colours;
    m_gl.Colour(c.Red[network], c.Green[network], c.Blue[network], 0.9f);
    const auto line = [this](const std::vector<geo::LatLon>& points) {
        std::vector<geo::Vec3> arc;
        for (size_t i = 0; i < points.size(); ++i) {
            const geo::Vec3 p = geo::OnGlobe(points[i].Lat, points[i].Lon);
            if (arc.empty())
                arc.push_back(p);
            else
                geo::AppendGreatCircle(arc, arc.back(), p, 2.0);
        }
        m_gl.Begin(render::Primitive::LineStrip);
        for (const geo::Vec3& v : arc)
            m_gl.Vertex(float(v.X), float(v.Y), float(v.Z));
        m_gl.End();
    };
    for (const auto& piece : paths.Flown)
        line(piece);
    if (paths.Ahead.size() > 1) {
        m_gl.Enable(render::Capability::LineStipple); // dashed: where it is going, not where it went
        line(paths.Ahead);
        m_gl.Disable(render::Capability::LineStipple);
    }
}

void SceneControl::RecordAllTrails(const std::vector<std::vector<geo::LatLon>>& tracks) {
    m_gl.DeleteList(lists::kAllTrails);
    m_gl.NewList(lists::kAllTrails);
    const int n = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    const ColourTable& c = m_state.Colours;
    m_gl.Colour(c.Red[n], c.Green[n], c.Blue[n], 0.6f);
    m_gl.Begin(render::Primitive::Lines);
    for (const auto& track : tracks) {
        for (size_t i = 1; i < track.size(); ++i) {
            for (const geo::LatLon& p : {track[i - 1], track[i]})
                m_gl.Vertex(geo::GlobeX(p.Lat, p.Lon), geo::GlobeY(p.Lat, p.Lon), geo::GlobeZ(p.Lat, p.Lon));
        }
    }
    m_gl.End();
    m_gl.EndList();
}

void SceneControl::DeleteHighlight() {
    m_state.Selected.reset();
    m_gl.DeleteList(lists::kHighlight);
}

void SceneControl::MarkAirport(float latitude, float longitude, const QString& code) {
    DeleteHighlight();
    m_gl.NewList(lists::kHighlight);
    HighlightColour(m_gl, m_state.Colours);
    m_gl.Begin(render::Primitive::Points);
    m_gl.Vertex(geo::GlobeX(latitude, longitude), geo::GlobeY(latitude, longitude),
                geo::GlobeZ(latitude, longitude));
    m_gl.End();
    m_gl.RasterPos(geo::GlobeX(latitude, longitude), geo::GlobeY(latitude, longitude),
                   geo::GlobeZ(latitude, longitude));
    render::PrintText(m_gl, code);
    m_gl.EndList();
}

void SceneControl::CentreOn(float latitude, float longitude, const QString& name, float zoom) {
    m_state.View.ViewY = -latitude;
    m_state.View.ViewX = longitude;
    m_state.View.ViewZ = zoom;
    m_state.Display.PanelMode = 0;
    SetStatus(u"Centered on "_s + name);
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
