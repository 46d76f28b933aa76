#include "gui_fixture.h"

#include "geo/projection.h"

using namespace Qt::StringLiterals;

// The demo's coming traffic where the user sees it: EDDF's board with its bookings and prefiled
// flights, the events page, and the mark of an airport whose event is on.
namespace {

using namespace sky::gui;

class Coming : public Gui {
protected:
    // The map at EDDF after these keys: its snapshot, and the open panel's text.
    std::pair<QImage, QString> Show(const QString& keys) {
        QString panel;
        const QImage shot = Snapshot({u"--demo"_s, u"--download"_s, u"vatsim"_s, u"--view"_s,
                                      u"8.5706,50.0333,12"_s, u"--keys"_s, keys, u"--print-panel"_s},
                                     {}, &panel);
        return {shot.convertToFormat(QImage::Format_RGB32), panel};
    }
};

TEST_F(Coming, TheBoardTheEventsPageAndTheMapShowWhatIsComing) {
    const auto [board, boardText] = Show(u"click 411 300"_s); // the number of EDDF's parked aircraft
    EXPECT_TRUE(boardText.contains(u"Event: Rhine Valley Evening Rush, until 1700Z\n"_s))
        << boardText.toStdString();
    // The rows' forms are the services' test's; here the demo's bookings and prefiles reach the board.
    EXPECT_TRUE(boardText.contains(u"EDDF_DEL|booked 1400-1600Z|not online|training\n"_s));
    EXPECT_TRUE(boardText.contains(u"BAW4469|to SAEZ|filed|dep 1510Z\n"_s));
    const auto [events, eventsText] = Show(u"L;Down;Down"_s);
    EXPECT_TRUE(eventsText.contains(u"now|Rhine Valley Evening Rush|1300-1700Z|EDDF EDDM\n"_s))
        << eventsText.toStdString();
    EXPECT_TRUE(eventsText.contains(u"Thu 26 Nov|Island Hopping|1400-1800Z|TNCM MKJP"_s));

    // Without events EDDM, east of the board, shows no mark; with them its neighbourhood changes and
    // nothing else of the map does.
    Write(u"skln.ini"_s, "[Network]\nVATSIMEventsURL=file:///nothing/here.json\n");
    const QImage plain = Show(u"click 411 300"_s).first;
    const auto eddm = sky::geo::LatLonToScreen(48.3538f, 11.7861f, 800, 600, {8.5706f, -50.0333f, 12.0f});
    ASSERT_TRUE(eddm && eddm->X > 560);
    const QRect mark(int(eddm->X) - 25, int(eddm->Y) - 15, 50, 40);
    int near = 0, elsewhere = 0;
    for (int y = 30; y < 575; ++y)
        for (int x = 535; x < 795; ++x)
            (mark.contains(x, y) ? near : elsewhere) += board.pixel(x, y) != plain.pixel(x, y) ? 1 : 0;
    EXPECT_GT(near, 200);
    EXPECT_LT(elsewhere, 20);
}

} // namespace
