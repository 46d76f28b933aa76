#include "chart_queries.h"

#include <algorithm>
#include <set>

#include <QHash>
#include <QSet>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include "history_schema.h"
#include "network/fields.h"

using namespace Qt::StringLiterals;

namespace sky::store {
namespace {

// Times a download can have: from 1970 to the year 9999; a damaged file's others are left out.
bool SaneTime(qint64 utc) {
    return utc >= 0 && utc <= 253402300799;
}

// The client marks of a kept frame, read from its bytes without decoding the rest: for each, whether it
// is a pilot's, its line and (a pilot's) its flight.
struct Mark {
    bool Pilot = false;
    qint64 Line = 0;
    qint64 Flight = 0;
};
template <typename Visit> void ForEachMark(const QByteArray& frame, Visit visit) {
    const char* p = frame.constData();
    const char* const end = p + frame.size();
    const auto number = [&] {
        qint64 value = 0;
        while (p < end && *p >= '0' && *p <= '9' && value < (qint64(1) << 56))
            value = value * 10 + (*p++ - '0');
        return value;
    };
    while (p < end) {
        const char first = *p;
        if (first == char(schema::kPilotMark) || first == char(schema::kStationMark)) {
            ++p;
            Mark mark{first == char(schema::kPilotMark), number(), 0};
            if (mark.Pilot && p < end && *p == ':') {
                ++p;
                mark.Flight = number();
            }
            visit(mark);
        }
        while (p < end && *p != '\n') // on to the next line
            ++p;
        if (p < end)
            ++p;
    }
}

QString IdList(const QList<qint64>& ids, qsizetype from, qsizetype count) {
    QStringList texts;
    for (qsizetype i = from; i < ids.size() && i < from + count; ++i)
        texts.append(QString::number(ids[i]));
    return texts.join(u',');
}

} // namespace

std::vector<stats::SnapshotCount> ChartQueries::ClientCounts() {
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    // The snapshots counted before and pruned since go; only those written since are read.
    if (!q.exec(u"SELECT id FROM snapshots"_s))
        return {};
    std::set<qint64> kept;
    while (q.next())
        kept.insert(q.value(0).toLongLong());
    std::erase_if(m_counted, [&](const auto& counted) { return !kept.contains(counted.first); });
    std::vector<stats::SnapshotCount> counts;
    std::vector<std::vector<qint64>> stations; // each new snapshot's station lines
    QSet<qint64> wanted;
    q.prepare(u"SELECT id, network, stamp, taken, frame FROM snapshots WHERE id > ? ORDER BY id"_s);
    q.addBindValue(m_counted.empty() ? qint64(-1) : m_counted.rbegin()->first);
    if (!q.exec())
        return {};
    while (q.next()) {
        stats::SnapshotCount c{q.value(0).toLongLong(),
                               q.value(1).toInt(),
                               q.value(3).toLongLong(),
                               q.value(2).toString(),
                               0,
                               0};
        if ((c.Network != 0 && c.Network != 1) || !SaneTime(c.TakenUtc))
            continue;
        std::vector<qint64> lines;
        ForEachMark(qUncompress(q.value(4).toByteArray()), [&](const Mark& mark) {
            if (mark.Pilot) {
                ++c.Pilots;
            } else {
                lines.push_back(mark.Line);
                wanted.insert(mark.Line);
            }
        });
        counts.push_back(std::move(c));
        stations.push_back(std::move(lines));
    }
    // Which station lines are controllers', each read once.
    const QList<qint64> ids(wanted.begin(), wanted.end());
    QSet<qint64> controllers;
    constexpr qsizetype kIdsAStatement = 5000;
    for (qsizetype first = 0; first < ids.size(); first += kIdsAStatement) {
        if (!q.exec(u"SELECT id, text FROM lines WHERE id IN ("_s + IdList(ids, first, kIdsAStatement) +
                    u')'))
            return {};
        while (q.next())
            if (stats::IsControllerLine(q.value(1).toString()))
                controllers.insert(q.value(0).toLongLong());
    }
    for (size_t i = 0; i < counts.size(); ++i) {
        for (qint64 line : stations[i])
            counts[i].Controllers += controllers.contains(line) ? 1 : 0;
        m_counted.emplace(counts[i].SnapshotId, counts[i]);
    }
    // In time order; read in the order of the file, as a sort in the database would copy every frame.
    counts.clear();
    for (const auto& [id, count] : m_counted)
        counts.push_back(count);
    std::stable_sort(
        counts.begin(), counts.end(),
        [](const stats::SnapshotCount& a, const stats::SnapshotCount& b) { return a.TakenUtc < b.TakenUtc; });
    return counts;
}

AirportHistory ChartQueries::Airport(int network, const QString& airport) {
    AirportHistory history;
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    q.prepare(u"SELECT MIN(taken), MAX(taken) FROM snapshots WHERE network = ?"_s);
    q.addBindValue(network);
    if (!q.exec() || !q.next() || q.value(0).isNull())
        return history;
    history.FirstUtc = q.value(0).toLongLong();
    history.LastUtc = q.value(1).toLongLong();
    if (airport.isEmpty())
        return history;
    // The pilots' kept lines that name the airport as departure (field 11) or destination (field 13);
    // the database's LIKE only narrows them down.
    enum : quint8 { kFrom = 1, kTo = 2 };
    QHash<qint64, quint8> named;
    QString pattern = airport;
    pattern.replace(u"\\"_s, u"\\\\"_s).replace(u"%"_s, u"\\%"_s).replace(u"_"_s, u"\\_"_s);
    q.prepare(u"SELECT id, text FROM lines WHERE text LIKE ? ESCAPE '\\'"_s);
    q.addBindValue(QString(u"%:"_s + pattern + u":%"_s));
    if (!q.exec())
        return history;
    while (q.next()) {
        const QString text = q.value(1).toString();
        const network::LineFields fields(text);
        const quint8 flags = (fields[11] == airport ? kFrom : 0) | (fields[13] == airport ? kTo : 0);
        if (fields[3] == u"PILOT" && flags != 0)
            named.insert(q.value(0).toLongLong(), flags);
    }
    if (named.isEmpty())
        return history;
    // In which snapshots each flight flew under such a line.
    QHash<QPair<qint64, qint64>, quint8> flagsAt; // (snapshot, flight) -> kFrom | kTo
    QSet<qint64> flights;
    q.prepare(u"SELECT id, frame FROM snapshots WHERE network = ?"_s);
    q.addBindValue(network);
    if (!q.exec())
        return history;
    while (q.next()) {
        const qint64 snapshot = q.value(0).toLongLong();
        ForEachMark(qUncompress(q.value(1).toByteArray()), [&](const Mark& mark) {
            const auto found = named.constFind(mark.Line);
            if (!mark.Pilot || found == named.cend())
                return;
            flagsAt.insert({snapshot, mark.Flight}, *found);
            flights.insert(mark.Flight);
        });
    }
    // Every position of those flights: where they were before and after counts too.
    const QList<qint64> ids(flights.begin(), flights.end());
    if (!q.exec(u"SELECT p.snapshot, p.flight, s.taken, p.lat, p.lon, p.speed FROM positions p "
                u"JOIN snapshots s ON s.id = p.snapshot WHERE p.flight IN ("_s +
                IdList(ids, 0, ids.size()) + u')'))
        return history;
    while (q.next()) {
        const qint64 snapshot = q.value(0).toLongLong(), flight = q.value(1).toLongLong();
        const qint64 taken = q.value(2).toLongLong();
        if (!SaneTime(taken))
            continue;
        const quint8 flags = flagsAt.value({snapshot, flight}, 0);
        history.Samples.push_back({flight, taken, float(q.value(3).toDouble() / 1e6),
                                   float(q.value(4).toDouble() / 1e6), q.value(5).toInt(),
                                   (flags & kFrom) != 0, (flags & kTo) != 0});
    }
    return history;
}

std::vector<stats::ProfilePoint> ChartQueries::Profile(int network, const QString& callsign,
                                                       const QString& member) {
    std::vector<stats::ProfilePoint> points;
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    q.prepare(
        u"SELECT s.taken, p.altitude, p.speed FROM flights f JOIN positions p ON p.flight = f.id "
        u"JOIN snapshots s ON s.id = p.snapshot WHERE f.network = ? AND f.callsign = ? AND f.member = ? "
        u"ORDER BY s.taken"_s);
    q.addBindValue(network);
    q.addBindValue(callsign);
    q.addBindValue(member);
    if (q.exec())
        while (q.next())
            if (SaneTime(q.value(0).toLongLong()))
                points.push_back({q.value(0).toLongLong(), q.value(1).toInt(), q.value(2).toInt()});
    return points;
}

} // namespace sky::store
