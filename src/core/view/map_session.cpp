#include "view/map_session.h"

#include <cmath>

#include <QDir>
#include <QFile>

#include "geo/projection.h"
#include "render/frame.h"
#include "render/geography.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/panel_drawing.h"
#include "render/text.h"
#include "render/traffic_scene.h"
#include "view/download_timers.h"
#include "view/keys.h"

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
    // With the list or the board open, the arrows and page keys turn its pages.
    if (m_display.PanelMode != 0 && m_display.PanelMode != 8 && PanelKey(keyCode))
        return;
    KeyContext context = Keys();
    view::KeyUp(context, keyCode, modifiers);
}

TimerContext MapSession::Timers() {
    return TimerContext{m_autoCountdown,
                        m_display.ShownNetwork,
                        *m_tables,
                        m_downloads,
                        Now(),
                        [this](int n) { BtnDownload(n); },
                        [this] {
                            MarksChanged();
                            Redraw();
                        }};
}

void MapSession::AutoDownloadTimerTick() {
    TimerContext context = Timers();
    view::AutoDownloadTick(context);
}

void MapSession::DownloadTimerTick() {
    TimerContext context = Timers();
    view::DownloadTick(context);
}

void MapSession::Click(double x, double y) {
    if (m_display.PanelMode != 0 && m_display.PanelMode != 8 && PanelClick(int(x), int(y)))
        return;
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
        // Beside every client, an airport in use opens its traffic board.
        const QString airport = AirportAt(x, y);
        if (!airport.isEmpty()) {
            OpenBoard(airport);
            return;
        }
        ClearSelection();
        return;
    }
    m_selection = found;
    RecordHighlight();
    OpenInfoBox({found->Network, found->IsPilot, found->Slot});
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
    SyncPanels();
    const bool boxOpen = m_panels.InfoClient.has_value();
    if (!m_selection && !boxOpen)
        return;
    m_selection.reset();
    m_gl.DeleteList(lists::kHighlight);
    if (boxOpen) {
        m_panels.InfoClient.reset();
        m_display.PanelMode = PanelModeOf(m_panels);
    }
    Redraw();
}

QString MapSession::AirportAt(double x, double y) const {
    const int shown = m_display.ShownNetwork == 1 ? 1 : 0;
    if (!m_settings.ShowAirports || m_display.ShownNetwork == 2)
        return {};
    const network::NetworkData& data = (*m_tables)[shown];
    double best = 8.0 * 8.0;
    QString found;
    const auto consider = [&](const QString& code, float lat, float lon) {
        if (code.isEmpty() || (lat == 0.0f && lon == 0.0f))
            return;
        const auto point = geo::LatLonToScreen(lat, lon, m_width, m_height, m_view);
        if (!point)
            return;
        const double d = (point->X - x) * (point->X - x) + (point->Y - y) * (point->Y - y);
        if (d <= best) {
            best = d;
            found = code;
        }
    };
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const auto& p = data.Pilots[size_t(slot)];
        consider(p.DepAirport, p.DepLatitude, p.DepLongitude);
        consider(p.DestAirport, p.DestLatitude, p.DestLongitude);
    }
    return found;
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
    SyncPanels();
    m_panels.ListOpen = true;
    m_panels.BoardOpen = false;
    m_panels.Page = ListPage::Pilots;
    m_panels.PageIndex = 0;
    ShowPanels();
}

void MapSession::SyncPanels() {
    // Escape, a resize, a download or centring close the panels by setting the mode to 0.
    if (m_display.PanelMode == 0 || m_display.PanelMode == 8) {
        m_panels.InfoClient.reset();
        m_panels.ListOpen = false;
        m_panels.BoardOpen = false;
    }
}

void MapSession::ShowPanels() {
    RebuildPanels();
    m_display.PanelMode = PanelModeOf(m_panels);
    Redraw();
}

void MapSession::OpenInfoBox(const ClientRef& client) {
    SyncPanels();
    m_panels.InfoClient = client;
    ShowPanels();
}

void MapSession::OpenBoard(const QString& airport) {
    SyncPanels();
    m_panels.BoardOpen = true;
    m_panels.ListOpen = false;
    m_panels.InfoClient.reset();
    m_panels.BoardAirport = airport;
    m_panels.PageIndex = 0;
    ShowPanels();
}

TableContent MapSession::PanelTable(int rowsPerPage, int pageIndex) const {
    const int shown = m_display.ShownNetwork == 1 ? 1 : 0;
    if (m_panels.ListOpen)
        return ListPageContent(shown, (*m_tables)[shown], m_panels.Page, pageIndex, rowsPerPage, m_friends);
    return AirportBoardContent(shown, (*m_tables)[shown], m_panels.BoardAirport, m_reference, pageIndex,
                               rowsPerPage);
}

void MapSession::RebuildPanels() {
    const PanelLayout layout = LayoutPanels(m_width, m_height);
    if (m_panels.ListOpen || m_panels.BoardOpen)
        render::BuildTablePanel(m_gl, m_colours, layout, m_width, m_height,
                                PanelTable(int(layout.Rows.size()), m_panels.PageIndex));
    if (m_panels.InfoClient) {
        const ClientRef& c = *m_panels.InfoClient;
        const network::NetworkData& data = (*m_tables)[c.Network];
        const InfoBoxContent info = c.IsPilot ? PilotInfo(c.Network, data, c.Slot, m_reference, m_friends)
                                              : ControllerInfo(c.Network, data, c.Slot, m_friends);
        render::BuildInfoBox(m_gl, m_colours, layout, m_width, m_height, info);
    }
}

void MapSession::ToggleInfoClientFriend() {
    if (!m_panels.InfoClient)
        return;
    const ClientRef c = *m_panels.InfoClient;
    const network::NetworkData& data = (*m_tables)[c.Network];
    const QString name =
        c.IsPilot ? data.Pilots[size_t(c.Slot)].RealName : data.Controllers[size_t(c.Slot)].RealName;
    const QString vid = c.IsPilot ? data.Pilots[size_t(c.Slot)].VID : data.Controllers[size_t(c.Slot)].VID;
    const FriendToggle toggle = ToggleFriend(m_friends, name, vid);
    // Only friends shown: the scene changes at once; the toggle's text stays in the status line.
    if (m_display.FriendsOnly)
        RebuildScene(m_display.ShownNetwork);
    SetStatus(toggle.StatusText);
    // The friends page and the info box show the change.
    RebuildPanels();
    Redraw();
}

bool MapSession::PanelClick(int x, int y) {
    SyncPanels();
    const PanelLayout layout = LayoutPanels(m_width, m_height);
    const PanelHit hit = HitTestPanels(layout, m_panels, x, y);
    if (hit.Kind == PanelHitKind::None)
        return false;
    const auto client = [&] {
        const ClientRef& c = *m_panels.InfoClient;
        return std::pair<const network::NetworkData&, ClientRef>((*m_tables)[c.Network], c);
    };
    switch (hit.Kind) {
    case PanelHitKind::Centre: {
        const auto [data, c] = client();
        if (c.IsPilot) {
            const auto& p = data.Pilots[size_t(c.Slot)];
            CentreOn(p.Latitude, p.Longitude, p.Callsign);
        } else {
            const auto& r = data.Controllers[size_t(c.Slot)];
            CentreOn(r.DisplayLatitude, r.DisplayLongitude, r.Callsign);
        }
        break;
    }
    case PanelHitKind::Profile: {
        const auto [data, c] = client();
        OpenProfile(c.Network,
                    c.IsPilot ? data.Pilots[size_t(c.Slot)].VID : data.Controllers[size_t(c.Slot)].VID);
        break;
    }
    case PanelHitKind::Friend:
        ToggleInfoClientFriend();
        break;
    case PanelHitKind::InfoLine: {
        const auto [data, c] = client();
        if (c.IsPilot) {
            const InfoBoxContent info = PilotInfo(c.Network, data, c.Slot, m_reference, m_friends);
            if (hit.Index == info.DepartureLine)
                OpenBoard(info.DepartureAirport);
            else if (hit.Index == info.DestinationLine)
                OpenBoard(info.DestinationAirport);
        }
        break;
    }
    case PanelHitKind::Tab:
        m_panels.Page = ListPage(hit.Index);
        m_panels.PageIndex = 0;
        ShowPanels();
        break;
    case PanelHitKind::PreviousPage:
        PanelKey(keys::kLeft);
        break;
    case PanelHitKind::NextPage:
        PanelKey(keys::kRight);
        break;
    case PanelHitKind::Row: {
        const TableContent table = PanelTable(int(layout.Rows.size()), m_panels.PageIndex);
        if (hit.Index < int(table.RowClients.size())) {
            const ClientRef row = table.RowClients[size_t(hit.Index)];
            m_selection = Selection{row.Network, row.IsPilot, row.Slot};
            RecordHighlight();
            OpenInfoBox(row);
        }
        break;
    }
    default:
        break;
    }
    return true;
}

bool MapSession::PanelKey(int keyCode) {
    SyncPanels();
    if (!m_panels.ListOpen && !m_panels.BoardOpen)
        return false;
    const int rows = int(LayoutPanels(m_width, m_height).Rows.size());
    // Every row on one page tells how many rows there are in all.
    const int pages = PageCount(PanelTable(1 << 20, 0).RowClients.size(), rows);
    switch (keyCode) {
    case keys::kLeft:
    case keys::kPageUp:
        m_panels.PageIndex = std::max(0, m_panels.PageIndex - 1);
        break;
    case keys::kRight:
    case keys::kPageDown:
        m_panels.PageIndex = std::min(pages - 1, m_panels.PageIndex + 1);
        break;
    case keys::kUp:
    case keys::kDown:
        if (!m_panels.ListOpen)
            return false;
        m_panels.Page = ListPage((int(m_panels.Page) + (keyCode == keys::kDown ? 1 : 3)) % 4);
        m_panels.PageIndex = 0;
        break;
    default:
        return false;
    }
    ShowPanels();
    return true;
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
