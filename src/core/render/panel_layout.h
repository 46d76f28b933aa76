#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "network/client_records.h"

namespace sky::render {

// A rectangle in pixels of the client area, origin at the top left.
struct PixelRect {
    int X = 0, Y = 0, Width = 0, Height = 0;
    bool Contains(int x, int y) const { return x >= X && x < X + Width && y >= Y && y < Y + Height; }
    bool Intersects(const PixelRect& o) const {
        return X < o.X + o.Width && o.X < X + Width && Y < o.Y + o.Height && o.Y < Y + Height;
    }
};

// Which overlay panels the frame draws over the map: the list or the airport board (list 41), a
// client's info box (list 40), both (the box over the table), or none. Starting is "none" while the
// title box shows, when the keys that move the map rest as well.
enum class PanelMode : unsigned char { Starting, None, InfoBox, Table, TableAndInfoBox };
inline bool ShowsTable(PanelMode m) {
    return m == PanelMode::Table || m == PanelMode::TableAndInfoBox;
}
inline bool ShowsInfoBox(PanelMode m) {
    return m == PanelMode::InfoBox || m == PanelMode::TableAndInfoBox;
}
inline bool AnyPanelOpen(PanelMode m) {
    return ShowsTable(m) || ShowsInfoBox(m);
}

// Where everything of the panels is, for a client area of width by height pixels.
struct PanelLayout {
    PixelRect InfoBox;
    PixelRect CentreButton, ProfileButton, FriendButton;
    PixelRect WatchButton;  // in a station's title bar
    PixelRect ChartButton;  // in a pilot's title bar, where a station's Watch is
    PixelRect FollowButton; // above the friend button, while the networks are followed live
    PixelRect ListPanel;
    std::vector<PixelRect> Tabs;    // friends, controllers, pilots, observers, events
    std::vector<PixelRect> Headers; // the column headers above the rows
    std::vector<PixelRect> Rows;
    PixelRect PreviousPage, NextPage;
    PixelRect BoardChartButton; // in the airport board's title bar
    static constexpr int kLineHeight = 13;
    static constexpr int kColumns[4] = {0, 86, 250, 360}; // where the columns of a row begin
    // The Go button at the right end of a row of the friends page.
    static PixelRect GoButton(const PixelRect& row) {
        return {row.X + row.Width - 30, row.Y, 28, row.Height};
    }
};
PanelLayout LayoutPanels(int width, int height);

// The text of a pilot's or controller's info box: a title and lines; for a pilot the lines of its
// departure and destination airports are named, so a click on them opens that airport's board.
struct InfoBoxContent {
    int NetworkSlot = 0; // the colour of the title
    QString Title;
    QStringList Lines;
    int DepartureLine = -1;
    int DestinationLine = -1;
    QString DepartureAirport, DestinationAirport;
    bool IsFriend = false;
    bool Watchable = false; // a station: its title bar has a watch button
    bool Watched = false;
    bool Chartable = false;  // a pilot whose profile can be charted: its title bar has a chart button
    bool Followable = false; // a pilot followed live: the box has a follow button over its lines' end
    bool Followed = false;
};

// One page of the list panel or the airport board: a title, column texts per row, the clients the rows
// stand for (their network gives a row its colour), and "Page 2/7".
struct TableContent {
    QString Title;
    QStringList Tabs;
    int ActiveTab = -1;
    QStringList Headers; // the columns' names
    int SortColumn = -1; // the column the rows are sorted by, or -1 in table order
    bool Descending = false;
    std::vector<QStringList> Rows; // a row of one cell spans the whole width
    std::vector<network::ClientRef>
        RowClients;         // slot 0: a row that stands for no client; below 0: an entry of another list
    QStringList RowMembers; // the friends page: each row's member number
    QString PageText;
    bool GoButtons = false;   // each client's (or entry's) row ends in a Go button
    bool ChartButton = false; // an airport board whose movements can be charted
};

} // namespace sky::render
