#pragma once

#include <map>
#include <unordered_map>
#include <vector>

#include "geo/sphere_geometry.h"
#include "network/client_records.h"
#include "render/scene_drawing.h"

namespace sky {
struct FirOutline;
}

namespace sky::render {

struct TrafficInputs;

// The drawn shape of FIR outlines: fill triangles and outline segments on the globe, their edges along
// great circles, simplified for a level of detail. Worked out on first use and kept (for the last few
// levels asked for), since the outlines never change while the program runs.
class SectorShapes {
public:
    struct Shape {
        std::vector<geo::Vec3> Triangles; // three points each
        std::vector<geo::Vec3> Segments;  // two points each
    };
    // detail: see SectorDetail.
    const Shape& For(const FirOutline& outline, int detail);

private:
    std::map<int, std::unordered_map<const FirOutline*, Shape>> m_levels;
};

// The level of detail of the sectors for a zoom and window height: outlines drawn at it keep within
// a pixel of the full ones at every zoom of the symbols' band (and follow their great circles at
// least as closely as in steps of a degree). The sector lists are recorded again when it changes.
int SectorDetail(float viewZ, int windowHeightPx);

// The first layer of the controllers: sector fills of centre and flight-service stations (their FIR
// outlines, or a circle of their range), then the approach and tower discs.
void SectorFills(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in, const drawing::Style& style);
// The second layer: sector outlines, approach, tower and ground circles, and ATIS diamonds.
void SectorOutlines(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                    const drawing::Style& style);
// A point at every shown station.
void ControllerMarkers(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                       const drawing::Style& style);

} // namespace sky::render
