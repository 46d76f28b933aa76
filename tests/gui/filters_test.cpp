#include "gui_fixture.h"

#include "geo/projection.h"

using namespace Qt::StringLiterals;

// Finding one's way in a busy network: the filter bar's filters, the measuring line and friends' names,
// as the map shows them on a crafted feed.
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

QStringList Feed(const QString& friendCallsign = {}) {
    QStringList pilots;
    for (const Flight& f : kFlights) {
        const QString callsign = QString::fromUtf16(f.Callsign);
        pilots.append(CruisingPilot(callsign, f.Lat, f.Lon,
                                    u"1=%1|11=EDDM|13=%2"_s.arg(callsign == friendCallsign ? u"111"_s : u"200001"_s,
                                                                QString::fromUtf16(f.To))));
    }
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

TEST_F(Gui, ADestinationFilterLeavesOnlyThoseFlightsInTheList) {
    QProcess program;
    program.start(kBuild + u"/skylantra"_s,
                  QStringList{u"--home"_s, m_home.path()} + LocalFeed(Feed()) +
                      QStringList{u"--filter"_s, u"to:EDDF"_s, u"--keys"_s, u"L"_s, u"--snapshot"_s,
                                  m_home.filePath(u"s.png"_s), u"--print-panel"_s});
    ASSERT_TRUE(program.waitForFinished(60000));
    const QStringList lines =
        QString::fromUtf8(program.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[2].section(u'|', 0, 0), u"DLH2");
    EXPECT_EQ(lines[3].section(u'|', 0, 0), u"BAW3");
}

// Shift and a drag from one aircraft to another: the distance shown is the Companion's dist.
TEST_F(Gui, TheMeasuringLineShowsTheDistanceDistGives) {
    const QStringList feed = LocalFeed(Feed());
    const QPoint from = Pixel(kFlights[0]) + QPoint(4, 3), to = Pixel(kFlights[2]) - QPoint(3, 4);
    QProcess map;
    map.start(kBuild + u"/skylantra"_s,
              QStringList{u"--home"_s, m_home.path()} + feed +
                  QStringList{u"--view"_s, u"6,49,3"_s, u"--keys"_s,
                              u"drag %1 %2 %3 %4 shift"_s.arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y()),
                              u"--snapshot"_s, m_home.filePath(u"measure.png"_s), u"--print-status"_s});
    ASSERT_TRUE(map.waitForFinished(60000));
    const QString status = QString::fromUtf8(map.readAllStandardOutput()).trimmed();
    QProcess console;
    console.start(kBuild + u"/skylantra"_s, QStringList{u"--home"_s, m_home.path(), u"--console"_s} + feed);
    console.write("dist DLH1 BAW3\n");
    console.closeWriteChannel();
    ASSERT_TRUE(console.waitForFinished(60000));
    const QString answer = QString::fromUtf8(console.readAllStandardOutput());
    const QString nm = answer.section(u"Distance: "_s, 1).section(u' ', 0, 0);
    ASSERT_FALSE(nm.isEmpty()) << answer.toStdString();
    EXPECT_TRUE(status.startsWith(u"Measured DLH1 - BAW3: "_s + nm + u" nm"_s)) << status.toStdString();
    // The line itself, half way between them.
    const QImage image(m_home.filePath(u"measure.png"_s));
    EXPECT_GT(CountNear(image, kHighlight, 24, QRect((from + to) / 2 - QPoint(6, 6), QSize(13, 13))), 2);
}

// A friend named by the user: the label says the name beside the callsign, one as long stands alone.
TEST_F(Gui, AFriendsLabelCarriesTheNameTheUserGaveThem) {
    Write(u"data/friends.dat"_s, "111\n");
    Write(u"data/friendnames.dat"_s, "111\tAnna Berg\n");
    const QImage image = Snapshot(LocalFeed(Feed(u"DLH1"_s)) + QStringList{u"--view"_s, u"6,49,3"_s});
    const auto width = [&](const Flight& f) {
        const QPoint at = Pixel(f);
        return BoundsOf(image, kPlaneLabel, 24, QRect(at.x() - 140, at.y() - 30, 281, 60)).width();
    };
    EXPECT_GE(width(kFlights[0]) - width(kFlights[1]), 50); // " Anna Berg"
}

} // namespace
