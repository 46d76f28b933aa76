#include "gui_fixture.h"

#include "app/colour_theme.h"
#include "geo/geodesy.h"
#include "geo/projection.h"
#include "render/geography.h"

using namespace Qt::StringLiterals;

// What the map draws, read back as pixels of the real window on Mesa: tiny crafted feeds in the
// default theme's colours.
namespace {

using namespace sky::gui;
using sky::network::testing::AtcLine;

const QRgb kPlaneLabel = qRgb(0xFF, 0xFF, 0x9C);
const QRgb kPlaneBorder = qRgb(0xFF, 0xFF, 0x2A);
const QRgb kPlaneFill = qRgb(0x32, 0x32, 0x74);
const QRgb kBackground = qRgb(0x10, 0x10, 0x3A);
const QRgb kSectorBorder = qRgb(0x2E, 0x53, 0x81);

// The rows of an area that hold a pixel near colour, as runs of consecutive rows.
std::vector<std::pair<int, int>> RowRuns(const QImage& image, QRgb colour, const QRect& area) {
    std::vector<std::pair<int, int>> runs;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        if (CountNear(image, colour, 24, QRect(area.left(), y, area.width(), 1)) == 0)
            continue;
        if (!runs.empty() && runs.back().second == y - 1)
            runs.back().second = y;
        else
            runs.push_back({y, y});
    }
    return runs;
}

// Zoomed in, the globe reaches far beyond the window: aircraft placed at points of the window, the
// middle and near each corner, land on those pixels.
TEST_F(Gui, ZoomedInEachAircraftLandsOnItsPixel) {
    const sky::geo::ViewState view{10.0f, -50.0f, 4.0f};
    const QPoint pixels[] = {{400, 300}, {70, 70}, {700, 70}, {70, 520}, {700, 520}};
    QStringList pilots;
    for (const QPoint& pixel : pixels) {
        const auto place = sky::geo::ScreenToLatLon(pixel.x(), pixel.y(), 800, 600, view);
        ASSERT_TRUE(place.has_value());
        pilots.append(CruisingPilot(u"T%1"_s.arg(pilots.size()), place->Lat, place->Lon));
    }
    const QImage image = Snapshot(LocalFeed(pilots) + QStringList{u"--view"_s, u"10,50,4"_s});
    ASSERT_FALSE(image.isNull());
    for (const QPoint& pixel : pixels) {
        SCOPED_TRACE(pixel.x() * 1000 + pixel.y());
        const QRect symbol = BoundsOf(image, kPlaneBorder, 24, QRect(pixel - QPoint(20, 20), QSize(41, 41)));
        ASSERT_FALSE(symbol.isNull());
        EXPECT_NEAR(symbol.center().x(), pixel.x(), 2);
        EXPECT_NEAR(symbol.center().y(), pixel.y(), 2);
    }
}

// Coastlines and borders drawn with only as many segments as the view shows look as the full lists
// do: some edge pixels of the smoothed lines differ (where a line's small zigzags were), few by much.
TEST_F(Gui, FewerSegmentsWhenZoomedOutDrawTheSameCoasts) {
    for (const QString& view : {u"13.34,54.15,1.49"_s, u"-97,46,0.3"_s}) {
        SCOPED_TRACE(view.toStdString());
        const QStringList arguments = {u"--demo"_s, u"--view"_s, view};
        const QImage detailed = Snapshot(arguments).convertToFormat(QImage::Format_RGB32);
        const QImage full =
            Snapshot(arguments, {u"SKYLANTRA_FULL_DETAIL=1"_s}).convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(detailed.size(), full.size());
        int differing = 0, far = 0;
        for (int y = 0; y < full.height(); ++y)
            for (int x = 0; x < full.width(); ++x) {
                const QRgb a = detailed.pixel(x, y), b = full.pixel(x, y);
                const int d = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                        std::abs(qBlue(a) - qBlue(b))});
                differing += d > 32 ? 1 : 0;
                far += d > 64 ? 1 : 0;
            }
        EXPECT_LT(differing, full.width() * full.height() / 200);
        // Lines drawn up to 3 pixels off make over 6 times as many pixels differ this much.
        EXPECT_LT(far, full.width() * full.height() / 4000);
        EXPECT_GT(CountNear(full, qRgb(0x40, 0x5E, 0x85), 16), 300); // there are coasts to compare
    }
}

// The same picture in the window's first GL context and in a new one Qt made after it (every list
// recorded again in it).
TEST_F(Gui, AnAircraftsLabelSitsBesideItsSymbolInTwoLinesInEveryGlContext) {
    for (const QString& keys : {QString(), u"newcontext"_s}) {
        SCOPED_TRACE(keys.toStdString());
        const QImage image = Snapshot(LocalFeed({CruisingPilot(u"DLH1234"_s, 50, 10)}) +
                                      QStringList{u"--view"_s, u"10,50,4"_s, u"--keys"_s, keys});
        ASSERT_FALSE(image.isNull());
        EXPECT_LT(CountNear(image, kBackground, 4), image.width() * image.height() / 10) << "no globe";
        const QRect around(300, 240, 240, 120);
        const QRect symbol = BoundsOf(image, kPlaneBorder, 24, around);
        const QRect label = BoundsOf(image, kPlaneLabel, 24, around);
        ASSERT_FALSE(symbol.isNull());
        ASSERT_FALSE(label.isNull());
        EXPECT_FALSE(symbol.intersects(label)) << "label over its symbol";
        EXPECT_GT(label.left(), symbol.right());
        EXPECT_LT(label.left() - symbol.right(), 12);
        // The callsign, then level and speed on a line of their own below it.
        const auto lines = RowRuns(image, kPlaneLabel, label);
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_LE(lines[0].second - lines[0].first, 11);
        EXPECT_GE(lines[1].first - lines[0].second, 2);
    }
}

// An aircraft the window did not reach gets its label once a resize shows it and the size settles.
TEST_F(Gui, AResizeGivesTheNewlyShownAircraftTheirLabels) {
    Write(u"skln.ini"_s, "[Map]\nShowNight=0\n[Display]\nWindowWidth=720\nWindowHeight=600\n");
    // 400 pixels east of the middle of a 1000-pixel window: beyond the right edge of a 720-pixel one.
    const auto east = sky::geo::ScreenToLatLon(900, 300, 1000, 600, {10.0f, -50.0f, 4.0f});
    ASSERT_TRUE(east);
    QProcess program;
    const QString window = Start(program, LocalFeed({CruisingPilot(u"DLH1234"_s, east->Lat, east->Lon)}) +
                                              QStringList{u"--view"_s, u"10,50,4"_s});
    ASSERT_FALSE(window.isEmpty());
    Xdotool({u"windowsize"_s, window, u"1000"_s, u"600"_s});
    QThread::msleep(1500);
    const QImage image = Grab(window);
    ASSERT_EQ(image.width(), 1000);
    const QRect around(800, 240, 200, 120);
    const QRect symbol = BoundsOf(image, kPlaneBorder, 24, around);
    const QRect label = BoundsOf(image, kPlaneLabel, 24, around);
    ASSERT_FALSE(symbol.isNull()) << "the aircraft is not drawn";
    EXPECT_FALSE(label.isNull()) << "the newly shown aircraft has no label";
    ASSERT_TRUE(CloseAndWait(program, window));
}

TEST_F(Gui, NothingOfTheMapCoversTheStripsTheCountPanelOrAnOpenPanel) {
    // Aircraft under the title strip, the status band, the count panel and where the info box opens.
    const sky::geo::ViewState view{0.0f, 0.0f, 1.5f};
    QStringList pilots;
    const auto at = [&](int x, int y) {
        const auto p = sky::geo::ScreenToLatLon(x, y, 800, 600, view);
        if (p)
            pilots.append(CruisingPilot(u"T%1X%2"_s.arg(x).arg(y), p->Lat, p->Lon));
    };
    for (int x = 30; x < 780; x += 50) {
        at(x, 8);
        at(x, 592);
    }
    for (int x = 520; x < 790; x += 40)
        for (int y = 30; y < 400; y += 40)
            at(x, y);
    at(200, 300); // clicked: its box opens
    at(100, 150);
    at(300, 450);
    const QImage image =
        Snapshot(LocalFeed(pilots) + QStringList{u"--view"_s, u"0,0,1.5"_s, u"--keys"_s, u"click 200 300"_s});
    ASSERT_FALSE(image.isNull());
    const struct {
        const char* name;
        QRect area;
    } covered[] = {{"title strip", QRect(0, 0, 800, 19)},
                   {"status band", QRect(0, 582, 800, 18)},
                   {"count panel", QRect(650, 24, 140, 30)},
                   {"info box", QRect(492, 62, 296, 330)}};
    for (const auto& c : covered) {
        SCOPED_TRACE(c.name);
        for (QRgb colour : {kPlaneBorder, kPlaneFill, kPlaneLabel})
            EXPECT_EQ(CountNear(image, colour, 2, c.area), 0);
    }
    // The aircraft elsewhere do show.
    EXPECT_GT(CountNear(image, kPlaneBorder, 2, QRect(0, 19, 480, 560)), 20);
}

TEST_F(Gui, AtTwiceTheScaleTheMapFillsTheWindowAndTextKeepsItsSize) {
    const QImage normal = Snapshot({u"--demo"_s});
    const QImage scaled = Snapshot({u"--demo"_s}, {u"QT_SCALE_FACTOR=2"_s});
    ASSERT_FALSE(normal.isNull());
    ASSERT_FALSE(scaled.isNull());
    ASSERT_EQ(scaled.size(), normal.size() * 2);
    // No traffic before a download: nothing in the aircraft's colours; a snapshot writes no settings.
    EXPECT_LT(CountNear(normal, kPlaneBorder, 20), 50);
    EXPECT_EQ(sky::ReadWholeFile(m_home.filePath(u"skln.ini"_s)), QByteArray("[Map]\nShowNight=0\n"));
    // The globe (its sea and land) reaches into the upper right quarter, as it does at the normal scale.
    const auto globeShare = [](const QImage& i) {
        const QRect upperRight(i.width() / 2, i.height() / 10, i.width() / 3, i.height() / 3);
        const int globe = CountNear(i, qRgb(0x10, 0x10, 0x2A), 8, upperRight);
        return double(globe + CountNear(i, qRgb(0x1D, 0x22, 0x38), 8, upperRight)) /
               (upperRight.width() * upperRight.height());
    };
    EXPECT_GT(globeShare(normal), 0.2);
    EXPECT_NEAR(globeShare(scaled), globeShare(normal), 0.1);
    // The status line "Ready" is twice as tall in device pixels.
    const QRgb white = qRgb(0xFF, 0xFF, 0xFF);
    const QRect text = BoundsOf(normal, white, 8, QRect(60, 580, 200, 20));
    const QRect scaledText = BoundsOf(scaled, white, 8, QRect(120, 1160, 400, 40));
    ASSERT_FALSE(text.isNull());
    ASSERT_FALSE(scaledText.isNull());
    EXPECT_NEAR(double(scaledText.height()) / text.height(), 2.0, 0.35);
    EXPECT_NEAR(double(scaledText.width()) / text.width(), 2.0, 0.35);
}

TEST_F(Gui, SectorsStayOnTheGlobeAndTheDateLineCutIsNotDrawn) {
    // TSA reaches past the globe's edge at 90 degrees east; TSB is cut in two at 180 degrees.
    Write(u"data/firlist.dat"_s,
          "TSA:XX:0.0000:80.0000:Across the edge\nTSB:XX:40.0000:180.0000:Across the date line\n");
    Write(u"data/firdisplay.dat"_s, "B:TSA:0:TSA\nR\n-20:60\n20:60\n20:120\n-20:120\n-20:60\n"
                                    "B:TSB:0:TSB\nR\n30:170\n30:180\n50:180\n50:170\n30:170\n"
                                    "R\n30:-180\n30:-170\n50:-170\n50:-180\n30:-180\n");
    QFile::remove(m_home.filePath(u"data/firdisplay.sup"_s));
    const QStringList feed =
        LocalFeed({AtcLine(0, {{0, u"TSA_CTR"_s}, {1, u"300001"_s}, {4, u"128.000"_s}}),
                   AtcLine(0, {{0, u"TSB_CTR"_s}, {1, u"300002"_s}, {4, u"129.000"_s}})});
    const QImage edge = Snapshot(feed + QStringList{u"--view"_s, u"0,0,0.5"_s});
    ASSERT_FALSE(edge.isNull());
    // Beside the globe's right edge (x 700) only the background shows (above and below the station's
    // label, which may hang out); inside, the fill does.
    for (const QRect& beside : {QRect(708, 150, 80, 130), QRect(708, 320, 80, 130)})
        EXPECT_EQ(CountNear(edge, kBackground, 6, beside), beside.width() * beside.height());
    EXPECT_GT(CountNear(edge, qRgb(0x10, 0x1B, 0x3D), 6, QRect(664, 250, 32, 100)), 2500);

    const QImage dateLine = Snapshot(feed + QStringList{u"--view"_s, u"180,40,3"_s});
    ASSERT_FALSE(dateLine.isNull());
    EXPECT_GT(CountNear(dateLine, kSectorBorder, 10), 200); // the outer edges at 170 east and west
    EXPECT_EQ(CountNear(dateLine, kSectorBorder, 10, QRect(396, 120, 9, 200)), 0);
}

// A frame that changes nothing under the aircraft copies the globe, its geography and the sectors the
// frames before kept, pixel for pixel; one after the sectors changed draws them anew.
TEST_F(Gui, TheBackgroundKeptFromTheFrameBeforeIsTheOneDrawnAnew) {
    Write(u"data/firlist.dat"_s, "TSA:XX:53.0000:9.0000:Test\n");
    Write(u"data/firdisplay.dat"_s, "B:TSA:0:TSA\nR\n50:5\n56:5\n56:13\n50:13\n50:5\n");
    QFile::remove(m_home.filePath(u"data/firdisplay.sup"_s));
    const QStringList feed = LocalFeed({AtcLine(0, {{0, u"TSA_CTR"_s}, {1, u"300001"_s}, {4, u"128.000"_s}}),
                                        CruisingPilot(u"DLH1"_s, 53.0, 9.0)}) +
                             QStringList{u"--view"_s, u"9,53,3"_s};
    const QImage drawn = Snapshot(feed);
    ASSERT_FALSE(drawn.isNull());
    EXPECT_GT(CountNear(drawn, kSectorBorder, 10), 200);
    EXPECT_EQ(Snapshot(feed + QStringList{u"--keys"_s, u"paint;paint"_s}), drawn);
    const QImage sectorsBack =
        Snapshot(feed + QStringList{u"--filter"_s, u"atc:twr"_s, u"--keys"_s, u"paint;paint;X"_s});
    const QRect globe(0, 80, 800, 480);
    EXPECT_EQ(sectorsBack.copy(globe), drawn.copy(globe));
}

// At noon on 21 November the sun stands over 20 S 3.5 W: the Indian Ocean (10 S 60 E) is in day, the
// Pacific at 10 N 160 E in night, shaded darker by the night side's black.
TEST_F(Gui, TheNightSideOfTheGlobeIsShaded) {
    const sky::geo::ViewState view{90.0f, 0.0f, 0.5f};
    Write(u"skln.ini"_s, "[Map]\nShowNight=1\n");
    const QImage image = Snapshot(LocalFeed({CruisingPilot(u"DLH1"_s, 70, -40)}, u"20261121120000"_s) +
                                  QStringList{u"--view"_s, u"90,0,0.5"_s});
    ASSERT_FALSE(image.isNull());
    const auto brightness = [&](float lat, float lon) {
        const auto p = sky::geo::LatLonToScreen(lat, lon, image.width(), image.height(), view);
        EXPECT_TRUE(p.has_value());
        std::vector<int> sums;
        for (int dy = -3; dy <= 3; ++dy)
            for (int dx = -3; dx <= 3; ++dx) {
                const QRgb c = image.pixel(int(p->X) + dx, int(p->Y) + dy);
                sums.push_back(qRed(c) + qGreen(c) + qBlue(c));
            }
        std::nth_element(sums.begin(), sums.begin() + long(sums.size() / 2), sums.end());
        return sums[sums.size() / 2];
    };
    const int day = brightness(-10.0f, 60.0f), night = brightness(10.0f, 160.0f);
    EXPECT_GT(day, 30);
    EXPECT_LE(night, day * (1.0 - 0.45) + 3) << "day " << day << ", night " << night;
}

// Land in the theme's Land colour, a lake and the sea in the globe's colour of their latitude, in both
// shipped themes: round the south pole (the land meets at the pole and across the date line) and over
// Africa with Lake Victoria.
TEST_F(Gui, LandAndSeaShowInTheThemesColours) {
    const struct {
        const char* theme;
        sky::geo::ViewState view;
        std::vector<sky::geo::LatLon> land, water;
    } rows[] = {{"default.dc",
                 {0, 90, 1},
                 {{-88.5f, 45}, {-86, 135}, {-87.5f, 179.5f}, {-87.5f, -179.5f}},
                 {{-55, 95}, {-65, -145}}},
                {"daylight.dc", {25, 0, 2}, {{4.5f, 23.5f}, {-7, 25}}, {{-1.5f, 33}, {-8, 8}}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.theme);
        Write(u"skln.ini"_s, "[Map]\nShowNight=0\n[Display]\nColourTheme="_ba + row.theme + "\n");
        const QString view = u"%1,%2,%3"_s.arg(row.view.ViewX).arg(-row.view.ViewY).arg(row.view.ViewZ);
        const QImage image = Snapshot({u"--demo"_s, u"--view"_s, view});
        ASSERT_FALSE(image.isNull());
        const sky::ColourTable colours = sky::LoadColourTheme(m_home.path(), QString::fromLatin1(row.theme));
        const auto expect = [&](sky::geo::LatLon place, const float rgb[3]) {
            const auto p = sky::geo::LatLonToScreen(place.Lat, place.Lon, 800, 600, row.view);
            ASSERT_TRUE(p.has_value());
            const QRgb colour =
                qRgb(int(rgb[0] * 255 + 0.5f), int(rgb[1] * 255 + 0.5f), int(rgb[2] * 255 + 0.5f));
            EXPECT_EQ(CountNear(image, colour, 3, QRect(int(p->X) - 2, int(p->Y) - 2, 5, 5)), 25)
                << place.Lat << " " << place.Lon;
        };
        const float land[3] = {colours.Red[sky::kSlotLand], colours.Green[sky::kSlotLand],
                               colours.Blue[sky::kSlotLand]};
        for (const auto& place : row.land)
            expect(place, land);
        for (const auto& place : row.water) {
            float sea[3];
            sky::render::GradientColour(colours, sky::kSlotGlobeEquator, sky::kSlotGlobePoles, place.Lat,
                                        sea);
            expect(place, sea);
        }
    }
}

} // namespace
