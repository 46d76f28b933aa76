#include <algorithm>
#include <chrono>

#include <benchmark/benchmark.h>

#include <QFileInfo>
#include <QSqlDatabase>
#include <QTemporaryDir>

#include "chart_queries.h"
#include "common/file_io.h"
#include "history/snapshot_codec.h"
#include "network/fields.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"
#include "sql_history_store.h"
#include "stats/airport_movements.h"

using namespace Qt::StringLiterals;

// The history store on a real SQLite file: a day of both demo networks downloaded every three minutes,
// their aircraft moving a little each time.
namespace {

struct DemoFeed {
    int Network;
    sky::history::SplitSnapshot Split;
    // The feed k downloads later: every client a little further north.
    QString At(int k) const {
        sky::history::SplitSnapshot moved = Split;
        for (auto& p : moved.Positions) {
            p.LatMicro += 5000 * k;
            p.AltitudeFt += (k % 7) * 100;
        }
        return sky::history::Join(Network, moved);
    }
};

DemoFeed Demo(int network) {
    const QString file =
        QStringLiteral(SKYLANTRA_SOURCE_DIR) +
        (network == 0 ? u"/data/demo/ivao/whazzup.txt"_s : u"/data/demo/vatsim/whazzup.txt"_s);
    return {network,
            sky::history::Split(network, QString::fromUtf8(sky::ReadWholeFile(file).value_or(QByteArray())))};
}

double Milliseconds(std::chrono::steady_clock::duration d) {
    return std::chrono::duration<double, std::milli>(d).count();
}

// The charts of the Statistics window, read as it reads them (on a connection of its own): the traffic
// of both networks over the kept hours (first and again), the movements per hour at the airport a VATSIM
// pilot flies to (its place as good as any for the time), and that pilot's profile.
void Charts(benchmark::State& state, const QString& path, const DemoFeed& vatsim) {
    const auto pilot = std::find_if(vatsim.Split.Positions.begin(), vatsim.Split.Positions.end(),
                                    [](const sky::history::ClientPosition& p) { return p.Pilot; });
    const QString airport =
        sky::network::GetField(vatsim.Split.StaticLines[pilot - vatsim.Split.Positions.begin()], 13);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"charts"_s);
        db.setDatabaseName(path);
        db.setConnectOptions(u"QSQLITE_OPEN_READONLY"_s);
        db.open();
        sky::store::ChartQueries charts(db);
        auto begin = std::chrono::steady_clock::now();
        state.counters["chart_points"] = double(charts.ClientCounts().size());
        state.counters["chart_traffic_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        begin = std::chrono::steady_clock::now(); // again, as the open window does at each download
        charts.ClientCounts();
        state.counters["chart_traffic_again_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        begin = std::chrono::steady_clock::now();
        const sky::store::AirportHistory history = charts.Airport(1, airport);
        sky::stats::MovementsPerHour(history.Samples, 50, 8, history.FirstUtc, history.LastUtc);
        state.counters["chart_airport_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        begin = std::chrono::steady_clock::now();
        charts.Profile(1, pilot->Callsign, pilot->Member);
        state.counters["chart_profile_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        db.close();
    }
    QSqlDatabase::removeDatabase(u"charts"_s);
}

// range(0) hours of downloads: the file's size, the time to write one VATSIM snapshot (off the map's
// thread), to read one flight's track and to step to a stored snapshot and interpret it.
void BM_HistoryOfADay(benchmark::State& state) {
    const int snapshots = int(state.range(0)) * 20; // every three minutes
    const DemoFeed feeds[2] = {Demo(0), Demo(1)};
    // A day to come: the store reckons what it keeps from the newest snapshot, so none goes meanwhile.
    const QDateTime start = QDateTime(QDate::currentDate().addDays(2), QTime(0, 0), Qt::UTC);
    for (auto _ : state) {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"history.db"_s);
        sky::store::SqlHistoryStore store(path, 24, false);
        double writeMs = 0;
        for (int k = 0; k < snapshots; ++k) {
            for (const DemoFeed& feed : feeds) {
                const QString text = feed.At(k);
                const auto begin = std::chrono::steady_clock::now();
                store.Record(feed.Network, text, start.addSecs(180 * k));
                store.Flush();
                if (feed.Network == 1)
                    writeMs += Milliseconds(std::chrono::steady_clock::now() - begin);
            }
        }
        state.counters["write_vatsim_ms"] = writeMs / snapshots;
        state.counters["file_MB"] = double(QFileInfo(path).size()) / 1e6;
        state.counters["wal_MB"] = double(QFileInfo(path + u"-wal"_s).size()) / 1e6;
        const sky::history::ClientPosition& first =
            *std::find_if(feeds[1].Split.Positions.begin(), feeds[1].Split.Positions.end(),
                          [](const sky::history::ClientPosition& p) { return p.Pilot; });
        auto begin = std::chrono::steady_clock::now();
        const auto track = store.Track(1, first.Callsign, first.Member);
        state.counters["track_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        state.counters["track_points"] = double(track.size());
        const auto kept = store.Snapshots(1);
        sky::ReferenceData reference;
        sky::network::NetworkData data;
        begin = std::chrono::steady_clock::now();
        sky::network::InterpretWhazzup(1, store.SnapshotText(kept[kept.size() / 2].Id), reference, data, {});
        state.counters["step_ms"] = Milliseconds(std::chrono::steady_clock::now() - begin);
        Charts(state, path, feeds[1]);
    }
}
BENCHMARK(BM_HistoryOfADay)->ArgName("hours")->Arg(24)->Arg(2)->Iterations(1)->Unit(benchmark::kSecond);

// Taking one VATSIM-size snapshot apart, the part of a write before the database.
void BM_SplitSnapshot(benchmark::State& state) {
    const QString text = Demo(1).At(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(sky::history::Split(1, text));
}
BENCHMARK(BM_SplitSnapshot)->Unit(benchmark::kMillisecond);

} // namespace
