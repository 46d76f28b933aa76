#include "gui_fixture.h"

#include "local_http_server.h"

using namespace Qt::StringLiterals;

// The weather layer where the user sees it, its METARs served on 127.0.0.1: EGLL's dot in the IFR
// colour with the layer on, not with it off; its board with the category, the report and the runways
// its ATIS gives; a start within ten minutes takes the kept list and asks the service nothing.
namespace {

using namespace sky::gui;
using sky::network::testing::AtcLine;

TEST_F(Gui, TheWeatherLayerColoursAnAirportsDotByItsFlightCategory) {
    sky::testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    server.Serve(u"metars.txt"_s, "EGLL 211400Z 24010KT 3000 BR OVC006 08/07 Q1002\nEGLL 211320Z 9999 NSC\n"
                                  "no report\nEDDF 211420Z 24010KT CAVOK 08/03 Q1012\n");
    const auto settings = [&](const QByteArray& weather) {
        Write(u"skln.ini"_s, "[Map]\nShowNight=0\nShowWeather=" + weather +
                                 "\n[Network]\nWeatherServer=" + server.Url({}).toUtf8() +
                                 "\nMetarListURL=" + server.Url(u"metars.txt?ids={ids}"_s).toUtf8() + "\n");
    };
    settings("0");
    const QStringList feed =
        LocalFeed(
            {CruisingPilot(u"BAW1"_s, 50, 5, u"11=EGLL|13=EDDF"_s),
             AtcLine(0, u"0=EGLL_ATIS|1=300001|4=121.930|5=51.4775|6=-0.4614|35=EGLL INFO K^§ARR RWY 27L "
                        u"DEP RWY 27R"_s)}) +
        QStringList{u"--view"_s, u"-0.4614,51.4775,8"_s};
    const QRgb ifr = qRgb(255, 26, 26);
    const QRect egll(390, 290, 21, 21); // the view's centre
    EXPECT_GT(CountNear(Snapshot(feed + QStringList{u"--keys"_s, u"W"_s}), ifr, 12, egll), 30);

    // On from the start; the list as kept, though the service now says otherwise.
    server.Serve(u"metars.txt"_s, "EGLL 211450Z 24010KT CAVOK 08/03 Q1012\n");
    settings("1");
    QString board;
    Snapshot(feed + QStringList{u"--keys"_s, u"click 400 300"_s, u"--print-panel"_s}, {}, &board);
    EXPECT_TRUE(board.contains(u"METAR EGLL 211400Z 24010KT 3000 BR OVC006 08/07 Q1002\nFlight category IFR\n"
                               u"Runways: arr 27L, dep 27R\n"_s))
        << board.toStdString();

    settings("0");
    EXPECT_EQ(CountNear(Snapshot(feed), ifr, 12, egll), 0);
}

} // namespace
