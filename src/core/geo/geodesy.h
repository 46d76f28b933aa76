#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

// Spherical-earth routines. Positions are single-precision degrees, north and east positive;
// arithmetic in between is double. Pi is taken as 3.14159 throughout, on purpose: every distance,
// course and drawn position of the program agrees with that approximation.
namespace sky::geo {

inline constexpr double kPi = 3.14159;
inline constexpr double DegToRad = kPi / 180.0;
inline constexpr float kEarthRadiusNm = 3440.0f;

// A point of the unit globe as drawn: latitude 0, longitude 0 on +Z, the north pole on +Y, longitude
// 90 east on +X. Plain functions with no state, called for every vertex of a scene.
inline float GlobeX(float lat, float lon) {
    return static_cast<float>(std::cos(lat * DegToRad) * std::sin(lon * DegToRad));
}

inline float GlobeY(float lat, float /*lon*/) {
    return static_cast<float>(std::sin(lat * DegToRad));
}

inline float GlobeZ(float lat, float lon) {
    return static_cast<float>(std::cos(lat * DegToRad) * std::cos(lon * DegToRad));
}

// The arc cosine on which distances rest, in radians. Between -0.5 and 0.5 it is 0.01 radian above the
// true value (the constant 1.580795), which lengthens distances of 3600 to 7200 nm by about 34 nm;
// outside -1 to 1 it gives pi or 0.
float ArcCos(float x);

// Great-circle distance in nautical miles on a sphere of 3440 nm. A result of exactly 3440 is reported
// as 0.
float Distance(float lat1, float lon1, float lat2, float lon2);

// Initial great-circle course from point 1 to point 2, in whole degrees. Courses west of north can come
// out negative (down to -180); callers wanting 0 to 359 add 360.
std::int16_t Course(float lat1, float lon1, float lat2, float lon2);

struct LatLon {
    float Lat = 0.0f;
    float Lon = 0.0f;
};

// The camera: longitude at the centre, minus the latitude at the centre, and the zoom.
struct ViewState {
    float ViewX = 0.0f;
    float ViewY = 0.0f;
    float ViewZ = 1.0f;
};

// The globe position under pixel (x, y) of a drawing area width by height pixels, or nullopt beside the
// globe (and for a degenerate area or view).
std::optional<LatLon> ScreenToLatLon(double x, double y, double width, double height, const ViewState& view);

// Keeps the zoom within 0.3 to 50, the latitude within -90 to 90, and wraps the longitude once into
// -180 to 180.
void ClampView(ViewState& view);

} // namespace sky::geo
