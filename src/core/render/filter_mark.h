#pragma once

#include <QString>

#include "render/panel_layout.h"

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

// What the marks of an active filter say: how many pilots pass of how many, and the filter's text.
struct FilterMarkInputs {
    PixelRect CountPanel; // the client-count panel, whose figures stay the network's totals
    int ShownPilots = 0;
    int AllPilots = 0;
    QString Text; // "DLH to:EDDF"
};

// The box under the client-count panel that says "filtered: 120 of 1450 pilots", pixels from the top left.
PixelRect FilterCountBox(const GlApi& gl, const FilterMarkInputs& in);

// Records the marks of an active filter (list 63) for a client area width by height pixels: the count
// box under the client-count panel, and "Filter: " and its text at the right of the status band, both in
// the highlight colour, so a filtered map never passes for the whole network.
void BuildFilterMark(GlApi& gl, const ColourTable& colours, int width, int height,
                     const FilterMarkInputs& in);
void DeleteFilterMark(GlApi& gl);

} // namespace sky::render
