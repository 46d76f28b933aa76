#include "geo/sphere_geometry.h"

#include <numbers>
#include <algorithm>
#include <cmath>

namespace sky::geo {
namespace {

constexpr double kRadToDeg = 180.0 / std::numbers::pi;
// Fill triangles are no larger than this across.
constexpr double kFillStepDeg = 3.0;

// Points of a ring on the globe, the closing repeat of the first point dropped, each edge divided.
std::vector<Vec3> DenseRing(const std::vector<LatLon>& ring, double maxStepDeg) {
    std::vector<Vec3> corners;
    for (const LatLon& p : ring) {
        const Vec3 v = OnGlobe(p.Lat, p.Lon);
        if (corners.empty() || (v - corners.back()).Length() > 1e-9)
            corners.push_back(v);
    }
    while (corners.size() > 1 && (corners.back() - corners.front()).Length() <= 1e-9)
        corners.pop_back();
    std::vector<Vec3> dense;
    for (size_t i = 0; i < corners.size(); ++i) {
        if (dense.empty())
            dense.push_back(corners[i]);
        AppendGreatCircle(dense, corners[i], corners[(i + 1) % corners.size()], maxStepDeg);
    }
    if (!dense.empty())
        dense.pop_back(); // the first point again
    return dense;
}

struct Point2 {
    double X, Y;
};

double Cross(const Point2& o, const Point2& a, const Point2& b) {
    return (a.X - o.X) * (b.Y - o.Y) - (a.Y - o.Y) * (b.X - o.X);
}

bool InTriangle(const Point2& p, const Point2& a, const Point2& b, const Point2& c) {
    return Cross(a, b, p) > 0 && Cross(b, c, p) > 0 && Cross(c, a, p) > 0;
}

// A corner that turns left, or goes straight on: the points between the corners of an edge lie on one
// line in the projection, and cutting them off leaves the thin sliver between the edge's arc and its
// chord, which the globe shows.
bool TurnsLeft(const Point2& a, const Point2& b, const Point2& c) {
    const double scale = std::hypot(b.X - a.X, b.Y - a.Y) * std::hypot(c.X - b.X, c.Y - b.Y);
    return Cross(a, b, c) > -1e-9 * scale;
}

// Ear clipping of a simple polygon, corners in counter-clockwise order: index triples.
std::vector<int> EarClip(const std::vector<Point2>& pts) {
    std::vector<int> remaining(pts.size());
    for (size_t i = 0; i < pts.size(); ++i)
        remaining[i] = int(i);
    std::vector<int> triangles;
    size_t i = 0, sinceLastEar = 0;
    while (remaining.size() > 3) {
        const size_t n = remaining.size();
        const int a = remaining[(i + n - 1) % n], b = remaining[i % n], c = remaining[(i + 1) % n];
        bool ear = TurnsLeft(pts[size_t(a)], pts[size_t(b)], pts[size_t(c)]);
        for (size_t k = 0; ear && k < n; ++k) {
            const int p = remaining[k];
            if (p != a && p != b && p != c &&
                InTriangle(pts[size_t(p)], pts[size_t(a)], pts[size_t(b)], pts[size_t(c)]))
                ear = false;
        }
        // A ring that crosses itself has no ear left at some point: the corner is cut anyway.
        if (ear || sinceLastEar > n) {
            triangles.insert(triangles.end(), {a, b, c});
            remaining.erase(remaining.begin() + std::ptrdiff_t(i % n));
            sinceLastEar = 0;
            if (i >= remaining.size())
                i = 0;
        } else {
            i = (i + 1) % n;
            ++sinceLastEar;
        }
    }
    if (remaining.size() == 3)
        triangles.insert(triangles.end(), {remaining[0], remaining[1], remaining[2]});
    return triangles;
}

double Angle(const Vec3& a, const Vec3& b) {
    return std::acos(std::clamp(a.Dot(b), -1.0, 1.0));
}

// Splits a triangle on its longest edge, at the middle of that edge's arc, until no edge is longer than
// maxStepRad, so that it follows the globe. A shared edge is split at the same points from both sides,
// since how often an edge is halved depends on its length alone.
void Subdivide(const Vec3& a, const Vec3& b, const Vec3& c, double maxStepRad, int depth,
               std::vector<Vec3>& out) {
    const double ab = Angle(a, b), bc = Angle(b, c), ca = Angle(c, a);
    const double longest = std::max({ab, bc, ca});
    if (longest <= maxStepRad || depth > 24) {
        out.insert(out.end(), {a, b, c});
        return;
    }
    if (longest == ab) {
        const Vec3 m = (a + b).Normalised();
        Subdivide(a, m, c, maxStepRad, depth + 1, out);
        Subdivide(m, b, c, maxStepRad, depth + 1, out);
    } else if (longest == bc) {
        const Vec3 m = (b + c).Normalised();
        Subdivide(a, b, m, maxStepRad, depth + 1, out);
        Subdivide(a, m, c, maxStepRad, depth + 1, out);
    } else {
        const Vec3 m = (c + a).Normalised();
        Subdivide(a, b, m, maxStepRad, depth + 1, out);
        Subdivide(m, b, c, maxStepRad, depth + 1, out);
    }
}

} // namespace

void AppendGreatCircle(std::vector<Vec3>& points, Vec3 a, Vec3 b, double maxStepDeg) {
    const double angle = std::acos(std::clamp(a.Dot(b), -1.0, 1.0));
    const int steps = std::clamp(int(std::ceil(angle * kRadToDeg / std::max(maxStepDeg, 0.01))), 1, 3600);
    const double s = std::sin(angle);
    for (int k = 1; k < steps; ++k) {
        const double t = double(k) / steps;
        points.push_back(s < 1e-9 ? b : a * (std::sin((1 - t) * angle) / s) + b * (std::sin(t * angle) / s));
    }
    points.push_back(b);
}

bool IsAntimeridianCut(const LatLon& a, const LatLon& b) {
    const auto onCut = [](const LatLon& p) { return std::fabs(std::fabs(p.Lon) - 180.0f) < 1e-4f; };
    return onCut(a) && onCut(b);
}

std::vector<Vec3> OutlineSegments(const std::vector<LatLon>& ring, double maxStepDeg) {
    std::vector<Vec3> segments;
    const size_t n = ring.size();
    for (size_t i = 0; n > 1 && i < n; ++i) {
        const LatLon& a = ring[i];
        const LatLon& b = ring[(i + 1) % n];
        if (IsAntimeridianCut(a, b) || (a.Lat == b.Lat && a.Lon == b.Lon))
            continue;
        std::vector<Vec3> edge{OnGlobe(a.Lat, a.Lon)};
        AppendGreatCircle(edge, edge.front(), OnGlobe(b.Lat, b.Lon), maxStepDeg);
        for (size_t k = 1; k < edge.size(); ++k) {
            segments.push_back(edge[k - 1]);
            segments.push_back(edge[k]);
        }
    }
    return segments;
}

std::vector<Vec3> FillTriangles(const std::vector<LatLon>& ring, double maxStepDeg) {
    const std::vector<Vec3> dense = DenseRing(ring, maxStepDeg);
    if (DenseRing(ring, 360.0).size() < 3) // fewer than three corners
        return {};
    Vec3 sum;
    for (const Vec3& p : dense)
        sum = sum + p;
    const Vec3 centre = sum.Normalised();
    // The gnomonic projection about the ring's centre turns its great-circle edges into straight lines.
    const Vec3 helper = std::fabs(centre.Y) < 0.9 ? Vec3{0, 1, 0} : Vec3{1, 0, 0};
    const Vec3 east = helper.Cross(centre).Normalised();
    const Vec3 north = centre.Cross(east);
    std::vector<Point2> flat;
    flat.reserve(dense.size());
    for (const Vec3& p : dense) {
        const double depth = p.Dot(centre);
        if (depth < 0.05)
            return {};
        flat.push_back({p.Dot(east) / depth, p.Dot(north) / depth});
    }
    double area = 0;
    for (size_t i = 0; i < flat.size(); ++i) {
        const Point2& a = flat[i];
        const Point2& b = flat[(i + 1) % flat.size()];
        area += a.X * b.Y - b.X * a.Y;
    }
    std::vector<int> order(flat.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = area >= 0 ? int(i) : int(order.size() - 1 - i);
    std::vector<Point2> ccw;
    ccw.reserve(flat.size());
    for (int k : order)
        ccw.push_back(flat[size_t(k)]);
    // The corners' triangles are halved until they lie close to the globe: a flat triangle across the
    // globe's visible edge would be cut off well inside it.
    const std::vector<int> corners = EarClip(ccw);
    const double maxFillStepRad = kFillStepDeg / kRadToDeg;
    std::vector<Vec3> triangles;
    for (size_t k = 0; k + 2 < corners.size(); k += 3) {
        const auto at = [&](size_t i) { return dense[size_t(order[size_t(corners[k + i])])]; };
        Subdivide(at(0), at(1), at(2), std::max(maxFillStepRad, maxStepDeg / kRadToDeg), 0, triangles);
    }
    return triangles;
}

} // namespace sky::geo
