#include "gui_fixture.h"

#include "geo/projection.h"

using namespace Qt::StringLiterals;

// Finding one's way in a busy network: the filter bar's filters and the measuring line, as the map shows
// them on a crafted feed (friends' names in labels are the session's tests, drawn as any label is).
namespace {

using namespace sky::gui;

const QRgb kPlaneBorder = qRgb(0xFF, 0xFF, 0x2A);
const QRgb kPlaneLabel = qRgb(0xFF, 0xFF, 0x9C);
const QRgb kHighlight = qRgb(0xFF, 0xFF, 0x1F);
const sky::geo::ViewState kView{6.0f, -49.0f, 3.0f};

struct Flight {
    const char16_t* Callsign;
    float Lat, Lon;
    const char16_t* To;
};
constexpr Flight kFlights[] = {{u"DLH1", 52, 14, u"EGLL"},
                               {u"DLH2", 45, -2, u"EDDF"},
                               {u"BAW3", 54, -4, u"EDDF"},
                               {u"AFR4", 44, 13, u"LFPG"}};

QStringList Feed() {
    QStringList pilots;
    for (const Flight& f : kFlights)
        pilots.append(CruisingPilot(QString::fromUtf16(f.Callsign), f.Lat, f.Lon,
                                    u"11=EDDM|13=%1"_s.arg(QString::fromUtf16(f.To))));
    return pilots;
}

QPoint Pixel(const Flight& f) {
    const auto p = sky::geo::LatLonToScreen(f.Lat, f.Lon, 800, 600, kView);
    return p ? QPoint(int(p->X), int(p->Y)) : QPoint();
}

// The aircraft drawn, and those with a label, by the pixels of their symbols and of the labels round them.
QStringList Drawn(const QImage& image, QRgb colour, int reachPx) {
    QStringList drawn;
    for (const Flight& f : kFlights) {
        const QPoint at = Pixel(f);
        const QRect area(at - QPoint(reachPx, reachPx), QSize(2 * reachPx + 1, 2 * reachPx + 1));
        if (CountNear(image, colour, 24, area) > 6)
            drawn.append(QString::fromUtf16(f.Callsign));
    }
    return drawn;
}

// The filtered mark: the count under the client-count panel and the filter in the status band.
int MarkPixels(const QImage& image) {
    return CountNear(image, kHighlight, 24, QRect(560, 56, 240, 20)) +
           CountNear(image, kHighlight, 24, QRect(600, 582, 200, 18));
}

TEST_F(Gui, AnAirlineFilterDrawsAndLabelsOnlyItsAircraftAndClearingRestoresAll) {
    const QStringList feed = LocalFeed(Feed()) + QStringList{u"--view"_s, u"6,49,3"_s};
    const QImage filtered = Snapshot(feed + QStringList{u"--filter"_s, u"DLH"_s});
    ASSERT_FALSE(filtered.isNull());
    EXPECT_EQ(Drawn(filtered, kPlaneBorder, 6), (QStringList{u"DLH1"_s, u"DLH2"_s}));
    EXPECT_EQ(Drawn(filtered, kPlaneLabel, 40), (QStringList{u"DLH1"_s, u"DLH2"_s}));
    EXPECT_GT(MarkPixels(filtered), 100);
    const QImage cleared = Snapshot(feed + QStringList{u"--filter"_s, u"DLH"_s, u"--keys"_s, u"X"_s});
    EXPECT_EQ(Drawn(cleared, kPlaneBorder, 6), (QStringList{u"DLH1"_s, u"DLH2"_s, u"BAW3"_s, u"AFR4"_s}));
    EXPECT_EQ(Drawn(cleared, kPlaneLabel, 40), (QStringList{u"DLH1"_s, u"DLH2"_s, u"BAW3"_s, u"AFR4"_s}));
    EXPECT_EQ(MarkPixels(cleared), 0);
}

// Shift and a drag from one aircraft to another: the distance shown is the Companion's dist.
TEST_F(Gui, TheMeasuringLineShowsTheDistanceDistGives) {
    const QStringList feed = LocalFeed(Feed());
    const QPoint from = Pixel(kFlights[0]) + QPoint(4, 3), to = Pixel(kFlights[2]) - QPoint(3, 4);
    QString status;
    const QImage image = Snapshot(
        feed + QStringList{u"--view"_s, u"6,49,3"_s, u"--keys"_s,
                           u"drag %1 %2 %3 %4 shift"_s.arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y()),
                           u"--print-status"_s},
        {}, &status);
    const QString answer = Console(feed, "dist DLH1 BAW3\n");
    const QString nm = answer.section(u"Distance: "_s, 1).section(u' ', 0, 0);
    ASSERT_FALSE(nm.isEmpty()) << answer.toStdString();
    EXPECT_TRUE(status.trimmed().startsWith(u"Measured DLH1 - BAW3: "_s + nm + u" nm"_s))
        << status.toStdString();
    // The line itself, half way between them.
    EXPECT_GT(CountNear(image, kHighlight, 24, QRect((from + to) / 2 - QPoint(6, 6), QSize(13, 13))), 2);
}

} // namespace
