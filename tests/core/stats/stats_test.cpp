#include <gtest/gtest.h>

#include "common/file_io.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/fir_outlines.h"
#include "refdata/reference_data.h"
#include "stats/chart_tables.h"
#include "stats/demo_day.h"

using namespace Qt::StringLiterals;

// What the charts compute beyond the store's reads (those are tested on a crafted history file).
namespace sky::stats {
namespace {

using network::testing::PilotLine;

TEST(ChartSeries, AClickReplaysTheNearestSnapshotOfTheLineNearestIt) {
    const std::vector<SnapshotCount> counts = {
        {1, 0, 0, {}, 100, 10}, {2, 0, 600, {}, 110, 12}, {3, 1, 300, {}, 500, 50}, {4, 1, 900, {}, 520, 55}};
    const struct {
        qint64 TakenUtc;
        double Value;
        int Snapshot;
    } rows[] = {{650, 105, 1}, {650, 480, 3}, {0, 11, 0}, {-5000, 60, 2}};
    for (const auto& row : rows)
        EXPECT_EQ(ClickedSnapshot(counts, row.TakenUtc, row.Value), row.Snapshot)
            << row.TakenUtc << " " << row.Value;
    EXPECT_EQ(ClickedSnapshot({}, 0, 0), -1);
    // Offline for more than half an hour: the profile is drawn in two pieces.
    const auto pieces = ProfilePieces({{3100, 0, 0}, {0, 0, 0}, {3000, 0, 0}, {600, 0, 0}});
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].back().TakenUtc, 600);
    EXPECT_EQ(pieces[1].front().TakenUtc, 3000);
}

TEST(AirportMovements, AFlightBackAfterHalfAnHourOfflineArrivesAgain) {
    // Inbound along the meridian of an airport at 50 N 8.5 E; a degree of latitude is 60 nm.
    const auto inbound = [](qint64 t, double nm) {
        return AirportSample{7, t, float(50.0 + nm / 60.0), 8.5f, 250, false, true};
    };
    const auto hours = MovementsPerHour(
        {inbound(4800, 5), inbound(0, 80), inbound(600, 40), inbound(4200, 10)}, 50.0f, 8.5f, 0, 4800);
    ASSERT_EQ(hours.size(), 2u);
    EXPECT_EQ(hours[0].Arrivals, 1);
    EXPECT_EQ(hours[1].Arrivals, 1);
    EXPECT_EQ(hours[1].HourUtc, 3600);
    EXPECT_TRUE(MovementsPerHour({}, 50.0f, 8.5f, 7200, 0).empty());
}

TEST(Busiest, AirportsCountTheirBoardsAndFirsTheAircraftFlyingInThem) {
    ReferenceData reference;
    reference.AddAirports(
        u"EDDF:Frankfurt, \"Main\":Frankfurt:DE:50.0:8.5\nEGLL:Heathrow:London:GB:51.5:-0.5\n"
        u"EDDM:Munich:Munich:DE:48.35:11.78\n"_s);
    reference.AddFirCentres(u"EGTT:GB:52.0:-1.0:London\n"_s);
    FirOutlines outlines; // a FIR, a sub-sector over its north, and another FIR
    outlines.Add(u"B:EDGG:0:EDGG\nR\n48:6\n48:11\n52:11\n52:6\nB:EDGG-N:0:\nR\n50:6\n50:11\n52:11\n52:6\n"
                 u"B:EGTT:0:EGTT\nR\n50:-6\n50:2\n56:2\n56:-6\n"_s);
    const auto pilot = [](int network, const char16_t* from, const char16_t* to, double lat, double lon,
                          int kt) {
        return PilotLine(network, {{0, u"X"_s},
                                   {5, QString::number(lat)},
                                   {6, QString::number(lon)},
                                   {8, QString::number(kt)},
                                   {11, QString::fromUtf16(from)},
                                   {13, QString::fromUtf16(to)}});
    };
    network::ClientTables tables;
    network::InterpretWhazzup(0,
                              network::testing::WhazzupText({pilot(0, u"EDDF", u"EGLL", 50.1, 8.4, 0),
                                                             pilot(0, u"EGLL", u"EDDF", 50.5, 7.0, 400),
                                                             pilot(0, u"EDDM", u"EGLL", 51.4, -0.3, 300)}),
                              reference, tables[0], {});
    network::InterpretWhazzup(1,
                              network::testing::WhazzupText({pilot(1, u"EGLL", u"EDDF", 51.6, -0.4, 200),
                                                             pilot(1, u"XXXX", u"EDDF", 50.0, 8.5, 0)}),
                              reference, tables[1], {});
    const auto text = [](const std::vector<BusyPlace>& places) {
        QStringList list;
        for (const BusyPlace& p : places)
            list.append(p.Code + u' ' + QString::number(p.Counts[0]) + u'+' + QString::number(p.Counts[1]));
        return list.join(u", "_s);
    };
    const auto airports = BusiestAirports(tables, {0, 1}, reference);
    const auto firs = BusiestFirs(tables, {0, 1}, outlines, reference);
    EXPECT_EQ(text(airports), u"EDDF 2+1, EGLL 1+1"_s);
    EXPECT_EQ(text(BusiestAirports(tables, {0, 1}, reference, 1)), u"EDDF 2+1"_s);
    EXPECT_EQ(text(BusiestAirports(tables, {1}, reference)), u"EDDF 0+1, EGLL 0+1"_s);
    EXPECT_EQ(text(firs), u"EGTT 1+1, EDGG 1+0"_s);
    EXPECT_EQ(firs[0].Name, u"London"_s);
    EXPECT_TRUE(
        CsvText(BusiestTable(airports, firs))
            .startsWith(
                u"kind,code,name,ivao,vatsim,total\r\nairport,EDDF,\"Frankfurt, \"\"Main\"\"\",2,1,3\r\n"_s));
}

TEST(DemoDay, HasMorePeopleOnlineInTheEveningAndAircraftOnTheGroundAndAtCruise) {
    const QString data = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s;
    const ReferenceData reference = ReferenceData::Load(data);
    const QString feed =
        QString::fromUtf8(ReadWholeFile(data + u"/demo/ivao/whazzup.txt"_s).value_or(QByteArray()));
    const DemoDay day(0, feed, reference);
    const qint64 morning = QDateTime(QDate(2026, 11, 21), QTime(6, 0), Qt::UTC).toSecsSinceEpoch();
    network::NetworkData early, late;
    network::InterpretWhazzup(0, day.At(morning), reference, early, {});
    const QString evening = day.At(morning + 12 * 3600);
    network::InterpretWhazzup(0, evening, reference, late, {});
    EXPECT_EQ(late.UpdateStamp, u"20261121180000"_s);
    EXPECT_LT(early.PilotCount * 3, late.PilotCount);
    int cruising = 0, parked = 0;
    for (int slot = 1; slot <= late.PilotCount; ++slot) {
        cruising +=
            late.Pilots[size_t(slot)].Altitude >= 20000 && late.Pilots[size_t(slot)].GroundSpeed >= 400;
        parked += late.Pilots[size_t(slot)].GroundSpeed == 0;
    }
    EXPECT_GT(cruising, late.PilotCount / 10);
    EXPECT_GT(parked, 0);
    EXPECT_EQ(DemoDay(0, feed, reference).At(morning + 12 * 3600), evening); // the same every time
}

} // namespace
} // namespace sky::stats
