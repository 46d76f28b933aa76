#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// The map as a desktop program: its window, mouse, keys on other keyboard layouts, the wheel and the
// Preferences, driven through the X server as a user would.
namespace {

using namespace sky::gui;

void SetLayout(const QString& layout) {
    QProcess::execute(u"setxkbmap"_s, {u"-layout"_s, layout});
}

TEST_F(Gui, ThePreferencesChangeTheWholeMapsThemeAtOnceAndAnEdgeDragTheSizeBothKeepingHandWrittenLines) {
    Write(u"skln.ini"_s, "; my own note\n[Display]\nColourTheme=default.dc\n");
    QProcess program;
    const QString window = Start(program, {u"--demo"_s});
    ASSERT_FALSE(window.isEmpty());
    const QImage before = Grab(window);
    Keys(window, {u"ctrl+comma"_s});
    const QString dialog = FindWindow(u"^Skylantra Preferences$"_s);
    ASSERT_FALSE(dialog.isEmpty()) << "Ctrl+, did not open the Preferences";
    Keys(dialog, {u"Tab"_s, u"Tab"_s, u"d"_s, u"Return"_s}); // the theme: daylight.dc; OK
    QThread::msleep(600);
    const QImage after = Grab(window);
    ASSERT_EQ(before.size(), after.size());
    // The title strip and the globe (row 300 crosses it) both take the new colours.
    for (const int y : {10, 300}) {
        int changed = 0;
        for (int x = 0; x < before.width(); ++x)
            changed += before.pixel(x, y) != after.pixel(x, y) ? 1 : 0;
        EXPECT_GT(changed, 400) << "row " << y << " kept its colours";
    }
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"799"_s, u"300"_s, u"mousedown"_s, u"1"_s});
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"850"_s, u"350"_s});
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"899"_s, u"400"_s, u"mouseup"_s, u"1"_s});
    QThread::msleep(500);
    ASSERT_TRUE(CloseAndWait(program, window));
    EXPECT_EQ(Setting(u"Display"_s, u"WindowWidth WindowHeight"_s), u"900 600");
    const QByteArray text = sky::ReadWholeFile(m_home.filePath(u"skln.ini"_s)).value_or(QByteArray());
    EXPECT_TRUE(text.startsWith("; my own note\n[Display]\nColourTheme=daylight.dc\n")) << text.toStdString();
}

// The hover card shows over an aircraft after a pause and goes when the pointer moves; a click on it
// opens its box, and a press in the title strip after that never reaches the map.
TEST_F(Gui, AHoverCardShowsAfterAPauseAndAClickInTheTitleStripNeverReachesTheMap) {
    QProcess program;
    const QString window =
        Start(program, LocalFeed({CruisingPilot(u"DLH1"_s, 50, 10, u"9=A320|11=EDDF|13=KJFK"_s)}) +
                           QStringList{u"--view"_s, u"10,50,4"_s});
    ASSERT_FALSE(window.isEmpty());
    const QRect card(410, 308, 160, 70);
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"400"_s, u"300"_s});
    QThread::msleep(900);
    EXPECT_GT(BlackIn(Grab(window), card), 3000) << "no card after the pause";
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"150"_s, u"480"_s});
    QThread::msleep(300);
    EXPECT_LT(BlackIn(Grab(window), card), 300) << "the card stayed";
    Click(window, 400, 300, 400);
    EXPECT_GT(BlackIn(Grab(window), kInfoBox), 50000) << "the aircraft's info box did not open";
    Keys(window, {u"Escape"_s});
    Click(window, 300, 10, 400);
    // The press in the caption does not click on the map where the last press was.
    EXPECT_LT(BlackIn(Grab(window), kInfoBox), 5000);
    ASSERT_TRUE(CloseAndWait(program, window));
}

// Small wheel steps add up to a zoom step; then the view keys are the same keys on every layout.
TEST_F(Gui, SmallWheelStepsAddUpToAZoomStepAndTheViewKeysAreTheSameOnEveryLayout) {
    QProcess program;
    const QString window =
        Start(program, {u"--demo"_s, u"--keys"_s, u"wheel 30;wheel 30;wheel 45;wheel 15;wheel 50"_s});
    ASSERT_FALSE(window.isEmpty());
    SetLayout(u"gb"_s);
    Keys(window, {u"Right"_s, u"shift+3"_s}); // Shift and the 3 key print "£" here: view 3 stored
    SetLayout(u"de"_s);
    Keys(window, {u"Left"_s, u"Left"_s, u"shift+2"_s}); // '"' on a German keyboard: view 2 stored
    SetLayout(u"fr"_s);
    Keys(window, {u"quotedbl"_s}); // the 3 key alone prints '"' on a French one: view 3 restored
    SetLayout(u"us"_s);
    Keys(window, {u"shift+1"_s}); // where the map is now: view 1
    ASSERT_TRUE(CloseAndWait(program, window));
    // Zoomed 1.49 times 1.2, once (50 units are left over); view 3 a step of 5 / 1.788 degrees east of
    // where the map started, view 2 two steps west of it, view 1 view 3 again.
    EXPECT_EQ(Setting(u"Zoom"_s, u"Z1 X3 X2 X1"_s), u"179 1614 1054 1614");
}

} // namespace
