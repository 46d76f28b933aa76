#include "geo/projection.h"

#include <gtest/gtest.h>

namespace sky::geo {
namespace {

// Points of the orthographic view of the globe (some beyond the window): the map puts them there and
// reads them back.
TEST(Projection, BothWaysAgreeWithTheOrthographicViewOfTheGlobe) {
    const ViewState view{-30.0f, -20.0f, 2.0f};
    const struct {
        float lat, lon;
        double x, y;
    } points[] = {
        {25, -40, 279.7, 221.4}, {0, -30, 500.0, 828.8}, {-5, -10, 977.0, 912.9}, {45, -60, 5.0, -287.0}};
    for (const auto& p : points) {
        SCOPED_TRACE(p.lat);
        const auto shown = LatLonToScreen(p.lat, p.lon, 1000, 700, view);
        ASSERT_TRUE(shown.has_value());
        EXPECT_NEAR(shown->X, p.x, 0.5);
        EXPECT_NEAR(shown->Y, p.y, 0.5);
        const auto found = ScreenToLatLon(p.x, p.y, 1000, 700, view);
        ASSERT_TRUE(found.has_value());
        EXPECT_NEAR(found->Lat, p.lat, 0.01f);
        EXPECT_NEAR(found->Lon, p.lon, 0.01f);
    }
    EXPECT_FALSE(LatLonToScreen(-20.0f, 150.0f, 1000, 700, view).has_value()); // the far side
}

} // namespace
} // namespace sky::geo
