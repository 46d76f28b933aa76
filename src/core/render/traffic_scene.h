#pragma once

#include <array>
#include <functional>

#include <QString>

#include "network/client_records.h"

namespace sky {
class Friends;
class FirOutlines;
struct ColourTable;
} // namespace sky

namespace sky::render {

class GlApi;

// What the traffic lists are drawn from.
struct TrafficInputs {
    const network::ClientTables& Tables;
    const Friends& FriendList;
    bool FriendsOnly = false;
    const ColourTable& Colours;
    const FirOutlines& Outlines;
    bool ShowActualHeading = false; // turn aircraft by their course instead of their heading
    float ViewZ = 1.0f; // symbols keep their size on screen; labels add level and speed when close
};

// The zoom band the symbols were recorded for: a symbol list is rebuilt when the band changes.
int SymbolBand(float viewZ);
// Labels show the flight level and ground speed from this zoom on.
inline constexpr float kDetailedLabelZoom = 4.0f;

// True when a client with this member number is drawn: always, or only friends under FriendsOnly.
bool PassesFriendFilter(const TrafficInputs& in, const QString& vid);

// Records the nine traffic lists of one network (0 or 1) in their fixed order, deleting the
// highlight (list 42) between the inbound lines and the sector fills.
void BuildTrafficLists(GlApi& gl, int network, const TrafficInputs& in);
// Records the aircraft symbols and labels alone (after a zoom that changed their size or detail).
void BuildPlaneLists(GlApi& gl, int network, const TrafficInputs& in);

// Records lists 30 to 38: both networks' traffic in their own colours.
void BuildComparisonLists(GlApi& gl, const TrafficInputs& in);

// Records the client-count panel (list 56): pilots, controllers, observers and total of each network.
void BuildClientCountPanel(GlApi& gl, const network::ClientTables& tables, const ColourTable& colours,
                           int width, int height);

// The status text of the comparison: "Merged data of 1423Z/1424Z displayed", or "Missing VATSIM data.
// No comparison possible." when a network has no data.
QString ComparisonStatusText(const network::ClientTables& tables);

} // namespace sky::render
