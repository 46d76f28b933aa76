#include "stats/chart_tables.h"

#include <QDateTime>

#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::stats {
namespace {

QString CsvField(const QString& text) {
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') && !text.contains(u'\r'))
        return text;
    QString quoted = text;
    quoted.replace(u"\""_s, u"\"\""_s);
    return u'"' + quoted + u'"';
}

QString CsvLine(const QStringList& fields) {
    QStringList line;
    for (const QString& field : fields)
        line.append(CsvField(field));
    return line.join(u',') + u"\r\n"_s;
}

} // namespace

QString UtcText(qint64 utc) {
    return QDateTime::fromSecsSinceEpoch(utc, Qt::UTC).toString(u"yyyy-MM-ddTHH:mm:ss"_s) + u'Z';
}

QString CsvText(const ChartTable& table) {
    QString text = CsvLine(table.Header);
    for (const QStringList& row : table.Rows)
        text += CsvLine(row);
    return text;
}

WriteResult SaveCsv(const QString& path, const ChartTable& table) {
    return WriteFileAtomically(path, CsvText(table).toUtf8());
}

ChartTable CountsTable(const std::vector<SnapshotCount>& counts) {
    ChartTable table{{u"time_utc"_s, u"network"_s, u"pilots"_s, u"controllers"_s}, {}};
    for (const SnapshotCount& c : counts)
        table.Rows.push_back({UtcText(c.TakenUtc), network::NetworkName(c.Network), QString::number(c.Pilots),
                              QString::number(c.Controllers)});
    return table;
}

ChartTable MovementsTable(const std::vector<HourMovements>& hours) {
    ChartTable table{{u"hour_utc"_s, u"arrivals"_s, u"departures"_s}, {}};
    for (const HourMovements& h : hours)
        table.Rows.push_back(
            {UtcText(h.HourUtc), QString::number(h.Arrivals), QString::number(h.Departures)});
    return table;
}

ChartTable ProfileTable(const std::vector<ProfilePoint>& points) {
    ChartTable table{{u"time_utc"_s, u"altitude_ft"_s, u"ground_speed_kt"_s}, {}};
    for (const ProfilePoint& p : points)
        table.Rows.push_back(
            {UtcText(p.TakenUtc), QString::number(p.AltitudeFt), QString::number(p.SpeedKt)});
    return table;
}

ChartTable BusiestTable(const std::vector<BusyPlace>& airports, const std::vector<BusyPlace>& firs) {
    ChartTable table{{u"kind"_s, u"code"_s, u"name"_s, u"ivao"_s, u"vatsim"_s, u"total"_s}, {}};
    for (const auto* list : {&airports, &firs})
        for (const BusyPlace& place : *list)
            table.Rows.push_back({list == &airports ? u"airport"_s : u"fir"_s, place.Code, place.Name,
                                  QString::number(place.Counts[0]), QString::number(place.Counts[1]),
                                  QString::number(place.Total())});
    return table;
}

} // namespace sky::stats
