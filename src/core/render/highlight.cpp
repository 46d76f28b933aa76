#include "render/highlight.h"

#include "render/list_numbers.h"
#include "render/scene_drawing.h"
#include "render/text.h"

namespace sky::render {

using namespace drawing;

namespace {

constexpr int kRingSegments = 24;

// A line along the great circles between the points.
void PathLine(GlApi& gl, const std::vector<geo::LatLon>& points) {
    std::vector<geo::Vec3> arc;
    for (const geo::LatLon& point : points) {
        const geo::Vec3 p = geo::OnGlobe(point.Lat, point.Lon);
        if (arc.empty())
            arc.push_back(p);
        else
            geo::AppendGreatCircle(arc, arc.back(), p, 2.0);
    }
    gl.Begin(Primitive::LineStrip);
    for (const geo::Vec3& v : arc)
        Emit(gl, v);
    gl.End();
}

void Paths(GlApi& gl, const ColourTable& c, const FlightPaths& paths, int network) {
    SetColour(gl, c, network, 0.9f);
    for (const auto& piece : paths.Flown)
        PathLine(gl, piece);
    if (paths.Ahead.size() > 1) {
        gl.Enable(Capability::LineStipple); // dashed: where it is going, not where it went
        PathLine(gl, paths.Ahead);
        gl.Disable(Capability::LineStipple);
    }
}

} // namespace

void BuildHighlight(GlApi& gl, const ColourTable& colours, const HighlightInputs& in) {
    Record(gl, lists::kHighlight, [&] {
        if (in.Paths)
            Paths(gl, colours, *in.Paths, in.Network);
        SetColour(gl, colours, kSlotHighlight, 1.0f);
        // A ring well outside the symbol, so the selection stands out at any zoom.
        gl.Begin(Primitive::LineLoop);
        CircleRim(gl, in.Where.Lat, in.Where.Lon, in.RingRadius * geo::kEarthRadiusNm, kRingSegments);
        gl.End();
        RasterAt(gl, in.Where.Lat, in.Where.Lon);
        gl.BitmapMove(kHighlightTextDx, kHighlightTextDy);
        PrintBoldText(gl, in.Callsign);
    });
}

void BuildAirportMark(GlApi& gl, const ColourTable& colours, geo::LatLon where, const QString& code) {
    Record(gl, lists::kHighlight, [&] {
        SetColour(gl, colours, kSlotHighlight, 1.0f);
        gl.Begin(Primitive::Points);
        EmitAt(gl, where.Lat, where.Lon);
        gl.End();
        RasterAt(gl, where.Lat, where.Lon);
        PrintText(gl, code);
    });
}

void DeleteHighlight(GlApi& gl) {
    gl.DeleteList(lists::kHighlight);
}

void BuildAllTrails(GlApi& gl, const ColourTable& colours, int network,
                    const std::vector<std::vector<geo::LatLon>>& tracks) {
    Record(gl, lists::kAllTrails, [&] {
        SetColour(gl, colours, network, 0.6f);
        gl.Begin(Primitive::Lines);
        for (const auto& track : tracks) {
            for (size_t i = 1; i < track.size(); ++i) {
                EmitAt(gl, track[i - 1].Lat, track[i - 1].Lon);
                EmitAt(gl, track[i].Lat, track[i].Lon);
            }
        }
        gl.End();
        gl.DrawVertexArray(lists::kTrailEndsArray, Primitive::Lines);
    });
}

void SetTrailEnds(GlApi& gl, const std::vector<std::pair<geo::LatLon, int>>& ends,
                  const std::vector<geo::LatLon>* drawn) {
    std::vector<float> positions;
    for (const auto& [end, slot] : ends) {
        if (!drawn || slot <= 0 || size_t(slot) >= drawn->size())
            continue;
        const geo::LatLon at = (*drawn)[size_t(slot)];
        positions.insert(positions.end(), {geo::GlobeX(end.Lat, end.Lon), geo::GlobeY(end.Lat, end.Lon),
                                           geo::GlobeZ(end.Lat, end.Lon), geo::GlobeX(at.Lat, at.Lon),
                                           geo::GlobeY(at.Lat, at.Lon), geo::GlobeZ(at.Lat, at.Lon)});
    }
    gl.SetVertexArray(lists::kTrailEndsArray, positions.data(), nullptr, int(positions.size() / 3));
}

} // namespace sky::render
