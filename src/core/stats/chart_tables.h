#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "common/file_io.h"
#include "stats/airport_movements.h"
#include "stats/busiest.h"
#include "stats/chart_series.h"

namespace sky::stats {

// A chart's numbers as a table: the names of its columns and a row of texts per point.
struct ChartTable {
    QStringList Header;
    std::vector<QStringList> Rows;
};

// The table as comma-separated values (RFC 4180): CR LF line ends, a field holding a comma, a quote or
// a line end in quotes with its quotes doubled.
QString CsvText(const ChartTable& table);
// Saves it as UTF-8 through the checked atomic save; the result says what went wrong.
WriteResult SaveCsv(const QString& path, const ChartTable& table);

// Each chart's table; times as "2026-11-21T14:23:00Z".
ChartTable CountsTable(const std::vector<SnapshotCount>& counts);
ChartTable MovementsTable(const std::vector<HourMovements>& hours);
ChartTable ProfileTable(const std::vector<ProfilePoint>& points);
ChartTable BusiestTable(const std::vector<BusyPlace>& airports, const std::vector<BusyPlace>& firs);

// A time of the charts in UTC: "2026-11-21T14:23:00Z".
QString UtcText(qint64 utc);

} // namespace sky::stats
