#include "render/text.h"

#include <gtest/gtest.h>

#include "render/list_numbers.h"
#include "render/recording_gl.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using Op = RecordingGl::Op;

TEST(PrintText, CallsOneGlyphListPerCharacterInTheCodePage) {
    RecordingGl gl;
    PrintText(gl, u"Köln €"_s);
    PrintBoldText(gl, QString::fromUtf16(u"a\u00FFb\u4E2D"));
    const auto& calls = gl.Immediate();
    ASSERT_EQ(calls.front().What, Op::ListBase);
    EXPECT_EQ(calls.front().Number, lists::kSmallFontBase);
    EXPECT_EQ(calls[7].Number, lists::kBoldFontBase);
    // Code 255 has no glyph and prints nothing; a character outside the code page prints as "?".
    EXPECT_EQ(RecordingGl::Printed(calls),
              (std::vector<unsigned char>{'K', 0xF6, 'l', 'n', ' ', 0x80, 'a', 'b', '?'}));
}

TEST(BuildStatusLine, PlacesTheText65PixelsInAnd6UpOnEveryWindowSize) {
    RecordingGl gl;
    for (const auto& [w, h] : {std::pair{800, 600}, std::pair{1920, 1080}}) {
        BuildStatusLine(gl, u"Ready"_s, w, h);
        const auto& list = gl.List(lists::kStatusLine);
        ASSERT_EQ(list.front().What, Op::RasterPos);
        EXPECT_FLOAT_EQ(list.front().Values[0], float(65.0 * 2.0 / w - 1.0));
        EXPECT_FLOAT_EQ(list.front().Values[1], float(6.0 * 2.0 / h - 1.0));
        EXPECT_EQ(RecordingGl::CountBytes(list), 5);
        EXPECT_EQ(RecordingGl::Count(list, Op::Colour), 0); // the caller colours it
    }
    BuildStatusLine(gl, QString(), 800, 600);
    EXPECT_TRUE(gl.IsList(lists::kStatusLine));
    EXPECT_EQ(gl.List(lists::kStatusLine).size(), 1u);
}

} // namespace
} // namespace sky::render
