#include "render/aircraft_layer.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "render/crowds.h"
#include "render/list_numbers.h"
#include "render/symbol_mask.h"
#include "render/text.h"
#include "render/traffic_scene.h"

namespace sky::render {

using namespace drawing;
using geo::Vec3;

namespace {

// The aircraft symbol, nose up, in units of its half-length.
constexpr OutlinePoint kSymbol[] = {{0.00f, 1.00f},   {0.10f, 0.70f},   {0.12f, 0.25f},   {0.95f, -0.10f},
                                    {0.95f, -0.25f},  {0.12f, -0.05f},  {0.09f, -0.60f},  {0.38f, -0.85f},
                                    {0.38f, -0.98f},  {0.00f, -0.88f},  {-0.38f, -0.98f}, {-0.38f, -0.85f},
                                    {-0.09f, -0.60f}, {-0.12f, -0.05f}, {-0.95f, -0.25f}, {-0.95f, -0.10f},
                                    {-0.12f, 0.25f},  {-0.10f, 0.70f}};

// Masks are made for scales a factor of this apart: the edge keeps its width within a few percent.
constexpr double kMaskStep = 1.06;

// The screen pixels to one unit of the symbol of a mask's number.
double MaskScale(int texture) {
    return std::pow(kMaskStep, texture - lists::kSymbolMaskTextures);
}

} // namespace

double SymbolSize(float viewZ) {
    // About 16 pixels long on a 700-pixel window, whatever the zoom band.
    return 0.012 / std::pow(1.5, SymbolBand(viewZ));
}

int SymbolMaskTexture(float viewZ, int windowHeightPx) {
    // The globe's radius is viewZ window heights.
    const double zoom = std::clamp(viewZ, 0.3f, 50.0f);
    const double pixelsPerUnit = SymbolSize(viewZ) * zoom * std::clamp(windowHeightPx, 1, 100000);
    const double step = std::round(std::log(pixelsPerUnit) / std::log(kMaskStep));
    return lists::kSymbolMaskTextures + int(std::clamp(step, 0.0, 120.0));
}

namespace {

// The mask of the symbol for a texture number, made once: live motion moves the symbols ten times a
// second.
const SymbolMask& MaskFor(int texture) {
    static std::map<int, SymbolMask> masks;
    auto made = masks.find(texture);
    if (made == masks.end()) {
        if (masks.size() >= 16) // a few sizes are in use at a time
            masks.clear();
        made = masks.emplace(texture, RasteriseSymbol(kSymbol, MaskScale(texture))).first;
    }
    return made->second;
}

// The vertex array of a network's symbols: four corners per aircraft (tail left, tail right, nose
// right, nose left), each with its texture coordinate.
void SetSymbolArray(GlApi& gl, int array, const network::NetworkData& data, const TrafficInputs& in,
                    double reach) {
    constexpr float kCorner[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    std::vector<float> positions, texCoords;
    const int network = &data == &in.Tables[1] ? 1 : 0;
    positions.reserve(size_t(data.PilotCount) * 12);
    texCoords.reserve(size_t(data.PilotCount) * 8);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p) || (in.Crowds && in.Crowds->IsGrouped(network, slot)))
            continue;
        const double heading = (in.ShowActualHeading ? p.Course : p.Heading) * geo::DegToRad;
        const geo::LatLon at = DrawnAt(in, network, slot);
        const double lat = at.Lat * geo::DegToRad, lon = at.Lon * geo::DegToRad;
        const Vec3 east{std::cos(lon), 0.0, -std::sin(lon)};
        const Vec3 north{-std::sin(lat) * std::sin(lon), std::cos(lat), -std::sin(lat) * std::cos(lon)};
        const Vec3 forward = (north * std::cos(heading) + east * std::sin(heading)) * reach;
        const Vec3 right = (east * std::cos(heading) + north * -std::sin(heading)) * reach;
        const Vec3 centre = geo::OnGlobe(at.Lat, at.Lon);
        int corner = 0;
        for (const Vec3& v : {centre - right - forward, centre + right - forward, centre + right + forward,
                              centre - right + forward}) {
            positions.insert(positions.end(), {float(v.X), float(v.Y), float(v.Z)});
            texCoords.insert(texCoords.end(), {kCorner[corner][0], kCorner[corner][1]});
            ++corner;
        }
    }
    gl.SetVertexArray(array, positions.data(), texCoords.data(), int(positions.size() / 3));
}

} // namespace

void AircraftSymbols(GlApi& gl, int array, const network::NetworkData& data, const TrafficInputs& in,
                     const Style& style) {
    const int texture = SymbolMaskTexture(in.ViewZ, in.WindowHeightPx);
    const SymbolMask& mask = MaskFor(texture);
    SetSymbolArray(gl, array, data, in, SymbolSize(in.ViewZ) * mask.Reach);
    // Each aircraft one square of the mask, twice: every fill first, then every edge over them, so a
    // symbol's edge shows over the fill of one it overlaps. Alpha-tested pixels, nothing blended.
    gl.DefineAlphaTexture(texture, mask.SizeTexels, mask.Alpha.data());
    gl.Disable(Capability::Blend);
    gl.Enable(Capability::Texture);
    gl.Enable(Capability::AlphaTest);
    gl.BindTexture(texture);
    const struct {
        int Slot;
        float Alpha; // passes the fill (the edge too), or the edge alone
    } passes[] = {{style.PlaneFill, 0.25f}, {kSlotPlaneBorder, 0.75f}};
    for (const auto& pass : passes) {
        gl.AlphaFunc(pass.Alpha);
        SetColour(gl, in.Colours, pass.Slot, 1.0f);
        gl.DrawVertexArray(array, Primitive::Quads);
    }
    gl.BindTexture(0);
    gl.Disable(Capability::AlphaTest);
    gl.Disable(Capability::Texture);
    gl.Enable(Capability::Blend);
}

void MoveAircraftSymbols(GlApi& gl, int array, const network::NetworkData& data, const TrafficInputs& in) {
    const SymbolMask& mask = MaskFor(SymbolMaskTexture(in.ViewZ, in.WindowHeightPx));
    SetSymbolArray(gl, array, data, in, SymbolSize(in.ViewZ) * mask.Reach);
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
    // So many long lines show no difference when drawn up to two pixels off their arcs, and cost far
    // fewer segments so when zoomed out.
    gl.LineTolerance(2.0f);
    SetColour(gl, in.Colours, kSlotAirports, 0.6f);
    gl.Begin(Primitive::Lines);
    std::vector<Vec3> arc;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        // An aircraft on the ground is not yet on its way (or already there): only those flying are inbound.
        if (!Shows(in, p) || (p.DestLatitude == 0.0f && p.DestLongitude == 0.0f) ||
            p.GroundSpeed < kGroundSpeedKts)
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
