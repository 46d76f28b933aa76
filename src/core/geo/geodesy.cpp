#include "geo/geodesy.h"

#include "common/numbers.h"

namespace sky::geo {
namespace {

constexpr float kPiSingle = static_cast<float>(kPi);

} // namespace

float ArcCos(float x) {
    if (x < -1.0f)
        return kPiSingle;
    if (x == 0.0f)
        return static_cast<float>(kPi / 2.0);
    if (x > 1.0f)
        return 0.0f;
    const double xd = x;
    double result = 0.0;
    if (std::fabs(xd) >= 0.5) {
        result = std::atan(std::sqrt(1.0 - xd * xd) / xd);
        if (xd < 0.0)
            result += kPi;
    } else {
        result = 1.580795 - std::atan(xd / std::sqrt(1.0 - xd * xd));
    }
    return static_cast<float>(result);
}

float Distance(float lat1, float lon1, float lat2, float lon2) {
    const double c = std::cos(lat1 * DegToRad) * std::cos(lat2 * DegToRad) *
                         std::cos((double(lon1) - double(lon2)) * DegToRad) +
                     std::sin(lat1 * DegToRad) * std::sin(lat2 * DegToRad);
    const float d = ArcCos(ToSingle(c)) * kEarthRadiusNm;
    return d == kEarthRadiusNm ? 0.0f : d;
}

std::int16_t Course(float lat1, float lon1, float lat2, float lon2) {
    const double dLon = (double(lon2) - double(lon1)) * DegToRad;
    const double y = std::sin(dLon) * std::cos(lat2 * DegToRad);
    const double x = std::cos(lat1 * DegToRad) * std::sin(lat2 * DegToRad) -
                     std::sin(lat1 * DegToRad) * std::cos(lat2 * DegToRad) * std::cos(dLon);
    double t = 0.0;
    if (y > 0.0) {
        if (x > 0.0)
            t = std::atan(y / x);
        else if (x < 0.0)
            t = kPi - std::atan(-y / x);
        else
            t = kPi / 2.0;
    } else if (y < 0.0) {
        if (x > 0.0)
            t = -std::atan(-y / x);
        else if (x < 0.0)
            t = std::atan(y / x) - kPi;
        else
            t = (3.0 * kPi) / 2.0;
    } else {
        t = x >= 0.0 ? 0.0 : kPi;
    }
    const float angle = ToSingle(t);
    return ToInt16(angle / DegToRad);
}

std::optional<LatLon> ScreenToLatLon(double x, double y, double width, double height, const ViewState& view) {
    if (!(width > 0.0) || !(height > 0.0) || !(view.ViewZ > 0.0f))
        return std::nullopt;
    const double u = ((x + x) / width - 1.0) / view.ViewZ / 2.0 * width / height;
    const double v = ((y + y) / height - 1.0) / view.ViewZ / 2.0;
    const double rSquared = 1.0 - u * u - v * v;
    if (!(rSquared >= 0.0))
        return std::nullopt;
    const double r = std::sqrt(rSquared);
    const double p = view.ViewY * DegToRad;
    const double a = v * std::sin(p) - r * std::cos(p);
    const double b = r * std::sin(p) + v * std::cos(p);
    const double cosLat = 1.0 - b * b;
    // A point exactly on a pole has no longitude.
    if (!(cosLat > 0.0))
        return std::nullopt;
    // Pixel rows grow downward while latitudes grow upward, and ViewY is minus the centre latitude, so
    // b is minus the sine of the latitude under the pointer.
    const double lat = -std::atan(b / std::sqrt(cosLat)) * 180.0 / kPi;
    double lon = 0.0;
    if (u != 0.0) {
        lon = std::atan(a / u) * 180.0 / kPi - 90.0;
        if (u > 0.0)
            lon += 180.0;
    } else {
        // The centre column: the limit of the rule above from either side.
        lon = a > 0.0 ? 180.0 : 0.0;
    }
    lon += view.ViewX;
    if (lon < -180.0)
        lon += 360.0;
    if (lon > 180.0)
        lon -= 360.0;
    return LatLon{ToSingle(lat), ToSingle(lon)};
}

void ClampView(ViewState& view) {
    if (view.ViewZ < 0.3f)
        view.ViewZ = 0.3f;
    else if (view.ViewZ > 50.0f)
        view.ViewZ = 50.0f;
    if (view.ViewY > 90.0f)
        view.ViewY = 90.0f;
    else if (view.ViewY < -90.0f)
        view.ViewY = -90.0f;
    if (view.ViewX > 180.0f)
        view.ViewX -= 360.0f;
    if (view.ViewX < -180.0f)
        view.ViewX += 360.0f;
}

} // namespace sky::geo
