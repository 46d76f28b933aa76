#pragma once

#include "geo/geodesy.h"

namespace sky::render {

class GlApi;

// How dark the night side is drawn over the globe: the black's alpha where the sun is more than 6
// degrees below the horizon; through civil twilight (0 to 6 degrees below) it fades in.
inline constexpr float kNightAlpha = 0.45f;

// Records the night side (list 64): the half of the globe away from the subsolar point, shaded, its
// edge soft through civil twilight.
void BuildNight(GlApi& gl, geo::LatLon subsolar);

} // namespace sky::render
