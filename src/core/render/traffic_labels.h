#pragma once

#include <vector>

#include <QStringList>

#include "render/label_placement.h"

namespace sky::render {

class GlApi;
struct TrafficInputs;
struct LabelView;

// One label of the traffic scene: where, what, and which of the three label lists it goes into.
struct TrafficLabel {
    enum class Kind { Plane, Airport, Station };
    Kind What = Kind::Plane;
    int Network = 0;
    float Lat = 0, Lon = 0;
    QStringList Lines;
    bool Bold = false;
    int Priority = 0;
    int SymbolRadiusPx = 8;
    QString Airport; // the airport an airport's or its stations' label names
    int Slot = 0;    // an aircraft's pilot slot, whose label follows it as it moves
};

// The labels of a scene and where each goes, decided once for the three lists.
struct LabelPlan {
    std::vector<int> Networks;
    bool Comparison = false;
    std::vector<TrafficLabel> Labels;
    std::vector<LabelSpot> Spots;

    // The airport whose label covers (x, y), pixels from the top left, in the view the labels were
    // placed for (or another: labels stay beside their points); empty when none does.
    QString AirportAt(const LabelView& view, double x, double y) const;
};

// The labels of network (0, 1, or 2 for both): aircraft (callsign, and level and speed when close),
// the airports in use, and the stations. Decluttered when the inputs carry a label view: the stations of
// one airport share one label ("EGLL  D G T A I": delivery, ground, tower, approach, ATIS; from
// kRunwayLabelZoom on with the runways in use under it), aircraft on the ground wait for a close zoom,
// and what finds no room is left out by priority.
LabelPlan PlanLabels(const GlApi& gl, int network, const TrafficInputs& in);

// Records the label lists of network's scene (0, 1 or 2) from the plan: aircraft, airport and station
// labels each in their own list; decluttered, while aircraft labels show, the stations' and airports'
// in the shared labels' list, which the frame draws with the aircraft labels after every symbol, so no
// symbol covers a label.
void RecordLabelLists(GlApi& gl, int network, const LabelPlan& plan, const TrafficInputs& in);
// Records the aircraft labels' list alone (after MoveLabels).
void RecordPlaneLabels(GlApi& gl, int network, const LabelPlan& plan, const TrafficInputs& in);

// The aircraft labels of plan moved to where their aircraft are drawn now (live motion), each keeping
// its place beside its symbol.
void MoveLabels(LabelPlan& plan, const TrafficInputs& in);

} // namespace sky::render
