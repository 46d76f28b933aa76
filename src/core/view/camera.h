#pragma once

#include "geo/geodesy.h"

namespace sky {
struct Settings;
struct ColourTable;
} // namespace sky

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct DisplayState;

// What one frame is drawn from.
struct FrameInputs {
    const Settings& Config;
    const DisplayState& Display;
    const ColourTable& Colours;
    int WidthPx = 800;
    int HeightPx = 600;
};

// Draws one frame: clamps the view, turns it into one orthographic transform on a square viewport of
// twice the window height (the globe keeps its shape, its radius is ViewZ times the window height),
// calls the globe and traffic lists through DrawCore, then the flat overlay and the open panels.
// The caller swaps the buffers.
void DrawScene(render::GlApi& gl, const FrameInputs& in, geo::ViewState& view);

// The globe content of a frame, in its fixed order, each layer gated by its switch.
void DrawCore(render::GlApi& gl, const FrameInputs& in, const geo::ViewState& view);

} // namespace sky::view
