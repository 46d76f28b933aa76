#include "geo/sphere_geometry.h"

#include <gtest/gtest.h>

namespace sky::geo {
namespace {

constexpr double kRadToDeg = 180.0 / 3.141592653589793;

double SphericalArea(const Vec3& a, const Vec3& b, const Vec3& c) {
    // The spherical excess, from the triple product (Van Oosterom and Strackee).
    const double numerator = std::fabs(a.Dot(b.Cross(c)));
    const double denominator = 1 + a.Dot(b) + b.Dot(c) + c.Dot(a);
    return 2 * std::atan2(numerator, denominator);
}

double LongestEdgeDeg(const std::vector<Vec3>& points, size_t group) {
    double longest = 0;
    for (size_t i = 0; i + group <= points.size(); i += group)
        for (size_t k = 0; k < group; ++k)
            longest = std::max(
                longest,
                std::acos(std::clamp(points[i + k].Dot(points[i + (k + 1) % group]), -1.0, 1.0)) * kRadToDeg);
    return longest;
}

TEST(FillTriangles, CoverTheRingOnceInSmallPiecesAlongTheGlobe) {
    // Areas in units of the unit sphere: a band between two meridians and two parallels has
    // dLon * (sin(lat2) - sin(lat1)) when its edges run along the parallels; with great-circle edges,
    // as here, the area lies a little below that, so the expected areas are those of the same rings
    // cut into triangles at their corners.
    const struct {
        const char* name;
        std::vector<LatLon> ring;
    } rows[] = {
        {"square", {{0, 0}, {0, 10}, {10, 10}, {10, 0}, {0, 0}}},
        {"the same, clockwise", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}},
        {"concave L, from its inner corner", {{5, 5}, {20, 5}, {20, 0}, {0, 0}, {0, 20}, {5, 20}}},
        {"across the date line", {{-10, 170}, {-10, -170}, {10, -170}, {10, 170}}},
        {"60 degrees wide, long edges", {{-20, 60}, {20, 60}, {20, 120}, {-20, 120}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<Vec3> triangles = FillTriangles(row.ring, 1.0);
        ASSERT_EQ(triangles.size() % 3, 0u);
        // The corners' own triangulation as the reference area: a fan from the first corner is exact
        // for these rings, each of which that corner sees whole.
        std::vector<Vec3> corners;
        for (const LatLon& p : row.ring)
            corners.push_back(OnGlobe(p.Lat, p.Lon));
        double expected = 0;
        for (size_t i = 1; i + 1 < corners.size(); ++i)
            expected += SphericalArea(corners[0], corners[i], corners[i + 1]);
        double area = 0;
        for (size_t i = 0; i < triangles.size(); i += 3)
            area += SphericalArea(triangles[i], triangles[i + 1], triangles[i + 2]);
        EXPECT_NEAR(area, expected, expected * 0.01);
        EXPECT_LE(LongestEdgeDeg(triangles, 3), 3.0001);
    }
}

TEST(FillTriangles, NothingForTooFewPointsOrMoreThanAHemisphere) {
    EXPECT_TRUE(FillTriangles({}, 1.0).empty());
    EXPECT_TRUE(FillTriangles({{0, 0}, {0, 10}, {0, 0}}, 1.0).empty());
    EXPECT_TRUE(FillTriangles({{0, 0}, {0, 120}, {0, -120}}, 1.0).empty()); // round the equator
}

TEST(OutlineSegments, FollowGreatCirclesAndLeaveOutTheDateLineCut) {
    const std::vector<LatLon> east = {{30, 170}, {30, 180}, {50, 180}, {50, 170}, {30, 170}};
    const std::vector<Vec3> segments = OutlineSegments(east, 1.0);
    ASSERT_EQ(segments.size() % 2, 0u);
    EXPECT_LE(LongestEdgeDeg(segments, 2), 1.0001);
    for (const Vec3& p : segments) {
        EXPECT_NEAR(p.Length(), 1.0, 1e-6);
        // No segment lies on the 180 degree meridian (x = 0, z < 0) between the cut's ends.
        const bool onCut = std::fabs(p.X) < 1e-6 && p.Z < 0 && p.Y > std::sin(31 / kRadToDeg) &&
                           p.Y < std::sin(49 / kRadToDeg);
        EXPECT_FALSE(onCut);
    }
    // The ring's other three edges: 8.7, 20 and 6.4 degrees of arc, a segment a degree at most.
    EXPECT_EQ(segments.size() / 2, 9u + 20u + 7u);
}

TEST(SimplifyRing, KeepsTheCornersTheToleranceNeedsAndTheDateLineCut) {
    struct Row {
        const char* name;
        std::vector<LatLon> ring;
        double toleranceRad;
        size_t corners;
    };
    // (0, 5) lies on the equator's great circle; (5, 10.001) is 1.7e-5 rad off its meridian.
    const std::vector<LatLon> square = {{0, 0}, {0, 5}, {0, 10}, {5, 10.001f}, {10, 10}, {10, 0}, {0, 0}};
    const Row rows[] = {
        {"a wiggle under the tolerance goes", square, 1e-4, 4},
        {"one over it stays", square, 1e-6, 5},
        {"no tolerance keeps every corner, once", square, 0, 6},
        {"the cut at 180 degrees stays", {{30, 170}, {30, 180}, {40, 180}, {50, 180}, {50, 170}}, 0.5, 4},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<LatLon> kept = SimplifyRing(row.ring, row.toleranceRad);
        EXPECT_EQ(kept.size(), row.corners);
        EXPECT_EQ(
            std::count_if(kept.begin(), kept.end(), [](const LatLon& p) { return p.Lon == 180; }),
            std::count_if(row.ring.begin(), row.ring.end(), [](const LatLon& p) { return p.Lon == 180; }));
    }
}

} // namespace
} // namespace sky::geo
