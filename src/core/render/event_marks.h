#pragma once

#include <vector>

#include "geo/geodesy.h"

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

// Records the marks of the airports with an event in progress (list 62): a glow of the highlight
// colour round each and "EVENT" under it, the same size at any zoom. No airports: the list goes.
void BuildEventMarks(GlApi& gl, const ColourTable& colours, const std::vector<geo::LatLon>& airports);

} // namespace sky::render
