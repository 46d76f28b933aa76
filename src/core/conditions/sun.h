#pragma once

#include <QDateTime>

#include "geo/geodesy.h"

namespace sky::conditions {

// The point of the Earth where the sun stands overhead at a moment (within a few tenths of a degree,
// as the almanac's low-precision formulas give it).
geo::LatLon SubsolarPoint(const QDateTime& moment);

// The sun's height above the horizon at a place, in degrees (negative below it).
double SunElevationDeg(const geo::LatLon& subsolar, float lat, float lon);

} // namespace sky::conditions
