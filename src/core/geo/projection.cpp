#include "geo/projection.h"

#include <cmath>

namespace sky::geo {

std::optional<ScreenPoint> LatLonToScreen(float lat, float lon, double width, double height,
                                          const ViewState& view) {
    if (!(width > 0.0) || !(height > 0.0))
        return std::nullopt;
    // The drawing turns the globe by -ViewX about the vertical axis, then by -ViewY about the
    // horizontal one; the radius on screen is ViewZ times the height.
    const double phi = lat * DegToRad, dLon = (double(lon) - view.ViewX) * DegToRad;
    const double tilt = -double(view.ViewY) * DegToRad;
    const double x = std::cos(phi) * std::sin(dLon);
    const double y0 = std::sin(phi), z0 = std::cos(phi) * std::cos(dLon);
    const double y = y0 * std::cos(tilt) - z0 * std::sin(tilt);
    const double z = y0 * std::sin(tilt) + z0 * std::cos(tilt);
    if (z < 0.0)
        return std::nullopt;
    const double radiusPx = view.ViewZ * height;
    return ScreenPoint{width / 2.0 + x * radiusPx, height / 2.0 - y * radiusPx};
}

} // namespace sky::geo
