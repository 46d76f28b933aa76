#include "render/measure_line.h"

#include "render/list_numbers.h"
#include "render/scene_drawing.h"
#include "render/text.h"

namespace sky::render {

using namespace drawing;

namespace {

constexpr double kArcStepDeg = 1.0;
constexpr float kEndDotPx = 7.0f;
constexpr int kFigureLinePx = 13;

} // namespace

void BuildMeasureLine(GlApi& gl, const ColourTable& colours, const MeasureInputs& in) {
    Record(gl, lists::kMeasureLine, [&] {
        SetColour(gl, colours, kSlotHighlight, 1.0f);
        std::vector<geo::Vec3> arc{geo::OnGlobe(in.From.Lat, in.From.Lon)};
        geo::AppendGreatCircle(arc, arc.front(), geo::OnGlobe(in.To.Lat, in.To.Lon), kArcStepDeg);
        gl.Begin(Primitive::LineStrip);
        for (const geo::Vec3& v : arc)
            Emit(gl, v);
        gl.End();
        // The frame sets the point size again before the next one.
        gl.PointSize(kEndDotPx);
        gl.Begin(Primitive::Points);
        EmitAt(gl, in.From.Lat, in.From.Lon);
        EmitAt(gl, in.To.Lat, in.To.Lon);
        gl.End();
        gl.TextOutline(colours.Red[kSlotScreenBackground], colours.Green[kSlotScreenBackground],
                       colours.Blue[kSlotScreenBackground], 1.0f);
        // Right of and below the far end, one figure a line.
        for (int i = 0; i < int(in.Figures.size()); ++i) {
            RasterAt(gl, in.To.Lat, in.To.Lon);
            gl.BitmapMove(12.0f, float(-4 - kFigureLinePx * (i + 1)));
            PrintText(gl, in.Figures[i]);
        }
        gl.TextOutline(0.0f, 0.0f, 0.0f, 0.0f);
    });
}

void DeleteMeasureLine(GlApi& gl) {
    gl.DeleteList(lists::kMeasureLine);
}

} // namespace sky::render
