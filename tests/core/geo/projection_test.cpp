#include "geo/projection.h"

#include <gtest/gtest.h>

namespace sky::geo {
namespace {

TEST(LatLonToScreen, IsTheInverseOfScreenToLatLonOnTheNearSide) {
    const ViewState view{13.34f, -54.15f, 1.49f};
    for (const auto& [lat, lon] :
         {std::pair{54.15f, 13.34f}, std::pair{50.0f, 8.5f}, std::pair{40.6f, -20.0f}}) {
        const auto point = LatLonToScreen(lat, lon, 800, 600, view);
        ASSERT_TRUE(point.has_value());
        const auto back = ScreenToLatLon(point->X, point->Y, 800, 600, view);
        ASSERT_TRUE(back.has_value());
        EXPECT_NEAR(back->Lat, lat, 0.01f);
        EXPECT_NEAR(back->Lon, lon, 0.01f);
    }
    const auto centre = LatLonToScreen(54.15f, 13.34f, 800, 600, view);
    EXPECT_NEAR(centre->X, 400.0, 1e-3);
    EXPECT_NEAR(centre->Y, 300.0, 1e-3);
    EXPECT_FALSE(LatLonToScreen(-54.15f, -166.66f, 800, 600, view).has_value()); // the far side
}

} // namespace
} // namespace sky::geo
