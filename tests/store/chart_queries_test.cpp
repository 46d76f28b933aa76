#include "chart_reader.h"

#include <tuple>

#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "network/whazzup_lines.h"
#include "sql_history_store.h"
#include "stats/chart_tables.h"

using namespace Qt::StringLiterals;

// The charts' series read from a crafted history, through the reader the Statistics window uses.
namespace sky::store {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;

struct Flight {
    const char16_t* Callsign;
    const char16_t* From;
    const char16_t* To;
};
// Where a flight was in a snapshot: latitude, longitude, altitude, ground speed.
struct At {
    double Lat, Lon;
    int AltitudeFt, SpeedKt;
};

QString Pilot(int network, const Flight& f, const At& at) {
    return PilotLine(network, {{0, QString::fromUtf16(f.Callsign)},
                               {1, u"100"_s},
                               {5, QString::number(at.Lat)},
                               {6, QString::number(at.Lon)},
                               {7, QString::number(at.AltitudeFt)},
                               {8, QString::number(at.SpeedKt)},
                               {11, QString::fromUtf16(f.From)},
                               {13, QString::fromUtf16(f.To)}});
}

// Waits for the reader's answer.
template <typename Result> Result Read(ChartReader& reader, std::function<Result(ChartQueries&)> work) {
    QObject context;
    QEventLoop loop;
    Result result{};
    reader.Ask<Result>(std::move(work), &context, [&](Result answer) {
        result = std::move(answer);
        loop.quit();
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    loop.exec();
    return result;
}

TEST(ChartQueries, SeriesOfACraftedHistoryAreTheHandCountedOnes) {
    constexpr int kYears = 24 * 366 * 5; // the hours kept: the crafted day lies in the past
    QTemporaryDir folder;
    const QString path = folder.filePath(u"history.db"_s);
    const qint64 t0 = QDateTime(QDate(2026, 11, 21), QTime(13, 40), Qt::UTC).toSecsSinceEpoch();
    // Frankfurt at 50.0 N 8.5 E; five VATSIM downloads ten minutes apart, and the last an hour later.
    const Flight dlh{u"DLH1", u"EDDF", u"EGLL"}, baw{u"BAW2", u"EGLL", u"EDDF"},
        slow{u"SLW3", u"EDDF", u"EDDM"}, far{u"FAR4", u"EDDF", u"KJFK"}, afr{u"AFR5", u"LFPG", u"EDDF"};
    const QStringList vatsim[] = {
        {Pilot(1, dlh, {50.0, 8.5, 0, 0}), Pilot(1, baw, {51.5, 5.0, 30000, 420}),
         Pilot(1, slow, {50.0, 8.5, 0, 10}), Pilot(1, far, {52.0, -10.0, 35000, 480}),
         AtcLine(1, {{0, u"EDDF_TWR"_s}, {1, u"7"_s}}), AtcLine(1, {{0, u"EDDF_ATIS"_s}, {1, u"8"_s}}),
         AtcLine(1, {{0, u"XX_OBS"_s}, {1, u"9"_s}})},
        // BAW2 is within 100 nm and coming closer: an arrival at 13:50. SLW3 taxis: no departure.
        {Pilot(1, dlh, {50.0, 8.5, 0, 0}), Pilot(1, baw, {50.6, 7.5, 9000, 280}),
         Pilot(1, slow, {50.01, 8.52, 0, 15}), Pilot(1, far, {52.5, -12.0, 35000, 480}),
         AtcLine(1, {{0, u"EDDF_TWR"_s}, {1, u"7"_s}}), AtcLine(1, {{0, u"EDGG_CTR"_s}, {1, u"6"_s}})},
        // DLH1 climbs away: a departure at 14:00; AFR5 comes online within 100 nm: not yet told.
        {Pilot(1, dlh, {50.2, 8.0, 3000, 250}), Pilot(1, baw, {50.03, 8.55, 0, 0}),
         Pilot(1, afr, {50.8, 7.5, 11000, 300}), AtcLine(1, {{0, u"EDGG_CTR"_s}, {1, u"6"_s}})},
        // AFR5 comes closer: an arrival at 14:10; DLH1, already counted, goes on away.
        {Pilot(1, dlh, {50.5, 6.5, 12000, 400}), Pilot(1, afr, {50.4, 8.0, 6000, 250})},
        {Pilot(1, afr, {50.03, 8.55, 0, 0})},
    };
    const qint64 vatsimAt[] = {t0, t0 + 600, t0 + 1200, t0 + 1800, t0 + 5400};
    {
        SqlHistoryStore store(path, kYears, false);
        for (int i = 0; i < 5; ++i) {
            store.Record(1, network::testing::WhazzupText(vatsim[i]),
                         QDateTime::fromSecsSinceEpoch(vatsimAt[i], Qt::UTC));
            if (i == 1) // one IVAO download between: the networks share the time axis
                store.Record(
                    0, network::testing::WhazzupText({AtcLine(0, {{0, u"LFFF_CTR"_s}})}, u"20261121135200"_s),
                    QDateTime::fromSecsSinceEpoch(t0 + 720, Qt::UTC));
        }
        store.Flush();
    }
    ChartReader reader(path);

    const auto counts =
        Read<std::vector<stats::SnapshotCount>>(reader, [](ChartQueries& q) { return q.ClientCounts(); });
    struct Row {
        int Network, Pilots, Controllers;
        qint64 TakenUtc;
    };
    const Row counted[] = {{1, 4, 1, t0},        {1, 4, 2, t0 + 600},  {0, 0, 1, t0 + 720},
                           {1, 3, 1, t0 + 1200}, {1, 2, 0, t0 + 1800}, {1, 1, 0, t0 + 5400}};
    ASSERT_EQ(counts.size(), std::size(counted));
    for (size_t i = 0; i < counts.size(); ++i)
        EXPECT_EQ(
            std::tie(counts[i].Network, counts[i].Pilots, counts[i].Controllers, counts[i].TakenUtc),
            std::tie(counted[i].Network, counted[i].Pilots, counted[i].Controllers, counted[i].TakenUtc))
            << i;
    EXPECT_EQ(stats::ShownSnapshot(counts, 0, u"20261121135200"_s), 2);
    {
        // One more download: read again, the counts of before are kept and the new one comes last.
        SqlHistoryStore store(path, kYears, false);
        store.Record(0, network::testing::WhazzupText({Pilot(0, dlh, {50, 8, 0, 0})}),
                     QDateTime::fromSecsSinceEpoch(t0 + 6000, Qt::UTC));
    }
    const auto again =
        Read<std::vector<stats::SnapshotCount>>(reader, [](ChartQueries& q) { return q.ClientCounts(); });
    ASSERT_EQ(again.size(), counts.size() + 1);
    EXPECT_EQ(again[3].Controllers, counted[3].Controllers);
    EXPECT_EQ(again.back().Pilots, 1);

    const auto history =
        Read<AirportHistory>(reader, [](ChartQueries& q) { return q.Airport(1, u"EDDF"_s); });
    const auto hours =
        stats::MovementsPerHour(history.Samples, 50.0f, 8.5f, history.FirstUtc, history.LastUtc);
    // Read back from the file the user chose, as a spreadsheet would.
    const QString csv = folder.filePath(u"eddf.csv"_s);
    ASSERT_TRUE(stats::SaveCsv(csv, stats::MovementsTable(hours)).Ok);
    EXPECT_EQ(QString::fromUtf8(ReadWholeFile(csv).value_or(QByteArray())),
              u"hour_utc,arrivals,departures\r\n2026-11-21T13:00:00Z,1,0\r\n2026-11-21T14:00:00Z,1,1\r\n"
              u"2026-11-21T15:00:00Z,0,0\r\n"_s);

    const auto profile = Read<std::vector<stats::ProfilePoint>>(
        reader, [](ChartQueries& q) { return q.Profile(1, u"DLH1"_s, u"100"_s); });
    const stats::ProfilePoint flown[] = {
        {t0, 0, 0}, {t0 + 600, 0, 0}, {t0 + 1200, 3000, 250}, {t0 + 1800, 12000, 400}};
    ASSERT_EQ(profile.size(), std::size(flown));
    for (size_t i = 0; i < profile.size(); ++i)
        EXPECT_EQ(std::tie(profile[i].TakenUtc, profile[i].AltitudeFt, profile[i].SpeedKt),
                  std::tie(flown[i].TakenUtc, flown[i].AltitudeFt, flown[i].SpeedKt))
            << i;
    EXPECT_TRUE(Read<AirportHistory>(reader, [](ChartQueries& q) {
                    return q.Airport(1, u"ED%F"_s);
                }).Samples.empty());
}

} // namespace
} // namespace sky::store
