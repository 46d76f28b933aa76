#include "render/aircraft_layer.h"

#include <algorithm>
#include <cmath>

#include "render/crowds.h"
#include "render/text.h"
#include "render/traffic_scene.h"

namespace sky::render {

using namespace drawing;
using geo::Vec3;

namespace {

// The aircraft symbol, nose up, in units of its half-length: a fan around the origin fills it.
constexpr float kSymbol[][2] = {{0.00f, 1.00f},   {0.10f, 0.70f},   {0.12f, 0.25f},   {0.95f, -0.10f},
                                {0.95f, -0.25f},  {0.12f, -0.05f},  {0.09f, -0.60f},  {0.38f, -0.85f},
                                {0.38f, -0.98f},  {0.00f, -0.88f},  {-0.38f, -0.98f}, {-0.38f, -0.85f},
                                {-0.09f, -0.60f}, {-0.12f, -0.05f}, {-0.95f, -0.25f}, {-0.95f, -0.10f},
                                {-0.12f, 0.25f},  {-0.10f, 0.70f}};

} // namespace

double SymbolSize(float viewZ) {
    // About 16 pixels long on a 700-pixel window, whatever the zoom band.
    return 0.012 / std::pow(1.5, SymbolBand(viewZ));
}

void AircraftSymbols(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                     const Style& style) {
    const double size = SymbolSize(in.ViewZ);
    constexpr size_t kCorners = std::size(kSymbol);
    std::vector<Vec3> centres;
    std::vector<Vec3> outlines; // kCorners points per aircraft
    const int network = &data == &in.Tables[1] ? 1 : 0;
    centres.reserve(size_t(data.PilotCount));
    outlines.reserve(size_t(data.PilotCount) * kCorners);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p) || (in.Crowds && in.Crowds->IsGrouped(network, slot)))
            continue;
        const double heading = (in.ShowActualHeading ? p.Course : p.Heading) * geo::DegToRad;
        const double lat = p.Latitude * geo::DegToRad, lon = p.Longitude * geo::DegToRad;
        const Vec3 east{std::cos(lon), 0.0, -std::sin(lon)};
        const Vec3 north{-std::sin(lat) * std::sin(lon), std::cos(lat), -std::sin(lat) * std::cos(lon)};
        const Vec3 forward = north * std::cos(heading) + east * std::sin(heading);
        const Vec3 right = east * std::cos(heading) + north * -std::sin(heading);
        const Vec3 centre = geo::OnGlobe(p.Latitude, p.Longitude);
        centres.push_back(centre);
        for (const auto& corner : kSymbol)
            outlines.push_back(centre + right * (corner[0] * size) + forward * (corner[1] * size));
    }
    // All symbols in one primitive each for fill and outline: a triangle from the centre to every edge
    // of the outline fills it, and one segment per edge draws it.
    SetColour(gl, in.Colours, style.PlaneFill, 1.0f);
    gl.Begin(Primitive::Triangles);
    for (size_t plane = 0; plane < centres.size(); ++plane) {
        const Vec3* ring = &outlines[plane * kCorners];
        for (size_t i = 0; i < kCorners; ++i) {
            Emit(gl, centres[plane]);
            Emit(gl, ring[i]);
            Emit(gl, ring[(i + 1) % kCorners]);
        }
    }
    gl.End();
    SetColour(gl, in.Colours, kSlotPlaneBorder, 1.0f);
    gl.Begin(Primitive::Lines);
    for (size_t plane = 0; plane < centres.size(); ++plane) {
        const Vec3* ring = &outlines[plane * kCorners];
        for (size_t i = 0; i < kCorners; ++i) {
            Emit(gl, ring[i]);
            Emit(gl, ring[(i + 1) % kCorners]);
        }
    }
    gl.End();
}

PixelRect CrowdMarkBox(const GlApi& gl, int count) {
    // Digits stand on the baseline, four pixels below the point, and reach nine pixels above it.
    return {kCrowdTextDx, -5, TextWidth(gl, QString::number(count), true), 10};
}

void CrowdMarks(GlApi& gl, int network, const TrafficInputs& in, const Style& style) {
    if (!in.Crowds)
        return;
    const double ringNm = 0.35 * SymbolSize(in.ViewZ) * geo::kEarthRadiusNm;
    const ColourTable& c = in.Colours;
    gl.TextOutline(c.Red[kSlotScreenBackground], c.Green[kSlotScreenBackground],
                   c.Blue[kSlotScreenBackground], 1.0f);
    for (const Crowd& crowd : in.Crowds->Crowds) {
        if (crowd.Network != network)
            continue;
        SetColour(gl, in.Colours, style.PlaneFill == kSlotPlaneFill ? int(kSlotPlaneBorder) : style.PlaneFill,
                  1.0f);
        gl.Begin(Primitive::LineLoop);
        CircleRim(gl, crowd.Lat, crowd.Lon, ringNm, 12);
        gl.End();
        RasterAt(gl, crowd.Lat, crowd.Lon);
        gl.BitmapMove(kCrowdTextDx, kCrowdTextDy);
        PrintBoldText(gl, QString::number(crowd.Count));
    }
    gl.TextOutline(0.0f, 0.0f, 0.0f, 0.0f);
}

void AirportMarkers(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in) {
    SetColour(gl, in.Colours, kSlotAirports, 1.0f);
    gl.Begin(Primitive::Points);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p))
            continue;
        EmitAt(gl, p.DepLatitude, p.DepLongitude);
        EmitAt(gl, p.DestLatitude, p.DestLongitude);
    }
    gl.End();
}

void InboundLines(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in) {
    SetColour(gl, in.Colours, kSlotAirports, 0.6f);
    gl.Begin(Primitive::Lines);
    std::vector<Vec3> arc;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p) || (p.DestLatitude == 0.0f && p.DestLongitude == 0.0f))
            continue;
        if (geo::Distance(p.Latitude, p.Longitude, p.DestLatitude, p.DestLongitude) < 2.0f)
            continue;
        // One segment per 2 degrees of arc, so long lines follow the globe.
        arc.assign(1, geo::OnGlobe(p.Latitude, p.Longitude));
        geo::AppendGreatCircle(arc, arc.front(), geo::OnGlobe(p.DestLatitude, p.DestLongitude), 2.0);
        for (size_t i = 1; i < arc.size(); ++i) {
            Emit(gl, arc[i - 1]);
            Emit(gl, arc[i]);
        }
    }
    gl.End();
}

} // namespace sky::render
