#include "render/sector_layer.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "refdata/fir_outlines.h"
#include "render/traffic_scene.h"

namespace sky::render {

using namespace drawing;
using network::ControllerRecord;

namespace {

// Edges of outlines follow their great circle in steps of no fewer degrees than this.
constexpr double kOutlineStepDeg = 1.0;
// Levels of detail kept at once.
constexpr size_t kLevelsKept = 3;

// Radii of the areas drawn for stations without an outline of their own.
constexpr double kApproachRadiusNm = 30.0;
constexpr double kTowerRadiusNm = 12.0;
constexpr double kGroundRadiusNm = 3.0;
constexpr double kMinimumCentreRadiusNm = 50.0;

// A disc shaded from its centre colour to its rim colour.
void ShadedDisc(GlApi& gl, const ColourTable& c, float lat, float lon, double radiusNm, int centreSlot,
                int rimSlot) {
    gl.Begin(Primitive::TriangleFan);
    SetColour(gl, c, centreSlot, 0.6f);
    EmitAt(gl, lat, lon);
    SetColour(gl, c, rimSlot, 0.25f);
    CircleRim(gl, lat, lon, radiusNm);
    gl.End();
}

void CircleOutline(GlApi& gl, float lat, float lon, double radiusNm) {
    gl.Begin(Primitive::LineStrip);
    CircleRim(gl, lat, lon, radiusNm);
    gl.End();
}

bool IsAreaStation(const ControllerRecord& c) {
    return c.FacilityType > network::kFacilityApproach;
}

double CentreRadiusNm(const ControllerRecord& c) {
    return std::max<double>(c.VisualRange, kMinimumCentreRadiusNm);
}

// The shapes of a station's FIR outlines; empty when it has none.
std::vector<const SectorShapes::Shape*> ShapesOf(const ControllerRecord& s, const TrafficInputs& in,
                                                 SectorShapes& cache) {
    std::vector<const SectorShapes::Shape*> shapes;
    const int detail = SectorDetail(in.ViewZ, in.WindowHeightPx);
    for (const FirOutline* outline : in.Outlines.ForIdentifier(s.Station))
        shapes.push_back(&cache.For(*outline, detail));
    return shapes;
}

template <typename Visit>
void EachStation(const network::NetworkData& data, const TrafficInputs& in, Visit visit) {
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[size_t(slot)];
        if (Shows(in, s))
            visit(s);
    }
}

} // namespace

int SectorDetail(float viewZ, int windowHeightPx) {
    // A pixel at the band's closest zoom, in units of the globe's radius (as many window heights as the
    // zoom), rounded down to a power of two: as the coastlines and borders are drawn.
    const double closest = std::min(50.0, std::pow(1.5, SymbolBand(viewZ) + 0.5));
    const double tolerance = 1.0 / (closest * std::clamp(windowHeightPx, 1, 100000));
    return int(std::floor(std::log2(tolerance)));
}

const SectorShapes::Shape& SectorShapes::For(const FirOutline& outline, int detail) {
    if (!m_levels.contains(detail) && m_levels.size() >= kLevelsKept) {
        // The level farthest from the one asked for goes.
        const auto farthest =
            std::abs(m_levels.begin()->first - detail) > std::abs(m_levels.rbegin()->first - detail)
                ? m_levels.begin()
                : std::prev(m_levels.end());
        m_levels.erase(farthest);
    }
    auto& shapes = m_levels[detail];
    const auto found = shapes.find(&outline);
    if (found != shapes.end())
        return found->second;
    // An arc split into steps of stepRad lies within 1 - cos(stepRad / 2) of its chords.
    const double tolerance = std::ldexp(1.0, detail);
    const double stepDeg =
        std::max(kOutlineStepDeg, 2.0 * std::acos(std::max(0.0, 1.0 - tolerance)) / geo::DegToRad);
    Shape shape;
    for (const auto& ring : outline.Rings) {
        const std::vector<geo::LatLon> corners = geo::SimplifyRing(ring, tolerance);
        const std::vector<geo::Vec3> triangles = geo::FillTriangles(corners, stepDeg);
        shape.Triangles.insert(shape.Triangles.end(), triangles.begin(), triangles.end());
        const std::vector<geo::Vec3> segments = geo::OutlineSegments(corners, stepDeg);
        shape.Segments.insert(shape.Segments.end(), segments.begin(), segments.end());
    }
    return shapes.emplace(&outline, std::move(shape)).first->second;
}

void SectorFills(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in, const Style& style) {
    gl.LineWidth(2.0f);
    const ColourTable& c = in.Colours;
    const bool comparison = style.SectorFill != kSlotCTRFill;
    SectorShapes uncached;
    SectorShapes& cache = in.Shapes ? *in.Shapes : uncached;
    // Sectors are flat triangles between points of the globe: the globe's far side is cut off with them.
    EachStation(data, in, [&](const ControllerRecord& s) {
        if (!IsAreaStation(s))
            return;
        SetColour(gl, c, style.SectorFill, comparison ? 0.35f : 0.5f);
        const auto shapes = ShapesOf(s, in, cache);
        if (shapes.empty()) {
            gl.Begin(Primitive::TriangleFan);
            EmitAt(gl, s.DisplayLatitude, s.DisplayLongitude);
            CircleRim(gl, s.DisplayLatitude, s.DisplayLongitude, CentreRadiusNm(s));
            gl.End();
            return;
        }
        gl.Begin(Primitive::Triangles);
        for (const SectorShapes::Shape* shape : shapes)
            for (const geo::Vec3& v : shape->Triangles)
                Emit(gl, v);
        gl.End();
    });
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    const struct {
        int Facility;
        double RadiusNm;
        int Centre, Rim;
    } discs[] = {{network::kFacilityApproach, kApproachRadiusNm, kSlotAPPFillCenter, kSlotAPPFillOut},
                 {network::kFacilityTower, kTowerRadiusNm, kSlotTWRFillCenter, kSlotTWRFillOut}};
    for (const auto& disc : discs) {
        EachStation(data, in, [&](const ControllerRecord& s) {
            if (s.FacilityType == disc.Facility)
                ShadedDisc(gl, c, s.DisplayLatitude, s.DisplayLongitude, disc.RadiusNm,
                           comparison ? style.SectorFill : disc.Centre,
                           comparison ? style.SectorFill : disc.Rim);
        });
    }
}

void SectorOutlines(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                    const Style& style) {
    const ColourTable& c = in.Colours;
    const bool comparison = style.SectorBorder != kSlotCTRBorder;
    SectorShapes uncached;
    SectorShapes& cache = in.Shapes ? *in.Shapes : uncached;
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    gl.LineWidth(2.0f);
    SetColour(gl, c, style.SectorBorder, 1.0f);
    EachStation(data, in, [&](const ControllerRecord& s) {
        if (!IsAreaStation(s))
            return;
        const auto shapes = ShapesOf(s, in, cache);
        if (shapes.empty()) {
            CircleOutline(gl, s.DisplayLatitude, s.DisplayLongitude, CentreRadiusNm(s));
            return;
        }
        gl.Begin(Primitive::Lines);
        for (const SectorShapes::Shape* shape : shapes)
            for (const geo::Vec3& v : shape->Segments)
                Emit(gl, v);
        gl.End();
    });
    gl.LineWidth(1.0f);
    const struct {
        int Facility;
        int Slot;
        double RadiusNm;
    } kinds[] = {{network::kFacilityApproach, kSlotAPPBorder, kApproachRadiusNm},
                 {network::kFacilityTower, kSlotTWRBorder, kTowerRadiusNm},
                 {network::kFacilityGround, kSlotTWRBorder, kGroundRadiusNm}};
    for (const auto& kind : kinds) {
        SetColour(gl, c, comparison ? style.SectorBorder : kind.Slot, 1.0f);
        EachStation(data, in, [&](const ControllerRecord& s) {
            if (s.FacilityType == kind.Facility)
                CircleOutline(gl, s.DisplayLatitude, s.DisplayLongitude, kind.RadiusNm);
        });
    }
    // An ATIS is a small diamond beside its airport.
    SetColour(gl, c, comparison ? style.SectorBorder : kSlotAPPBorder, 1.0f);
    EachStation(data, in, [&](const ControllerRecord& s) {
        if (s.FacilityType != network::kFacilityAtis)
            return;
        gl.Begin(Primitive::LineLoop);
        for (int corner = 0; corner < 4; ++corner) {
            const geo::LatLon p = PointAt(s.DisplayLatitude, s.DisplayLongitude, 2.0, 45.0 + 90.0 * corner);
            EmitAt(gl, p.Lat, p.Lon);
        }
        gl.End();
    });
}

void ControllerMarkers(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                       const Style& style) {
    SetColour(gl, in.Colours, style.AtcLabel, 1.0f);
    gl.Begin(Primitive::Points);
    EachStation(data, in, [&](const ControllerRecord& s) {
        if (s.FacilityType > 1)
            EmitAt(gl, s.DisplayLatitude, s.DisplayLongitude);
    });
    gl.End();
}

} // namespace sky::render
