#include "sql_history_store.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMutexLocker>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "history/snapshot_codec.h"
#include "history_schema.h"
#include "history_writer.h"

using namespace Qt::StringLiterals;

namespace sky::store {
namespace {

history::TrackPoint Point(const QSqlQuery& q, int first) {
    return {q.value(first).toLongLong(), float(q.value(first + 1).toDouble() / 1e6),
            float(q.value(first + 2).toDouble() / 1e6), q.value(first + 3).toFloat()};
}

} // namespace

SqlHistoryStore::SqlHistoryStore(const QString& path, int keepHours, bool readOnly, int pruneEveryMs)
    : m_path(path), m_connection(u"skylantra-history-%1"_s.arg(quintptr(this))) {
    m_open = OpenReader(readOnly);
    if (!m_open) {
        // Nothing is read from a file that was refused: no connection stays to answer from it.
        if (QSqlDatabase::contains(m_connection)) {
            QSqlDatabase::database(m_connection, false).close();
            QSqlDatabase::removeDatabase(m_connection);
        }
        return;
    }
    if (readOnly)
        return;
    m_writer = new HistoryWriter(
        path, keepHours, pruneEveryMs,
        {[this](const QString& why) { SetProblem(why); }, [this](const QString& why) { WriteFailed(why); }});
    m_writer->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_writer, &QObject::deleteLater);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_writer, [writer = m_writer] { writer->Open(); }, Qt::QueuedConnection);
}

SqlHistoryStore::~SqlHistoryStore() {
    if (m_writer) {
        Flush();
        m_thread.quit();
        m_thread.wait();
    }
    if (QSqlDatabase::contains(m_connection)) {
        QSqlDatabase::database(m_connection).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

bool SqlHistoryStore::OpenReader(bool readOnly) {
    const QString where = u"the history at "_s + QDir::toNativeSeparators(m_path);
    if (readOnly && !QFileInfo(m_path).isFile()) {
        SetProblem(u"there is no history at "_s + QDir::toNativeSeparators(m_path));
        return false;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
    db.setDatabaseName(m_path);
    db.setConnectOptions(readOnly ? u"QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000"_s
                                  : u"QSQLITE_BUSY_TIMEOUT=2000"_s);
    if (!db.open()) {
        SetProblem(where + u" cannot be opened: "_s + db.lastError().text());
        return false;
    }
    // What the file is, before anything in it is changed: a damaged file, or one that is no database,
    // answers no version; one of a newer version, or another program's, is left as it is.
    QSqlQuery q(db);
    const auto unreadable = [&] {
        // SQLite's own codes: only a file that is no database, or a broken one, is damaged; anything
        // else (a full disk, a file being replaced) leaves a sound file that cannot be read just now.
        const int code = q.lastError().nativeErrorCode().toInt() & 0xFF;
        const bool damaged = code == 11 /* SQLITE_CORRUPT */ || code == 26 /* SQLITE_NOTADB */;
        SetProblem(where + (damaged ? u" is damaged: "_s : u" cannot be read: "_s) + q.lastError().text());
        return false;
    };
    if (!q.exec(u"PRAGMA user_version"_s) || !q.next())
        return unreadable();
    const int version = q.value(0).toInt();
    if (!q.exec(u"SELECT name FROM sqlite_master WHERE type = 'table'"_s))
        return unreadable();
    QStringList tables;
    while (q.next())
        tables.append(q.value(0).toString());
    q.finish();
    if (version > schema::kVersion) {
        SetProblem(where + u" comes from a newer Skylantra"_s);
        return false;
    }
    for (const QString& table : tables) {
        if (!table.startsWith(u"sqlite_") && !schema::kTableNames.contains(table)) {
            SetProblem(where + u" is no Skylantra history (it holds a table "_s + table + u')');
            return false;
        }
    }
    if (readOnly)
        return true;
    const auto setUp = [&](const QString& statement) {
        if (q.exec(statement))
            return true;
        SetProblem(where + u" cannot be written: "_s + q.lastError().text());
        return false;
    };
    // Each download adds a row to every flight's part of the positions, so a write touches a page a
    // flight: small pages keep what a commit writes small. The space of pruned snapshots goes back to
    // the disk. Both only while the file is new.
    if (tables.isEmpty() &&
        !(setUp(u"PRAGMA page_size=1024"_s) && setUp(u"PRAGMA auto_vacuum=INCREMENTAL"_s)))
        return false;
    if (!setUp(u"PRAGMA journal_mode=WAL"_s))
        return false;
    for (const char* statement : schema::kTables) {
        if (!setUp(QString::fromLatin1(statement)))
            return false;
    }
    return version == schema::kVersion || setUp(u"PRAGMA user_version=%1"_s.arg(schema::kVersion));
}

void SqlHistoryStore::SetProblem(const QString& text) {
    QMutexLocker lock(&m_mutex);
    if (m_problem.isEmpty())
        m_problem = text;
}

QString SqlHistoryStore::Problem() const {
    QMutexLocker lock(&m_mutex);
    return m_problem;
}

void SqlHistoryStore::OnWriteFailed(std::function<void(const QString&)> failed) {
    QMutexLocker lock(&m_mutex);
    m_writeFailed = std::move(failed);
}

void SqlHistoryStore::WriteFailed(const QString& why) {
    std::function<void(const QString&)> failed;
    {
        QMutexLocker lock(&m_mutex);
        failed = m_writeFailed;
    }
    if (failed)
        failed(why);
}

void SqlHistoryStore::Record(int network, const QString& text, const QDateTime& taken) {
    if (!m_writer || !Problem().isEmpty())
        return;
    QMetaObject::invokeMethod(
        m_writer, [writer = m_writer, network, text, taken] { writer->Write(network, text, taken); },
        Qt::QueuedConnection);
}

void SqlHistoryStore::Flush() {
    if (m_writer && m_thread.isRunning())
        QMetaObject::invokeMethod(
            m_writer, [] {}, Qt::BlockingQueuedConnection);
}

std::vector<history::TrackPoint> SqlHistoryStore::Track(int network, const QString& callsign,
                                                        const QString& member) {
    std::vector<history::TrackPoint> track;
    if (!m_open)
        return track;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(
        u"SELECT s.taken, p.lat, p.lon, p.altitude FROM flights f JOIN positions p ON p.flight = f.id "
        u"JOIN snapshots s ON s.id = p.snapshot WHERE f.network = ? AND f.callsign = ? AND f.member = ? "
        u"ORDER BY p.snapshot"_s);
    q.addBindValue(network);
    q.addBindValue(callsign);
    q.addBindValue(member);
    if (q.exec())
        while (q.next())
            track.push_back(Point(q, 0));
    return track;
}

std::vector<std::pair<QString, std::vector<history::TrackPoint>>> SqlHistoryStore::Tracks(int network,
                                                                                          qint64 sinceUtc) {
    std::vector<std::pair<QString, std::vector<history::TrackPoint>>> tracks;
    if (!m_open)
        return tracks;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(u"SELECT f.callsign || ':' || f.member, s.taken, p.lat, p.lon, p.altitude FROM snapshots s "
              u"JOIN positions p ON p.snapshot = s.id JOIN flights f ON f.id = p.flight "
              u"WHERE s.network = ? AND s.taken >= ? ORDER BY p.flight, s.id"_s);
    q.addBindValue(network);
    q.addBindValue(sinceUtc);
    if (!q.exec())
        return tracks;
    while (q.next()) {
        const QString key = q.value(0).toString();
        if (tracks.empty() || tracks.back().first != key)
            tracks.emplace_back(key, std::vector<history::TrackPoint>());
        tracks.back().second.push_back(Point(q, 1));
    }
    return tracks;
}

std::vector<history::StoredSnapshot> SqlHistoryStore::Snapshots(int network) {
    std::vector<history::StoredSnapshot> snapshots;
    if (!m_open)
        return snapshots;
    QSqlQuery q(QSqlDatabase::database(m_connection));
    q.prepare(u"SELECT id, stamp, taken FROM snapshots WHERE network = ? ORDER BY id"_s);
    q.addBindValue(network);
    if (q.exec())
        while (q.next())
            snapshots.push_back(
                {q.value(0).toLongLong(), network, q.value(1).toString(), q.value(2).toLongLong()});
    return snapshots;
}

QString SqlHistoryStore::SnapshotText(qint64 id) {
    if (!m_open)
        return {};
    QSqlDatabase db = QSqlDatabase::database(m_connection);
    QSqlQuery q(db);
    q.prepare(u"SELECT network, frame FROM snapshots WHERE id = ?"_s);
    q.addBindValue(id);
    if (!q.exec() || !q.next())
        return {};
    const int network = q.value(0).toInt();
    const QStringList frame = QString::fromUtf8(qUncompress(q.value(1).toByteArray())).split(u'\n');
    // The pilots' positions in this snapshot, by flight; the flights are those the frame names.
    QStringList flights;
    for (const QString& line : frame)
        if (!line.isEmpty() && line.front() == schema::kPilotMark)
            flights.append(QString::number(line.section(u':', 1, 1).toLongLong()));
    QHash<qint64, history::ClientPosition> positions;
    if (!q.exec(u"SELECT flight, lat, lon, altitude, speed, heading FROM positions WHERE snapshot = "_s +
                QString::number(id) + u" AND flight IN ("_s + flights.join(u',') + u')'))
        return {};
    while (q.next()) {
        history::ClientPosition& p = positions[q.value(0).toLongLong()];
        p.LatMicro = std::int32_t(q.value(1).toLongLong());
        p.LonMicro = std::int32_t(q.value(2).toLongLong());
        p.AltitudeFt = q.value(3).toInt();
        p.SpeedKt = q.value(4).toInt();
        p.Heading = q.value(5).toInt();
    }
    // The kept lines the frame names.
    QStringList wanted;
    for (const QString& line : frame)
        if (!line.isEmpty() && (line.front() == schema::kStationMark || line.front() == schema::kPilotMark))
            wanted.append(QString::number(line.mid(1).section(u':', 0, 0).toLongLong()));
    QHash<qint64, QString> lines;
    if (!wanted.isEmpty()) {
        wanted.removeDuplicates();
        if (!q.exec(u"SELECT id, text FROM lines WHERE id IN ("_s + wanted.join(u',') + u')'))
            return {};
        while (q.next())
            lines.insert(q.value(0).toLongLong(), q.value(1).toString());
    }
    history::SplitSnapshot split;
    for (const QString& line : frame) {
        const bool station = !line.isEmpty() && line.front() == schema::kStationMark;
        const bool pilot = !line.isEmpty() && line.front() == schema::kPilotMark;
        if (!station && !pilot) {
            split.Frame.append(line);
            continue;
        }
        const qint64 lineId = line.mid(1).section(u':', 0, 0).toLongLong();
        if (!lines.contains(lineId))
            continue; // a damaged file: the client is left out
        history::ClientPosition p;
        p.Pilot = pilot;
        if (pilot)
            p = positions.value(line.section(u':', 1, 1).toLongLong());
        p.Pilot = pilot;
        split.Frame.append(history::kClientMark);
        split.StaticLines.append(lines.value(lineId));
        split.Positions.push_back(p);
    }
    return history::Join(network, split);
}

} // namespace sky::store
