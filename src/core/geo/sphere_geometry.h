#pragma once

#include <vector>

#include "geo/geodesy.h"

namespace sky::geo {

// A point or direction in the globe's coordinates (see GlobeX).
struct Vec3 {
    double X = 0, Y = 0, Z = 0;
    Vec3 operator+(const Vec3& o) const { return {X + o.X, Y + o.Y, Z + o.Z}; }
    Vec3 operator-(const Vec3& o) const { return {X - o.X, Y - o.Y, Z - o.Z}; }
    Vec3 operator*(double f) const { return {X * f, Y * f, Z * f}; }
    double Dot(const Vec3& o) const { return X * o.X + Y * o.Y + Z * o.Z; }
    Vec3 Cross(const Vec3& o) const { return {Y * o.Z - Z * o.Y, Z * o.X - X * o.Z, X * o.Y - Y * o.X}; }
    double Length() const { return std::sqrt(Dot(*this)); }
    Vec3 Normalised() const {
        const double l = Length();
        return l > 0 ? *this * (1.0 / l) : *this;
    }
};

inline Vec3 OnGlobe(float lat, float lon) {
    return {GlobeX(lat, lon), GlobeY(lat, lon), GlobeZ(lat, lon)};
}

// The points from a to b along their great circle, no two consecutive ones more than maxStepDeg apart
// (a and b are copies: they may be points of the vector that grows):
// a itself is not added, b is.
void AppendGreatCircle(std::vector<Vec3>& points, Vec3 a, Vec3 b, double maxStepDeg);

// True for an edge that only marks where an outline was cut at the 180° meridian (both ends on it).
bool IsAntimeridianCut(const LatLon& a, const LatLon& b);

// An outline ring drawn on the globe: pairs of points, each a segment along the great circle of an
// edge, no longer than maxStepDeg, leaving out the edges of a cut at the 180° meridian. The ring is
// closed back to its first point.
std::vector<Vec3> OutlineSegments(const std::vector<LatLon>& ring, double maxStepDeg);

// Triangles (three points each) that fill a ring without overlapping, the ring's edges following their
// great circles in pieces of at most maxStepDeg (or three degrees if less). The triangles are small (no
// edge over three degrees) and flat between corners on the globe, so where the globe's far side is cut
// off, a fill is cut with it, close to the globe's edge. Empty when the ring has fewer than three
// distinct points or reaches round more than about a hemisphere. A ring that crosses itself is filled
// as well as its order allows.
std::vector<Vec3> FillTriangles(const std::vector<LatLon>& ring, double maxStepDeg);

// The corners of a ring that an outline drawn through them needs to stay within toleranceRad (radians
// of arc) of the whole ring (Douglas-Peucker along great circles), repeats dropped, not closed. The
// corners on the 180 degree meridian always stay.
std::vector<LatLon> SimplifyRing(const std::vector<LatLon>& ring, double toleranceRad);

} // namespace sky::geo
