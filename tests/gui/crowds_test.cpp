#include "gui_fixture.h"

#include <cmath>

using namespace Qt::StringLiterals;

// Parked aircraft grouped and labels kept off symbols, read back from the real window.
namespace {

using namespace sky::gui;
using sky::network::testing::AtcLine;
using sky::network::testing::PilotLine;

const QRgb kPlaneLabel = qRgb(0xFF, 0xFF, 0x9C);
const QRgb kPlaneBorder = qRgb(0xFF, 0xFF, 0x2A);
const QRgb kPlaneFill = qRgb(0x32, 0x32, 0x74);
const QRgb kAtcLabel = qRgb(0x00, 0xFF, 0x4E);

// Thirty aircraft parked at Frankfurt in rows a mile and a half apart, and its tower.
QStringList ParkedAtFrankfurt() {
    QStringList lines = {AtcLine(0, u"0=EDDF_TWR|1=300001|4=118.500|5=50.0267|6=8.5584"_s)};
    for (int i = 0; i < 30; ++i) {
        const double lat = 50.0267 + (i / 5 - 2.5) * 0.025, lon = 8.5584 + (i % 5 - 2) * 0.039;
        lines.append(
            PilotLine(0, u"0=DLH%1|1=2000%2|5=%3|6=%4|11=EDDF|13=KJFK|45=90"_s.arg(100 + i).arg(10 + i).arg(
                             QString::number(lat, 'f', 5), QString::number(lon, 'f', 5))));
    }
    return lines;
}

// True when a pixel near colour lies within distance pixels of (x, y).
bool Touches(const QImage& image, int x, int y, QRgb colour, int distance) {
    return CountNear(image, colour, 12,
                     QRect(x - distance, y - distance, 2 * distance + 1, 2 * distance + 1)) > 0;
}

TEST_F(Gui, ParkedAircraftAreOneMarkUntilTheyStandClearAndNoLabelGoesOverASymbol) {
    const QStringList feed = LocalFeed(ParkedAtFrankfurt());
    const QImage far = Snapshot(feed + QStringList{u"--view"_s, u"8.5584,50.0267,8"_s});
    ASSERT_FALSE(far.isNull());
    const QRect airport(330, 240, 140, 120);
    EXPECT_EQ(CountNear(far, kPlaneFill, 12, airport), 0) << "aircraft symbols at the airport";
    // "30" right of the airport's point, two bold digits in the aircraft colour.
    const QRect number = BoundsOf(far, kPlaneBorder, 24, QRect(405, 285, 40, 25));
    ASSERT_FALSE(number.isNull());
    EXPECT_NEAR(number.width(), 14, 4);
    // The tower's label (its pixels away from the station's own mark at the centre) stands clear of it.
    QRect tower;
    for (int y = airport.top(); y <= airport.bottom(); ++y)
        for (int x = airport.left(); x <= airport.right(); ++x)
            if (std::hypot(x - 400, y - 300) > 6 && Near(far.pixel(x, y), kAtcLabel, 24))
                tower |= QRect(x, y, 1, 1);
    ASSERT_FALSE(tower.isNull());
    EXPECT_GT(tower.width(), 30);
    EXPECT_EQ(CountNear(far, kPlaneBorder, 24, tower), 0);

    const QImage near = Snapshot(feed + QStringList{u"--view"_s, u"8.5584,50.0267,50"_s});
    ASSERT_FALSE(near.isNull());
    EXPECT_GT(CountNear(near, kPlaneFill, 12), 30 * 20) << "the aircraft come apart";
    EXPECT_GT(CountNear(near, kPlaneLabel, 12), 100) << "some of them labelled";
    int over = 0;
    for (int y = 20; y < 580; ++y)
        for (int x = 0; x < 800; ++x)
            if (Near(near.pixel(x, y), kPlaneLabel, 12) && Touches(near, x, y, kPlaneFill, 1))
                ++over;
    EXPECT_EQ(over, 0) << "label pixels on aircraft symbols";
}

// A click on an airport's dot opens its board, though its tower stands on it, and so does a click on
// its stations' label.
TEST_F(Gui, AClickOnAnAirportsDotOrItsStationsLabelOpensItsBoard) {
    const QStringList feed = LocalFeed(ParkedAtFrankfurt()) + QStringList{u"--view"_s, u"8.5584,50.0267,8"_s};
    const QImage plain = Snapshot(feed);
    QRect label;
    for (int y = 240; y < 360; ++y)
        for (int x = 330; x < 470; ++x)
            if (std::hypot(x - 400, y - 300) > 6 && Near(plain.pixel(x, y), kAtcLabel, 24))
                label |= QRect(x, y, 1, 1);
    ASSERT_FALSE(label.isNull());
    for (const QPoint& at : {QPoint(400, 300), label.center()}) {
        SCOPED_TRACE(at.x());
        const QImage image =
            Snapshot(feed + QStringList{u"--keys"_s, u"click %1 %2"_s.arg(at.x()).arg(at.y())});
        ASSERT_FALSE(image.isNull());
        EXPECT_GT(BlackIn(image, QRect(20, 60, 480, 450)), 100000) << "no board opened";
    }
}

} // namespace
