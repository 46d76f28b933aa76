#include "network/classification.h"

#include <gtest/gtest.h>

#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

TEST(PlannedAltitudeFt, ReadsTheUsualWaysOfFilingALevel) {
    const std::pair<const char16_t*, double> rows[] = {
        {u"FL350", 35000.0}, {u"F350", 35000.0},  {u"fl090", 9000.0}, {u"A045", 4500.0}, {u"35000", 35000.0},
        {u"350", 35000.0},   {u"S1130", 37073.5}, {u"M0900", 2952.8}, {u"", 0.0},        {u"VFR", 0.0},
    };
    for (const auto& [filed, feet] : rows)
        EXPECT_NEAR(PlannedAltitudeFt(filed), feet, 0.1) << QString::fromUtf16(filed).toStdString();
}

// A flight from Frankfurt (50N 8.5E) to a destination due east on the same parallel, 600 nm away.
PilotRecord Flight(float lonOffsetDeg, float speedKts, float altitudeFt, const char16_t* planned = u"FL350") {
    PilotRecord p;
    p.DepLatitude = 50.0f;
    p.DepLongitude = 8.5f;
    p.DestLatitude = 50.0f;
    p.DestLongitude = 24.0f;
    p.Latitude = 50.0f;
    p.Longitude = 8.5f + lonOffsetDeg;
    p.GroundSpeed = speedKts;
    p.Altitude = altitudeFt;
    p.PlannedAltitude = QString::fromUtf16(planned);
    return p;
}

TEST(FlightStatus, JudgesEachPhaseAtItsBoundaries) {
    // One degree of longitude at 50N is about 38.6 nm.
    const struct {
        float lonOffset, speed, altitude;
        const char16_t *planned, *status;
    } rows[] = {
        {0.0f, 0, 364, u"FL350", u"Boarding"},
        {0.0f, 4.9f, 364, u"FL350", u"Boarding"},
        {0.0f, 5, 364, u"FL350", u"Departing"}, // taxiing
        {0.25f, 39.9f, 364, u"FL350", u"Departing"},
        {0.1f, 160, 1500, u"FL350", u"Departing"}, // taking off, within 10 nm
        {0.3f, 250, 8000, u"FL350", u"Climbing"},  // past 10 nm, below the level
        {5.0f, 460, 31500, u"FL350", u"En route"}, // at 90 % of the level
        {5.0f, 460, 31400, u"FL350", u"Climbing"},
        {12.0f, 460, 31400, u"FL350", u"Descending"}, // nearer the destination
        {14.5f, 250, 9000, u"FL350", u"Approach"},    // within 40 nm of the destination
        {15.4f, 140, 500, u"FL350", u"Approach"},
        {15.4f, 39.9f, 300, u"FL350", u"Landed"},
        {15.5f, 4.9f, 300, u"FL350", u"On blocks"},
        {7.0f, 0, 300, u"FL350", u"Diverted"}, // on the ground away from both airports
        {1.0f, 300, 6000, u"", u"Climbing"},   // no level filed: low and near the departure
        {5.0f, 460, 6000, u"", u"En route"},
        {12.0f, 400, 20000, u"", u"Descending"}, // within 150 nm of the destination
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.status).toStdString() + " at +" + std::to_string(row.lonOffset));
        EXPECT_EQ(FlightStatus(Flight(row.lonOffset, row.speed, row.altitude, row.planned)),
                  QString::fromUtf16(row.status));
    }
}

TEST(FlightStatus, NeedsAtLeastOneKnownAirport) {
    PilotRecord noPlan;
    noPlan.Latitude = 50.0f;
    noPlan.GroundSpeed = 450.0f;
    EXPECT_EQ(FlightStatus(noPlan), u"Unknown");
    PilotRecord onlyDestination = Flight(14.0f, 0, 0);
    onlyDestination.DepLatitude = onlyDestination.DepLongitude = 0.0f;
    EXPECT_EQ(FlightStatus(onlyDestination), u"Unknown"); // on the ground, away from the one airport
    onlyDestination.Longitude = 23.9f;
    EXPECT_EQ(FlightStatus(onlyDestination), u"On blocks");
}

TEST(PilotCertificateText, TheFeedsNamesElseTheNetworksNothingWhenUnknown) {
    PilotRecord p;
    EXPECT_EQ(PilotCertificateText(p), u"");
    p.PilotCertificate = 3;
    EXPECT_EQ(PilotCertificateText(p), u"IR, Instrument Rating");
    p.PilotCertificate = 0;
    EXPECT_EQ(PilotCertificateText(p), u"P0, New member");
    p.PilotCertificate = 127;
    EXPECT_EQ(PilotCertificateText(p), u"certificate 127");
    p.PilotCertificateName = u"NEW"_s;
    EXPECT_EQ(PilotCertificateText(p), u"NEW");
}

} // namespace
} // namespace sky::network
