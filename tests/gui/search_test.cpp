#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// Finding things from the map: the search field, as a user drives it (the sorted lists are the session's
// and the panels' tests, the hover card the desktop's).
namespace {

using namespace sky::gui;

// A flight from Frankfurt to New York: airports in use come first among their namesakes.
QString Flight(const QString& callsign, double lat, double lon) {
    return CruisingPilot(callsign, lat, lon, u"9=A320|11=EDDF|13=KJFK"_s);
}

// Types into the search field and takes the first match; then stores the view the map moved to.
void SearchAndStore(const QString& window, const QString& text) {
    Gui::Keys(window, {u"ctrl+f"_s});
    Gui::Type(text);
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
    // The search text is gone with the search: the list shows all three flights, not DLH4AB alone.
    Keys(window, {u"l"_s});
    const QImage list = Grab(window);
    int rows = 0;
    for (int y = 72, lastText = 0; y < 200; ++y) {
        const bool text = CountNear(list, qRgb(0, 0, 0), 40, QRect(15, y, 80, 1)) < 80;
        rows += text && lastText < y - 1 ? 1 : 0;
        lastText = text ? y : lastText;
    }
    EXPECT_EQ(rows, 3) << "the list kept the search text as a filter";
    Keys(window, {u"Escape"_s});
    SearchAndStore(window, u"Frankfurt"_s);
    EXPECT_GT(BlackIn(Grab(window), QRect(20, 60, 480, 450)), 100000) << "EDDF's board did not open";
    Keys(window, {u"Escape"_s, u"shift+2"_s});
    ASSERT_TRUE(CloseAndWait(program, window));
    // Centred on DLH4AB, then on Frankfurt shown right of its board: 265 pixels east of the middle at
    // zoom 16.
    EXPECT_EQ(Setting(u"Zoom"_s, u"X1 Y1 Z1 X2 Y2"_s), u"1225 -4750 1600 610 -5000");
}

} // namespace
