#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"
#include "coming/coming_state.h"
#include "common/keyed_lines.h"
#include "filter/traffic_filter.h"
#include "geo/geodesy.h"
#include "network/client_records.h"
#include "network/download.h"
#include "refdata/fir_outlines.h"
#include "refdata/navaids.h"
#include "refdata/reference_data.h"
#include "render/sector_layer.h"
#include "view/display_state.h"
#include "view/filter_control.h"
#include "view/measure_control.h"
#include "view/panels.h"

namespace sky::view {

// The selected client of the map: a pilot or a controller slot of the shown network.
using Selection = network::ClientRef;

// Everything the map shows and the user changed, in plain structs. The map session owns one and hands
// it by reference to its parts. Each field has one writer, named above it; every other part reads it
// or asks the writer.
struct MapState {
    MapState(Folders files, Settings settings, Friends friends)
        : Files(std::move(files)), Home(Files.Home), Config(std::move(settings)),
          FriendList(std::move(friends)), Tables(std::make_unique<network::ClientTables>()) {}

    // Fixed for the run: the home folder (written to) and the shipped files (read).
    Folders Files;
    const QString Home; // Files.Home
    // MapSession: its keys (KeyContext) change the switches and stored views, the Preferences the rest.
    Settings Config;
    // PanelControl: the info box's friend button.
    Friends FriendList;
    // MapSession::NameFriend: the names the user gave friends, by member number.
    KeyedLines FriendNames;
    // FilterControl: the filter bar's filter and the saved filters.
    FilterState Filters;
    // MeasureControl: the measuring line, while one shows.
    std::optional<MeasureLine> Measure;
    // MapSession: the theme at start and from the Preferences.
    ColourTable Colours;
    // MapSession::StartUp: the reference data, read once.
    ReferenceData Reference;
    Navaids NavaidList;
    FirOutlines Outlines;
    // SceneControl: the outlines' drawn shapes, worked out by the traffic builders on first use.
    render::SectorShapes Shapes;
    // The whazzup interpreter, run by DownloadControl (downloads) and HistoryControl (replay).
    std::unique_ptr<network::ClientTables> Tables;
    // DownloadControl, through the download pipeline; DownloadIdle only through network::BusyGuard.
    network::DownloadState Downloads;
    // ComingControl: VATSIM's prefiles (from the downloads), bookings and events (from their services).
    coming::ComingState Coming;
    // Each field names its writer (display_state.h).
    DisplayState Display;
    // SceneControl, the camera: SetView, CentreOn, and the clamp before each frame.
    geo::ViewState View;
    // SceneControl::Select and ClearSelection, which keep the highlight with it.
    std::optional<Selection> Selected;
    // PanelControl: which panels are open and what they show.
    PanelState Panels;
    // MotionControl: where live motion draws each network's pilots (by slot), for the data of this stamp.
    std::array<std::vector<geo::LatLon>, network::kNetworkCount> DrawnPlanes;
    std::array<QString, network::kNetworkCount> DrawnStamp;
    // SceneControl::Resize: the client area, in pixels.
    int WidthPx = 800;
    int HeightPx = 600;

    // Who the map shows: what passes the filter, and friends alone under FriendsOnly (F2).
    filter::Visibility Shown() const { return {&Filters.Filter, Display.FriendsOnly, &FriendList}; }

    network::ClientTables& AllTables() { return *Tables; }
    const network::ClientTables& AllTables() const { return *Tables; }
};

} // namespace sky::view
