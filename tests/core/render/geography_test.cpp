#include "render/geography.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "common/file_io.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using Op = RecordingGl::Op;
using Call = RecordingGl::Call;

int Segments(RecordingGl& gl, const char16_t* text) {
    BuildLineFile(gl, lists::kCoastlines, text, DefaultColourTable(), true);
    return RecordingGl::Count(gl.List(lists::kCoastlines), Op::Vertex) / 2;
}

// Ninety bands from pole to pole, each in the colour of its southern edge's latitude.
TEST(BuildGlobe, ShadesNinetyBandsByTheirSouthernEdge) {
    RecordingGl gl;
    const ColourTable colours = DefaultColourTable();
    BuildGlobe(gl, colours);
    const std::vector<Call> bands = RecordingGl::Calls(gl.List(lists::kGlobe), Op::Colour);
    ASSERT_EQ(bands.size(), 90u);
    EXPECT_FLOAT_EQ(bands.front().Values[2], colours.Blue[kSlotGlobePoles]);
    float rgb[3];
    GradientColour(colours, kSlotGlobeEquator, kSlotGlobePoles, 88.0f, rgb);
    EXPECT_FLOAT_EQ(bands.back().Values[2], rgb[2]);
    EXPECT_NE(bands.back().Values[2], colours.Blue[kSlotGlobePoles]);
}

TEST(BuildLineFile, JoinsPointsUnlessTheOneBeforeSumsToZero) {
    RecordingGl gl;
    EXPECT_EQ(Segments(gl, u"10:20\n11:21\n12:22\n"), 2); // the first line starts the polyline
    EXPECT_EQ(Segments(gl, u"10:20\n11:21\nend\n12:22\n13:23\nend\n"), 2);
    EXPECT_EQ(Segments(gl, u"end\nend\n10:20\n"), 0);
    EXPECT_EQ(Segments(gl, u"1:2\n10:-10\n3:4\n5:6\n"), 2); // (10, -10) breaks the line like "end"
    EXPECT_EQ(Segments(gl, u"1:2\n\n3:4\n5:6\n"), 2);       // so does a blank line
    EXPECT_EQ(Segments(gl, u"1:2\r\n3:4\r\n"), 1);
    EXPECT_EQ(Segments(gl, u"5\n6\n"), 1); // a single field: longitude 0
    EXPECT_EQ(Segments(gl, u""), 0);
}

TEST(BuildLineFile, CoastlinesShadePerSegmentBordersTakeOneColour) {
    RecordingGl gl;
    const ColourTable colours = DefaultColourTable();
    BuildLineFile(gl, lists::kCoastlines, u"0:1\n45:2\n89:3\n", colours, true);
    EXPECT_EQ(RecordingGl::Count(gl.List(lists::kCoastlines), Op::Colour), 2);
    BuildLineFile(gl, lists::kBorders, u"0:1\n45:2\n89:3\n", colours, false);
    const std::vector<Call> colour = RecordingGl::Calls(gl.List(lists::kBorders), Op::Colour);
    ASSERT_EQ(colour.size(), 1u);
    EXPECT_FLOAT_EQ(colour[0].Values[0], colours.Red[kSlotCountryBorders]);
}

class LoadGeographyFiles : public ::testing::Test {
protected:
    void Write(const QString& name, const QByteArray& bytes) {
        ASSERT_TRUE(WriteFileAtomically(m_dir.filePath(name), bytes).Ok);
    }
    QTemporaryDir m_dir;
    RecordingGl m_gl;
};

TEST_F(LoadGeographyFiles, NamesAMissingFileAndSkipsBordersWhenDisabled) {
    EXPECT_TRUE(LoadGeography(m_gl, DefaultColourTable(), m_dir.path(), false)
                    .MissingFile.endsWith(u"coastline.dat"));
    Write(u"coastline.dat"_s, "1:2\n3:4\n");
    EXPECT_TRUE(LoadGeography(m_gl, DefaultColourTable(), m_dir.path(), false)
                    .MissingFile.endsWith(u"countries.dat"));
    EXPECT_TRUE(LoadGeography(m_gl, DefaultColourTable(), m_dir.path(), true).MissingFile.isEmpty());
    EXPECT_TRUE(m_gl.IsList(lists::kCoastlines));
    EXPECT_FALSE(m_gl.IsList(lists::kBorders));
}

} // namespace
} // namespace sky::render
