#include "gui_fixture.h"

#include "geo/projection.h"
#include "view/aircraft_motion.h"

using namespace Qt::StringLiterals;

// Live mode on a crafted VATSIM feed read as its JSON, in the real window.
namespace {

using namespace sky::gui;

const QRgb kPlaneBorder = qRgb(0xFF, 0xFF, 0x2A);

// Reported 40 s ago, an aircraft at 480 kt heading east is drawn as far east as those seconds took it
// (about 23 px at zoom 25); one taxiing at 30 kt stays where it was reported. In a running window it
// goes on moving.
TEST_F(Gui, LiveAircraftAreDrawnWhereTheirSpeedHasTakenThem) {
    const QDateTime reported = QDateTime::currentDateTimeUtc().addSecs(-40);
    const QString pilot =
        u"{\"callsign\": \"%1\", \"latitude\": %2, \"longitude\": 8, \"groundspeed\": %3, \"heading\": 90}"_s;
    const QString feed =
        u"{\"general\": {\"version\": 3, \"update\": \"%1\", \"update_timestamp\": \"%2\", "
        u"\"connected_clients\": 2}, "
        u"\"pilots\": [%3, %4]}"_s.arg(reported.toString(u"yyyyMMddHHmmss"_s), reported.toString(Qt::ISODate),
                                       pilot.arg(u"FAST"_s).arg(50.05).arg(480),
                                       pilot.arg(u"SLOW"_s).arg(49.95).arg(30));
    Write(u"feed/vatsim-data.json"_s, feed.toUtf8());
    Write(u"feed/status.txt"_s, "\n\n\n\n\n");
    Write(u"skln.ini"_s, "[Map]\nShowNight=0\n[Network]\nLiveSeconds=300\nVATSIMJsonURL=" +
                             QUrl::fromLocalFile(m_home.filePath(u"feed/vatsim-data.json"_s)).toEncoded() +
                             "\n");
    const QStringList live = {u"--live"_s,
                              u"--vatsim-status"_s,
                              QUrl::fromLocalFile(m_home.filePath(u"feed/status.txt"_s)).toString(),
                              u"--download"_s,
                              u"vatsim"_s,
                              u"--view"_s};
    const QImage image = Snapshot(live + QStringList{u"8,50,25"_s});
    ASSERT_FALSE(image.isNull());
    const sky::geo::ViewState view{8.0f, -50.0f, 25.0f};
    // 40 s at 480 kt: 5.3 nm, 23 px east of the report at this zoom.
    const sky::geo::LatLon flown = sky::view::Advanced(50.05f, 8.0f, 90.0f, 480.0 * 40 / 3600);
    for (const sky::geo::LatLon& at : {flown, sky::geo::LatLon{49.95f, 8.0f}}) {
        SCOPED_TRACE(at.Lat);
        const auto point = sky::geo::LatLonToScreen(at.Lat, at.Lon, 800, 600, view);
        ASSERT_TRUE(point);
        const QRect symbol =
            BoundsOf(image, kPlaneBorder, 24, QRect(int(point->X) - 30, int(point->Y) - 14, 61, 29));
        EXPECT_NEAR(symbol.center().x(), point->X, 2);
        EXPECT_NEAR(symbol.center().y(), point->Y, 2);
    }
    // A click where it is drawn, not where it was reported, selects it.
    QString status;
    const auto drawn = sky::geo::LatLonToScreen(flown.Lat, flown.Lon, 800, 600, view);
    Snapshot(live + QStringList{u"8,50,25"_s, u"--keys"_s,
                                u"click %1 %2"_s.arg(int(drawn->X)).arg(int(drawn->Y)), u"--print-status"_s},
             {}, &status);
    EXPECT_TRUE(status.startsWith(u"FAST"_s)) << status.toStdString();

    // In the running window it moves on step by step: seconds later, drawn where it is at that moment.
    QProcess program;
    const QString window = Start(program, live + QStringList{u"8.1,50.05,50"_s});
    ASSERT_FALSE(window.isEmpty());
    QThread::msleep(5000);
    const QImage shot = Grab(window);
    const double flownS = double(reported.msecsTo(QDateTime::currentDateTimeUtc())) / 1000.0;
    const sky::geo::LatLon now = sky::view::Advanced(50.05f, 8.0f, 90.0f, 480.0 * flownS / 3600);
    const auto point =
        sky::geo::LatLonToScreen(now.Lat, now.Lon, shot.width(), shot.height(), {8.1f, -50.05f, 50});
    ASSERT_TRUE(point);
    const QRect symbol =
        BoundsOf(shot, kPlaneBorder, 24, QRect(int(point->X) - 30, int(point->Y) - 14, 61, 29));
    EXPECT_NEAR(symbol.center().x(), point->X, 2);
    EXPECT_TRUE(CloseAndWait(program, window));
}

} // namespace
