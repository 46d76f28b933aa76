#include <csignal>

#include "gui_fixture.h"

using namespace Qt::StringLiterals;

namespace {

using namespace sky::gui;

TEST_F(Gui, KeysAndTheCompanionMoveTheMapAndClosingSavesTheViews) {
    QProcess program;
    const QString map = Start(program, {u"--demo"_s});
    ASSERT_FALSE(map.isEmpty()) << "the map window did not appear";
    Keys(map, {u"i"_s}); // download IVAO
    QThread::msleep(1500);
    // Grid, borders and all labels off (labels only once clients are online); two steps east, one
    // north; stored as view 1.
    Keys(map, {u"g"_s, u"c"_s, u"F1"_s, u"Right"_s, u"Right"_s, u"Up"_s, u"shift+1"_s, u"Escape"_s});
    // The Companion answers and recalls its last command.
    Keys(map, {u"space"_s});
    const QString companion = FindWindow(u"^Skylantra Companion$"_s);
    ASSERT_FALSE(companion.isEmpty()) << "Space did not open the Companion";
    Xdotool({u"windowfocus"_s, u"--sync"_s, companion});
    Xdotool({u"type"_s, u"--delay"_s, u"40"_s, u"icao KJFK"_s});
    Keys(companion, {u"Return"_s});
    Keys(map, {u"2"_s});                     // somewhere else
    Keys(companion, {u"Up"_s, u"Return"_s}); // icao KJFK again
    Keys(map, {u"shift+2"_s});               // store where the map now looks
    // Beside the map, the terminal Companion runs on its home and what it watches outlives the map's
    // exit; a snapshot there says why none can be taken.
    EXPECT_TRUE(Console({}, "watch EDDF_*\n").contains(u"Watching EDDF_*"_s));
    QProcess snapshot;
    snapshot.start(kBuild + u"/skylantra"_s,
                   {u"--home"_s, m_home.path(), u"--snapshot"_s, m_home.filePath(u"x.png"_s)});
    ASSERT_TRUE(snapshot.waitForFinished(30000));
    EXPECT_EQ(snapshot.exitCode(), 1);
    EXPECT_TRUE(snapshot.readAllStandardError().contains("another Skylantra is running"));
    ASSERT_TRUE(CloseAndWait(program, map));
    EXPECT_EQ(sky::ReadWholeFile(m_home.filePath(u"data/watch.dat"_s)), QByteArray("EDDF_*\n"));
    EXPECT_EQ(Setting(u"Map"_s, u"ShowLatLon ShowPlaneLabels ShowATCLabels"_s), u"0 0 0");
    // View 1 5 / 1.49 degrees a step from where it started, view 2 on New York.
    EXPECT_EQ(Setting(u"Zoom"_s, u"X1 Y1 Z1 X2 Y2 Z2"_s), u"2005 -5751 149 -7378 -4064 1600");
}

// Log-out (SIGTERM), Ctrl+C (SIGINT) and a closed terminal (SIGHUP) close the map as its close button
// does: the settings written, the lock released.
TEST_F(Gui, TermIntAndHangUpSignalsSaveTheSettingsAndReleaseTheLock) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(number);
        // Only closing writes the settings file; a value out of range comes back clamped.
        Write(u"skln.ini"_s, "[Network]\nDownloadMinutes=1\n");
        QProcess program;
        ASSERT_FALSE(Start(program, {}).isEmpty()) << "the map window did not appear";
        ASSERT_EQ(::kill(pid_t(program.processId()), number), 0);
        ASSERT_TRUE(program.waitForFinished(20000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_EQ(Setting(u"Network"_s, u"DownloadMinutes"_s) + u' ' + Setting(u"Zoom"_s, u"X1"_s),
                  u"3 1334");
        EXPECT_FALSE(QFile::exists(m_home.filePath(u"skylantra.lock"_s)));
    }
}

} // namespace
