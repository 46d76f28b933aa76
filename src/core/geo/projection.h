#pragma once

#include <optional>

#include "geo/geodesy.h"

namespace sky::geo {

struct ScreenPoint {
    double X = 0.0; // pixels from the left
    double Y = 0.0; // pixels from the top
};

// Where the globe point (lat, lon) appears in a drawing area of width by height pixels, or nullopt when
// it is on the far side of the globe; the inverse of ScreenToLatLon.
std::optional<ScreenPoint> LatLonToScreen(float lat, float lon, double width, double height,
                                          const ViewState& view);

} // namespace sky::geo
