#include "geo/sphere_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace sky::geo {
namespace {

constexpr double kRadToDeg = 180.0 / std::numbers::pi;
// Fill triangles are no larger than this across.
constexpr double kFillStepDeg = 3.0;

// The corners of a ring on the globe, repeats and the closing repeat of the first point dropped.
std::vector<Vec3> Corners(const std::vector<LatLon>& ring) {
    std::vector<Vec3> corners;
    for (const LatLon& p : ring) {
        const Vec3 v = OnGlobe(p.Lat, p.Lon);
        if (corners.empty() || (v - corners.back()).Length() > 1e-9)
            corners.push_back(v);
    }
    while (corners.size() > 1 && (corners.back() - corners.front()).Length() <= 1e-9)
        corners.pop_back();
    return corners;
}

// The middle of a ring's edges, each weighted by its length: where the ring lies, however unevenly its
// corners are spread.
Vec3 RingCentre(const std::vector<Vec3>& corners) {
    Vec3 sum;
    for (size_t i = 0; i < corners.size(); ++i) {
        const Vec3& a = corners[i];
        const Vec3& b = corners[(i + 1) % corners.size()];
        sum = sum + (a + b) * (b - a).Length();
    }
    return sum.Normalised();
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

// Splits a triangle on its longest edge that is longer than it may be, at the middle of that edge's arc,
// until every edge is short enough: the ring's own edges (border) no longer than borderRad, so they
// follow their great circle, the others no longer than innerRad, so the triangle follows the globe. A
// shared inner edge is split at the same points from both sides, since how often it is halved depends
// on its length alone.
struct Corner {
    Vec3 Point;
    bool BorderNext = false; // the edge from this corner to the next is one of the ring's
};
void Subdivide(const std::array<Corner, 3>& t, double borderRad, double innerRad, int depth,
               std::vector<Vec3>& out) {
    int split = -1;
    double longest = 0;
    for (int i = 0; i < 3; ++i) {
        const double length = Angle(t[i].Point, t[(i + 1) % 3].Point);
        if (length > (t[i].BorderNext ? borderRad : innerRad) && length > longest) {
            longest = length;
            split = i;
        }
    }
    if (split < 0 || depth > 24) {
        out.insert(out.end(), {t[0].Point, t[1].Point, t[2].Point});
        return;
    }
    const Corner& a = t[size_t(split)];
    const Corner& b = t[size_t((split + 1) % 3)];
    const Corner& c = t[size_t((split + 2) % 3)];
    const Corner m{(a.Point + b.Point).Normalised(), a.BorderNext};
    Subdivide({a, Corner{m.Point, false}, c}, borderRad, innerRad, depth + 1, out);
    Subdivide({m, b, Corner{c.Point, false}}, borderRad, innerRad, depth + 1, out);
}

// The distance of p from the arc from a to b, in units of the globe's radius (small distances).
double ArcDistance(const Vec3& p, const Vec3& a, const Vec3& b) {
    const Vec3 normal = a.Cross(b);
    if (normal.Length() < 1e-12 || (p - a).Dot(b - a) < 0 || (p - b).Dot(a - b) < 0)
        return std::min((p - a).Length(), (p - b).Length());
    return std::fabs(p.Dot(normal.Normalised()));
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

std::vector<LatLon> SimplifyRing(const std::vector<LatLon>& ring, double toleranceRad) {
    std::vector<LatLon> points;
    std::vector<Vec3> places;
    for (const LatLon& p : ring) {
        const Vec3 v = OnGlobe(p.Lat, p.Lon);
        if (places.empty() || (v - places.back()).Length() > 1e-9) {
            points.push_back(p);
            places.push_back(v);
        }
    }
    while (places.size() > 1 && (places.back() - places.front()).Length() <= 1e-9) {
        places.pop_back();
        points.pop_back();
    }
    const size_t n = places.size();
    if (n < 4 || !(toleranceRad > 0))
        return points;
    // Douglas-Peucker on the closed ring, from its first corner and the corner farthest from it; the
    // corners of a cut at the 180 degree meridian stay, so the cut stays undrawn.
    std::vector<bool> keep(n, false);
    size_t far = 1;
    for (size_t i = 1; i < n; ++i) {
        keep[i] = std::fabs(std::fabs(points[i].Lon) - 180.0f) < 1e-4f;
        if ((places[i] - places[0]).Length() > (places[far] - places[0]).Length())
            far = i;
    }
    keep[0] = keep[far] = true;
    std::vector<std::pair<size_t, size_t>> spans{{0, far}, {far, n}}; // n stands for 0 again
    while (!spans.empty()) {
        const auto [from, to] = spans.back();
        spans.pop_back();
        double farthest = -1;
        size_t at = from;
        for (size_t k = from + 1; k < to; ++k) {
            const double d = ArcDistance(places[k], places[from], places[to % n]);
            if (d > farthest) {
                farthest = d;
                at = k;
            }
        }
        if (farthest > toleranceRad) {
            keep[at] = true;
            spans.push_back({from, at});
            spans.push_back({at, to});
        } else {
            // Within the tolerance, only the cut's corners stay; they split the span for what lies
            // between them.
            for (size_t k = from + 1; k < to; ++k)
                if (keep[k]) {
                    spans.push_back({from, k});
                    spans.push_back({k, to});
                    break;
                }
        }
    }
    std::vector<LatLon> kept;
    for (size_t i = 0; i < n; ++i)
        if (keep[i])
            kept.push_back(points[i]);
    return kept;
}

std::vector<Vec3> FillTriangles(const std::vector<LatLon>& ring, double maxStepDeg) {
    const std::vector<Vec3> corners = Corners(ring);
    if (corners.size() < 3)
        return {};
    const Vec3 centre = RingCentre(corners);
    // The gnomonic projection about the ring's centre turns its great-circle edges into straight lines.
    const Vec3 helper = std::fabs(centre.Y) < 0.9 ? Vec3{0, 1, 0} : Vec3{1, 0, 0};
    const Vec3 east = helper.Cross(centre).Normalised();
    const Vec3 north = centre.Cross(east);
    std::vector<Point2> flat;
    flat.reserve(corners.size());
    for (const Vec3& p : corners) {
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
    const size_t n = flat.size();
    std::vector<int> order(n);
    for (size_t i = 0; i < n; ++i)
        order[i] = area >= 0 ? int(i) : int(n - 1 - i);
    std::vector<Point2> ccw;
    ccw.reserve(n);
    for (int k : order)
        ccw.push_back(flat[size_t(k)]);
    // The corners' triangles are halved until they lie close to the globe (a flat triangle across the
    // globe's visible edge would be cut off well inside it) and their edges on the ring follow it.
    const std::vector<int> ears = EarClip(ccw);
    const double innerRad = kFillStepDeg / kRadToDeg;
    const double borderRad = std::min(kFillStepDeg, std::max(maxStepDeg, 0.01)) / kRadToDeg;
    std::vector<Vec3> triangles;
    for (size_t k = 0; k + 2 < ears.size(); k += 3) {
        std::array<Corner, 3> t;
        for (size_t i = 0; i < 3; ++i) {
            const int from = ears[k + i], to = ears[k + (i + 1) % 3];
            t[i] = {corners[size_t(order[size_t(from)])],
                    (from + 1) % int(n) == to || (to + 1) % int(n) == from};
        }
        Subdivide(t, borderRad, innerRad, 0, triangles);
    }
    return triangles;
}

} // namespace sky::geo
