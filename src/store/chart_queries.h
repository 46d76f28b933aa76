#pragma once

#include <map>
#include <vector>

#include <QSqlDatabase>
#include <QString>

#include "stats/airport_movements.h"
#include "stats/chart_series.h"

namespace sky::store {

// What the history holds of one airport: every position of the flights whose flight plan named it in
// some kept snapshot, and the times of the network's first and last kept snapshots.
struct AirportHistory {
    qint64 FirstUtc = 0;
    qint64 LastUtc = -1; // before FirstUtc: nothing is kept
    std::vector<stats::AirportSample> Samples;
};

// The reads the charts are drawn from, on a history file opened by the caller on its own thread (a
// read-only connection works). A file that cannot answer gives empty results.
class ChartQueries {
public:
    explicit ChartQueries(QSqlDatabase db) : m_db(std::move(db)) {}

    // Every kept snapshot of both networks with its pilots and controllers, oldest first. The snapshots
    // counted before are remembered: again, only those written since are read.
    std::vector<stats::SnapshotCount> ClientCounts();
    // The positions the airport's movements are counted from, in network's snapshots.
    AirportHistory Airport(int network, const QString& airport);
    // One flight's altitude and ground speed at each kept snapshot, oldest first.
    std::vector<stats::ProfilePoint> Profile(int network, const QString& callsign, const QString& member);

private:
    QSqlDatabase m_db;
    std::map<qint64, stats::SnapshotCount> m_counted; // by snapshot id
};

} // namespace sky::store
