#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "local_http_server.h"
#include "sql_history_store.h"

using namespace Qt::StringLiterals;

namespace {

const QString kBuild = QStringLiteral(SKYLANTRA_BINARY_DIR);
const QString kDemo = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/demo/"_s;

// The program in a terminal with this home folder, these arguments and this typed input: what it wrote
// to its standard output and its standard error.
std::pair<QString, QString> RunConsole(const QString& home, const QStringList& arguments,
                                       const QByteArray& input) {
    QProcess console;
    console.start(kBuild + u"/skylantra"_s, QStringList{u"--console"_s, u"--home"_s, home} + arguments);
    EXPECT_TRUE(console.waitForStarted(10000));
    console.write(input);
    console.closeWriteChannel();
    EXPECT_TRUE(console.waitForFinished(60000));
    EXPECT_EQ(console.exitCode(), 0);
    return {QString::fromUtf8(console.readAllStandardOutput()),
            QString::fromUtf8(console.readAllStandardError())};
}

// Both networks' JSON feeds over 127.0.0.1: VATSIM's at the address the settings give, IVAO's named by a
// status file given on the command line; a download that brings nothing says why on standard error. The
// weather comes from the settings' server, the same local one; the terminal never writes the settings.
TEST(ConsoleMode, ReadsTheJsonFeedsOfBothNetworksAndTheWeatherServerAndSaysWhyThereIsNoData) {
    sky::testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    QDir(server.Folder().path()).mkpath(u"data/observations/metar/stations"_s);
    server.Serve(u"data/observations/metar/stations/EDDF.TXT"_s,
                 "2026/11/21 14:20\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n");
    for (const QString& name :
         {u"vatsim/vatsim-data.json"_s, u"vatsim/transceivers-data.json"_s, u"ivao/whazzup.json"_s})
        server.Serve(name.section(u'/', 1), sky::ReadWholeFile(kDemo + name).value_or(QByteArray()));
    server.Serve(u"ivao-status.txt"_s, "json3=whazzup.json\n\n\n\n\n");
    QTemporaryDir home;
    const auto run = [&](const QString& vatsimJson, const QString& network, const QByteArray& input) {
        const QByteArray settings = (u"[Network]\nVATSIMJsonURL="_s + vatsimJson + u"\nVATSIMStatusURL="_s +
                                     server.Url(u"no-status.txt"_s) + u"\nWeatherServer="_s +
                                     server.Url(QString()).chopped(1) + u"\n"_s)
                                        .toUtf8();
        EXPECT_TRUE(sky::WriteFileMakingFolder(home.filePath(u"skln.ini"_s), settings).Ok);
        const auto said = RunConsole(
            home.path(), {u"--ivao-status"_s, server.Url(u"ivao-status.txt"_s), u"--download"_s, network},
            input);
        EXPECT_EQ(sky::ReadWholeFile(home.filePath(u"skln.ini"_s)), settings);
        return said;
    };
    const auto [vatsim, progress] =
        run(server.Url(u"vatsim-data.json"_s), u"vatsim"_s, "stat\natis LFPO_ATIS\nrwy LFPO\nrwy eddw\n");
    EXPECT_TRUE(vatsim.contains(
        u"> stat\nVATSIM data of 1423Z - 1700 clients\n (375 ATC, 1300 planes, 25 observers)"_s))
        << vatsim.toStdString();
    EXPECT_TRUE(vatsim.contains(u"> atis LFPO_ATIS\nLFPO information"_s));
    EXPECT_TRUE(vatsim.contains(u"> rwy LFPO\nLFPO runways in use: 09 (ATIS G)\n"_s));
    EXPECT_TRUE(vatsim.contains(u"> rwy EDDW\nEDDW runways in use: no ATIS online\n"_s));
    EXPECT_TRUE(progress.contains(u"VATSIM data interpreted"_s) ||
                progress.contains(u"VATSIM data of 1423Z displayed"_s))
        << progress.toStdString();
    const QString ivao = run(QString(), u"ivao"_s, "stat\nfp SAS4045\nmetar EDDF\nmetar KJFK\n").first;
    EXPECT_TRUE(ivao.startsWith(
        u"Welcome to the Skylantra Companion\n Refer to companion.txt for list of functions\n"_s));
    EXPECT_TRUE(
        ivao.contains(u"> stat\nIVAO data of 1423Z - 1164 clients\n (246 ATC, 900 planes, 18 observers)\n"_s))
        << ivao.toStdString();
    EXPECT_TRUE(ivao.contains(u"(FPL-SAS4045-IG\n-E195\n-KATL0930\n"_s));
    EXPECT_TRUE(ivao.contains(u"> metar EDDF\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n\n"_s));
    EXPECT_TRUE(ivao.contains(u"> metar KJFK\nNo METAR for KJFK\n"_s));
    const auto [silence, failure] = run(u"http://127.0.0.1:1/vatsim-data.json"_s, u"vatsim"_s, "stat\n");
    EXPECT_FALSE(silence.contains(u"> stat"_s)); // no data: a data command answers nothing
    EXPECT_TRUE(failure.contains(u"Could not contact server"_s)) << failure.toStdString();
}

// Live in the terminal: the feed is asked for every LiveSeconds only if changed (the server answers
// "not modified" to an unchanged file) and stat answers from the newest snapshot.
TEST(ConsoleMode, LiveFollowsTheFeedAndStatAnswersFromTheNewestData) {
    sky::testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    QByteArray feed = sky::ReadWholeFile(kDemo + u"../../tests/data/vatsim-v3.json"_s).value_or("");
    server.Serve(u"vatsim-data.json"_s, feed);
    server.Serve(u"status.txt"_s, "\n\n\n\n\n");
    QTemporaryDir home;
    ASSERT_TRUE(sky::WriteFileMakingFolder(home.filePath(u"skln.ini"_s),
                                           "[Network]\nHistoryHours=0\nVATSIMJsonURL=" +
                                               server.Url(u"vatsim-data.json"_s).toUtf8())
                    .Ok);
    QProcess console;
    console.start(kBuild + u"/skylantra"_s,
                  {u"--console"_s, u"--home"_s, home.path(), u"--live"_s, u"--vatsim-status"_s,
                   server.Url(u"status.txt"_s), u"--download"_s, u"vatsim"_s});
    QString out;
    const auto stat = [&](const QString& answer) { // typed every two seconds until the answer holds it
        for (QDeadlineTimer end(30000); !out.contains(answer) && !end.hasExpired();) {
            console.write("stat\n");
            for (QDeadlineTimer pause(2000); !pause.hasExpired();)
                console.waitForReadyRead(int(pause.remainingTime()));
            out += QString::fromUtf8(console.readAllStandardOutput());
        }
        return out.contains(answer);
    };
    const auto served = [&](const char* status) {
        return server.Log().count(
            QRegularExpression(u"GET /vatsim-data.json HTTP/1.1\" "_s + QLatin1String(status)));
    };
    EXPECT_TRUE(stat(u"3 planes"_s)) << out.toStdString();
    QThread::sleep(1); // a file time the server tells apart
    feed.replace("142305", "142320")
        .replace("14:23:05", "14:23:20")
        .replace("\"connected_clients\": 7", "\"connected_clients\": 8");
    server.Serve(u"vatsim-data.json"_s,
                 feed.replace(R"("pilots": [)", R"("pilots": [{"callsign": "NEW1", "latitude": 1},)"));
    EXPECT_TRUE(stat(u"4 planes"_s)) << out.toStdString();
    for (QDeadlineTimer end(20000); served("304") == 0 && !end.hasExpired();)
        QThread::msleep(500);
    EXPECT_EQ(served("200"), 2); // one 304 in two fetches after the change: no more often than the interval
    EXPECT_EQ(served("304"), 1);
    console.closeWriteChannel();
    EXPECT_TRUE(console.waitForFinished(20000) && console.exitCode() == 0);
}

// Two terminals at once on one home: every watch either confirmed is kept, and each keeps its download
// in the one history file. A history that refuses the download says so on standard error. With the
// demo the weather comes from the bundled reports: offline, as the traffic is.
TEST(ConsoleMode, TwoTerminalsOnOneHomeKeepEveryWatchAndEveryDownload) {
    QTemporaryDir home;
    QProcess terminals[2];
    for (int t = 0; t < 2; ++t) {
        QByteArray input = t == 0 ? "metar EDDF\ntaf EGLL\n" : "";
        for (int i = 0; i < 40; ++i)
            input += "watch T" + QByteArray::number(t) + "N" + QByteArray::number(i) + "_*\n";
        terminals[t].start(kBuild + u"/skylantra"_s, {u"--console"_s, u"--home"_s, home.path(), u"--demo"_s,
                                                      u"--download"_s, t == 0 ? u"ivao"_s : u"vatsim"_s});
        terminals[t].write(input);
        terminals[t].closeWriteChannel();
    }
    QString out[2];
    for (int t = 0; t < 2; ++t) {
        ASSERT_TRUE(terminals[t].waitForFinished(60000));
        out[t] = QString::fromUtf8(terminals[t].readAllStandardOutput());
        EXPECT_TRUE(out[t].contains(u"Watching T"_s));
    }
    EXPECT_TRUE(out[0].contains(u"> metar EDDF\nEDDF 211423Z"_s)) << out[0].toStdString();
    EXPECT_TRUE(out[0].contains(u"> taf EGLL\nTAF EGLL 211100Z"_s)) << out[0].toStdString();
    const QByteArray watched = sky::ReadWholeFile(home.filePath(u"data/watch.dat"_s)).value_or(QByteArray());
    EXPECT_EQ(watched.count('\n'), 80) << watched.toStdString();
    {
        sky::store::SqlHistoryStore both(home.filePath(u"history.db"_s), 24, true);
        EXPECT_EQ(both.Snapshots(0).size() + both.Snapshots(1).size(), 2u);
    }

    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"refuse"_s);
        db.setDatabaseName(home.filePath(u"history.db"_s));
        ASSERT_TRUE(db.open());
        QSqlQuery(db).exec(u"DELETE FROM snapshots"_s); // the same data again would not be written at all
        QSqlQuery(db).exec(u"CREATE TRIGGER refuse BEFORE INSERT ON snapshots BEGIN SELECT "
                           u"RAISE(ABORT, 'database or disk is full'); END"_s);
        db.close();
    }
    QSqlDatabase::removeDatabase(u"refuse"_s);
    const QString said = RunConsole(home.path(), {u"--demo"_s, u"--download"_s, u"ivao"_s}, "stat\n").second;
    EXPECT_TRUE(said.contains(u"Skylantra: The history cannot be written"_s)) << said.toStdString();

    // A home on a full disk (where the test may mount one): a watch is answered as not saved, said on
    // standard error, and the list keeps its bytes.
    const QString full = home.filePath(u"full"_s);
    QDir().mkpath(full);
    if (QProcess::execute(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=64k"_s, u"tmpfs"_s, full}) != 0)
        GTEST_SKIP() << "no tmpfs can be mounted here";
    ASSERT_TRUE(sky::WriteFileMakingFolder(full + u"/data/watch.dat"_s, "OLD_*\n").Ok);
    QProcess::execute(u"dd"_s,
                      {u"if=/dev/zero"_s, u"of="_s + full + u"/filler"_s, u"bs=4k"_s, u"status=none"_s});
    const auto [answer, error] = RunConsole(full, {}, "watch FULL_*\n");
    const std::optional<QByteArray> kept = sky::ReadWholeFile(full + u"/data/watch.dat"_s);
    QProcess::execute(u"umount"_s, {full});
    EXPECT_TRUE(answer.contains(u"Watching FULL_*\nNot saved: Could not write "_s)) << answer.toStdString();
    EXPECT_TRUE(error.contains(u"Skylantra: Could not write "_s)) << error.toStdString();
    EXPECT_EQ(kept, QByteArray("OLD_*\n"));
}

} // namespace
