#include "gui_fixture.h"

#include "geo/projection.h"
#include "view/aircraft_motion.h"

using namespace Qt::StringLiterals;

// Live mode on a crafted VATSIM feed read as its JSON, in the real window.
namespace {

using namespace sky::gui;

const QRgb kPlaneBorder = qRgb(0xFF, 0xFF, 0x2A);

// Reported 40 s ago, an aircraft at 480 kt heading east is drawn as far east as those seconds took it
// (about 23 px at zoom 25); one taxiing at 30 kt stays where it was reported.
TEST_F(Gui, LiveAircraftAreDrawnWhereTheirSpeedHasTakenThem) {
    const QDateTime reported = QDateTime::currentDateTimeUtc().addSecs(-40);
    const auto pilot = [](const char* callsign, double lat, int speedKt) {
        return u"{\"cid\": 1, \"callsign\": \"%1\", \"latitude\": %2, \"longitude\": 8, \"altitude\": 35000, "
               u"\"groundspeed\": %3, \"heading\": 90}"_s.arg(QLatin1String(callsign))
                   .arg(lat)
                   .arg(speedKt);
    };
    const QString feed = u"{\"general\": {\"version\": 3, \"update\": \"%1\", \"update_timestamp\": \"%2\", "
                         u"\"connected_clients\": 2}, \"pilots\": [%3, %4], \"controllers\": []}"_s.arg(
                             reported.toString(u"yyyyMMddHHmmss"_s), reported.toString(Qt::ISODate),
                             pilot("FAST", 50.05, 480), pilot("SLOW", 49.95, 30));
    Write(u"feed/vatsim-data.json"_s, feed.toUtf8());
    Write(u"feed/status.txt"_s, "\n\n\n\n\n");
    Write(u"skln.ini"_s, "[Map]\nShowNight=0\n[Network]\nLiveSeconds=30\nVATSIMJsonURL=" +
                             QUrl::fromLocalFile(m_home.filePath(u"feed/vatsim-data.json"_s)).toEncoded() +
                             "\n");
    const QImage image = Snapshot({u"--live"_s, u"--vatsim-status"_s,
                                   QUrl::fromLocalFile(m_home.filePath(u"feed/status.txt"_s)).toString(),
                                   u"--download"_s, u"vatsim"_s, u"--view"_s, u"8,50,25"_s});
    ASSERT_FALSE(image.isNull());
    const sky::geo::ViewState view{8.0f, -50.0f, 25.0f};
    const sky::geo::LatLon flown = sky::view::Advanced(50.05f, 8.0f, 90.0f, 480.0 * 40 / 3600);
    const struct { float lat, lon; } expected[] = {{flown.Lat, flown.Lon}, {49.95f, 8.0f}};
    for (const auto& e : expected) {
        SCOPED_TRACE(e.lat);
        const auto point = sky::geo::LatLonToScreen(e.lat, e.lon, 800, 600, view);
        ASSERT_TRUE(point.has_value());
        const QPoint at(int(std::lround(point->X)), int(std::lround(point->Y)));
        const QRect symbol = BoundsOf(image, kPlaneBorder, 24, QRect(at - QPoint(30, 14), QSize(61, 29)));
        ASSERT_FALSE(symbol.isNull());
        EXPECT_NEAR(symbol.center().x(), point->X, 2);
        EXPECT_NEAR(symbol.center().y(), point->Y, 2);
    }
    // The fast one is that far east of where it was reported.
    const auto start = sky::geo::LatLonToScreen(50.05f, 8.0f, 800, 600, view);
    const auto now = sky::geo::LatLonToScreen(flown.Lat, flown.Lon, 800, 600, view);
    EXPECT_GT(now->X - start->X, 20.0);
}

} // namespace
