#include "sql_history_store.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

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
                       u"2026112114"_s + u"%1"_s.arg(minute, 2, 10, QChar(u'0')) + u"00"_s);
}

class Store : public ::testing::Test {
protected:
    QString Path() const { return m_folder.filePath(u"history.db"_s); }
    QTemporaryDir m_folder;
    QDateTime m_start = QDateTime(QDate(2026, 11, 21), QTime(14, 0), Qt::UTC);
};

TEST_F(Store, KeepsSnapshotsAndTracksAcrossARestartAndLetsOldOnesGo) {
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
    // A kept snapshot reads as the downloaded one (the codec's tests read every client of the demo feeds).
    EXPECT_TRUE(store.SnapshotText(snapshots[1].Id).contains(u"UPDATE = 20261121140100"_s));
    // Two hours later the first hour's snapshots go (the store looks every twenty writes).
    for (int i = 0; i < 20; ++i)
        store.Record(1, Feed(i, 45.0), m_start.addSecs(7200 + 60 * i));
    store.Flush();
    EXPECT_EQ(store.Snapshots(1).size(), 20u);
}

TEST_F(Store, AStoreThatCannotWorkSaysWhyAndAnswersEmpty) {
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
        {"from a newer version",
         [&] {
             {
                 QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"newer"_s);
                 db.setDatabaseName(Path());
                 db.open();
                 QSqlQuery(db).exec(u"PRAGMA user_version=99"_s);
                 db.close();
             }
             QSqlDatabase::removeDatabase(u"newer"_s);
             return Path();
         },
         false, u"newer"},
        {"in a folder that cannot be", [] { return u"/dev/null/history.db"_s; }, false, u"cannot be opened"},
        {"another's, not there", [&] { return m_folder.filePath(u"missing.db"_s); }, true, u"no history"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        QFile::remove(Path());
        SqlHistoryStore store(row.make(), 24, row.readOnly);
        EXPECT_TRUE(store.Problem().contains(QString::fromUtf16(row.said))) << store.Problem().toStdString();
        store.Record(1, Feed(0, 50), m_start);
        store.Flush();
        EXPECT_TRUE(store.Snapshots(1).empty());
        EXPECT_TRUE(store.Track(1, u"DLH1"_s, u"1234567"_s).empty());
    }
}

TEST_F(Store, ALockHeldByAnotherProgramStopsTheWritingAndIsSaid) {
    SqlHistoryStore store(Path(), 24, false);
    store.Record(1, Feed(0, 50), m_start);
    store.Flush();
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        other.setDatabaseName(Path());
        ASSERT_TRUE(other.open());
        QSqlQuery(other).exec(u"BEGIN EXCLUSIVE"_s);
        store.Record(1, Feed(1, 51), m_start.addSecs(180));
        store.Flush();
        QSqlQuery(other).exec(u"ROLLBACK"_s);
        other.close();
    }
    QSqlDatabase::removeDatabase(u"other"_s);
    EXPECT_TRUE(store.Problem().contains(u"cannot be written"_s)) << store.Problem().toStdString();
    // A store opened to replay another's history is never written.
    SqlHistoryStore replay(Path(), 24, true);
    EXPECT_EQ(replay.Problem(), u"");
    replay.Record(1, Feed(2, 52), m_start.addSecs(360));
    EXPECT_EQ(replay.Snapshots(1).size(), 1u);
}

} // namespace
} // namespace sky::store
