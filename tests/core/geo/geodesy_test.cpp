#include "geo/geodesy.h"

#include <cmath>

#include <gtest/gtest.h>

namespace sky::geo {
namespace {

TEST(ArcCos, KeepsItsConstantsAndItsOutOfRangeAnswers) {
    EXPECT_EQ(ArcCos(-1.5f), 3.14159f);
    EXPECT_EQ(ArcCos(-1.0f), 3.14159f);
    EXPECT_EQ(ArcCos(0.0f), static_cast<float>(3.14159 / 2));
    EXPECT_EQ(ArcCos(1.0f), 0.0f);
    EXPECT_EQ(ArcCos(1.5f), 0.0f);
    // From 0.5 outwards the true arc cosine (with the approximate pi added for negatives).
    EXPECT_NEAR(ArcCos(0.5f), std::acos(0.5), 1e-6);
    EXPECT_NEAR(ArcCos(-0.5f), std::acos(-0.5) - (M_PI - 3.14159), 1e-6);
    // Inside -0.5 to 0.5, 0.01 radian above it.
    EXPECT_NEAR(ArcCos(0.3f), std::acos(0.3) + 0.01, 1e-5);
    EXPECT_NEAR(ArcCos(-0.49f), std::acos(-0.49) + 0.01, 1e-5);
}

TEST(Distance, ReproducesTheFiguresOfTheApproximateArcCosine) {
    EXPECT_EQ(Distance(50.0f, 8.0f, 50.0f, 8.0f), 0.0f);
    // Two equator points 90 degrees apart: 5437.93 nm, where the exact arc would be 5403.5.
    EXPECT_NEAR(Distance(0.0f, 0.0f, 0.0f, 90.0f), 5437.93f, 0.01f);
    EXPECT_NEAR(Distance(0.0f, 45.0f, 0.0f, -45.0f), 5437.93f, 0.01f);
    // c = 0.3: 4389.8 nm against 4355.4 for the exact arc cosine.
    EXPECT_NEAR(ArcCos(0.3f) * kEarthRadiusNm, 4389.8f, 0.05f);
    const float apart = static_cast<float>(std::acos(0.3) / DegToRad);
    EXPECT_NEAR(Distance(0.0f, 0.0f, 0.0f, apart), 4389.8f, 0.1f);
    // Outside that band the distance is the great circle: Frankfurt to New York, 3341.97 nm.
    EXPECT_NEAR(Distance(50.0333f, 8.5706f, 40.6398f, -73.7789f), 3341.97f, 0.05f);
    EXPECT_EQ(Distance(10.0f, 20.0f, 30.0f, 40.0f), Distance(30.0f, 40.0f, 10.0f, 20.0f));
}

TEST(Course, GivesWholeDegreesInItsMixedRanges) {
    const struct {
        float lat1, lon1, lat2, lon2;
        int expected;
    } rows[] = {
        {0, 0, 0, 10, 90},                              // due east: y > 0, x = 0
        {0, 0, 0, -10, 270},                            // due west: y < 0, x = 0
        {10, 5, -10, 5, 180},                           // due south
        {-10, 5, 10, 5, 0},                             // due north
        {0, 0, 10, 10, 45},                             // 44.56
        {0, 0, -10, 10, 135},                           // 135.44
        {0, 0, 10, -10, -45},                           // west of north with x > 0: between -90 and 0
        {0, 0, -10, -10, -135},                         // west of north with x < 0: between -180 and -90
        {50.0333f, 8.5706f, 40.6398f, -73.7789f, -66},  // Frankfurt to New York, -65.61
        {51.4706f, -0.4619f, -33.9461f, 151.1772f, 60}, // London to Sydney, 60.47
        {40, 40, 40, 40, 0},                            // no movement: y = 0 and x = 0
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(Course(row.lat1, row.lon1, row.lat2, row.lon2), row.expected);
    }
}

TEST(ScreenToLatLon, BesideTheGlobeThereIsNoPosition) {
    const ViewState view{0.0f, 0.0f, 0.3f};
    EXPECT_FALSE(ScreenToLatLon(0, 0, 800, 600, view).has_value());
    EXPECT_FALSE(ScreenToLatLon(400, 300, 0, 600, view).has_value());
    EXPECT_FALSE(ScreenToLatLon(400, 300, 800, 600, ViewState{0, 0, 0}).has_value());
    EXPECT_FALSE(ScreenToLatLon(std::nan(""), 300, 800, 600, view).has_value());
    // Looking straight down on the North Pole (short of it by the approximate pi).
    const auto pole = ScreenToLatLon(400, 300, 800, 600, ViewState{0, -90, 1});
    ASSERT_TRUE(pole.has_value());
    EXPECT_NEAR(pole->Lat, 90.0f, 0.01f);
    // The globe's rim at the centre column is still on it; the centre column itself has a longitude.
    const auto top = ScreenToLatLon(400, 300 - 0.3 * 600 * 0.999, 800, 600, view);
    ASSERT_TRUE(top.has_value());
    EXPECT_EQ(top->Lon, 0.0f);
    EXPECT_GT(top->Lat, 80.0f);
    // Across the date line the longitude wraps.
    EXPECT_GT(ScreenToLatLon(300, 300, 800, 600, ViewState{-175.0f, 0.0f, 1.0f})->Lon, 170.0f);
}

TEST(ClampView, KeepsZoomAndLatitudeAndWrapsLongitudeOnce) {
    const struct {
        ViewState in, out;
    } rows[] = {
        {{190, 0, 1}, {-170, 0, 1}},    {{-200, 0, 1}, {160, 0, 1}}, {{0, 0, 0.1f}, {0, 0, 0.3f}},
        {{0, 0, 80}, {0, 0, 50}},       {{0, 95, 1}, {0, 90, 1}},    {{0, -95, 1}, {0, -90, 1}},
        {{180, 90, 50}, {180, 90, 50}}, {{600, 0, 1}, {240, 0, 1}},
    };
    for (const auto& row : rows) {
        ViewState view = row.in;
        ClampView(view);
        SCOPED_TRACE(row.in.ViewX);
        EXPECT_EQ(view.ViewX, row.out.ViewX);
        EXPECT_EQ(view.ViewY, row.out.ViewY);
        EXPECT_EQ(view.ViewZ, row.out.ViewZ);
    }
}

} // namespace
} // namespace sky::geo
