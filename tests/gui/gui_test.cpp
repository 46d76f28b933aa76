#include <csignal>

#include "gui_fixture.h"

using namespace Qt::StringLiterals;

namespace {

using namespace sky::gui;

TEST_F(Gui, KeysChangeTheMapAndClosingSavesTheView) {
    QProcess program;
    const QString window = Start(program, {u"--demo"_s});
    ASSERT_FALSE(window.isEmpty()) << "the map window did not appear";
    Keys(window, {u"i"_s}); // download IVAO
    QThread::msleep(1500);
    // Grid, borders and all labels off (labels only once clients are online); two steps east, one
    // north; stored as view 1.
    Keys(window, {u"g"_s, u"c"_s, u"F1"_s, u"Right"_s, u"Right"_s, u"Up"_s, u"shift+1"_s, u"Escape"_s});
    ASSERT_TRUE(CloseAndWait(program, window));
    EXPECT_EQ(Setting(u"Map", u"ShowLatLon"), u"0");
    EXPECT_EQ(Setting(u"Map", u"ShowPlaneLabels"), u"0");
    EXPECT_EQ(Setting(u"Map", u"ShowATCLabels"), u"0");
    // 5 / 1.49 degrees a step from where it started.
    EXPECT_EQ(Setting(u"Zoom", u"X1"), u"2005");
    EXPECT_EQ(Setting(u"Zoom", u"Y1"), u"-5751");
    EXPECT_EQ(Setting(u"Zoom", u"Z1"), u"149");
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
        EXPECT_EQ(Setting(u"Network", u"DownloadMinutes"), u"3");
        EXPECT_EQ(Setting(u"Zoom", u"X1"), u"1334");
        EXPECT_FALSE(QFile::exists(m_home.filePath(u"skylantra.lock"_s)));
    }
}

TEST_F(Gui, TheCompanionAnswersAndRecallsItsLastCommand) {
    QProcess program;
    const QString map = Start(program, {u"--demo"_s});
    ASSERT_FALSE(map.isEmpty());
    Keys(map, {u"space"_s});
    const QString companion = FindWindow(u"^Skylantra Companion$"_s);
    ASSERT_FALSE(companion.isEmpty()) << "Space did not open the Companion";
    Xdotool({u"windowfocus"_s, u"--sync"_s, companion});
    Xdotool({u"type"_s, u"--delay"_s, u"40"_s, u"icao KJFK"_s});
    Keys(companion, {u"Return"_s});
    Keys(map, {u"2"_s});                     // somewhere else
    Keys(companion, {u"Up"_s, u"Return"_s}); // icao KJFK again
    Keys(map, {u"shift+1"_s});               // store where the map now looks
    ASSERT_TRUE(CloseAndWait(program, map));
    EXPECT_EQ(Setting(u"Zoom", u"X1"), u"-7378");
    EXPECT_EQ(Setting(u"Zoom", u"Y1"), u"-4064");
    EXPECT_EQ(Setting(u"Zoom", u"Z1"), u"1600");
}

} // namespace
