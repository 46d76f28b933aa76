#include "history_writer.h"

#include <algorithm>

#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTimer>
#include <QVariant>

#include "history/snapshot_codec.h"
#include "history_schema.h"

using namespace Qt::StringLiterals;

namespace sky::store {

HistoryWriter::HistoryWriter(QString path, int keepHours, int pruneEveryMs, Report report)
    : m_path(std::move(path)), m_connection(u"skylantra-history-writer-%1"_s.arg(quintptr(this))),
      m_keepHours(keepHours), m_pruneEveryMs(pruneEveryMs), m_report(std::move(report)) {}

HistoryWriter::~HistoryWriter() {
    if (QSqlDatabase::contains(m_connection)) {
        QSqlDatabase::database(m_connection).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

void HistoryWriter::Failed(const QString& what) {
    if (m_failing)
        return;
    m_failing = true;
    m_report.Failed(what);
}

bool HistoryWriter::Exec(const QString& statement) {
    QSqlQuery q(QSqlDatabase::database(m_connection));
    return Run(q, q.exec(statement));
}

bool HistoryWriter::Run(const QSqlQuery& q, bool ok) {
    if (!ok)
        m_error = q.lastError().text();
    return ok;
}

void HistoryWriter::Open() {
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
    db.setDatabaseName(m_path);
    db.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=2000"_s);
    if (!db.open()) {
        m_broken = true;
        m_report.Broken(u"the history cannot be written: "_s + db.lastError().text());
        return;
    }
    QSqlQuery q(db);
    q.exec(u"PRAGMA synchronous=NORMAL"_s);
    // A day's positions are spread over the file by flight: a cache that holds them saves reading
    // pages again at every write. The log is cut back after each checkpoint.
    q.exec(u"PRAGMA cache_size=-65536"_s);
    q.exec(u"PRAGMA journal_size_limit=4194304"_s);
    // A file made before the space was given back gives it back from now on (once, rewriting it).
    if (q.exec(u"PRAGMA auto_vacuum"_s) && q.next() && q.value(0).toInt() != 2) {
        q.finish();
        if (!Exec(u"PRAGMA auto_vacuum=INCREMENTAL"_s) || !Exec(u"VACUUM"_s))
            Failed(u"The history cannot give space back: "_s + m_error);
    }
    q.finish();
    Prune();
    LoadKnownRows();
    m_pruneTimer = new QTimer(this);
    connect(m_pruneTimer, &QTimer::timeout, this, [this] { Prune(); });
    m_pruneTimer->start(m_pruneEveryMs);
}

qint64 HistoryWriter::DataVersion() {
    QSqlQuery q(QSqlDatabase::database(m_connection));
    return q.exec(u"PRAGMA data_version"_s) && q.next() ? q.value(0).toLongLong() : -1;
}

void HistoryWriter::LoadKnownRows() {
    m_lines.clear();
    m_flights.clear();
    QSqlQuery q(QSqlDatabase::database(m_connection));
    if (q.exec(u"SELECT id, text FROM lines"_s))
        while (q.next())
            m_lines.insert(q.value(1).toString(), q.value(0).toLongLong());
    if (q.exec(u"SELECT id, network, callsign, member FROM flights"_s))
        while (q.next())
            m_flights.insert(q.value(1).toString() + u':' + q.value(2).toString() + u':' +
                                 q.value(3).toString(),
                             q.value(0).toLongLong());
    m_dataVersion = DataVersion();
}

bool HistoryWriter::ForgetUnusedRows() {
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    QSqlQuery q(db);
    // The lines the kept snapshots name; any other went with the snapshots that were pruned.
    QSet<qint64> used;
    if (!Run(q, q.exec(u"SELECT frame FROM snapshots"_s)))
        return false;
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
    if (!Run(q, q.exec(u"SELECT id FROM lines"_s)))
        return false;
    while (q.next())
        if (!used.contains(q.value(0).toLongLong()))
            unused.append(q.value(0).toLongLong());
    QSqlQuery del(db);
    del.prepare(u"DELETE FROM lines WHERE id = ?"_s);
    for (qint64 id : unused) {
        del.addBindValue(id);
        if (!Run(del, del.exec()))
            return false;
    }
    return Exec(
        u"DELETE FROM flights WHERE NOT EXISTS (SELECT 1 FROM positions WHERE positions.flight = flights.id)"_s);
}

void HistoryWriter::Prune() {
    if (m_broken)
        return;
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    // The write lock first: what is let go and what is still used is decided on the file as it is.
    if (!Exec(u"BEGIN IMMEDIATE"_s)) {
        Failed(u"The history cannot let old snapshots go: "_s + m_error);
        return;
    }
    QSqlQuery q(db);
    bool ok = Run(q, q.exec(u"SELECT MAX(taken), MAX(id) FROM snapshots"_s) && q.next());
    const qint64 newest = std::max(QDateTime::currentSecsSinceEpoch(), q.value(0).toLongLong());
    const qint64 pastLast = q.value(1).toLongLong() + 1;
    q.finish();
    q.prepare(u"SELECT MIN(id) FROM snapshots WHERE taken >= ?"_s);
    q.addBindValue(newest - qint64(m_keepHours) * 3600);
    ok = ok && Run(q, q.exec() && q.next());
    // Nothing as recent as that: everything goes.
    const qint64 oldestKept = ok && !q.value(0).isNull() ? q.value(0).toLongLong() : pastLast;
    q.finish();
    int pruned = 0;
    for (const char16_t* statement :
         {u"DELETE FROM positions WHERE flight IN (SELECT id FROM flights) AND snapshot < ?",
          u"DELETE FROM snapshots WHERE id < ?"}) {
        QSqlQuery del(db);
        del.prepare(QString::fromUtf16(statement));
        del.addBindValue(oldestKept);
        ok = ok && Run(del, del.exec());
        pruned = del.numRowsAffected();
    }
    // The first prune of a run also clears what an earlier version left behind.
    const bool clean = pruned > 0 || !m_pruneTimer;
    ok = ok && (!clean || ForgetUnusedRows()) && Exec(u"COMMIT"_s);
    if (!ok) {
        const QString why = m_error;
        Exec(u"ROLLBACK"_s);
        Failed(u"The history cannot let old snapshots go: "_s + why);
        return;
    }
    if (clean) {
        LoadKnownRows();
        Exec(u"PRAGMA incremental_vacuum"_s);
        Exec(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    }
}

qint64 HistoryWriter::LineId(const QString& line) {
    const auto known = m_lines.constFind(line);
    if (known != m_lines.cend())
        return *known;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(u"INSERT INTO lines(text) VALUES(?)"_s);
    q.addBindValue(line);
    if (!Run(q, q.exec()))
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
    if (!Run(q, q.exec()))
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
    if (!Run(q, q.exec()))
        return false;
    const QString snapshot = QString::number(q.lastInsertId().toLongLong());
    constexpr qsizetype kRowsAStatement = 500;
    for (qsizetype first = 0; first < rows.size(); first += kRowsAStatement) {
        QString statement =
            u"INSERT OR IGNORE INTO positions(snapshot, flight, lat, lon, altitude, speed, heading) VALUES"_s;
        const qsizetype last = std::min(rows.size(), first + kRowsAStatement);
        for (qsizetype i = first; i < last; ++i)
            statement += (i > first ? u",("_s : u"("_s) + snapshot + u',' + rows[i] + u')';
        if (!Run(q, q.exec(statement)))
            return false;
    }
    return true;
}

void HistoryWriter::Write(int network, const QString& text, const QDateTime& taken) {
    if (m_broken)
        return;
    // A crash or a kill in the middle loses this snapshot and nothing before it.
    if (!Exec(u"BEGIN IMMEDIATE"_s)) {
        Failed(u"The history cannot be written (the file may be locked): "_s + m_error);
        return;
    }
    // Another program wrote the file since: lines and flights it let go may be among those known.
    if (DataVersion() != m_dataVersion)
        LoadKnownRows();
    if (!WriteSnapshot(network, text, taken.toSecsSinceEpoch()) || !Exec(u"COMMIT"_s)) {
        const QString why = m_error;
        Exec(u"ROLLBACK"_s);
        // Rows the failed transaction added are gone again: forget them.
        LoadKnownRows();
        Failed(u"The history cannot be written (the disk may be full, or the file read-only): "_s + why);
        return;
    }
    m_failing = false;
}

} // namespace sky::store
