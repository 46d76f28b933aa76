#include "view/scene_control.h"

#include <QDir>
#include <QFile>

#include "render/frame.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"
#include "render/traffic_scene.h"
#include "view/map_host.h"
#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace lists = render::lists;

namespace {

render::TrafficInputs Inputs(const MapState& s) {
    return render::TrafficInputs{s.AllTables(), s.FriendList, s.Display.FriendsOnly,
                                 s.Colours,     s.Outlines,   s.Config.ShowActualHeading,
                                 s.View.ViewZ};
}

// The highlight's colour, a point and a text beside it at the position.
void RecordMark(render::GlApi& gl, const ColourTable& colours, float lat, float lon, const QString& text,
                bool bold) {
    gl.NewList(lists::kHighlight);
    gl.Colour(colours.Red[kSlotHighlight], colours.Green[kSlotHighlight], colours.Blue[kSlotHighlight], 1.0f);
    gl.Begin(render::Primitive::Points);
    gl.Vertex(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
    gl.End();
    gl.RasterPos(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
    if (bold) {
        gl.BitmapMove(9, 8);
        render::PrintBoldText(gl, text);
    } else {
        render::PrintText(gl, text);
    }
    gl.EndList();
}

} // namespace

SceneControl::SceneControl(MapState& state, render::GlApi& gl, MapHost& host)
    : m_state(state), m_gl(gl), m_host(host) {}

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
        render::BuildTrafficLists(m_gl, network, Inputs(m_state));
        m_state.Selected.reset();
        m_symbolBand[network] = render::SymbolBand(m_state.View.ViewZ);
        m_detailedLabels[network] = m_state.View.ViewZ >= render::kDetailedLabelZoom;
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
        render::BuildComparisonLists(m_gl, Inputs(m_state));
        m_state.Selected.reset();
        m_symbolBand[2] = render::SymbolBand(m_state.View.ViewZ);
        m_detailedLabels[2] = m_state.View.ViewZ >= render::kDetailedLabelZoom;
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
    if (!m_state.Display.SceneBuilt[shown])
        return;
    if (render::SymbolBand(zoom) == m_symbolBand[shown] && detailed == m_detailedLabels[shown])
        return;
    render::BuildPlaneLists(m_gl, shown, Inputs(m_state));
    m_symbolBand[shown] = render::SymbolBand(zoom);
    m_detailedLabels[shown] = detailed;
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
    if (s.IsPilot) {
        const auto& p = data.Pilots[size_t(s.Slot)];
        RecordMark(m_gl, m_state.Colours, p.Latitude, p.Longitude, p.Callsign, true);
    } else {
        const auto& c = data.Controllers[size_t(s.Slot)];
        RecordMark(m_gl, m_state.Colours, c.DisplayLatitude, c.DisplayLongitude, c.Callsign, true);
    }
}

void SceneControl::DeleteHighlight() {
    m_state.Selected.reset();
    m_gl.DeleteList(lists::kHighlight);
}

void SceneControl::MarkAirport(float latitude, float longitude, const QString& code) {
    DeleteHighlight();
    RecordMark(m_gl, m_state.Colours, latitude, longitude, code, false);
}

void SceneControl::CentreOn(float latitude, float longitude, const QString& name) {
    m_state.View.ViewY = -latitude;
    m_state.View.ViewX = longitude;
    m_state.View.ViewZ = 16.0f;
    m_state.Display.PanelMode = 0;
    SetStatus(u"Centered on "_s + name);
    Redraw();
}

void SceneControl::Redraw() {
    ViewChanged();
    m_host.Redraw();
}

} // namespace sky::view
