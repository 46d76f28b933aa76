#include "render/draw_scene.h"

#include <cmath>

#include "app/colour_theme.h"
#include "app/settings.h"
#include "render/gl_api.h"
#include "render/land_layer.h"
#include "render/list_numbers.h"

namespace sky::render {

namespace {

// What the kept background shows beyond its lists' content: the view, the window and the layers.
GlApi::KeptKey BackgroundKey(const FrameInputs& in) {
    const Settings& s = in.Config;
    const int layers = int(s.ShowNight) | int(s.ShowLatLon) << 1 |
                       int(in.ShowCountries && !s.DisableCountries) << 2 | int(s.ShowATC) << 3 |
                       int(s.DisableSmooth) << 4;
    return {in.View.ViewX,      in.View.ViewY,          in.View.ViewZ, float(in.WidthPx),
            float(in.HeightPx), float(in.ShownNetwork), float(layers)};
}

// The globe, land, night, grid and borders, the sectors, then the coastlines over them.
void DrawBackground(GlApi& gl, const FrameInputs& in) {
    const Settings& s = in.Config;
    const int base = lists::TrafficBase(in.ShownNetwork);
    if (!s.DisableSmooth)
        gl.Enable(Capability::LineSmooth);
    gl.CallList(lists::kGlobe);
    DrawLand(gl, in.View, in.WidthPx, in.HeightPx);
    if (s.ShowNight)
        gl.CallList(lists::kNight);
    if (s.ShowLatLon)
        gl.CallList(lists::kGrid);
    if (in.ShowCountries && !s.DisableCountries)
        gl.CallList(lists::kBorders);
    gl.Disable(Capability::LineSmooth);
    if (s.ShowATC) {
        gl.CallList(base + lists::kSectorFills);
        gl.CallList(base + lists::kOutlines);
    }
    if (!s.DisableSmooth)
        gl.Enable(Capability::LineSmooth);
    gl.CallList(lists::kCoastlines);
    gl.Disable(Capability::LineSmooth);
}

} // namespace

void DrawScene(GlApi& gl, const FrameInputs& in) {
    const geo::ViewState& view = in.View;
    const int w = in.WidthPx;
    const int h = in.HeightPx;
    // The globe's viewport is a square of twice the window's height; a window wider than that gets a
    // viewport as wide as itself, the projection widened with it, so the map fills it at the same scale.
    const double wide = w > 2 * h ? double(w) / (2.0 * h) : 1.0;
    gl.Clear();
    gl.LoadIdentity();
    gl.Ortho(-wide, wide, -1, 1, -10, 1);
    gl.PushMatrix();
    // With the far plane at 1 the near surface sits at depth +1 when zoomed in, and the globe is cut at
    // its centre plane when zoomed out: only the near side is ever drawn.
    if (view.ViewZ > 2.0f)
        gl.Translate(0.0f, 0.0f, 1.0f - view.ViewZ);
    else
        gl.Translate(0.0f, 0.0f, -1.0f);
    gl.Rotate(view.ViewY, -1.0f, 0.0f, 0.0f);
    gl.Rotate(view.ViewX, 0.0f, -1.0f, 0.0f);
    if (wide > 1.0)
        gl.Viewport(0, -h / 2, w, 2 * h);
    else
        gl.Viewport(w / 2 - h, -h / 2, 2 * h, 2 * h);
    gl.Scale(view.ViewZ, view.ViewZ, view.ViewZ);
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    DrawCore(gl, in);

    gl.Viewport(0, 0, w, h);
    gl.LoadIdentity();
    gl.LineWidth(2.0f);
    gl.CallList(lists::kFrame);
    gl.CallList(lists::kNetworkMarks);
    if (in.ShowAbout)
        gl.CallList(lists::kTitleBox);
    gl.Colour(in.Colours.Red[kSlotScreenBorder], in.Colours.Green[kSlotScreenBorder],
              in.Colours.Blue[kSlotScreenBorder], 1.0f);
    gl.CallList(lists::kStatusLine);
    gl.LineWidth(1.0f);
    gl.CallList(lists::kClientCount);
    if (in.Filtered)
        gl.CallList(lists::kFilterMark);
    // The list or board first, a client's box over it.
    if (ShowsTable(in.Panels))
        gl.CallList(lists::kListPanel);
    if (ShowsInfoBox(in.Panels))
        gl.CallList(lists::kInfoBox);
    if (in.HoverCard)
        gl.CallList(lists::kHoverCard);
    gl.PopMatrix();
}

void DrawCore(GlApi& gl, const FrameInputs& in) {
    const Settings& s = in.Config;
    const int base = lists::TrafficBase(in.ShownNetwork);
    gl.Enable(Capability::PointSmooth);
    const float pointSize = float(3.0 * std::pow(2.0 * in.View.ViewZ, 0.2));
    gl.PointSize(pointSize);
    // The globe, its geography and the sectors change only with the view, the layers shown or their
    // lists: frames that only move aircraft or open a panel copy them from the image kept before.
    const GlApi::KeptKey key = BackgroundKey(in);
    if (!gl.DrawKept(key)) {
        gl.BeginKept(key);
        DrawBackground(gl, in);
        gl.EndKept();
    }
    gl.LineWidth(1.0f);
    if (s.ShowAirports) {
        gl.CallList(base + lists::kAirports);
        if (s.ShowWeather) {
            // Wider than a station's mark, so it rings the stations that stand on its airport.
            gl.PointSize(2.0f * pointSize + 1.0f);
            gl.CallList(lists::kWeather);
            gl.PointSize(pointSize);
        }
        if (s.ShowAirportLabels)
            gl.CallList(base + lists::kAirportLabels);
        // VATSIM's events, where its traffic shows.
        if (in.ShownNetwork != 0) {
            gl.CallList(lists::kEventMarks);
            gl.PointSize(pointSize);
        }
    }
    if (s.ShowATC) {
        if (s.ShowATCLabels)
            gl.CallList(base + lists::kAtcLabels);
        gl.CallList(base + lists::kAtcMarkers);
    }
    gl.LineWidth(2.0f);
    gl.CallList(lists::kHighlight);
    gl.LineWidth(1.0f);
    if (in.ShowTrails)
        gl.CallList(lists::kAllTrails);
    if (s.ShowInbounds && s.ShowAirports && !in.FriendsOnly)
        gl.CallList(base + lists::kInbounds);
    if (s.ShowPlanes) {
        gl.CallList(base + lists::kPlanes);
        if (s.ShowPlaneLabels) {
            gl.CallList(base + lists::kSharedLabels);
            gl.CallList(base + lists::kPlaneLabels);
        }
    }
    if (in.Measuring)
        gl.CallList(lists::kMeasureLine);
}

} // namespace sky::render
