#include "render/land_layer.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "common/file_io.h"
#include "geo/geodesy.h"
#include "render/geography.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using Op = RecordingGl::Op;

// land.dat written by hand: the mark, then records of tags and LEB128 numbers.
struct LandFile {
    QByteArray Bytes = "SKYLAND1";
    LandFile& Tag(char tag) {
        Bytes.append(tag);
        return *this;
    }
    LandFile& U(quint64 value) {
        for (; value >= 0x80; value >>= 7)
            Bytes.append(char((value & 0x7F) | 0x80));
        Bytes.append(char(value));
        return *this;
    }
    LandFile& S(qint64 value) { return U(value >= 0 ? quint64(value) * 2 : quint64(-value) * 2 - 1); }
    // A piece of one triangle from (lat, lon) by the given steps, in ten-thousandths of a degree.
    LandFile& Piece(char tag, qint64 dLat, qint64 dLon, int lastCorner = 2) {
        Tag(tag).U(3).S(dLat).S(dLon).S(0).S(10000).S(10000).S(-10000);
        return U(1).S(0).S(1).S(lastCorner - 1);
    }
};

// Band 4 (every point, tiles of 10 degrees), the tile of 50 N 5 E: a land triangle, a lake on it.
LandFile Tile(qint64 tolerance = 0, quint64 row = 14) {
    return LandFile().Tag('B').U(4).U(tolerance).U(10).Tag('G').U(row).U(18);
}

TEST(BuildLand, RecordsGoodPiecesAndStopsOrSkipsAtBadOnes) {
    const int list = LandList(4, 14, 18);
    const struct {
        const char* name;
        QByteArray bytes;
        int tiles, vertices;
    } rows[] = {
        {"land and lake", Tile().Piece('L', 500000, 50000).Piece('W', 1000, 0).Bytes, 1, 6},
        {"no mark", Tile().Piece('L', 500000, 50000).Bytes.sliced(1), 0, 0},
        {"band not the program's", Tile(120).Piece('L', 500000, 50000).Bytes, 0, 0},
        {"tile out of the band", Tile(0, 18).Piece('L', 500000, 50000).Bytes, 0, 0},
        {"point past the pole", Tile().Piece('L', 900000, 50000).Piece('W', -400000, 0).Bytes, 1, 3},
        {"corner not a point", Tile().Piece('L', 500000, 50000, 3).Piece('W', 1000, 0).Bytes, 1, 3},
        {"cut short", Tile().Piece('L', 500000, 50000).Piece('W', 1000, 0).Bytes.chopped(1), 1, 3},
        {"number too long", Tile().Piece('L', 500000, 50000).Tag('W').U(quint64(1) << 40).Bytes, 1, 3},
        {"count beyond the file", Tile().Piece('L', 500000, 50000).Tag('W').U(1000).Bytes, 1, 3},
        {"unknown tag", Tile().Piece('L', 500000, 50000).Tag('X').Piece('W', 1000, 0).Bytes, 1, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        RecordingGl gl;
        EXPECT_EQ(BuildLand(gl, row.bytes, DefaultColourTable()), row.tiles);
        EXPECT_EQ(RecordingGl::Count(gl.List(list), Op::Vertex), row.vertices);
    }
}

// Land in the theme's Land colour at its points; a lake in the globe's colour of its 2-degree band.
TEST(BuildLand, LandTakesTheLandColourWaterTheGlobesColour) {
    RecordingGl gl;
    const ColourTable colours = DefaultColourTable();
    BuildLand(gl, Tile().Piece('L', 500000, 50000).Piece('W', 10000, 0).Bytes, colours);
    const auto& calls = gl.List(LandList(4, 14, 18)); // Begin, land colour, 3 corners, lake colour, 3 corners
    ASSERT_EQ(calls.size(), 10u);
    EXPECT_FLOAT_EQ(calls[2].Values[0], geo::GlobeX(50.0f, 5.0f));
    EXPECT_FLOAT_EQ(calls[2].Values[1], geo::GlobeY(50.0f, 5.0f));
    EXPECT_FLOAT_EQ(calls[1].Values[2], colours.Blue[kSlotLand]);
    float water[3];
    GradientColour(colours, kSlotGlobeEquator, kSlotGlobePoles, 52.0f, water); // the lake at 52 to 53 N
    EXPECT_FLOAT_EQ(calls[5].Values[2], water[2]);
    EXPECT_NE(water[2], colours.Blue[kSlotLand]);
}

// The shipped land.dat fills every band of the program's table: central Australia in each, recorded
// the first time a view of the band's detail asks for it, and not before.
TEST(BuildLand, TheShippedFileFillsEveryBandAsViewsNeedIt) {
    const auto bytes = ReadWholeFile(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/land.dat"_s);
    ASSERT_TRUE(bytes.has_value());
    RecordingGl all;
    EXPECT_GT(BuildLand(all, *bytes, DefaultColourTable()), 400);
    const auto australia = [](int band) {
        return LandList(band, 65 / kLandBands[size_t(band)].TileDeg, 315 / kLandBands[size_t(band)].TileDeg);
    };
    RecordingGl gl;
    LandLists land;
    land.Reset(*bytes);
    for (int band = 0; band < int(kLandBands.size()); ++band) {
        SCOPED_TRACE(band);
        EXPECT_TRUE(all.IsList(australia(band)));
        const double tolerance = kLandBands[size_t(band)].ToleranceDeg * geo::DegToRad;
        const float zoom = tolerance > 0.0 ? float(0.99 / tolerance / 600.0) : 1000.0f;
        land.Need(gl, DefaultColourTable(), {0.0f, 0.0f, zoom}, 600);
        EXPECT_TRUE(gl.IsList(australia(band)));
        if (band + 1 < int(kLandBands.size())) {
            EXPECT_FALSE(gl.IsList(australia(band + 1)));
        }
    }
}

// A view calls the tiles of its band that can show, and only those, across the date line and the poles.
TEST(DrawLand, CallsTheTilesTheViewShows) {
    RecordingGl gl;
    for (int list = 0; list < LandListCount(); ++list) {
        gl.NewList(lists::kLandFirst + list);
        gl.EndList();
    }
    const struct {
        const char* name;
        geo::ViewState view;
        std::vector<int> shown, hidden;
        size_t most;
    } rows[] = {
        {"whole globe", {0, 0, 0.5f}, {LandList(0, 6, 12), LandList(0, 5, 11)}, {LandList(0, 6, 0)}, 200},
        {"Heathrow at 16", {-0.46f, -51.47f, 16}, {LandList(4, 14, 17)}, {LandList(4, 14, 20)}, 9},
        {"date line", {180, -40, 3}, {LandList(3, 8, 0), LandList(3, 8, 23)}, {LandList(3, 8, 12)}, 30},
        {"north pole", {0, -90, 3}, {LandList(3, 11, 0), LandList(3, 11, 12)}, {LandList(3, 9, 0)}, 48},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        gl.ClearImmediate();
        DrawLand(gl, row.view, 800, 600);
        std::vector<int> called;
        for (const auto& call : gl.Immediate())
            if (call.What == Op::CallList)
                called.push_back(call.Number);
        for (int list : row.shown)
            EXPECT_NE(std::find(called.begin(), called.end(), list), called.end()) << list;
        for (int list : row.hidden)
            EXPECT_EQ(std::find(called.begin(), called.end(), list), called.end()) << list;
        EXPECT_LE(called.size(), row.most);
    }
}

} // namespace
} // namespace sky::render
