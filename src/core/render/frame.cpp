#include "render/frame.h"

#include <QString>

#include "app/colour_theme.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

// Drawing in pixels of the client area, origin at the bottom left, through the overlay's -1..+1.
struct Overlay {
    GlApi& Gl;
    const ColourTable& Colours;
    int Width;
    int Height;

    void Colour(int slot, float alpha) const {
        Gl.Colour(Colours.Red[slot], Colours.Green[slot], Colours.Blue[slot], alpha);
    }
    void Vertex(double x, double y) const { Gl.Vertex(OverlayX(x, Width), OverlayY(y, Height), 0.0f); }
    void RasterPos(double x, double y) const { Gl.RasterPos(OverlayX(x, Width), OverlayY(y, Height), 0.0f); }
    // A band whose outer edge (x0, y0)-(x1, y1) fades to its inner edge (x2, y2)-(x3, y3).
    void Band(int slot, double x0, double y0, double x1, double y1, double x2, double y2, double x3,
              double y3) const {
        Gl.Begin(Primitive::Quads);
        Colour(slot, 0.6f);
        Vertex(x0, y0);
        Vertex(x1, y1);
        Colour(slot, 0.3f);
        Vertex(x2, y2);
        Vertex(x3, y3);
        Gl.End();
    }
    void Line(double x0, double y0, double x1, double y1) const {
        Vertex(x0, y0);
        Vertex(x1, y1);
    }
};

constexpr double kBandPx = 6.0;
// The bottom band carries the status line and the network marks.
constexpr double kStatusBandPx = 20.0;

} // namespace

void BuildFrame(GlApi& gl, const ColourTable& colours, int width, int height, const QString& statusText) {
    const Overlay o{gl, colours, std::max(width, 1), std::max(height, 1)};
    const double w = o.Width;
    const double h = o.Height;
    const double top = h - kTitleStripPx;
    gl.DeleteList(lists::kFrame);
    gl.NewList(lists::kFrame);
    gl.Enable(Capability::Blend);
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);

    // Nothing of the map shows through the title strip and the status band.
    o.Colour(kSlotScreenBackground, 1.0f);
    gl.Begin(Primitive::Quads);
    for (const double y0 : {top, 0.0}) {
        const double y1 = y0 == 0.0 ? kStatusBandPx : h;
        o.Vertex(0, y0);
        o.Vertex(w, y0);
        o.Vertex(w, y1);
        o.Vertex(0, y1);
    }
    gl.End();
    // The title strip, and bands down the sides and along the bottom.
    o.Band(kSlotWindowShading, 0, h, w, h, w, top, 0, top);
    o.Band(kSlotWindowShading, 0, 0, 0, top, kBandPx, top, kBandPx, 0);
    o.Band(kSlotWindowShading, w, 0, w, top, w - kBandPx, top, w - kBandPx, 0);
    o.Band(kSlotWindowShading, 0, 0, w, 0, w, kStatusBandPx, 0, kStatusBandPx);

    // Fading lines under the title strip and inside the side bands.
    gl.Begin(Primitive::Lines);
    o.Colour(kSlotWindowShading, 0.0f);
    o.Vertex(0, top - 2);
    o.Colour(kSlotWindowShading, 0.25f);
    o.Vertex(w / 2, top - 2);
    o.Vertex(w / 2, top - 2);
    o.Colour(kSlotWindowShading, 0.0f);
    o.Vertex(w, top - 2);
    gl.End();

    // The frame line around the map and under the title strip.
    gl.LineWidth(2.0f);
    o.Colour(kSlotScreenBorder, 1.0f);
    gl.Begin(Primitive::LineLoop);
    o.Vertex(1, 1);
    o.Vertex(w - 1, 1);
    o.Vertex(w - 1, h - 1);
    o.Vertex(1, h - 1);
    gl.End();
    gl.Begin(Primitive::Lines);
    o.Line(0, top, w, top);
    // The three buttons at the right of the title strip: minimise, maximise, close.
    const double mid = h - kTitleStripPx / 2.0;
    o.Line(w - 55, mid - 4, w - 45, mid - 4); // minimise: a bar
    o.Line(w - 35, mid - 5, w - 25, mid - 5); // maximise: a box
    o.Line(w - 25, mid - 5, w - 25, mid + 5);
    o.Line(w - 25, mid + 5, w - 35, mid + 5);
    o.Line(w - 35, mid + 5, w - 35, mid - 5);
    o.Line(w - 15, mid - 5, w - 5, mid + 5); // close: a cross
    o.Line(w - 15, mid + 5, w - 5, mid - 5);
    o.Line(w - 60, top, w - 60, h); // button separators
    o.Line(w - 40, top, w - 40, h);
    o.Line(w - 20, top, w - 20, h);
    gl.End();
    gl.LineWidth(1.0f);

    o.RasterPos(8, h - 15);
    PrintBoldText(gl, u"Skylantra 1.0.0"_s);
    gl.EndList();
    BuildStatusLine(gl, statusText, o.Width, o.Height);
}

void BuildNetworkMarks(GlApi& gl, const ColourTable& colours, int width, int height,
                       const std::array<bool, 2>& marked) {
    const Overlay o{gl, colours, std::max(width, 1), std::max(height, 1)};
    gl.DeleteList(lists::kNetworkMarks);
    gl.NewList(lists::kNetworkMarks);
    o.Colour(kSlotScreenBorder, 0.5f);
    gl.Begin(Primitive::Lines);
    for (int network = 0; network < 2; ++network) {
        if (!marked[network])
            continue;
        const double left = 20.0 * network + 7;
        o.Line(left, 7, left + 6, 13);
        o.Line(left, 13, left + 6, 7);
    }
    gl.End();
    gl.EndList();
}

void BuildTitleBox(GlApi& gl, const ColourTable& colours, int width, int height) {
    const Overlay o{gl, colours, std::max(width, 1), std::max(height, 1)};
    const double cx = o.Width / 2.0;
    const double cy = o.Height / 2.0;
    const double left = cx - 170, right = cx + 170, bottom = cy - 60, top = cy + 60;
    gl.DeleteList(lists::kTitleBox);
    gl.NewList(lists::kTitleBox);
    o.Colour(kSlotWindowBackground, 0.8f);
    gl.Begin(Primitive::Quads);
    o.Vertex(left, bottom);
    o.Vertex(right, bottom);
    o.Vertex(right, top);
    o.Vertex(left, top);
    gl.End();
    gl.Begin(Primitive::Quads);
    o.Colour(kSlotWindowShading, 0.6f);
    o.Vertex(left + 4, top - 4);
    o.Vertex(right - 4, top - 4);
    o.Colour(kSlotWindowShading, 0.3f);
    o.Vertex(right - 4, top - 30);
    o.Vertex(left + 4, top - 30);
    gl.End();
    o.Colour(kSlotScreenBorder, 1.0f);
    gl.Begin(Primitive::LineLoop);
    o.Vertex(left, bottom);
    o.Vertex(right, bottom);
    o.Vertex(right, top);
    o.Vertex(left, top);
    gl.End();
    // Three pairs of swept wings, one pair per network colour and one in the highlight colour.
    const int slots[3] = {kSlotIVAO, kSlotVATSIM, kSlotHighlight};
    for (int pair = 0; pair < 3; ++pair) {
        const double x = left + 24 + pair * 20;
        const double y = top - 17;
        o.Colour(slots[pair], 1.0f);
        for (int side : {-1, 1}) {
            gl.Begin(Primitive::Polygon);
            o.Vertex(x, y);
            o.Vertex(x + side * 8, y - 4);
            o.Vertex(x + side * 9, y - 2);
            o.Vertex(x + side * 3, y + 3);
            o.Vertex(x, y + 5);
            gl.End();
        }
    }
    o.Colour(kSlotScreenBorder, 1.0f);
    o.RasterPos(left + 90, top - 22);
    PrintBoldText(gl, u"Skylantra v1.0.0"_s);
    o.RasterPos(left + 14, bottom + 40);
    PrintText(gl, u"Live traffic of IVAO and VATSIM on a globe."_s);
    o.RasterPos(left + 14, bottom + 24);
    PrintText(gl, u"Airports: OurAirports. FIRs: VAT-Spy Data Project."_s);
    o.RasterPos(left + 14, bottom + 10);
    PrintText(gl, u"Coastlines and borders: Natural Earth."_s);
    gl.EndList();
}

void DeleteTitleBox(GlApi& gl) {
    gl.DeleteList(lists::kTitleBox);
}

void SetBackground(GlApi& gl, const ColourTable& c) {
    gl.ClearColour(c.Red[kSlotScreenBackground], c.Green[kSlotScreenBackground],
                   c.Blue[kSlotScreenBackground], 0.0f);
}

} // namespace sky::render
