#pragma once

#include "app/colour_theme.h"
#include "geo/geodesy.h"
#include "geo/sphere_geometry.h"
#include "render/gl_api.h"

// Small helpers the traffic layers share: colours from theme slots, vertices and raster positions on
// the globe, and the recording of one list.
namespace sky::render::drawing {

inline void SetColour(GlApi& gl, const ColourTable& c, int slot, float alpha) {
    gl.Colour(c.Red[slot], c.Green[slot], c.Blue[slot], alpha);
}
inline void Emit(GlApi& gl, const geo::Vec3& v) {
    gl.Vertex(float(v.X), float(v.Y), float(v.Z));
}
inline void EmitAt(GlApi& gl, float lat, float lon) {
    gl.Vertex(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
}
inline void RasterAt(GlApi& gl, float lat, float lon) {
    gl.RasterPos(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
}

// The point at distanceNm and bearingDeg from a centre, on the sphere of the distances.
geo::LatLon PointAt(float lat, float lon, double distanceNm, double bearingDeg);
// The vertices of a circle of radiusNm round a point, the first repeated at the end: every circle of
// the map (sectors, stations, the selection's ring) is drawn with it.
void CircleRim(GlApi& gl, float lat, float lon, double radiusNm, int segments = 36);

// Records list anew with what content draws.
template <typename Content> void Record(GlApi& gl, int list, Content content) {
    gl.DeleteList(list);
    gl.NewList(list);
    content();
    gl.EndList();
}

// Which colours a network's traffic takes: its own theme colours, or the network's colour in the
// comparison of both.
struct Style {
    int PlaneFill = kSlotPlaneFill;
    int PlaneLabel = kSlotPlaneLabel;
    int AtcLabel = kSlotATCLabel;
    int SectorFill = kSlotCTRFill;
    int SectorBorder = kSlotCTRBorder;
};
inline Style StyleFor(int network, bool comparison) {
    if (!comparison)
        return {};
    return {network, network, network, network, network};
}

} // namespace sky::render::drawing
