#include "render/text.h"

#include <gtest/gtest.h>

#include "render/list_numbers.h"
#include "testing/recording_gl.h"

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

} // namespace
} // namespace sky::render
