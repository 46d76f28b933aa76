#pragma once

#include <vector>

#include <QString>

#include "geo/geodesy.h"

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

// What the map shows of a selected flight beyond where it is: where it has been (pieces of its track,
// cut where it was offline) and where it is going (its filed route from where it is now).
struct FlightPaths {
    std::vector<std::vector<geo::LatLon>> Flown;
    std::vector<geo::LatLon> Ahead;
    int RoutePoints = 0; // places the filed route named that were found
};

// The selection's callsign stands this far up and right of its client, in pixels.
inline constexpr int kHighlightTextDx = 9;
inline constexpr int kHighlightTextDy = 9;

// The selected client as the highlight draws it.
struct HighlightInputs {
    geo::LatLon Where;
    QString Callsign;
    double RingRadius = 0.0;            // in units of the globe's radius
    int Network = 0;                    // the colour of its paths
    const FlightPaths* Paths = nullptr; // a flight's track and route, when it has them
};

// Records the highlight (list 42): the flight's paths (the flown track solid, the route ahead dashed,
// in the network's colour), a ring round the client and its callsign in the highlight colour.
void BuildHighlight(GlApi& gl, const ColourTable& colours, const HighlightInputs& in);
// Records the highlight as a mark on an airport: a point and its code.
void BuildAirportMark(GlApi& gl, const ColourTable& colours, geo::LatLon where, const QString& code);
void DeleteHighlight(GlApi& gl);

// The tracks of every shown aircraft, and where each flight's track ends, with its pilot slot.
struct AllTrails {
    std::vector<std::vector<geo::LatLon>> Lines;
    std::vector<std::pair<geo::LatLon, int>> Ends;
};
// Records the tracks (list 60) in the colour of network, and with them the lines of the trails' vertex
// array (lists::kTrailEndsArray).
void BuildAllTrails(GlApi& gl, const ColourTable& colours, int network,
                    const std::vector<std::vector<geo::LatLon>>& tracks);
// Sets the trails' vertex array: a line from each track's end to where live motion draws its aircraft
// (drawn, by slot); none without drawn positions.
void SetTrailEnds(GlApi& gl, const std::vector<std::pair<geo::LatLon, int>>& ends,
                  const std::vector<geo::LatLon>* drawn);

} // namespace sky::render
