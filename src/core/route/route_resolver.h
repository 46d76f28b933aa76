#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringView>

#include "geo/geodesy.h"

namespace sky {
class ReferenceData;
class Navaids;
} // namespace sky

namespace sky::route {

// A point of a filed route: an airport, a navaid or a position written as latitude and longitude.
struct RoutePoint {
    QString Name;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
};

// A position written as oceanic routes write them, or nothing: "50N020W", "55N020W", "5530N02000W",
// "N50W020", "N5030W02000", and the five-character forms "5020N" (50N 20W; the letter gives the
// quadrant: N north and west, E north and east, S south and east, W south and west) and "50N20"
// (50N 120W, the letter in the middle adding 100 to the longitude). Positions beyond the globe are none.
std::optional<geo::LatLon> ParseRouteCoordinate(QStringView token);

// A flight plan's route as points, from the departure airport to the destination: the airports,
// navaids and positions it names, in its order; an identifier many navaids share is the one nearest
// the point before it (none further than 1,500 nm). Airways, procedures, "DCT" and speed and level
// groups are passed over, as is anything else that names no place. The first 600 words are read.
std::vector<RoutePoint> ResolveRoute(const QString& departure, const QString& destination,
                                     const QString& route, const ReferenceData& airports,
                                     const Navaids& navaids);

} // namespace sky::route
