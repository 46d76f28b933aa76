#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// Finding things from the map: the search field, sorted lists and the hover card, as a user drives them.
namespace {

using namespace sky::gui;

// A flight from Frankfurt to New York: airports in use come first among their namesakes.
QString Flight(const QString& callsign, double lat, double lon) {
    return CruisingPilot(callsign, lat, lon, {{9, u"A320"_s}, {11, u"EDDF"_s}, {13, u"KJFK"_s}});
}

// Types into the search field and takes the first match; then stores the view the map moved to.
void SearchAndStore(const QString& window, const QString& text) {
    Gui::Keys(window, {u"ctrl+f"_s});
    Gui::Xdotool({u"type"_s, u"--delay"_s, u"60"_s, text});
    QThread::msleep(300);
    Gui::Keys(window, {u"Return"_s});
    QThread::msleep(400);
}

TEST_F(Gui, TheSearchFieldFindsAFlightAndAnAirportAndGoesThere) {
    QProcess program;
    const QString window = Start(
        program,
        LocalFeed({Flight(u"BAW1"_s, 51, -1), Flight(u"DLH4AB"_s, 47.5, 12.25), Flight(u"AFR7"_s, 45, 3)}));
    ASSERT_FALSE(window.isEmpty());
    SearchAndStore(window, u"DLH4"_s);
    EXPECT_GT(BlackIn(Grab(window), kInfoBox), 50000) << "DLH4AB's info box did not open";
    Keys(window, {u"Escape"_s, u"shift+1"_s}); // no key but Escape acts while a panel is open
    SearchAndStore(window, u"Frankfurt"_s);
    EXPECT_GT(BlackIn(Grab(window), QRect(20, 60, 480, 450)), 100000) << "EDDF's board did not open";
    Keys(window, {u"Escape"_s, u"shift+2"_s});
    ASSERT_TRUE(CloseAndWait(program, window));
    EXPECT_EQ(Setting(u"Zoom", u"X1"), u"1225"); // centred on DLH4AB
    EXPECT_EQ(Setting(u"Zoom", u"Y1"), u"-4750");
    EXPECT_EQ(Setting(u"Zoom", u"Z1"), u"1600");
    // and on Frankfurt shown right of its board: 265 pixels east of the middle at zoom 16
    EXPECT_EQ(Setting(u"Zoom", u"X2"), u"610");
    EXPECT_EQ(Setting(u"Zoom", u"Y2"), u"-5000");
}

TEST_F(Gui, AClickOnAHeaderSortsThePilotListAndAnotherTurnsItRound) {
    const QStringList feed = LocalFeed({Flight(u"KLM3"_s, 52, 4), Flight(u"AFR9"_s, 49, 2),
                                        Flight(u"DLH2"_s, 50, 8), Flight(u"KLM12"_s, 51, 0)});
    const auto rows = [&](const QString& keys) {
        QProcess program;
        program.start(kBuild + u"/skylantra"_s,
                      QStringList{u"--home"_s, m_home.path()} + feed +
                          QStringList{u"--keys"_s, keys, u"--snapshot"_s, m_home.filePath(u"s.png"_s),
                                      u"--print-panel"_s});
        program.waitForFinished(60000);
        QStringList lines =
            QString::fromUtf8(program.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        QStringList callsigns;
        for (const QString& line : lines.mid(2))
            callsigns.append(line.section(u'|', 0, 0));
        return callsigns;
    };
    const QString click = u"click 19 61"_s; // the "Callsign" header, above the rows
    EXPECT_EQ(rows(u"L"_s),
              (QStringList{u"KLM3"_s, u"AFR9"_s, u"DLH2"_s, u"KLM12"_s})); // as the feed has them
    EXPECT_EQ(rows(u"L;"_s + click), (QStringList{u"AFR9"_s, u"DLH2"_s, u"KLM3"_s, u"KLM12"_s})); // by number
    EXPECT_EQ(rows(u"L;"_s + click + u';' + click),
              (QStringList{u"KLM12"_s, u"KLM3"_s, u"DLH2"_s, u"AFR9"_s}));
}

TEST_F(Gui, AHoverCardShowsOverAnAircraftAfterAPauseAndGoesWhenThePointerMoves) {
    QProcess program;
    const QString window =
        Start(program, LocalFeed({Flight(u"DLH1"_s, 50, 10)}) + QStringList{u"--view"_s, u"10,50,4"_s});
    ASSERT_FALSE(window.isEmpty());
    const QRect card(410, 308, 160, 70);
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"400"_s, u"300"_s});
    QThread::msleep(900);
    EXPECT_GT(BlackIn(Grab(window), card), 3000) << "no card after the pause";
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"150"_s, u"480"_s});
    QThread::msleep(300);
    EXPECT_LT(BlackIn(Grab(window), card), 300) << "the card stayed";
    ASSERT_TRUE(CloseAndWait(program, window));
}

} // namespace
