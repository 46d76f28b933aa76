#include "app/settings.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/friends.h"
#include "app/ini_file.h"
#include "common/file_io.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

// A full-HD screen at 96 DPI: 15 twips per pixel.
const ScreenMetrics kScreen{15.0f, 1920, 1080};

Settings Read(const char* text) {
    return ReadSettings(IniFile::FromBytes(QByteArray(text)), kScreen);
}

WindowPlacement PlacementOf(const Settings& s) {
    return {false, s.WindowLeft, s.WindowTop, s.WindowWidth, s.WindowHeight};
}

QByteArray Written(const Settings& s, const WindowPlacement& window, const char* before = "") {
    IniFile ini = IniFile::FromBytes(QByteArray(before));
    WriteSettings(s, window, kScreen.TwipsPerPixel, ini);
    return ini.ToBytes();
}

TEST(ReadSettings, NumbersAreClampedAndGarbageReadsAsZeroBeforeClamping) {
    struct Row {
        const char* text;
        std::int32_t widthPx, heightPx;
        std::int16_t minutes, timeout, liveSeconds = 15;
    };
    const Row rows[] = {
        {"[Display]\nWindowWidth=500\n[Network]\nDownloadMinutes=1\nTimeout=300", 720, 600, 3, 120},
        {"[Display]\nWindowWidth=abc\nWindowHeight=\n[Network]\nDownloadMinutes=x\nTimeout=-", 720, 540, 3,
         5},
        {"[Display]\nWindowWidth=1024.5\nWindowHeight=700.5\n[Network]\nDownloadMinutes=29.9\nTimeout=119.99",
         1024, 700, 29, 119},
        {"[Display]\nWindowWidth=1025.5\n[Network]\nDownloadMinutes=-5\nTimeout=1e9", 1026, 600, 3, 120},
        {"[Network]\nDownloadMinutes=30.5\nTimeout=4.9\nLiveSeconds=14", 800, 600, 30, 5, 15},
        {"[Network]\nLiveSeconds=1e9", 800, 600, 5, 15, 300},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const Settings s = Read(row.text);
        EXPECT_EQ(s.WindowWidth, row.widthPx * 15);
        EXPECT_EQ(s.WindowHeight, row.heightPx * 15);
        EXPECT_EQ(s.DownloadMinutes, row.minutes);
        EXPECT_EQ(s.Timeout, row.timeout);
        EXPECT_EQ(s.LiveSeconds, row.liveSeconds);
    }
    // A size no screen has saturates instead of overflowing.
    EXPECT_EQ(Read("[Display]\nWindowWidth=1e12").WindowWidth, std::numeric_limits<std::int32_t>::max());
}

TEST(ReadSettings, APositionOfExactlyPointOneCentresTheWindow) {
    const Settings byHand =
        Read("[Display]\nWindowLeft=0.1\nWindowTop=0.10\nWindowWidth=1000\nWindowHeight=800");
    EXPECT_EQ(byHand.WindowLeft, (1920 - 1000) * 15 / 2);
    EXPECT_EQ(byHand.WindowTop, (1080 - 800) * 15 / 2);
    const Settings saved = Read("[Display]\nWindowLeft=100\nWindowTop=-20.5\n");
    EXPECT_EQ(saved.WindowLeft, 1500);
    EXPECT_EQ(saved.WindowTop, -308); // -307.5 twips, to the even neighbour
    EXPECT_EQ(Read("[Display]\nWindowLeft=0.1000001").WindowLeft, 2);
    // Twips per pixel need not be whole: 1.25 at 1152 DPI.
    const Settings fine = ReadSettings(IniFile::FromBytes("[Display]\nWindowWidth=801"), {1.25f, 1920, 1080});
    EXPECT_EQ(fine.WindowWidth, 1001); // 1001.25 rounded
    EXPECT_EQ(fine.WindowLeft, 700);   // (2400 - 1001) / 2 = 699.5, to the even neighbour
}

// Views are stored times a hundred.
TEST(ReadSettings, BooleansAcceptNumbersAndWordsViewsAreHundredthsAndTextsLoseQuotes) {
    const Settings s = Read("[Display]\nDisableSmooth=2\nDisableCountries=True\n"
                            "[Network]\nAutoDownload=-1\nTextForce=yes\nProxy=\"proxy.example:8080\"\n"
                            "VATSIMStatusURL= http://mirror.example/status.txt \n"
                            "[Map]\nShowPlanes=0\nShowATC=false\nShowInbounds=maybe\nShowLatLon=\n"
                            "[Zoom]\nX1=-17999\nY1=9000\nZ1=5000\nX2=abc\nZ3=1e2\n");
    EXPECT_TRUE(s.DisableSmooth);
    EXPECT_TRUE(s.DisableCountries);
    EXPECT_TRUE(s.AutoDownload);
    EXPECT_FALSE(s.TextForce); // unreadable: its default
    EXPECT_FALSE(s.ShowPlanes);
    EXPECT_FALSE(s.ShowATC);
    EXPECT_FALSE(s.ShowInbounds); // unreadable: its default
    EXPECT_TRUE(s.ShowLatLon);    // empty: its default
    EXPECT_EQ(s.X[0], -179.99f);
    EXPECT_EQ(s.Y[0], 90.0f);
    EXPECT_EQ(s.Z[0], 50.0f);
    EXPECT_EQ(s.X[1], 0.0f);
    EXPECT_EQ(s.Z[2], 1.0f);
    // Network texts lose their quotes and blanks.
    EXPECT_EQ(s.Proxy, u"proxy.example:8080");
    EXPECT_EQ(s.VATSIMStatusURL, u"http://mirror.example/status.txt");
    EXPECT_EQ(s.IVAOStatusURL, u"");
}

// An empty file reads as the defaults, and writes them all in order.
TEST(WriteSettings, AFreshFileHoldsEveryWrittenKeyInOrder) {
    const Settings s = Read("");
    EXPECT_EQ(s.Proxy, u"0");
    EXPECT_FALSE(s.TextForce);
    EXPECT_EQ(
        Written(s, PlacementOf(s)),
        QByteArray("[User]\nIVAO_ID=100000\nVATSIM_ID=800000\n\n"
                   "[Display]\nColourTheme=default.dc\nDisableSmooth=0\nDisableCountries=0\n"
                   "WindowLeft=560\nWindowTop=240\nWindowWidth=800\nWindowHeight=600\n\n"
                   "[Network]\nAutoDownload=0\nDownloadMinutes=5\nTimeout=15\nLive=0\nLiveSeconds=15\n\n"
                   "[Zoom]\nX1=1334\nY1=-5415\nZ1=149\nX2=-9772\nY2=-4623\nZ2=75\n"
                   "X3=-2768\nY3=-3671\nZ3=43\n\n"
                   "[Map]\nShowLatLon=1\nShowPlanes=1\nShowPlaneLabels=1\nShowATC=1\nShowATCLabels=1\n"
                   "ShowAirports=1\nShowAirportLabels=1\nShowInbounds=0\nShowActualHeading=0\n"
                   "DeclutterLabels=1\nShowNight=1\nShowWeather=0\nFriendNamesInstead=0\n"));
}

// Read back and written again, a file of changed settings comes out byte for byte the same.
TEST(WriteSettings, WhatIsWrittenReadsBackAsTheSameSettings) {
    Settings s = Read("");
    s.IVAO_ID = u"123456"_s;
    s.ColourTheme = u"daylight.dc"_s;
    s.DisableCountries = s.AutoDownload = s.ShowActualHeading = true;
    s.ShowPlanes = false;
    s.DownloadMinutes = 12;
    s.Timeout = 60;
    s.X = {-179.99f, 0.0f, 12.0f};
    s.Y = {90.0f, -0.5f, 33.33f};
    s.Z = {50.0f, 0.3f, 16.0f};
    s.WindowLeft = 1500;
    s.WindowTop = -300;
    const QByteArray bytes = Written(s, PlacementOf(s));
    const Settings back = ReadSettings(IniFile::FromBytes(bytes), kScreen);
    EXPECT_EQ(Written(back, PlacementOf(back)), bytes);
    EXPECT_EQ(back.X, s.X);
    EXPECT_EQ(back.Z, s.Z);
    EXPECT_EQ(back.WindowTop, s.WindowTop);
}

// Zoom values round half to even.
TEST(WriteSettings, GeometryIsTheRestoreGeometryWhileMaximisedElseTheWindowsOwn) {
    Settings s = Read("");
    s.Z = {0.125f, 0.375f, -0.001f};
    s.WindowLeft = 1001; // the geometry to restore, in twips
    s.WindowTop = 30;
    s.WindowWidth = 12000;
    s.WindowHeight = 9000;
    const WindowPlacement maximised{true, 0, 0, 1920 * 15, 1050 * 15};
    const IniFile fromMaximised = IniFile::FromBytes(Written(s, maximised));
    EXPECT_EQ(fromMaximised.Value(u"Display", u"WindowLeft", u""_s), u"66.73333333333333");
    EXPECT_EQ(fromMaximised.Value(u"Display", u"WindowTop", u""_s), u"2");
    EXPECT_EQ(fromMaximised.Value(u"Display", u"WindowWidth", u""_s), u"800");
    EXPECT_EQ(fromMaximised.Value(u"Display", u"WindowHeight", u""_s), u"600");
    EXPECT_EQ(fromMaximised.Value(u"Zoom", u"Z1", u""_s), u"12");
    EXPECT_EQ(fromMaximised.Value(u"Zoom", u"Z2", u""_s), u"38");
    EXPECT_EQ(fromMaximised.Value(u"Zoom", u"Z3", u""_s), u"0");

    const WindowPlacement normal{false, 1001, 15, 15015, 9000};
    const IniFile fromNormal = IniFile::FromBytes(Written(s, normal));
    EXPECT_EQ(fromNormal.Value(u"Display", u"WindowLeft", u""_s), u"66.73333");
    EXPECT_EQ(fromNormal.Value(u"Display", u"WindowTop", u""_s), u"1");
    EXPECT_EQ(fromNormal.Value(u"Display", u"WindowWidth", u""_s), u"1001");
}

TEST(WriteChangedPreferences, WritesWhatChangedAndKeepsEveryOtherLine) {
    const char* before = "; my settings\n[Display]\n; the night theme for now\nColourTheme=default.dc\n"
                         "[Network]\nProxy=cache:3128\n";
    const Settings old = Read(before);
    Settings changed = old;
    changed.ColourTheme = u"daylight.dc"_s;
    changed.MaxPilots = 3000;
    changed.DeclutterLabels = false;
    IniFile ini = IniFile::FromBytes(QByteArray(before));
    WriteChangedPreferences(old, changed, ini);
    EXPECT_EQ(ini.ToBytes(),
              QByteArray("; my settings\n[Display]\n; the night theme for now\nColourTheme=daylight.dc\n"
                         "[Network]\nProxy=cache:3128\nMaxPilots=3000\n\n[Map]\nDeclutterLabels=0\n"));
}

class SettingsFiles : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_home.isValid()); }

    void WriteFile(const QString& relative, const QByteArray& bytes) {
        ASSERT_TRUE(WriteFileMakingFolder(m_home.filePath(relative), bytes).Ok);
    }
    QByteArray ReadFile(const QString& relative) {
        return ReadWholeFile(m_home.filePath(relative)).value_or(QByteArray());
    }

    QTemporaryDir m_home;
};

TEST_F(SettingsFiles, LoadThenSaveKeepsTheFileAndLeavesTheFriendsAlone) {
    WriteFile(u"skln.ini"_s, "[Network]\r\nProxy=cache:3128\r\nTextForce=1\r\n");
    WriteFile(u"data/friends.dat"_s, "200001\r\n\"200002\",300003\r\n");
    Friends friends;
    const Settings s = LoadSettings(m_home.path(), kScreen, friends);
    EXPECT_EQ(friends.Entries(), (QStringList{u"200001"_s, u"200002"_s, u"300003"_s}));
    EXPECT_EQ(s.Proxy, u"cache:3128");

    const WriteResult saved = SaveSettings(m_home.path(), s, PlacementOf(s), kScreen.TwipsPerPixel);
    EXPECT_TRUE(saved.Ok) << saved.Message.toStdString();
    EXPECT_EQ(ReadFile(u"data/friends.dat"_s), QByteArray("200001\r\n\"200002\",300003\r\n"));
    const QByteArray ini = ReadFile(u"skln.ini"_s);
    EXPECT_TRUE(ini.startsWith("[Network]\r\nProxy=cache:3128\r\nTextForce=1\r\nAutoDownload=0\r\n"));
    EXPECT_TRUE(ini.contains("[User]\r\nIVAO_ID=100000\r\n"));
}

TEST_F(SettingsFiles, AnUnwritableHomeIsReported) {
    WriteFile(u"home"_s, "a file where a folder should be");
    const QString home = m_home.filePath(u"home"_s);
    Friends friends;
    friends.Add(u"200001"_s);
    const Settings s = LoadSettings(home, kScreen, friends);
    EXPECT_EQ(friends.Count(), 0);
    const WriteResult saved = SaveSettings(home, s, PlacementOf(s), kScreen.TwipsPerPixel);
    EXPECT_FALSE(saved.Ok);
    EXPECT_TRUE(saved.Message.contains(u"skln.ini"_s)) << saved.Message.toStdString();
    EXPECT_EQ(ReadFile(u"home"_s), QByteArray("a file where a folder should be"));
}

} // namespace
} // namespace sky
