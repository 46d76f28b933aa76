#include "conditions/sun.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sky::conditions {
namespace {

constexpr double kRad = std::numbers::pi / 180.0;

double Wrapped(double degrees) {
    degrees = std::fmod(degrees, 360.0);
    if (degrees > 180.0)
        degrees -= 360.0;
    if (degrees < -180.0)
        degrees += 360.0;
    return degrees;
}

} // namespace

geo::LatLon SubsolarPoint(const QDateTime& moment) {
    // Days since noon of 1 January 2000 (UTC).
    const double n = double(moment.toMSecsSinceEpoch()) / 86400000.0 - 10957.5;
    const double meanLongitude = 280.460 + 0.9856474 * n;
    const double anomaly = (357.528 + 0.9856003 * n) * kRad;
    const double ecliptic =
        (meanLongitude + 1.915 * std::sin(anomaly) + 0.020 * std::sin(2 * anomaly)) * kRad;
    const double obliquity = (23.439 - 0.0000004 * n) * kRad;
    const double declination = std::asin(std::sin(obliquity) * std::sin(ecliptic));
    const double rightAscension = std::atan2(std::cos(obliquity) * std::sin(ecliptic), std::cos(ecliptic));
    const double siderealDeg = 280.46061837 + 360.98564736629 * n;
    return {float(declination / kRad), float(Wrapped(rightAscension / kRad - siderealDeg))};
}

double SunElevationDeg(const geo::LatLon& subsolar, float lat, float lon) {
    const double a = lat * kRad, b = subsolar.Lat * kRad, dLon = (lon - subsolar.Lon) * kRad;
    const double cosAngle = std::sin(a) * std::sin(b) + std::cos(a) * std::cos(b) * std::cos(dLon);
    return 90.0 - std::acos(std::clamp(cosAngle, -1.0, 1.0)) / kRad;
}

} // namespace sky::conditions
