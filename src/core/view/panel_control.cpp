#include "view/panel_control.h"

#include "coming/whats_on.h"
#include "geo/text_format.h"
#include "render/panel_drawing.h"
#include "view/coming_panels.h"
#include "view/keys.h"
#include "view/map_state.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

PanelControl::PanelControl(MapState& state, SceneControl& scene, render::GlApi& gl, Actions actions)
    : m_state(state), m_scene(scene), m_gl(gl), m_actions(std::move(actions)) {}

PanelMode PanelControl::Mode() const {
    return PanelModeOf(m_state.Panels);
}

void PanelControl::CloseAll() {
    PanelState& p = m_state.Panels;
    p.InfoClient.reset();
    p.InfoPrefile.clear();
    p.ListOpen = false;
    p.BoardOpen = false;
}

void PanelControl::Ready() {
    CloseAll();
    m_state.Panels.Starting = false;
}

bool PanelControl::CloseInfoBox() {
    if (!m_state.Panels.InfoClient && m_state.Panels.InfoPrefile.isEmpty())
        return false;
    m_state.Panels.InfoClient.reset();
    m_state.Panels.InfoPrefile.clear();
    return true;
}

void PanelControl::Show() {
    m_state.Panels.Starting = false;
    Rebuild();
    m_scene.Redraw();
}

void PanelControl::OpenList() {
    PanelState& p = m_state.Panels;
    p.ListOpen = true;
    p.BoardOpen = false;
    p.Page = ListPage::Pilots;
    p.PageIndex = 0;
    Show();
}

void PanelControl::OpenInfoBox(const ClientRef& client) {
    m_state.Panels.InfoClient = client;
    m_state.Panels.InfoPrefile.clear();
    Show();
}

void PanelControl::OpenPrefileBox(const QString& callsign) {
    m_state.Panels.InfoClient.reset();
    m_state.Panels.InfoPrefile = callsign;
    Show(); // which draws its route too
}

void PanelControl::OpenBoardOfLine(const InfoBoxContent& info, int line) {
    if (line == info.DepartureLine)
        OpenBoard(info.DepartureAirport);
    else if (line == info.DestinationLine)
        OpenBoard(info.DestinationAirport);
}

void PanelControl::OpenBoard(const QString& airport) {
    PanelState& p = m_state.Panels;
    p.BoardOpen = true;
    p.ListOpen = false;
    p.InfoClient.reset();
    p.InfoPrefile.clear();
    p.BoardAirport = airport;
    p.PageIndex = 0;
    p.BoardWeather = m_actions.Weather ? m_actions.Weather(airport) : QString();
    Show();
}

void PanelControl::SetFilter(const QString& text) {
    PanelState& p = m_state.Panels;
    if (p.Filter == text)
        return;
    p.Filter = text;
    if (!p.ListOpen)
        return;
    p.PageIndex = 0;
    Show();
}

TableContent PanelControl::Table(int rowsPerPage, int pageIndex) const {
    const int shown = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    const network::NetworkData& data = m_state.AllTables()[shown];
    const PanelState& p = m_state.Panels;
    const QDateTime moment = m_actions.Moment ? m_actions.Moment() : QDateTime::currentDateTimeUtc();
    if (p.ListOpen) {
        TableContent table =
            ListPageContent(shown, data, p.Page, pageIndex, rowsPerPage, m_state.FriendList,
                            p.Sorts[size_t(p.Page)], p.Filter, m_state.Shown(), &m_state.FriendNames);
        if (p.Page == ListPage::Events)
            FillEventsPage(table, m_state.Coming, moment, QDateTime::currentDateTimeUtc(), pageIndex,
                           rowsPerPage, p.Sorts[size_t(p.Page)], p.Filter);
        return table;
    }
    // What is coming is VATSIM's, on its own board.
    const BoardExtras extras =
        shown == 1 ? ComingAtAirport(m_state.Coming, data, p.BoardAirport, moment) : BoardExtras();
    TableContent board =
        AirportBoardContent(shown, data, p.BoardAirport, m_state.Reference, pageIndex, rowsPerPage,
                            p.Sorts[kBoardSort], p.BoardWeather, extras, m_state.Shown());
    board.ChartButton = bool(m_actions.ChartAirport);
    return board;
}

TableContent PanelControl::ShownTable() {
    const PanelState& p = m_state.Panels;
    if (!p.ListOpen && !p.BoardOpen)
        return {};
    return Table(int(LayoutPanels(m_state.WidthPx, m_state.HeightPx).Rows.size()), p.PageIndex);
}

void PanelControl::Rebuild() {
    const int w = m_state.WidthPx, h = m_state.HeightPx;
    const PanelLayout layout = LayoutPanels(w, h);
    const PanelState& p = m_state.Panels;
    if (p.ListOpen || p.BoardOpen)
        render::BuildTablePanel(m_gl, m_state.Colours, layout, w, h,
                                Table(int(layout.Rows.size()), p.PageIndex));
    if (const network::Prefile* prefile = coming::FindPrefile(m_state.Coming.Prefiles, p.InfoPrefile);
        prefile && !p.InfoPrefile.isEmpty()) {
        InfoBoxContent info = PrefileInfo(*prefile, m_state.Reference, m_state.FriendList);
        if (m_actions.MarkPlan)
            info.Lines.append(u"Route points found: "_s +
                              QString::number(m_actions.MarkPlan(prefile->Callsign)));
        render::BuildInfoBox(m_gl, m_state.Colours, layout, w, h, info);
    }
    if (p.InfoClient) {
        const ClientRef& c = *p.InfoClient;
        const network::NetworkData& data = m_state.AllTables()[c.Network];
        const KeyedLines* names = &m_state.FriendNames;
        InfoBoxContent info =
            c.IsPilot ? PilotInfo(c.Network, data, c.Slot, m_state.Reference, m_state.FriendList, names)
                      : ControllerInfo(c.Network, data, c.Slot, m_state.FriendList, names);
        if (c.IsPilot && m_actions.RoutePoints && !data.Pilots[size_t(c.Slot)].DestAirport.isEmpty())
            info.Lines.append(u"Route points found: "_s + QString::number(m_actions.RoutePoints(c)));
        info.Chartable = c.IsPilot && m_actions.ChartFlight;
        if (LivePilotBox()) {
            const network::PilotRecord& pilot = data.Pilots[size_t(c.Slot)];
            info.Lines.append(geo::ReportedText(pilot.Latitude, pilot.Longitude,
                                                pilot.ReportStamp(data.UpdateStamp), m_actions.LiveNow()));
            info.Followable = true;
            info.Followed = m_actions.Following();
        }
        if (!c.IsPilot && m_actions.IsWatched) {
            info.Watchable = true;
            info.Watched = m_actions.IsWatched(data.Controllers[size_t(c.Slot)].Callsign);
        }
        if (!c.IsPilot && c.Network == 1)
            info.Lines.append(
                BookingLines(m_state.Coming.Bookings, data.Controllers[size_t(c.Slot)].Callsign,
                             m_actions.Moment ? m_actions.Moment() : QDateTime::currentDateTimeUtc()));
        render::BuildInfoBox(m_gl, m_state.Colours, layout, w, h, info);
    }
}

bool PanelControl::LivePilotBox() const {
    return m_state.Config.Live && !m_state.Display.Replaying && m_state.Panels.InfoClient &&
           m_state.Panels.InfoClient->IsPilot && m_actions.LiveNow && m_actions.Following &&
           m_actions.ToggleFollow;
}

void PanelControl::AgeInfoBox() {
    if (!LivePilotBox())
        return;
    Rebuild();
    m_scene.Redraw();
}

void PanelControl::ToggleInfoClientFriend() {
    const network::Prefile* prefile =
        coming::FindPrefile(m_state.Coming.Prefiles, m_state.Panels.InfoPrefile);
    if (!m_state.Panels.InfoClient && !prefile)
        return;
    const network::ClientSummary client =
        prefile ? network::ClientSummary{prefile->Callsign, prefile->Member, prefile->Name}
                : network::Summarise(m_state.AllTables(), *m_state.Panels.InfoClient);
    const FriendToggle toggle = ToggleFriend(m_state.FriendList, client.RealName, client.VID);
    if (m_actions.FriendsChanged)
        m_actions.FriendsChanged();
    // Only friends shown: the scene changes at once; the toggle's text stays in the status line.
    if (m_state.Display.FriendsOnly)
        m_scene.RebuildScene(m_state.Display.ShownNetwork);
    m_scene.SetStatus(toggle.StatusText);
    // The friends page and the info box show the change.
    Rebuild();
    m_scene.Redraw();
}

void PanelControl::PrefileClick(const PanelHit& hit) {
    const network::Prefile* prefile =
        coming::FindPrefile(m_state.Coming.Prefiles, m_state.Panels.InfoPrefile);
    if (!prefile)
        return;
    const network::Prefile f = *prefile;
    switch (hit.Kind) {
    case PanelHitKind::Centre:
        if (const Airport* departure = m_state.Reference.FindAirport(f.Departure)) {
            CloseAll();
            m_scene.CentreOn(departure->Latitude, departure->Longitude, f.Callsign);
        }
        break;
    case PanelHitKind::Profile:
        m_actions.OpenProfile(1, f.Member);
        break;
    case PanelHitKind::Friend:
        ToggleInfoClientFriend();
        break;
    case PanelHitKind::InfoLine:
        OpenBoardOfLine(PrefileInfo(f, m_state.Reference, m_state.FriendList), hit.Index);
        break;
    default:
        break;
    }
}

void PanelControl::ItemClick(const ClientRef& row, bool go) {
    const int item = RowItem(row);
    const PanelState& p = m_state.Panels;
    if (p.BoardOpen && item < int(m_state.Coming.Prefiles.size())) {
        OpenPrefileBox(m_state.Coming.Prefiles[size_t(item)].Callsign);
        return;
    }
    if (!p.ListOpen || item >= int(m_state.Coming.Events.size()))
        return;
    const coming::Event& event = m_state.Coming.Events[size_t(item)];
    // Go: the map goes to the event's first airport; the row: its page, when it has a web address.
    const Airport* first =
        event.Airports.isEmpty() ? nullptr : m_state.Reference.FindAirport(event.Airports[0]);
    if (go && first) {
        CloseAll();
        m_scene.CentreOn(first->Latitude, first->Longitude, event.Airports[0], 8.0f);
    } else if (!go && coming::IsWebAddress(event.Link) && m_actions.OpenWeb) {
        m_actions.OpenWeb(event.Link.trimmed());
        m_scene.SetStatus(u"Opened "_s + event.Link.trimmed());
        m_scene.Redraw();
    } else if (!go) {
        m_scene.SetStatus(event.Name + u": no web page"_s);
        m_scene.Redraw();
    }
}

void PanelControl::ClientClick(const PanelHit& hit) {
    if (!m_state.Panels.InfoClient) {
        PrefileClick(hit);
        return;
    }
    const ClientRef c = *m_state.Panels.InfoClient;
    const network::NetworkData& data = m_state.AllTables()[c.Network];
    switch (hit.Kind) {
    case PanelHitKind::Centre: {
        const network::ClientSummary client = network::Summarise(m_state.AllTables(), c);
        CloseAll();
        m_scene.CentreOn(client.Latitude, client.Longitude, client.Callsign);
        break;
    }
    case PanelHitKind::Profile:
        m_actions.OpenProfile(c.Network, network::Summarise(m_state.AllTables(), c).VID);
        break;
    case PanelHitKind::Friend:
        ToggleInfoClientFriend();
        break;
    case PanelHitKind::Watch:
        if (!c.IsPilot && m_actions.ToggleWatch) {
            m_actions.ToggleWatch(data.Controllers[size_t(c.Slot)].Callsign);
            Rebuild();
            m_scene.Redraw();
        }
        break;
    case PanelHitKind::Chart:
        if (c.IsPilot && m_actions.ChartFlight)
            m_actions.ChartFlight(c);
        break;
    case PanelHitKind::InfoLine:
        if (c.IsPilot)
            OpenBoardOfLine(PilotInfo(c.Network, data, c.Slot, m_state.Reference, m_state.FriendList),
                            hit.Index);
        break;
    default:
        break;
    }
}

bool PanelControl::Click(int x, int y) {
    const PanelLayout layout = LayoutPanels(m_state.WidthPx, m_state.HeightPx);
    if (LivePilotBox() && layout.FollowButton.Contains(x, y)) {
        m_actions.ToggleFollow();
        Rebuild();
        return true;
    }
    const PanelHit hit = HitTestPanels(layout, m_state.Panels, x, y);
    PanelState& p = m_state.Panels;
    switch (hit.Kind) {
    case PanelHitKind::None:
        return false;
    case PanelHitKind::Centre:
    case PanelHitKind::Profile:
    case PanelHitKind::Friend:
    case PanelHitKind::Watch:
    case PanelHitKind::InfoLine:
        ClientClick(hit);
        break;
    case PanelHitKind::Chart: // the info box's, or else the board's
        if (p.InfoClient && layout.InfoBox.Contains(x, y))
            ClientClick(hit);
        else if (m_actions.ChartAirport)
            m_actions.ChartAirport(p.BoardAirport);
        break;
    case PanelHitKind::Tab:
        p.Page = ListPage(hit.Index);
        p.PageIndex = 0;
        Show();
        break;
    case PanelHitKind::Header: { // sorts by the column; the same again turns the order round
        SortOrder& sort = p.Sorts[p.ListOpen ? size_t(p.Page) : kBoardSort];
        sort.Descending = sort.Column == hit.Index && !sort.Descending;
        sort.Column = hit.Index;
        p.PageIndex = 0;
        Show();
        break;
    }
    case PanelHitKind::PreviousPage:
        Key(keys::kLeft);
        break;
    case PanelHitKind::NextPage:
        Key(keys::kRight);
        break;
    case PanelHitKind::Row: {
        const TableContent table = Table(int(layout.Rows.size()), p.PageIndex);
        if (hit.Index < int(table.RowClients.size()) && table.RowClients[size_t(hit.Index)].Slot > 0) {
            const ClientRef row = table.RowClients[size_t(hit.Index)];
            m_scene.Select(row);
            OpenInfoBox(row);
        } else if (hit.Index < int(table.RowClients.size()) && table.RowClients[size_t(hit.Index)].Slot < 0) {
            ItemClick(table.RowClients[size_t(hit.Index)], false);
        }
        break;
    }
    case PanelHitKind::Go: {
        const TableContent table = Table(int(layout.Rows.size()), p.PageIndex);
        if (hit.Index < int(table.RowClients.size()) && table.RowClients[size_t(hit.Index)].Slot > 0 &&
            m_actions.Go)
            m_actions.Go(table.RowClients[size_t(hit.Index)]);
        else if (hit.Index < int(table.RowClients.size()) && table.RowClients[size_t(hit.Index)].Slot < 0)
            ItemClick(table.RowClients[size_t(hit.Index)], true);
        break;
    }
    default:
        break;
    }
    return true;
}

bool PanelControl::Key(int keyCode) {
    PanelState& p = m_state.Panels;
    if (!p.ListOpen && !p.BoardOpen)
        return false;
    const int rows = int(LayoutPanels(m_state.WidthPx, m_state.HeightPx).Rows.size());
    // Every row on one page tells how many rows there are in all.
    const int pages = PageCount(Table(1 << 20, 0).RowClients.size(), rows);
    switch (keyCode) {
    case keys::kLeft:
    case keys::kPageUp:
        p.PageIndex = std::max(0, p.PageIndex - 1);
        break;
    case keys::kRight:
    case keys::kPageDown:
        p.PageIndex = std::min(pages - 1, p.PageIndex + 1);
        break;
    case keys::kUp:
    case keys::kDown:
        if (!p.ListOpen)
            return false;
        p.Page = ListPage((int(p.Page) + (keyCode == keys::kDown ? 1 : kListPages - 1)) % kListPages);
        p.PageIndex = 0;
        break;
    default:
        return false;
    }
    Show();
    return true;
}

} // namespace sky::view
