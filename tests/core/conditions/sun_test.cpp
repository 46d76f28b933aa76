#include "conditions/sun.h"

#include <gtest/gtest.h>

namespace sky::conditions {
namespace {

TEST(SubsolarPoint, FollowsTheSeasonsAndTheDay) {
    const struct {
        QDateTime moment;
        float lat, lon;
    } rows[] = {
        {QDateTime(QDate(2026, 3, 20), QTime(12, 0), Qt::UTC), 0.0f, 1.9f},      // equinox, noon
        {QDateTime(QDate(2026, 6, 21), QTime(12, 0), Qt::UTC), 23.4f, 0.4f},     // northern summer
        {QDateTime(QDate(2026, 12, 21), QTime(18, 0), Qt::UTC), -23.4f, -90.4f}, // evening in Greenwich
        {QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC), -20.0f, -3.5f},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.moment.toString(Qt::ISODate).toStdString());
        const geo::LatLon sun = SubsolarPoint(row.moment);
        EXPECT_NEAR(sun.Lat, row.lat, 0.6f);
        EXPECT_NEAR(sun.Lon, row.lon, 0.6f);
    }
    const geo::LatLon sun{10.0f, 20.0f};
    EXPECT_NEAR(SunElevationDeg(sun, 10.0f, 20.0f), 90.0, 1e-6);
    EXPECT_NEAR(SunElevationDeg(sun, -10.0f, -160.0f), -90.0, 1e-6);
    EXPECT_NEAR(SunElevationDeg(sun, 10.0f, 110.0f), 0.0, 2.0);
}

} // namespace
} // namespace sky::conditions
