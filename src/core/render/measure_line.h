#pragma once

#include <QStringList>

#include "geo/geodesy.h"

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

// The measuring line as the map draws it: its two ends and the figures shown beside its far end.
struct MeasureInputs {
    geo::LatLon From, To;
    QStringList Figures; // "3341.73 nm  6188.89 km", "course 293° true", ...
};

// Records the measuring line (list 64): the great circle from one end to the other, a dot of a fixed
// size at each end and the figures beside the far end, in the highlight colour, the text outlined
// against the map.
void BuildMeasureLine(GlApi& gl, const ColourTable& colours, const MeasureInputs& in);
void DeleteMeasureLine(GlApi& gl);

} // namespace sky::render
