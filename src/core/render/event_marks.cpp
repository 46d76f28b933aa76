#include "render/event_marks.h"

#include "render/list_numbers.h"
#include "render/scene_drawing.h"
#include "render/text.h"

using namespace Qt::StringLiterals;

namespace sky::render {

using namespace drawing;

void BuildEventMarks(GlApi& gl, const ColourTable& colours, const std::vector<geo::LatLon>& airports) {
    if (airports.empty()) {
        gl.DeleteList(lists::kEventMarks);
        return;
    }
    Record(gl, lists::kEventMarks, [&] {
        // A glow of the highlight colour under the airport's symbols, the same size in pixels at any
        // zoom, and "EVENT" under it.
        gl.PointSize(22.0f);
        SetColour(gl, colours, kSlotHighlight, 0.3f);
        gl.Begin(Primitive::Points);
        for (const geo::LatLon& a : airports)
            EmitAt(gl, a.Lat, a.Lon);
        gl.End();
        SetColour(gl, colours, kSlotHighlight, 1.0f);
        gl.TextOutline(colours.Red[kSlotScreenBackground], colours.Green[kSlotScreenBackground],
                       colours.Blue[kSlotScreenBackground], 1.0f);
        for (const geo::LatLon& a : airports) {
            RasterAt(gl, a.Lat, a.Lon);
            gl.BitmapMove(-15.0f, -24.0f);
            PrintText(gl, u"EVENT"_s);
        }
        gl.TextOutline(0.0f, 0.0f, 0.0f, 0.0f);
    });
}

} // namespace sky::render
