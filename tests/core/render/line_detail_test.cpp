#include "render/line_detail.h"

#include <cmath>

#include <gtest/gtest.h>

namespace sky::render {
namespace {

using Vertex = LineDetail::Vertex;

double DistanceFromSegment(const Vertex& p, const Vertex& a, const Vertex& b) {
    const double ab[3] = {b.X - a.X, b.Y - a.Y, b.Z - a.Z}, ap[3] = {p.X - a.X, p.Y - a.Y, p.Z - a.Z};
    const double length2 = ab[0] * ab[0] + ab[1] * ab[1] + ab[2] * ab[2];
    const double t =
        length2 > 0 ? std::clamp((ab[0] * ap[0] + ab[1] * ap[1] + ab[2] * ap[2]) / length2, 0.0, 1.0) : 0.0;
    return std::hypot(ap[0] - t * ab[0], ap[1] - t * ab[1], ap[2] - t * ab[2]);
}

// A wiggly coast of 2,000 segments (small waves and a few large bays) and, apart from it, two segments
// that do not continue one another. Each segment's colour is its index.
LineDetail Coast() {
    LineDetail lines;
    Vertex previous{0, 0, 1};
    for (int i = 1; i <= 2000; ++i) {
        const double x = i * 1e-3;
        const Vertex next{float(x), float(1e-4 * std::sin(i * 1.7) + 2e-2 * std::sin(x * 9.0)), 1.0f,
                          float(i)};
        lines.AddSegment(previous, next);
        previous = next;
    }
    lines.AddSegment({5, 5, 1}, {6, 5, 1, 2001});
    lines.AddSegment({7, 5, 1}, {8, 5, 1, 2002});
    lines.Finish();
    return lines;
}

TEST(LineDetail, NoRecordedPointStrays) {
    LineDetail lines = Coast();
    EXPECT_EQ(lines.SegmentCount(), 2002u);
    EXPECT_EQ(lines.Segments(0.0).size(), 2 * 2002u); // no tolerance: every segment as recorded
    const auto& points = lines.Points();
    size_t drawn = 2 * 2002;
    for (double tolerance : {3e-4, 4e-3, 0.05}) {
        SCOPED_TRACE(tolerance);
        const std::vector<std::uint32_t> segments = lines.Segments(tolerance);
        EXPECT_LT(segments.size(), drawn); // each coarser step draws fewer
        drawn = segments.size();
        // Every point of the coast lies within the tolerance of what is drawn.
        for (size_t p = 0; p < 2001; ++p) {
            double nearest = 1e9;
            for (size_t s = 0; s + 1 < segments.size(); s += 2)
                nearest = std::min(
                    nearest, DistanceFromSegment(points[p], points[segments[s]], points[segments[s + 1]]));
            ASSERT_LE(nearest, tolerance) << "point " << p;
        }
        // The separate segments are drawn whatever the tolerance, each in its colour.
        ASSERT_GE(segments.size(), 4u);
        EXPECT_EQ(points[segments[segments.size() - 3]].R, 2001.0f);
        EXPECT_EQ(points[segments.back()].R, 2002.0f);
    }
    // A joined segment takes the colour of the last segment it stands for.
    const auto& coarse = lines.Segments(0.05);
    EXPECT_GT(coarse[1], coarse[0] + 1);
    EXPECT_EQ(points[coarse[1]].R, float(coarse[1])); // the colour of the segment that ends there
    EXPECT_EQ(points[coarse[0]].R, 1.0f);             // the coast's start, coloured as its first segment
}

// A point found inside a span is only drawn while the point that made the span is: here Q lies farther
// from the chord A-P than P from A-E, yet drawing Q without P would take the line 1.9 away from P.
TEST(LineDetail, APointIsNeverDrawnWithoutThePointItHangsFrom) {
    LineDetail lines;
    const Vertex a{0, 0, 0}, q{0.9f, -0.9f, 0}, p{1, 1, 0}, e{10, 0, 0};
    lines.AddSegment(a, q);
    lines.AddSegment(q, p);
    lines.AddSegment(p, e);
    lines.Finish();
    EXPECT_EQ(lines.Segments(1.1), (std::vector<std::uint32_t>{0, 3}));
    EXPECT_EQ(lines.Segments(0.6), (std::vector<std::uint32_t>{0, 1, 1, 2, 2, 3}));
}

} // namespace
} // namespace sky::render
