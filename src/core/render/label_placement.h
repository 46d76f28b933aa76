#pragma once

#include <vector>

#include "render/panel_layout.h"

namespace sky::render {

// A label that a point of the map asks for: its lines of text in the small font go beside its symbol.
struct LabelRequest {
    double X = 0, Y = 0; // the point, pixels from the top left
    int WidthPx = 0;     // the widest line
    int Lines = 1;       // lines below each other, kLabelLinePx apart
    int Priority = 0;    // smaller goes first
    int SymbolRadiusPx = 8;
    // Where every place meets a symbol, the first place clear of labels and reserved areas is taken
    // anyway: a station's label matters more than the aircraft near it (it is drawn over them).
    bool Insistent = false;
};

// Where a label goes: the raster move from its point to the start of its first line's baseline, in
// pixels with y up (as BitmapMove takes it).
struct LabelSpot {
    bool Shown = false;
    int Dx = 0, Dy = 0;
    int WidthPx = 0, HeightPx = 0; // the box it takes, its top left kLabelAscentPx above the baseline
};

inline constexpr int kLabelLinePx = 11;
inline constexpr int kLabelAscentPx = 9;

// The place right of the symbol, where every label goes when labels are not decluttered.
LabelSpot DefaultSpot(const LabelRequest& request);

// Decides which labels show and where, as busy maps do: in order of priority (ties in the order
// asked), each label takes the first of its places beside its symbol (right, left, above, below, then
// the corners) that
// lies inside the width x height area, off the reserved areas, and clear of every label placed before it
// and of every symbol; a label without such a place is left out, as is one whose point is off the area.
// symbols are the boxes of every symbol drawn, labelled or not.
std::vector<LabelSpot> PlaceLabels(const std::vector<LabelRequest>& requests,
                                   const std::vector<PixelRect>& symbols,
                                   const std::vector<PixelRect>& reserved, int width, int height);

} // namespace sky::render
