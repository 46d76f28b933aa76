#include "gui_fixture.h"

#include "app/ini_file.h"

using namespace Qt::StringLiterals;

namespace {

using namespace sky::gui;

TEST_F(Gui, ASnapshotShowsTheGlobeAndTheCoastlines) {
    const QImage image = Snapshot({u"--demo"_s});
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(800, 600));
    // The globe's colours between its equator and poles fill much of the window; the coastlines draw.
    EXPECT_GT(CountNear(image, qRgb(0x10, 0x10, 0x2A), 8), 20000);
    EXPECT_GT(CountNear(image, qRgb(0x40, 0x5E, 0x85), 16), 500);
    // No traffic before a download: nothing in the plane colours.
    EXPECT_LT(CountNear(image, qRgb(0xFF, 0xFF, 0x2A), 20), 50);
}

TEST_F(Gui, AfterDownloadingIvaoThePlanesShow) {
    const QImage image = Snapshot({u"--demo"_s, u"--download"_s, u"ivao"_s, u"--view"_s, u"10,50,1.5"_s});
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(CountNear(image, qRgb(0xFF, 0xFF, 0x2A), 20), 300); // plane outlines
    EXPECT_GT(CountNear(image, qRgb(0x32, 0x32, 0x74), 10), 100); // plane fills
    // A snapshot writes no settings.
    EXPECT_FALSE(QFile::exists(m_home.filePath(u"skln.ini"_s)));
}

TEST_F(Gui, KeysChangeTheMapAndClosingSavesTheView) {
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(kBuild + u"/skylantra"_s, {u"--home"_s, m_home.path(), u"--demo"_s});
    ASSERT_TRUE(program.waitForStarted(10000));
    const QString window = FindWindow(u"^Skylantra$"_s);
    ASSERT_FALSE(window.isEmpty()) << "the map window did not appear";
    QThread::msleep(1500); // start-up to "Ready"
    Xdotool({u"windowfocus"_s, u"--sync"_s, window});
    const auto key = [&](const QString& name) {
        Xdotool({u"key"_s, u"--delay"_s, u"150"_s, name});
        QThread::msleep(250);
    };
    key(u"i"_s); // download IVAO
    QThread::msleep(1500);
    key(u"g"_s);  // grid off
    key(u"c"_s);  // borders off
    key(u"F1"_s); // all labels off (works only once clients are online)
    key(u"Right"_s);
    key(u"Right"_s);
    key(u"Up"_s);
    key(u"shift+1"_s); // store this view as view 1
    key(u"Escape"_s);
    // Close with the window's own close button, top right.
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"795"_s, u"8"_s, u"click"_s, u"1"_s});
    ASSERT_TRUE(program.waitForFinished(20000));
    EXPECT_EQ(program.exitCode(), 0);

    const sky::IniFile ini = sky::IniFile::Load(m_home.filePath(u"skln.ini"_s));
    EXPECT_EQ(ini.Value(u"Map", u"ShowLatLon", u""_s), u"0");
    EXPECT_EQ(ini.Value(u"Map", u"ShowPlaneLabels", u""_s), u"0");
    EXPECT_EQ(ini.Value(u"Map", u"ShowATCLabels", u""_s), u"0");
    // View 1 moved two steps east and one north of where it started (5 / 1.49 degrees a step).
    EXPECT_EQ(ini.Value(u"Zoom", u"X1", u""_s), u"2005");
    EXPECT_EQ(ini.Value(u"Zoom", u"Y1", u""_s), u"-5751");
    EXPECT_EQ(ini.Value(u"Zoom", u"Z1", u""_s), u"149");
}

TEST_F(Gui, PanelsShowOverTheMap) {
    const QImage map = Snapshot({u"--demo"_s, u"--download"_s, u"vatsim"_s});
    const QImage list =
        Snapshot({u"--demo"_s, u"--download"_s, u"vatsim"_s, u"--keys"_s, u"L;Right;click 60 75"_s});
    ASSERT_FALSE(map.isNull());
    ASSERT_FALSE(list.isNull());
    // The list panel darkens the left of the window, the info box the right.
    const QRect listArea(20, 60, 480, 450), boxArea(500, 70, 280, 300);
    const auto dark = [](const QImage& image, const QRect& area) {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                count += qGray(image.pixel(x, y)) < 12 ? 1 : 0;
        return count;
    };
    EXPECT_GT(dark(list, listArea), dark(map, listArea) + 20000);
    EXPECT_GT(dark(list, boxArea), dark(map, boxArea) + 10000);
}

TEST_F(Gui, AFriendAddedFromTheInfoBoxIsSavedOnClosing) {
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    // The list, its second page, the first row's box, Add friend, close the box, only friends.
    // (IVAO: the VATSIM demo's broadcast message would wait in a box for someone to close it.)
    program.start(kBuild + u"/skylantra"_s,
                  {u"--home"_s, m_home.path(), u"--demo"_s, u"--download"_s, u"ivao"_s, u"--keys"_s,
                   u"L;Right;click 60 75;click 740 385;Escape;F2"_s});
    ASSERT_TRUE(program.waitForStarted(10000));
    const QString window = FindWindow(u"^Skylantra$"_s);
    ASSERT_FALSE(window.isEmpty());
    QThread::msleep(2500);
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"795"_s, u"8"_s, u"click"_s, u"1"_s});
    ASSERT_TRUE(program.waitForFinished(20000));
    QFile friends(m_home.filePath(u"data/friends.dat"_s));
    ASSERT_TRUE(friends.open(QIODevice::ReadOnly));
    const QList<QByteArray> entries = friends.readAll().split('\n');
    EXPECT_EQ(entries.size(), 2); // one member number and the final line end
    EXPECT_GE(entries.value(0).toInt(), 200000);
}

TEST_F(Gui, TheCompanionAnswersAndRecallsItsLastCommand) {
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(kBuild + u"/skylantra"_s, {u"--home"_s, m_home.path(), u"--demo"_s});
    ASSERT_TRUE(program.waitForStarted(10000));
    const QString map = FindWindow(u"^Skylantra$"_s);
    ASSERT_FALSE(map.isEmpty());
    QThread::msleep(1500);
    const auto keysTo = [&](const QString& window, const QStringList& keys) {
        Xdotool({u"windowfocus"_s, u"--sync"_s, window});
        for (const QString& key : keys) {
            Xdotool({u"key"_s, u"--delay"_s, u"80"_s, key});
            QThread::msleep(150);
        }
    };
    keysTo(map, {u"space"_s});
    const QString companion = FindWindow(u"^Skylantra Companion$"_s);
    ASSERT_FALSE(companion.isEmpty()) << "Space did not open the Companion";
    Xdotool({u"windowfocus"_s, u"--sync"_s, companion});
    Xdotool({u"type"_s, u"--delay"_s, u"40"_s, u"icao KJFK"_s});
    keysTo(companion, {u"Return"_s});
    keysTo(map, {u"2"_s});                     // somewhere else
    keysTo(companion, {u"Up"_s, u"Return"_s}); // icao KJFK again
    keysTo(map, {u"shift+1"_s});               // store where the map now looks
    Xdotool({u"mousemove"_s, u"--window"_s, map, u"795"_s, u"8"_s, u"click"_s, u"1"_s});
    ASSERT_TRUE(program.waitForFinished(20000));

    const sky::IniFile ini = sky::IniFile::Load(m_home.filePath(u"skln.ini"_s));
    EXPECT_EQ(ini.Value(u"Zoom", u"X1", u""_s), u"-7378");
    EXPECT_EQ(ini.Value(u"Zoom", u"Y1", u""_s), u"-4064");
    EXPECT_EQ(ini.Value(u"Zoom", u"Z1", u""_s), u"1600");
}

} // namespace
