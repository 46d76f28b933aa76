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

// Where everything of the panels is, for a client area of width by height pixels.
struct PanelLayout {
    PixelRect InfoBox;
    PixelRect CentreButton, ProfileButton, FriendButton;
    PixelRect ListPanel;
    std::vector<PixelRect> Tabs; // friends, controllers, pilots, observers
    std::vector<PixelRect> Rows;
    PixelRect PreviousPage, NextPage;
    static constexpr int kLineHeight = 13;
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
};

// One page of the list panel or the airport board: a title, column texts per row, the clients the rows
// stand for (their network gives a row its colour), and "Page 2/7".
struct TableContent {
    QString Title;
    QStringList Tabs;
    int ActiveTab = -1;
    std::vector<QStringList> Rows;
    std::vector<network::ClientRef> RowClients;
    QString PageText;
};

} // namespace sky::render
