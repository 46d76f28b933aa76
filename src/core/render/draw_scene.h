#pragma once

#include "geo/geodesy.h"
#include "render/panel_layout.h"

namespace sky {
struct Settings;
struct ColourTable;
} // namespace sky

namespace sky::render {

class GlApi;

// What one frame is drawn from: the switches, the display state, the view (already clamped) and the
// client area in pixels.
struct FrameInputs {
    const Settings& Config;
    const ColourTable& Colours;
    geo::ViewState View;
    int ShownNetwork = 0; // 0 IVAO, 1 VATSIM, 2 the comparison
    PanelMode Panels = PanelMode::None;
    bool ShowCountries = true;
    bool ShowAbout = false; // the title box
    bool FriendsOnly = false;
    bool HoverCard = false;
    bool ShowTrails = false;
    int WidthPx = 800;
    int HeightPx = 600;
    bool Filtered = false;  // the filter's marks (list 63)
    bool Measuring = false; // the measuring line (list 64)
};

// Draws one frame: turns the view into one orthographic transform on a square viewport of twice the
// window height (the globe keeps its shape, its radius is ViewZ times the window height), calls the
// globe and traffic lists through DrawCore, then the flat overlay and the open panels. The caller
// clamps the view before and swaps the buffers after.
void DrawScene(GlApi& gl, const FrameInputs& in);

// The globe content of a frame, in its fixed order, each layer gated by its switch.
void DrawCore(GlApi& gl, const FrameInputs& in);

} // namespace sky::render
