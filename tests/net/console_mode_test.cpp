#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "local_http_server.h"

using namespace Qt::StringLiterals;

namespace {

const QString kBuild = QStringLiteral(SKYLANTRA_BINARY_DIR);
const QString kDemo = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/demo/"_s;

// The program in a terminal with these arguments and this typed input: what it wrote to its standard
// output and its standard error.
std::pair<QString, QString> RunConsole(const QStringList& arguments, const QByteArray& input) {
    QProcess console;
    console.start(kBuild + u"/skylantra"_s, QStringList{u"--console"_s} + arguments);
    EXPECT_TRUE(console.waitForStarted(10000));
    console.write(input);
    console.closeWriteChannel();
    EXPECT_TRUE(console.waitForFinished(60000));
    EXPECT_EQ(console.exitCode(), 0);
    return {QString::fromUtf8(console.readAllStandardOutput()),
            QString::fromUtf8(console.readAllStandardError())};
}

void ServeFile(sky::testing::LocalHttpServer& server, const QString& from, const QString& as) {
    const auto bytes = sky::ReadWholeFile(from);
    ASSERT_TRUE(bytes.has_value()) << from.toStdString();
    server.Serve(as, *bytes);
}

// The Companion in a terminal, on the demo feed (given as a status file, so the weather comes from
// the settings' server, a local one, and not from the demo's reports).
TEST(ConsoleMode, AnswersFromTheDemoFeedAndTheWeatherServer) {
    sky::testing::LocalHttpServer weather;
    ASSERT_TRUE(weather.IsRunning());
    QDir(weather.Folder().path()).mkpath(u"data/observations/metar/stations"_s);
    weather.Serve(u"data/observations/metar/stations/EDDF.TXT"_s,
                  "2026/11/21 14:20\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n");

    QTemporaryDir home;
    QProcess copy;
    copy.start(u"cp"_s, {u"-r"_s, kBuild + u"/data"_s, kBuild + u"/colours"_s, home.path()});
    ASSERT_TRUE(copy.waitForFinished(30000));
    const QByteArray settings =
        "[Network]\nWeatherServer=" + weather.Url(QString()).chopped(1).toUtf8() + "\n";
    QFile ini(home.filePath(u"skln.ini"_s));
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
    ini.write(settings);
    ini.close();

    const QString out =
        RunConsole({u"--home"_s, home.path(), u"--ivao-status"_s,
                    QUrl::fromLocalFile(home.filePath(u"data/demo/ivao/status.txt"_s)).toString(),
                    u"--download"_s, u"ivao"_s},
                   "stat\nfp SAS4045\nmetar EDDF\nmetar KJFK\nhello\ndist EDDF KJFK\n")
            .first;
    EXPECT_TRUE(out.startsWith(
        u"Welcome to the Skylantra Companion\n Refer to companion.txt for list of functions\n"_s));
    EXPECT_TRUE(out.contains(
        u"> stat\nIVAO data of 1423Z - 1164 clients\n (246 ATC, 900 planes, 18 observers)\n\n"_s))
        << out.left(400).toStdString();
    EXPECT_TRUE(out.contains(u"> fp SAS4045\n(FPL-SAS4045-IG\n-E195\n-KATL0930\n"_s));
    EXPECT_TRUE(out.contains(u"> metar EDDF\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n\n"_s));
    EXPECT_TRUE(out.contains(u"> metar KJFK\nNo METAR for KJFK\n"_s));
    EXPECT_FALSE(out.contains(u"hello"_s));
    EXPECT_TRUE(out.contains(u"Distance: 3341.73 nm"_s));
    // The terminal never writes the settings.
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    EXPECT_EQ(ini.readAll(), settings);
}

// Both networks' JSON feeds served over 127.0.0.1, found through status files given on the command line.
TEST(ConsoleMode, ReadsTheJsonFeedsOfBothNetworksEndToEnd) {
    sky::testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    ServeFile(server, kDemo + u"vatsim/vatsim-data.json"_s, u"vatsim-data.json"_s);
    ServeFile(server, kDemo + u"vatsim/transceivers-data.json"_s, u"transceivers-data.json"_s);
    ServeFile(server, kDemo + u"ivao/whazzup.json"_s, u"ivao.json"_s);
    server.Serve(u"vatsim-status.txt"_s, "url0=retired.txt\njson3=vatsim-data.json\n\n\n\n");
    server.Serve(u"retired.txt"_s, "; this feed is retired\n");
    server.Serve(u"ivao-status.txt"_s, "json3=ivao.json\n\n\n\n\n");
    const auto run = [&](const QString& network, const QByteArray& input) {
        return RunConsole({u"--home"_s, kBuild, u"--ivao-status"_s, server.Url(u"ivao-status.txt"_s),
                           u"--vatsim-status"_s, server.Url(u"vatsim-status.txt"_s), u"--download"_s,
                           network},
                          input)
            .first;
    };
    const QString vatsim = run(u"vatsim"_s, "stat\natis LFPO_ATIS\n");
    EXPECT_TRUE(
        vatsim.contains(u"VATSIM data of 1423Z - 1700 clients\n (375 ATC, 1300 planes, 25 observers)"_s))
        << vatsim.toStdString();
    EXPECT_TRUE(vatsim.contains(u"> atis LFPO_ATIS\nLFPO information"_s));
    const QString ivao = run(u"ivao"_s, "stat\nfp SAS4045\n");
    EXPECT_TRUE(ivao.contains(u"IVAO data of 1423Z - 1164 clients"_s)) << ivao.toStdString();
    EXPECT_TRUE(ivao.contains(u"(FPL-SAS4045-IG\n-E195\n-KATL0930\n"_s));
}

// The terminal reads the JSON address of the settings, as the map does, and says on standard error
// why a download brought nothing.
TEST(ConsoleMode, ReadsTheJsonAddressOfTheSettingsAndSaysWhyThereIsNoData) {
    sky::testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    for (const QString& name : {u"vatsim-data.json"_s, u"transceivers-data.json"_s})
        ServeFile(server, kDemo + u"vatsim/"_s + name, name);
    QTemporaryDir home;
    const auto run = [&](const QString& json) {
        QFile ini(home.filePath(u"skln.ini"_s));
        EXPECT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(QString(u"[Network]\nVATSIMJsonURL="_s + json + u"\nVATSIMStatusURL="_s +
                          server.Url(u"no-status.txt"_s) + u"\n"_s)
                      .toUtf8());
        ini.close();
        return RunConsole({u"--home"_s, home.path(), u"--download"_s, u"vatsim"_s}, "stat\n");
    };
    const auto [answer, progress] = run(server.Url(u"vatsim-data.json"_s));
    EXPECT_TRUE(answer.contains(u"> stat\nVATSIM data of 1423Z - 1700 clients"_s)) << answer.toStdString();
    EXPECT_TRUE(progress.contains(u"VATSIM data interpreted"_s) ||
                progress.contains(u"VATSIM data of 1423Z displayed"_s))
        << progress.toStdString();
    const auto [silence, failure] = run(u"http://127.0.0.1:1/vatsim-data.json"_s);
    EXPECT_FALSE(silence.contains(u"> stat"_s)); // no data: a data command answers nothing
    EXPECT_TRUE(failure.contains(u"Could not contact server"_s)) << failure.toStdString();
}

// With the demo the weather comes from the bundled reports: offline, as the traffic is.
TEST(ConsoleMode, TheDemoAnswersWeatherFromItsOwnReports) {
    const QString out = RunConsole({u"--home"_s, kBuild, u"--demo"_s}, "metar EDDF\ntaf EGLL\n").first;
    EXPECT_TRUE(out.contains(u"> metar EDDF\nEDDF 211423Z"_s)) << out.toStdString();
    EXPECT_TRUE(out.contains(u"> taf EGLL\nTAF EGLL 211100Z"_s)) << out.toStdString();
}

} // namespace
