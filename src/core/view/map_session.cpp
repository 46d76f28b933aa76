#include "view/map_session.h"

#include <cmath>

#include <QDir>
#include <QFile>

#include "geo/projection.h"
#include "render/frame.h"
#include "render/geography.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"
#include "render/traffic_scene.h"
#include "view/download_timers.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace lists = render::lists;

MapSession::MapSession(QString home, Settings settings, Friends friends, render::GlApi& gl, MapHost& host,
                       network::HttpClient& http)
    : m_home(std::move(home)), m_settings(std::move(settings)), m_friends(std::move(friends)), m_gl(gl),
      m_host(host), m_http(http), m_colours(LoadColourTheme(m_home, m_settings.ColourTheme)),
      m_tables(std::make_unique<network::ClientTables>()) {
    m_view = {m_settings.X[0], m_settings.Y[0], m_settings.Z[0]};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        m_downloads.Networks[n].StatusFileAddress = network::DefaultStatusFileAddress(n);
        (*m_tables)[n].SetLimits(m_settings.MaxPilots, m_settings.MaxControllers);
    }
}

QString MapSession::StartUp() {
    const QString data = QDir(m_home).filePath(u"data"_s);
    render::BuildFrame(m_gl, m_colours, m_width, m_height, m_display.StatusText);
    render::BuildTitleBox(m_gl, m_colours, m_width, m_height);
    MarksChanged();
    render::BuildClientCountPanel(m_gl, *m_tables, m_colours, m_width, m_height);
    SetStatus(u"Loading components..."_s);
    m_outlines = FirOutlines::Load(data);
    SetStatus(u"Loading aeronautical data..."_s);
    m_reference = ReferenceData::Load(data);
    SetStatus(u"Loading geographical data..."_s);
    Redraw();
    const render::GeographyResult geography =
        render::LoadGeography(m_gl, m_colours, data, m_settings.DisableCountries, [this] { Redraw(); });
    if (!geography.MissingFile.isEmpty())
        return geography.MissingFile;
    SetStatus(u"Ready"_s);
    m_display.ShowAbout = false;
    m_gl.DeleteList(lists::kTitleBox);
    Redraw();
    m_display.PanelMode = 0;
    m_downloads.DownloadIdle = true;
    return {};
}

network::DownloadContext MapSession::DownloadContext() {
    return network::DownloadContext{
        m_downloads,          *m_tables, m_reference, m_http, *this, QDir(m_home).filePath(u"data"_s),
        m_settings.TextForce, Now,       Random};
}

void MapSession::BtnDownload(int network) {
    if (!m_downloads.DownloadIdle)
        return;
    m_display.ShownNetwork = network;
    m_display.PanelMode = 0;
    const std::vector<int> networks = network == 2 ? std::vector<int>{0, 1} : std::vector<int>{network};
    bool attempted = false;
    QString failure;
    for (int n : networks) {
        network::DownloadContext context = DownloadContext();
        const network::DownloadOutcome outcome = network::DownloadNetwork(context, n);
        using network::DownloadOutcome;
        if (outcome != DownloadOutcome::Busy && outcome != DownloadOutcome::TooEarly)
            attempted = true;
        if (outcome == DownloadOutcome::Interpreted || outcome == DownloadOutcome::NoClients)
            m_display.SceneBuilt[n] = false;
        else if (outcome != DownloadOutcome::TooEarly && outcome != DownloadOutcome::Busy)
            failure = m_display.StatusText;
    }
    if (network == 2) {
        m_display.SceneBuilt[2] = false;
        BuildComparisonScene();
    } else {
        BuildTrafficScene(network);
    }
    // The old traffic is drawn again after a failed download; the failure stays in the status line.
    if (!failure.isEmpty())
        SetStatus(failure);
    render::BuildClientCountPanel(m_gl, *m_tables, m_colours, m_width, m_height);
    if (attempted)
        m_autoCountdown = std::int16_t(m_settings.DownloadMinutes * 60);
    if (m_settings.AutoDownload)
        m_host.EnableAutoDownload(true);
    Redraw();
}

void MapSession::BuildTrafficScene(int network) {
    const network::NetworkData& data = (*m_tables)[network];
    if (data.ConnectedClients == 0)
        return;
    if (!m_display.SceneBuilt[network]) {
        if (!m_display.FriendsOnly) {
            SetStatus(u"Setting up map..."_s);
            Redraw();
        }
        const render::TrafficInputs inputs{*m_tables,   m_friends,  m_display.FriendsOnly,
                                           m_colours,   m_outlines, m_settings.ShowActualHeading,
                                           m_view.ViewZ};
        render::BuildTrafficLists(m_gl, network, inputs);
        m_selection.reset();
        m_symbolBand[network] = render::SymbolBand(m_view.ViewZ);
        m_detailedLabels[network] = m_view.ViewZ >= render::kDetailedLabelZoom;
    }
    if (data.ConnectedClients > 0) {
        if (!m_display.FriendsOnly)
            m_display.StatusText = network::NetworkName(network) + u" data of "_s +
                                   data.UpdateStamp.mid(8, 4) + u"Z displayed"_s;
        // The IVAO data file is not kept once it is drawn.
        if (network == 0)
            QFile::remove(QDir(m_home).filePath(u"data/whazzup.txt"_s));
    } else {
        m_display.StatusText = u"No data to display"_s;
    }
    StatusChanged();
    Redraw();
    m_display.SceneBuilt[network] = true;
}

void MapSession::BuildComparisonScene() {
    const QString status = render::ComparisonStatusText(*m_tables);
    if ((*m_tables)[0].ConnectedClients > 0 && (*m_tables)[1].ConnectedClients > 0 &&
        !m_display.SceneBuilt[2]) {
        SetStatus(u"Setting up map..."_s);
        Redraw();
        const render::TrafficInputs inputs{*m_tables,   m_friends,  m_display.FriendsOnly,
                                           m_colours,   m_outlines, m_settings.ShowActualHeading,
                                           m_view.ViewZ};
        render::BuildComparisonLists(m_gl, inputs);
        m_selection.reset();
        m_symbolBand[2] = render::SymbolBand(m_view.ViewZ);
        m_detailedLabels[2] = m_view.ViewZ >= render::kDetailedLabelZoom;
        m_display.SceneBuilt[2] = true;
    }
    SetStatus(status);
}

void MapSession::Resize(int widthPx, int heightPx) {
    m_width = std::max(widthPx, 1);
    m_height = std::max(heightPx, 1);
    render::BuildFrame(m_gl, m_colours, m_width, m_height, m_display.StatusText);
    render::BuildClientCountPanel(m_gl, *m_tables, m_colours, m_width, m_height);
    MarksChanged();
    if (m_display.PanelMode != 8)
        m_display.PanelMode = 0;
}

void MapSession::ViewChanged() {
    geo::ClampView(m_view);
    const int shown = m_display.ShownNetwork;
    const bool detailed = m_view.ViewZ >= render::kDetailedLabelZoom;
    if (!m_display.SceneBuilt[shown])
        return;
    if (render::SymbolBand(m_view.ViewZ) == m_symbolBand[shown] && detailed == m_detailedLabels[shown])
        return;
    const render::TrafficInputs inputs{*m_tables,   m_friends,  m_display.FriendsOnly,
                                       m_colours,   m_outlines, m_settings.ShowActualHeading,
                                       m_view.ViewZ};
    render::BuildPlaneLists(m_gl, shown, inputs);
    m_symbolBand[shown] = render::SymbolBand(m_view.ViewZ);
    m_detailedLabels[shown] = detailed;
}

KeyContext MapSession::Keys() {
    return KeyContext{m_settings, m_display, m_view, m_friends, *m_tables, *this};
}

void MapSession::KeyDown(int keyCode, int modifiers) {
    KeyContext context = Keys();
    view::KeyDown(context, keyCode, modifiers);
}

void MapSession::KeyUp(int keyCode, int modifiers) {
    KeyContext context = Keys();
    view::KeyUp(context, keyCode, modifiers);
}

void MapSession::AutoDownloadTimerTick() {
    TimerContext context{m_autoCountdown,
                         m_display.ShownNetwork,
                         *m_tables,
                         m_downloads,
                         Now(),
                         [this](int n) { BtnDownload(n); },
                         [this] { MarksChanged(); }};
    view::AutoDownloadTick(context);
}

void MapSession::DownloadTimerTick() {
    TimerContext context{m_autoCountdown,
                         m_display.ShownNetwork,
                         *m_tables,
                         m_downloads,
                         Now(),
                         [this](int n) { BtnDownload(n); },
                         [this] {
                             MarksChanged();
                             Redraw();
                         }};
    view::DownloadTick(context);
}

void MapSession::Click(double x, double y) {
    if (!geo::ScreenToLatLon(x, y, m_width, m_height, m_view)) {
        ClearSelection();
        return;
    }
    const int shown = m_display.ShownNetwork;
    const std::vector<int> networks = shown == 2 ? std::vector<int>{0, 1} : std::vector<int>{shown};
    constexpr double kPickRadiusPx = 12.0;
    double best = kPickRadiusPx * kPickRadiusPx;
    std::optional<Selection> found;
    const auto consider = [&](int n, bool pilot, int slot, const QString& vid, float lat, float lon) {
        if (m_display.FriendsOnly && !m_friends.Contains(vid))
            return;
        const auto point = geo::LatLonToScreen(lat, lon, m_width, m_height, m_view);
        if (!point)
            return;
        const double d = (point->X - x) * (point->X - x) + (point->Y - y) * (point->Y - y);
        if (d <= best) {
            best = d;
            found = Selection{n, pilot, slot};
        }
    };
    for (int n : networks) {
        const network::NetworkData& data = (*m_tables)[n];
        if (m_settings.ShowATC) {
            for (int slot = 1; slot <= data.ControllerCount; ++slot) {
                const auto& c = data.Controllers[slot];
                if (c.FacilityType > 1)
                    consider(n, false, slot, c.VID, c.DisplayLatitude, c.DisplayLongitude);
            }
        }
        if (m_settings.ShowPlanes) {
            for (int slot = 1; slot <= data.PilotCount; ++slot) {
                const auto& p = data.Pilots[slot];
                consider(n, true, slot, p.VID, p.Latitude, p.Longitude);
            }
        }
    }
    if (!found) {
        ClearSelection();
        return;
    }
    m_selection = found;
    RecordHighlight();
    const network::NetworkData& data = (*m_tables)[found->Network];
    if (found->IsPilot) {
        const auto& p = data.Pilots[found->Slot];
        SetStatus(p.Callsign + u" - "_s + p.RealName);
    } else {
        const auto& c = data.Controllers[found->Slot];
        SetStatus(c.Callsign + u" - "_s + c.RealName);
    }
    Redraw();
}

void MapSession::RecordHighlight() {
    m_gl.DeleteList(lists::kHighlight);
    if (!m_selection)
        return;
    const network::NetworkData& data = (*m_tables)[m_selection->Network];
    float lat = 0.0f, lon = 0.0f;
    QString callsign;
    if (m_selection->IsPilot) {
        const auto& p = data.Pilots[m_selection->Slot];
        lat = p.Latitude;
        lon = p.Longitude;
        callsign = p.Callsign;
    } else {
        const auto& c = data.Controllers[m_selection->Slot];
        lat = c.DisplayLatitude;
        lon = c.DisplayLongitude;
        callsign = c.Callsign;
    }
    m_gl.NewList(lists::kHighlight);
    m_gl.Colour(m_colours.Red[kSlotHighlight], m_colours.Green[kSlotHighlight],
                m_colours.Blue[kSlotHighlight], 1.0f);
    m_gl.Begin(render::Primitive::Points);
    m_gl.Vertex(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
    m_gl.End();
    m_gl.RasterPos(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
    m_gl.BitmapMove(9, 8);
    render::PrintBoldText(m_gl, callsign);
    m_gl.EndList();
}

void MapSession::ClearSelection() {
    if (!m_selection)
        return;
    m_selection.reset();
    m_gl.DeleteList(lists::kHighlight);
    Redraw();
}

void MapSession::Drag(double fromX, double fromY, double toX, double toY) {
    const auto from = geo::ScreenToLatLon(fromX, fromY, m_width, m_height, m_view);
    const auto to = geo::ScreenToLatLon(toX, toY, m_width, m_height, m_view);
    if (!from || !to)
        return;
    // The point under the pointer follows it; across the date line the short way round.
    float dLon = from->Lon - to->Lon;
    if (dLon > 180.0f)
        dLon -= 360.0f;
    else if (dLon < -180.0f)
        dLon += 360.0f;
    m_view.ViewX += dLon;
    m_view.ViewY += to->Lat - from->Lat;
    ViewChanged();
    Redraw();
}

void MapSession::Wheel(int steps) {
    m_view.ViewZ *= float(std::pow(1.2, steps));
    ViewChanged();
    Redraw();
}

bool MapSession::CompanionEnter(const QString& input) {
    companion::CommandContext context{
        *m_tables, m_downloads, m_reference, m_display.ShownNetwork, *this, m_http, m_settings.WeatherServer,
        Now,       {}};
    return m_companion.Enter(input, context);
}

void MapSession::CentreOn(float latitude, float longitude, const QString& name) {
    m_view.ViewY = -latitude;
    m_view.ViewX = longitude;
    m_view.ViewZ = 16.0f;
    m_display.PanelMode = 0;
    SetStatus(u"Centered on "_s + name);
    Redraw();
}

void MapSession::MarkAirport(float latitude, float longitude, const QString& code) {
    m_selection.reset();
    m_gl.DeleteList(lists::kHighlight);
    m_gl.NewList(lists::kHighlight);
    m_gl.Colour(m_colours.Red[kSlotHighlight], m_colours.Green[kSlotHighlight],
                m_colours.Blue[kSlotHighlight], 1.0f);
    m_gl.Begin(render::Primitive::Points);
    m_gl.Vertex(geo::GlobeX(latitude, longitude), geo::GlobeY(latitude, longitude),
                geo::GlobeZ(latitude, longitude));
    m_gl.End();
    m_gl.RasterPos(geo::GlobeX(latitude, longitude), geo::GlobeY(latitude, longitude),
                   geo::GlobeZ(latitude, longitude));
    render::PrintText(m_gl, code);
    m_gl.EndList();
}

void MapSession::OpenProfile(int network, const QString& vid) {
    network::OpenProfile(m_downloads.Networks[network == 1 ? 1 : 0], vid,
                         [this](const QString& address) { m_host.OpenUrl(address); });
}

void MapSession::SetStatus(const QString& text) {
    m_display.StatusText = text;
    StatusChanged();
}

void MapSession::ShowCompanion() {
    m_host.ShowCompanion();
}

void MapSession::OpenListPanel() {
    m_host.OpenListPanel();
}

void MapSession::RebuildScene(int network) {
    m_display.SceneBuilt[network] = false;
    if (network == 2)
        BuildComparisonScene();
    else
        BuildTrafficScene(network);
}

void MapSession::DeleteHighlight() {
    m_selection.reset();
    m_gl.DeleteList(lists::kHighlight);
}

void MapSession::StatusChanged() {
    render::BuildStatusLine(m_gl, m_display.StatusText, m_width, m_height);
}

void MapSession::Redraw() {
    ViewChanged();
    m_host.Redraw();
}

void MapSession::ShowStatus(const QString& text) {
    SetStatus(text);
    m_host.Redraw();
}

void MapSession::ShowNetworkMessage(const QString& text) {
    m_host.ShowNetworkMessage(text);
}

void MapSession::ClearTraffic(int network) {
    for (int offset = 0; offset < lists::kTrafficListCount; ++offset)
        m_gl.DeleteList(lists::TrafficBase(network) + offset);
    m_gl.DeleteList(lists::kClientCount);
    m_gl.DeleteList(lists::kHighlight);
    m_selection.reset();
    m_display.SceneBuilt[network] = false;
}

void MapSession::MarksChanged() {
    std::array<bool, 2> marked{};
    for (int n = 0; n < network::kNetworkCount; ++n)
        marked[n] = m_downloads.Networks[n].DownloadReady || m_downloads.Networks[n].DownloadFailed;
    render::BuildNetworkMarks(m_gl, m_colours, m_width, m_height, marked);
}

} // namespace sky::view
