#include "sql_history_store.h"

#include <mutex>

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "network/whazzup_lines.h"

using namespace Qt::StringLiterals;

namespace sky::store {
namespace {

// A feed of one aircraft at a latitude.
QString Feed(int minute, double lat) {
    using namespace network::testing;
    return WhazzupText({PilotLine(1, u"0=DLH1|1=1234567|5=%1|6=8.5|7=35000|38=90"_s.arg(lat)),
                        AtcLine(1, u"0=EDDF_TWR|1=1300001|5=50.03"_s)},
                       u"2026112114"_s + u"%1"_s.arg(minute % 60, 2, 10, QChar(u'0')) + u"00"_s);
}

// A feed in which every one of count pilots is new: callsigns and members never seen before.
QString Churn(int serial, int count) {
    QStringList pilots;
    for (int i = 0; i < count; ++i)
        pilots.append(network::testing::PilotLine(
            1, u"0=N%1X%2|1=%3|5=50|6=8|30=DCT ROUTE TEXT %2"_s.arg(serial).arg(i).arg(serial * 1000 + i)));
    return network::testing::WhazzupText(pilots, u"20261121140000"_s);
}

// Runs a statement on the file through a connection of its own, as another program would.
void Sql(const QString& path, const QStringList& statements) {
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        for (const QString& statement : statements)
            EXPECT_TRUE(QSqlQuery(db).exec(statement)) << statement.toStdString();
        db.close();
    }
    QSqlDatabase::removeDatabase(u"other"_s);
}

// Waits up to five seconds for the store's background prune to leave this many snapshots; how many it left.
size_t WaitForSnapshots(SqlHistoryStore& store, size_t count) {
    QElapsedTimer waited;
    waited.start();
    while (store.Snapshots(1).size() != count && waited.elapsed() < 5000)
        QThread::msleep(20);
    return store.Snapshots(1).size();
}

class Store : public ::testing::Test {
protected:
    QString Path() const { return m_folder.filePath(u"history.db"_s); }
    QTemporaryDir m_folder;
    // Downloads of days to come: what is kept is reckoned from the newest of them, not from the clock.
    QDateTime m_start = QDateTime(QDate::currentDate().addDays(30), QTime(14, 0), Qt::UTC);
};

TEST_F(Store, KeepsSnapshotsAndTracksAcrossARestart) {
    {
        SqlHistoryStore store(Path(), 1, false);
        for (int i = 0; i < 3; ++i)
            store.Record(1, Feed(i, 50.0 + i), m_start.addSecs(180 * i));
        store.Flush();
        EXPECT_EQ(store.Problem(), u"");
    }
    SqlHistoryStore store(Path(), 1, false); // the next run reads what the last one kept
    const auto snapshots = store.Snapshots(1);
    ASSERT_EQ(snapshots.size(), 3u);
    EXPECT_EQ(store.Snapshots(0).size(), 0u);
    const auto track = store.Track(1, u"DLH1"_s, u"1234567"_s);
    ASSERT_EQ(track.size(), 3u);
    EXPECT_FLOAT_EQ(track[2].Latitude, 52.0f);
    EXPECT_EQ(track[1].TakenUtc - track[0].TakenUtc, 180);
    EXPECT_TRUE(store.Track(1, u"DLH1"_s, u"7654321"_s).empty());      // another member, another flight
    ASSERT_EQ(store.Tracks(1, m_start.toSecsSinceEpoch()).size(), 1u); // the aircraft; a tower stays put
    // A kept snapshot reads as the downloaded one (the codec's tests read every client of the demo
    // feeds).
    EXPECT_TRUE(store.SnapshotText(snapshots[1].Id).contains(u"UPDATE = 20261121140100"_s));
}

// Many short runs, every pilot new at each download (the file grew without bound before): the store
// holds the hour it keeps, and with the lines and flights no snapshot uses gone the file stops growing.
// Within one run the timer lets old snapshots go without waiting for a restart.
TEST_F(Store, ManyShortRunsOfNewPilotsStayWithinTheHoursKept) {
    std::vector<qint64> sizes;
    for (int run = 0; run < 24; ++run) {
        SqlHistoryStore store(Path(), 1, false);
        for (int k = 0; k < 3; ++k) // a download every 5 minutes, a run every 15
            store.Record(1, Churn(run * 3 + k, 200), m_start.addSecs(900 * run + 300 * k));
        store.Flush();
        sizes.push_back(QFileInfo(Path()).size() + QFileInfo(Path() + u"-wal"_s).size());
    }
    SqlHistoryStore store(Path(), 1, false, 50);
    store.Flush();
    EXPECT_EQ(store.Snapshots(1).size(), 13u); // those of the newest's last hour
    // After the first few hours the file grows no more.
    EXPECT_LE(sizes.back(), sizes[7] * 5 / 4)
        << sizes[7] << " bytes after 2 h, " << sizes.back() << " at the end";
    store.Record(1, Churn(999, 10), m_start.addSecs(900 * 24 + 7200));
    EXPECT_EQ(WaitForSnapshots(store, 1), 1u); // the timer's prune, no restart
}

// The map and the terminal Companion write one file: one of them letting go of rows the other still
// knew (the other's next snapshot uses the same client line) loses nothing of what either keeps.
TEST_F(Store, TwoProgramsShareTheFile) {
    SqlHistoryStore map(Path(), 1, false, 50), terminal(Path(), 1, false);
    map.Record(1, Feed(0, 50), m_start);
    map.Flush();
    terminal.Record(1, Feed(1, 50), m_start.addSecs(60));
    terminal.Flush();
    map.Record(1, Churn(1, 3), m_start.addSecs(7200)); // the two first go at the map's next prune
    map.Flush();
    ASSERT_EQ(WaitForSnapshots(map, 1), 1u);
    terminal.Record(1, Feed(2, 51), m_start.addSecs(7260));
    terminal.Flush();
    const auto snapshots = map.Snapshots(1);
    ASSERT_EQ(snapshots.size(), 2u);
    const QString text = terminal.SnapshotText(snapshots[1].Id);
    EXPECT_TRUE(text.contains(u"DLH1:1234567"_s) && text.contains(u"EDDF_TWR"_s)) << text.toStdString();
    EXPECT_EQ(map.Track(1, u"DLH1"_s, u"1234567"_s).size(), 1u);
    EXPECT_EQ(map.Problem() + terminal.Problem(), u"");
}

// A file the store cannot use is looked at before anything in it changes: its bytes stay as they were,
// the store says why and answers empty, whatever the file holds.
TEST_F(Store, AStoreThatCannotWorkLeavesTheFileAloneSaysWhyAndAnswersEmpty) {
    const QString snapshotTable =
        u"CREATE TABLE snapshots(id INTEGER PRIMARY KEY, network INTEGER, stamp TEXT, taken INTEGER, frame BLOB)"_s;
    const QString aSnapshot = u"INSERT INTO snapshots VALUES(1, 1, '20261121140000', 0, x'00')"_s;
    struct Row {
        const char* name;
        std::function<QString()> make; // the path, after setting it up
        bool readOnly;
        const char16_t* said;
    };
    const Row rows[] = {
        {"damaged",
         [&] {
             WriteFileAtomically(Path(), QByteArray(4096, 'x'));
             return Path();
         },
         false, u"damaged"},
        {"from a newer version, with its tables",
         [&] {
             QFile::remove(Path());
             Sql(Path(), {snapshotTable, aSnapshot, u"PRAGMA user_version=99"_s});
             return Path();
         },
         false, u"comes from a newer Skylantra"},
        {"the same, to replay", [&] { return Path(); }, true, u"comes from a newer Skylantra"},
        {"another program's",
         [&] {
             QFile::remove(Path());
             Sql(Path(), {snapshotTable, aSnapshot, u"CREATE TABLE notes(text TEXT)"_s});
             return Path();
         },
         false, u"is no Skylantra history (it holds a table notes)"},
        {"in a folder that cannot be", [] { return u"/dev/null/history.db"_s; }, false, u"cannot be opened"},
        {"another's, not there", [&] { return m_folder.filePath(u"missing.db"_s); }, true, u"no history"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = row.make();
        const auto sum = [&] {
            return QCryptographicHash::hash(ReadWholeFile(path).value_or("none"), QCryptographicHash::Sha256);
        };
        const QByteArray before = sum();
        {
            SqlHistoryStore store(path, 24, row.readOnly);
            EXPECT_TRUE(store.Problem().contains(QString::fromUtf16(row.said)))
                << store.Problem().toStdString();
            store.Record(1, Feed(0, 50), m_start);
            store.Flush();
            EXPECT_TRUE(store.Snapshots(1).empty());
            EXPECT_TRUE(store.SnapshotText(1).isEmpty());
            EXPECT_TRUE(store.Track(1, u"DLH1"_s, u"1234567"_s).empty());
        }
        EXPECT_EQ(sum(), before);
        EXPECT_FALSE(QFileInfo::exists(path + u"-wal"_s)); // not switched to the log either
    }
}

// A write the file refuses (here by a trigger, as a full disk would) is said at once, once; the map
// goes on, and the next write that can be made is made.
TEST_F(Store, AFailedWriteIsSaidAtOnceAndTheNextOneIsWritten) {
    std::mutex mutex;
    QStringList said;
    SqlHistoryStore store(Path(), 24, false);
    store.OnWriteFailed([&](const QString& why) {
        std::lock_guard lock(mutex);
        said.append(why);
    });
    store.Record(1, Feed(0, 50), m_start);
    store.Flush();
    Sql(Path(),
        {u"CREATE TRIGGER refuse BEFORE INSERT ON snapshots BEGIN SELECT RAISE(ABORT, 'database or disk is full'); END"_s});
    QElapsedTimer waited;
    waited.start();
    store.Record(1, Feed(1, 51), m_start.addSecs(180));
    const auto count = [&] {
        std::lock_guard lock(mutex);
        return said.size();
    };
    while (count() == 0 && waited.elapsed() < 5000)
        QThread::msleep(5);
    EXPECT_LT(waited.elapsed(), 1000);
    store.Record(1, Feed(2, 52), m_start.addSecs(360)); // failing still: not said again
    store.Flush();
    Sql(Path(), {u"DROP TRIGGER refuse"_s});
    store.Record(1, Feed(3, 53), m_start.addSecs(540));
    store.Flush();
    ASSERT_EQ(count(), 1);
    EXPECT_TRUE(said[0].startsWith(u"The history cannot be written"_s) && said[0].contains(u"disk is full"_s))
        << said[0].toStdString();
    EXPECT_EQ(store.Snapshots(1).size(), 2u);
    EXPECT_EQ(store.Problem(), u"");
    // A store opened to replay another's history is never written.
    SqlHistoryStore replay(Path(), 24, true);
    EXPECT_EQ(replay.Problem(), u"");
    replay.Record(1, Feed(4, 54), m_start.addSecs(720));
    EXPECT_EQ(replay.Snapshots(1).size(), 2u);
}

} // namespace
} // namespace sky::store
