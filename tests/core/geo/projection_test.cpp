#include "geo/projection.h"

#include <cmath>

#include <gtest/gtest.h>

namespace sky::geo {
namespace {

// Known points projected the way the map draws them: the map puts them there, and reads them back.
TEST(Projection, BothWaysAgreeWithTheOrthographicViewOfTheGlobe) {
    const ViewState view{-30.0f, -20.0f, 2.0f};
    const double width = 1000, height = 700;
    const float points[][2] = {{25.0f, -40.0f}, {0.0f, -30.0f}, {-5.0f, -10.0f}, {45.0f, -60.0f}};
    for (const auto& point : points) {
        SCOPED_TRACE(point[0]);
        const double lat = point[0] * M_PI / 180, dLon = (point[1] - view.ViewX) * M_PI / 180;
        const double tilt = -view.ViewY * M_PI / 180;
        const double x = std::cos(lat) * std::sin(dLon);
        const double y = std::sin(lat) * std::cos(tilt) - std::cos(lat) * std::cos(dLon) * std::sin(tilt);
        const double radiusPx = view.ViewZ * height, screenX = width / 2 + x * radiusPx,
                     screenY = height / 2 - y * radiusPx;
        const auto shown = LatLonToScreen(point[0], point[1], width, height, view);
        ASSERT_TRUE(shown.has_value());
        EXPECT_NEAR(shown->X, screenX, 0.5);
        EXPECT_NEAR(shown->Y, screenY, 0.5);
        const auto found = ScreenToLatLon(screenX, screenY, width, height, view);
        ASSERT_TRUE(found.has_value());
        EXPECT_NEAR(found->Lat, point[0], 0.01f);
        EXPECT_NEAR(found->Lon, point[1], 0.01f);
    }
    EXPECT_FALSE(LatLonToScreen(-20.0f, 150.0f, width, height, view).has_value()); // the far side
}

} // namespace
} // namespace sky::geo
