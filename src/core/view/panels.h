#pragma once

#include <array>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "filter/traffic_filter.h"
#include "network/client_records.h"
#include "render/panel_layout.h"

namespace sky {
class Friends;
class KeyedLines;
class ReferenceData;
} // namespace sky

namespace sky::view {

using network::ClientRef;

// The pages of the list panel, in the order the tabs show them.
enum class ListPage { Friends, Controllers, Pilots, Observers, Events };
inline constexpr int kListPages = 5;

// The order of a list's rows: by one column (again: reversed), or as in the tables.
struct SortOrder {
    int Column = -1;
    bool Descending = false;
};
inline constexpr int kBoardSort = kListPages; // the airport board's order, after the list's pages

// What the overlay panels show, and which are open.
struct PanelState {
    bool Starting = true; // the title box shows: no panel, and the camera keys rest
    std::optional<ClientRef> InfoClient;
    QString InfoPrefile; // or the box of VATSIM's prefiled flight of this callsign (empty: none)
    bool ListOpen = false;
    bool BoardOpen = false; // the airport board takes the list panel's place
    ListPage Page = ListPage::Pilots;
    int PageIndex = 0;
    QString BoardAirport;
    std::array<SortOrder, kListPages + 1>
        Sorts;            // each list page's order and the board's, kept while the program runs
    QString Filter;       // the search field's text: only rows that hold it show
    QString BoardWeather; // the board airport's METAR, when it could be fetched
};
// Which panels the frame draws, from what is open: every part asks this, none keeps its own copy.
render::PanelMode PanelModeOf(const PanelState& panels);

using render::InfoBoxContent;
using render::LayoutPanels;
using render::PanelLayout;
using render::PanelMode;
using render::PixelRect;
using render::TableContent;

enum class PanelHitKind {
    None,
    InfoBox,
    Centre,
    Profile,
    Friend,
    Watch,
    Chart, // the chart button of a pilot's info box or of the airport board
    Go,
    InfoLine,
    ListPanel,
    Tab,
    Row,
    Header,
    PreviousPage,
    NextPage
};
struct PanelHit {
    PanelHitKind Kind = PanelHitKind::None;
    int Index = 0; // the tab, row or info line
};
// A row of a list or board that stands for an entry of a list of our own (a prefile, an event) rather
// than a client: its slot is -1 - the entry's index, so it is never read as a table slot.
inline ClientRef ItemRow(int network, int index) {
    return {network, false, -1 - index};
}
inline int RowItem(const ClientRef& row) {
    return row.Slot < 0 ? -1 - row.Slot : -1;
}

// What a click at (x, y) hits among the open panels; the info box lies over the list.
PanelHit HitTestPanels(const PanelLayout& layout, const PanelState& panels, int x, int y);

// The info box of a pilot or a controller slot of a network's tables; names: the friends' chosen names.
InfoBoxContent PilotInfo(int network, const network::NetworkData& data, int slot,
                         const ReferenceData& reference, const Friends& friends,
                         const KeyedLines* names = nullptr);
InfoBoxContent ControllerInfo(int network, const network::NetworkData& data, int slot, const Friends& friends,
                              const KeyedLines* names = nullptr);

// The clients of a list page of the shown network that the map shows, in table order.
std::vector<ClientRef> ListClients(int network, const network::NetworkData& data, ListPage page,
                                   const Friends& friends, const filter::Visibility& shown = {});
// Its rows sorted as asked and only those that hold filter (case and accents ignored); names are the
// friends' chosen names, shown with their real ones. The friends page names each row's member. The
// events page gets its tabs here and its rows from EventsPage.
TableContent ListPageContent(int network, const network::NetworkData& data, ListPage page, int pageIndex,
                             int rowsPerPage, const Friends& friends, const SortOrder& sort = {},
                             const QString& filter = {}, const filter::Visibility& shown = {},
                             const KeyedLines* names = nullptr);
int PageCount(size_t clients, int rowsPerPage);
// Puts the page pageIndex (clamped to the pages there are) of rows into table, with its clients (and
// its members, when given) and its "Page 2/7".
void Paginate(TableContent& table, const std::vector<QStringList>& rows,
              const std::vector<ClientRef>& clients, int pageIndex, int rowsPerPage,
              const QStringList* members = nullptr);

// What a board shows beside the clients of the tables: rows under its stations (an event, bookings)
// and prefiled flights listed after the departures.
struct BoardExtras {
    std::vector<QStringList> Top;
    std::vector<QStringList> Filed;
    std::vector<ClientRef> FiledRows; // what each filed row stands for (ItemRow)
};

// An airport's board: its METAR when known, its stations with their frequencies, the extras' top rows,
// then the departures, the extras' filed flights and the arrivals within kBoardRadiusNm (callsign,
// other airport, status, and the ETA of an arrival or the distance of a departure), sorted as asked.
inline constexpr float kBoardRadiusNm = 100.0f;
TableContent AirportBoardContent(int network, const network::NetworkData& data, const QString& airport,
                                 const ReferenceData& reference, int pageIndex, int rowsPerPage,
                                 const SortOrder& sort = {}, const QString& weather = {},
                                 const BoardExtras& extras = {}, const filter::Visibility& shown = {});

// Sorts rows (and the clients beside them) by a column: numbers by their value, texts ignoring case
// with the numbers inside them by value (AAL198 before AAL1784); equal rows keep their order.
void SortRows(std::vector<QStringList>& rows, std::vector<ClientRef>& clients, const SortOrder& sort);

// Texts longer than width characters, broken at blanks into lines.
QStringList WrapText(const QString& text, int width);

// The ETA of a flight at its destination as "1423Z", from its distance to go and ground speed, counted
// from the data's time; "-" when it is not flying towards a known destination.
QString EstimatedArrival(const network::PilotRecord& pilot, const QString& updateStamp);

} // namespace sky::view
