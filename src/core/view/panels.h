#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "network/client_records.h"
#include "render/panel_layout.h"

namespace sky {
class Friends;
class ReferenceData;
} // namespace sky

namespace sky::view {

using network::ClientRef;

// The pages of the list panel, in the order the tabs show them.
enum class ListPage { Friends, Controllers, Pilots, Observers };

// What the overlay panels show. PanelMode follows from it: 1 a pilot's box, 2 a controller's box,
// 3 the client list, 5 the airport board, 4 and 6 a list or board with a pilot's or controller's box
// over it.
struct PanelState {
    std::optional<ClientRef> InfoClient;
    bool ListOpen = false;
    bool BoardOpen = false; // the airport board takes the list panel's place
    ListPage Page = ListPage::Pilots;
    int PageIndex = 0;
    QString BoardAirport;
};
unsigned char PanelModeOf(const PanelState& panels);

using render::InfoBoxContent;
using render::LayoutPanels;
using render::PanelLayout;
using render::PixelRect;
using render::TableContent;

enum class PanelHitKind {
    None,
    InfoBox,
    Centre,
    Profile,
    Friend,
    InfoLine,
    ListPanel,
    Tab,
    Row,
    PreviousPage,
    NextPage
};
struct PanelHit {
    PanelHitKind Kind = PanelHitKind::None;
    int Index = 0; // the tab, row or info line
};
// What a click at (x, y) hits among the open panels; the info box lies over the list.
PanelHit HitTestPanels(const PanelLayout& layout, const PanelState& panels, int x, int y);

// The info box of a pilot or a controller slot of a network's tables.
InfoBoxContent PilotInfo(int network, const network::NetworkData& data, int slot,
                         const ReferenceData& reference, const Friends& friends);
InfoBoxContent ControllerInfo(int network, const network::NetworkData& data, int slot,
                              const Friends& friends);

// The clients of a list page of the shown network, in table order.
std::vector<ClientRef> ListClients(int network, const network::NetworkData& data, ListPage page,
                                   const Friends& friends);
TableContent ListPageContent(int network, const network::NetworkData& data, ListPage page, int pageIndex,
                             int rowsPerPage, const Friends& friends);
int PageCount(size_t clients, int rowsPerPage);

// Arrivals and departures of an airport within kBoardRadiusNm: callsign, other airport, status, and
// the ETA of an arrival or the distance of a departure.
inline constexpr float kBoardRadiusNm = 100.0f;
TableContent AirportBoardContent(int network, const network::NetworkData& data, const QString& airport,
                                 const ReferenceData& reference, int pageIndex, int rowsPerPage);

// Texts longer than width characters, broken at blanks into lines.
QStringList WrapText(const QString& text, int width);

// The ETA of a flight at its destination as "1423Z", from its distance to go and ground speed, counted
// from the data's time; "-" when it is not flying towards a known destination.
QString EstimatedArrival(const network::PilotRecord& pilot, const QString& updateStamp);

} // namespace sky::view
