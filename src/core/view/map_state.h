#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"
#include "geo/geodesy.h"
#include "network/client_records.h"
#include "network/download.h"
#include "refdata/fir_outlines.h"
#include "refdata/navaids.h"
#include "refdata/reference_data.h"
#include "render/sector_layer.h"
#include "view/display_state.h"
#include "view/panels.h"

namespace sky::view {

// The selected client of the map: a pilot or a controller slot of the shown network.
using Selection = network::ClientRef;

// Everything the map shows and the user changed, in plain structs. The map session owns one and hands
// it by reference to the parts that read or change it; each field has the writers named beside it.
struct MapState {
    MapState(Folders files, Settings settings, Friends friends)
        : Files(std::move(files)), Home(Files.Home), Config(std::move(settings)),
          FriendList(std::move(friends)), Tables(std::make_unique<network::ClientTables>()) {}

    Folders Files;       // the home folder (written) and the shipped files (read)
    const QString Home;  // Files.Home
    Settings Config;     // loaded at start; the keys and menus change the switches and views
    Friends FriendList;  // the friend buttons
    ColourTable Colours; // the theme
    ReferenceData Reference;
    Navaids NavaidList;
    FirOutlines Outlines;
    render::SectorShapes Shapes;                   // the outlines' drawn shapes, worked out on first use
    std::unique_ptr<network::ClientTables> Tables; // the interpreter, through the downloads
    network::DownloadState Downloads;
    DisplayState Display;
    geo::ViewState View;
    std::optional<Selection> Selected; // the pointer and the panels
    PanelState Panels;
    int WidthPx = 800; // the client area, in pixels
    int HeightPx = 600;

    network::ClientTables& AllTables() { return *Tables; }
    const network::ClientTables& AllTables() const { return *Tables; }
};

} // namespace sky::view
