#pragma once

#include <cstdint>
#include <vector>

namespace sky::render {

// A large set of independent line segments, as the coastline and border lists hold them, kept so that
// a view can draw fewer of them where it shows them small: segments that continue one another are
// joined into polylines, and each inner point of a polyline gets the deviation that leaving it out
// would cause (Douglas-Peucker, nested so that a point is only left out after every point it depends
// on). Drawing at a tolerance then takes the points whose deviation exceeds it, so no line moves by
// more than the tolerance; at a tolerance of zero every segment is drawn as recorded.
//
// A segment takes the colour of its second vertex, as a line drawn with flat shading does; a polyline
// point carries the colour of the segment that ends there, so a joined segment keeps the colour of the
// last segment it stands for.
class LineDetail {
public:
    struct Vertex {
        float X = 0, Y = 0, Z = 0;
        float R = 0, G = 0, B = 0, A = 1;
    };

    void AddSegment(const Vertex& from, const Vertex& to);
    // Joins and ranks what was added; after this no segment is added.
    void Finish();

    std::size_t SegmentCount() const { return m_segments; }
    const std::vector<Vertex>& Points() const { return m_points; }
    // Index pairs into Points of the segments to draw so that no point of the recorded lines lies
    // farther than tolerance (in the vertices' units) from what is drawn. Made again only when the
    // tolerance moves to another step of a factor of two.
    const std::vector<std::uint32_t>& Segments(double tolerance);

private:
    void RankPolyline(std::size_t first, std::size_t last);

    std::vector<Vertex> m_points;         // the polylines one after another
    std::vector<std::uint32_t> m_starts;  // where each polyline begins in m_points
    std::vector<float> m_deviation;       // per point; the ends of a polyline are always drawn
    std::vector<std::uint32_t> m_indices; // for m_step
    int m_step = -1;
    std::size_t m_segments = 0;
};

} // namespace sky::render
