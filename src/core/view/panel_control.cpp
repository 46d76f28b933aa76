#include "view/panel_control.h"

#include "render/panel_drawing.h"
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
    p.ListOpen = false;
    p.BoardOpen = false;
}

void PanelControl::Ready() {
    CloseAll();
    m_state.Panels.Starting = false;
}

bool PanelControl::CloseInfoBox() {
    if (!m_state.Panels.InfoClient)
        return false;
    m_state.Panels.InfoClient.reset();
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
    Show();
}

void PanelControl::OpenBoard(const QString& airport) {
    PanelState& p = m_state.Panels;
    p.BoardOpen = true;
    p.ListOpen = false;
    p.InfoClient.reset();
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
    if (p.ListOpen)
        return ListPageContent(shown, data, p.Page, pageIndex, rowsPerPage, m_state.FriendList,
                               p.Sorts[size_t(p.Page)], p.Filter);
    return AirportBoardContent(shown, data, p.BoardAirport, m_state.Reference, pageIndex, rowsPerPage,
                               p.Sorts[kBoardSort], p.BoardWeather);
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
    if (p.InfoClient) {
        const ClientRef& c = *p.InfoClient;
        const network::NetworkData& data = m_state.AllTables()[c.Network];
        InfoBoxContent info = c.IsPilot
                                  ? PilotInfo(c.Network, data, c.Slot, m_state.Reference, m_state.FriendList)
                                  : ControllerInfo(c.Network, data, c.Slot, m_state.FriendList);
        if (c.IsPilot && m_actions.RoutePoints && !data.Pilots[size_t(c.Slot)].DestAirport.isEmpty())
            info.Lines.append(u"Route points found: "_s + QString::number(m_actions.RoutePoints(c)));
        if (!c.IsPilot && m_actions.IsWatched) {
            info.Watchable = true;
            info.Watched = m_actions.IsWatched(data.Controllers[size_t(c.Slot)].Callsign);
        }
        render::BuildInfoBox(m_gl, m_state.Colours, layout, w, h, info);
    }
}

void PanelControl::ToggleInfoClientFriend() {
    if (!m_state.Panels.InfoClient)
        return;
    const network::ClientSummary client = network::Summarise(m_state.AllTables(), *m_state.Panels.InfoClient);
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

void PanelControl::ClientClick(const PanelHit& hit) {
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
    case PanelHitKind::InfoLine:
        if (c.IsPilot) {
            const InfoBoxContent info =
                PilotInfo(c.Network, data, c.Slot, m_state.Reference, m_state.FriendList);
            if (hit.Index == info.DepartureLine)
                OpenBoard(info.DepartureAirport);
            else if (hit.Index == info.DestinationLine)
                OpenBoard(info.DestinationAirport);
        }
        break;
    default:
        break;
    }
}

bool PanelControl::Click(int x, int y) {
    const PanelLayout layout = LayoutPanels(m_state.WidthPx, m_state.HeightPx);
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
        }
        break;
    }
    case PanelHitKind::Go: {
        const TableContent table = Table(int(layout.Rows.size()), p.PageIndex);
        if (hit.Index < int(table.RowClients.size()) && table.RowClients[size_t(hit.Index)].Slot > 0 &&
            m_actions.Go)
            m_actions.Go(table.RowClients[size_t(hit.Index)]);
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
        p.Page = ListPage((int(p.Page) + (keyCode == keys::kDown ? 1 : 3)) % 4);
        p.PageIndex = 0;
        break;
    default:
        return false;
    }
    Show();
    return true;
}

} // namespace sky::view
