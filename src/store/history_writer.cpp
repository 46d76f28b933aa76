#include "history_writer.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSet>
#include <QVariant>

#include "history/snapshot_codec.h"
#include "history_schema.h"

using namespace Qt::StringLiterals;

namespace sky::store {

HistoryWriter::HistoryWriter(QString path, int keepHours, std::function<void(const QString&)> failed)
    : m_path(std::move(path)), m_connection(u"skylantra-history-writer-%1"_s.arg(quintptr(this))),
      m_keepHours(keepHours), m_failed(std::move(failed)) {}

HistoryWriter::~HistoryWriter() {
    if (QSqlDatabase::contains(m_connection)) {
        QSqlDatabase::database(m_connection).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

void HistoryWriter::Fail(const QString& what) {
    if (m_broken)
        return;
    m_broken = true;
    m_failed(what);
}

void HistoryWriter::Open() {
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
    db.setDatabaseName(m_path);
    db.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=2000"_s);
    if (!db.open()) {
        Fail(u"the history cannot be written: "_s + db.lastError().text());
        return;
    }
    QSqlQuery q(db);
    q.exec(u"PRAGMA synchronous=NORMAL"_s);
    // A day's positions are spread over the file by flight: a cache that holds them saves reading
    // pages again at every write. The log is cut back after each checkpoint.
    q.exec(u"PRAGMA cache_size=-65536"_s);
    q.exec(u"PRAGMA journal_size_limit=4194304"_s);
    ForgetUnusedRows();
    // What the file already holds, so a line or flight seen before is written once.
    if (q.exec(u"SELECT id, text FROM lines"_s))
        while (q.next())
            m_lines.insert(q.value(1).toString(), q.value(0).toLongLong());
    if (q.exec(u"SELECT id, network, callsign, member FROM flights"_s))
        while (q.next())
            m_flights.insert(q.value(1).toString() + u':' + q.value(2).toString() + u':' +
                                 q.value(3).toString(),
                             q.value(0).toLongLong());
}

void HistoryWriter::ForgetUnusedRows() {
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    QSqlQuery q(db);
    // The lines the kept snapshots name; any other went with the snapshots that were pruned.
    QSet<qint64> used;
    if (!q.exec(u"SELECT frame FROM snapshots"_s))
        return;
    while (q.next()) {
        const QString frame = QString::fromUtf8(qUncompress(q.value(0).toByteArray()));
        for (QStringView line : QStringView(frame).split(u'\n')) {
            if (line.isEmpty() ||
                (line.front() != schema::kStationMark && line.front() != schema::kPilotMark))
                continue;
            used.insert(line.mid(1).split(u':').front().toLongLong());
        }
    }
    QList<qint64> unused;
    if (q.exec(u"SELECT id FROM lines"_s))
        while (q.next())
            if (!used.contains(q.value(0).toLongLong()))
                unused.append(q.value(0).toLongLong());
    db.transaction();
    QSqlQuery del(db);
    del.prepare(u"DELETE FROM lines WHERE id = ?"_s);
    for (qint64 id : unused) {
        del.addBindValue(id);
        del.exec();
    }
    q.exec(u"DELETE FROM flights WHERE id NOT IN (SELECT DISTINCT flight FROM positions)"_s);
    db.commit();
}

qint64 HistoryWriter::LineId(const QString& line) {
    const auto known = m_lines.constFind(line);
    if (known != m_lines.cend())
        return *known;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(u"INSERT INTO lines(text) VALUES(?)"_s);
    q.addBindValue(line);
    if (!q.exec())
        return -1;
    const qint64 id = q.lastInsertId().toLongLong();
    m_lines.insert(line, id);
    return id;
}

qint64 HistoryWriter::FlightId(int network, const QString& callsign, const QString& member) {
    const QString key = QString::number(network) + u':' + callsign + u':' + member;
    const auto known = m_flights.constFind(key);
    if (known != m_flights.cend())
        return *known;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(u"INSERT INTO flights(network, callsign, member) VALUES(?, ?, ?)"_s);
    q.addBindValue(network);
    q.addBindValue(callsign);
    q.addBindValue(member);
    if (!q.exec())
        return -1;
    const qint64 id = q.lastInsertId().toLongLong();
    m_flights.insert(key, id);
    return id;
}

bool HistoryWriter::WriteSnapshot(int network, const QString& text, qint64 takenUtc) {
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    const history::SplitSnapshot split = history::Split(network, text);
    QString stamp;
    QStringList frame;
    frame.reserve(split.Frame.size());
    // Each pilot's position as a row of literal numbers, written many rows to a statement once the
    // snapshot's row exists: "<flight>,<lat>,<lon>,<altitude>,<speed>,<heading>".
    QStringList rows;
    rows.reserve(split.Positions.size());
    qsizetype client = 0;
    for (const QString& line : split.Frame) {
        if (line != history::kClientMark) {
            if (line.startsWith(u"UPDATE"))
                stamp = line.trimmed().right(14);
            frame.append(line);
            continue;
        }
        const history::ClientPosition& p = split.Positions[size_t(client)];
        const qint64 lineId = LineId(split.StaticLines[client++]);
        if (lineId < 0)
            return false;
        if (!p.Pilot) {
            frame.append(schema::kStationMark + QString::number(lineId));
            continue;
        }
        const qint64 flight = FlightId(network, p.Callsign, p.Member);
        if (flight < 0)
            return false;
        const QString flightText = QString::number(flight);
        frame.append(schema::kPilotMark + QString::number(lineId) + u':' + flightText);
        QString row = flightText;
        for (std::int32_t value : {p.LatMicro, p.LonMicro, p.AltitudeFt, p.SpeedKt, p.Heading})
            row += u',' + QString::number(value);
        rows.append(row);
    }
    QSqlQuery q(db);
    q.prepare(u"INSERT INTO snapshots(network, stamp, taken, frame) VALUES(?, ?, ?, ?)"_s);
    q.addBindValue(network);
    q.addBindValue(stamp);
    q.addBindValue(takenUtc);
    q.addBindValue(qCompress(frame.join(u'\n').toUtf8(), 9));
    if (!q.exec())
        return false;
    const QString snapshot = QString::number(q.lastInsertId().toLongLong());
    constexpr qsizetype kRowsAStatement = 500;
    for (qsizetype first = 0; first < rows.size(); first += kRowsAStatement) {
        QString statement =
            u"INSERT OR IGNORE INTO positions(snapshot, flight, lat, lon, altitude, speed, heading) VALUES"_s;
        const qsizetype last = std::min(rows.size(), first + kRowsAStatement);
        for (qsizetype i = first; i < last; ++i)
            statement += (i > first ? u",("_s : u"("_s) + snapshot + u',' + rows[i] + u')';
        if (!q.exec(statement))
            return false;
    }
    return true;
}

void HistoryWriter::Write(int network, const QString& text, const QDateTime& taken) {
    if (m_broken)
        return;
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    const qint64 takenUtc = taken.toSecsSinceEpoch();
    // A crash or a kill in the middle loses this snapshot and nothing before it.
    if (!db.transaction()) {
        Fail(u"the history cannot be written: "_s + db.lastError().text());
        return;
    }
    if (!WriteSnapshot(network, text, takenUtc)) {
        const QString why = db.lastError().text();
        db.rollback();
        // Rows the failed transaction added are gone again: forget them.
        m_lines.clear();
        m_flights.clear();
        Fail(u"the history cannot be written (the disk may be full, or the file locked): "_s + why);
        return;
    }
    if (!db.commit()) {
        Fail(u"the history cannot be written: "_s + db.lastError().text());
        return;
    }
    if (++m_sincePrune >= 20) {
        m_sincePrune = 0;
        Prune(takenUtc);
    }
}

void HistoryWriter::Prune(qint64 nowUtc) {
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    QSqlQuery q(db);
    q.prepare(u"SELECT MIN(id) FROM snapshots WHERE taken >= ?"_s);
    q.addBindValue(nowUtc - qint64(m_keepHours) * 3600);
    if (!q.exec() || !q.next() || q.value(0).isNull())
        return;
    const qint64 oldestKept = q.value(0).toLongLong();
    db.transaction();
    for (const char16_t* statement :
         {u"DELETE FROM positions WHERE flight IN (SELECT id FROM flights) AND snapshot < ?",
          u"DELETE FROM snapshots WHERE id < ?"}) {
        QSqlQuery del(db);
        del.prepare(QString::fromUtf16(statement));
        del.addBindValue(oldestKept);
        del.exec();
    }
    db.commit();
}

} // namespace sky::store
