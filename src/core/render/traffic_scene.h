#pragma once

#include <array>
#include <optional>
#include <vector>

#include <QString>

#include "filter/traffic_filter.h"
#include "geo/geodesy.h"
#include "network/client_records.h"
#include "render/panel_layout.h"
#include "render/traffic_labels.h"

namespace sky {
class Friends;
class FirOutlines;
class KeyedLines;
struct ColourTable;
} // namespace sky

namespace sky::render {

class GlApi;
class SectorShapes;
struct CrowdPlan;

// What the labels are placed for when they are decluttered: the view and the window they are seen
// in, the areas they must keep off, and what is drawn. Without it every label goes beside its symbol.
struct LabelView {
    geo::ViewState View;
    int WidthPx = 800;
    int HeightPx = 600;
    std::vector<PixelRect> Reserved; // title strip, count panel, status band, open panels
    std::optional<network::ClientRef> Selected;
    bool Planes = true, PlaneLabels = true; // the switches of the layers and their labels
    bool Atc = true, AtcLabels = true;
    bool Airports = true, AirportLabels = true;
};

// What the traffic lists are drawn from.
struct TrafficInputs {
    const network::ClientTables& Tables;
    const Friends& FriendList;
    bool FriendsOnly = false;
    const ColourTable& Colours;
    const FirOutlines& Outlines;
    bool ShowActualHeading = false; // turn aircraft by their course instead of their heading
    float ViewZ = 1.0f; // symbols keep their size on screen; labels add level and speed when close
    const LabelView* Labels = nullptr; // decluttered labels; null: every label beside its symbol
    SectorShapes* Shapes = nullptr;    // the filled outlines of sectors, kept between builds
    const CrowdPlan* Crowds = nullptr; // parked aircraft drawn as one mark per airport; null: none
    const filter::TrafficFilter* Filter = nullptr; // the filter bar's; null: none
    const KeyedLines* FriendNames = nullptr;       // names the user gave friends, by member number
    bool NamesInstead = false;                     // a friend's name in place of the callsign, not beside
    int WindowHeightPx = 600;                      // symbols' masks are made for their size in pixels
    // Live motion: where each network's pilots are drawn, one per slot (index 0 unused); null or short:
    // where they were reported.
    std::array<const std::vector<geo::LatLon>*, 2> Drawn{};
};

// Where the pilot of network's slot is drawn: moved by live motion, else where it was reported.
geo::LatLon DrawnAt(const TrafficInputs& in, int network, int slot);

// The zoom band the symbols were recorded for: a symbol list is rebuilt when the band changes.
int SymbolBand(float viewZ);
// Labels show the flight level and ground speed from this zoom on.
inline constexpr float kDetailedLabelZoom = 4.0f;
// Aircraft on the ground are labelled from this zoom on, where those of one airport come apart.
inline constexpr float kGroundLabelZoom = 25.0f;
// An airport's stations' shared label names the runways in use under it from this zoom on.
inline constexpr float kRunwayLabelZoom = 8.0f;

// An aircraft's level as its label shows it: "FL350" from 10,000 ft, else "4000ft".
QString LevelText(float altitudeFt);

// Who the inputs draw: what passes the filter, and only friends under FriendsOnly. Every builder asks
// these for every client.
filter::Visibility VisibilityOf(const TrafficInputs& in);
bool Shows(const TrafficInputs& in, const network::PilotRecord& pilot);
bool Shows(const TrafficInputs& in, const network::ControllerRecord& controller);
// A client's label: its callsign, with the name the user gave a friend beside it or in its place.
QString LabelName(const TrafficInputs& in, const QString& callsign, const QString& vid);

// Records the traffic lists of one network (0 or 1) in their fixed order, deleting the
// highlight (list 42) between the inbound lines and the sector fills. These builders return the labels
// as they placed them.
LabelPlan BuildTrafficLists(GlApi& gl, int network, const TrafficInputs& in);
// Records the aircraft symbols and the three label lists alone (after a zoom that changed their size
// or detail); network 2 is the comparison.
LabelPlan BuildPlaneLists(GlApi& gl, int network, const TrafficInputs& in);
// Records what shows pilots, after a change of the filter that leaves the stations as they were: the
// aircraft symbols and crowds, the three label lists (placed together), the airports and the inbound
// lines. The stations' sectors and markers stay as recorded.
LabelPlan BuildPilotLists(GlApi& gl, int network, const TrafficInputs& in);
// Records the aircraft symbols alone (after a zoom that changed their size on screen by a few percent).
void BuildSymbolList(GlApi& gl, int network, const TrafficInputs& in);
// Moves the aircraft symbols of the symbol list to where the inputs draw them now (live motion): their
// vertex arrays are set again, no list is recorded.
void MoveSymbols(GlApi& gl, int network, const TrafficInputs& in);
// Records the sector fills and outlines alone (after a zoom that changed their level of detail).
void BuildSectorLists(GlApi& gl, int network, const TrafficInputs& in);
// Records the aircraft, airport and controller labels of network (0, 1 or 2 for the comparison),
// decluttered together when the inputs carry a label view.
LabelPlan BuildLabelLists(GlApi& gl, int network, const TrafficInputs& in);

// Deletes the traffic lists of network (0, 1 or 2) and the client-count panel, before new data.
void DeleteTrafficLists(GlApi& gl, int network);
// Records lists 30 to 38: both networks' traffic in their own colours.
LabelPlan BuildComparisonLists(GlApi& gl, const TrafficInputs& in);

// Records the client-count panel (list 56): pilots, controllers, observers and total of each network,
// in columns as wide as their texts, right-aligned under the title strip.
void BuildClientCountPanel(GlApi& gl, const network::ClientTables& tables, const ColourTable& colours,
                           int width, int height);
// Where the client-count panel lies, pixels from the top left, for the same inputs.
PixelRect ClientCountPanelBox(const GlApi& gl, const network::ClientTables& tables, int width);

// The status text of the comparison: "Merged data of 1423Z/1424Z displayed", or "Missing VATSIM data.
// No comparison possible." when a network has no data.
QString ComparisonStatusText(const network::ClientTables& tables);

} // namespace sky::render
