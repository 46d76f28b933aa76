#pragma once

#include <array>
#include <vector>

#include "conditions/flight_category.h"
#include "geo/geodesy.h"

namespace sky::render {

class GlApi;

// An airport's dot on the weather layer: where, and its flight category.
struct WeatherDot {
    geo::LatLon Place;
    conditions::FlightCategory Category = conditions::FlightCategory::Unknown;
};

// The colour of a flight category as red, green, blue: VFR green, MVFR blue, IFR red, LIFR magenta.
std::array<float, 3> CategoryColour(conditions::FlightCategory category);

// Records the weather layer (list 68): each dot of a known category in its colour, drawn over the
// airports' own dots at the point size the frame sets; no list when there is none.
void BuildWeatherDots(GlApi& gl, const std::vector<WeatherDot>& dots);

} // namespace sky::render
