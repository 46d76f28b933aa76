#include "common/text_codec.h"

#include <gtest/gtest.h>

namespace sky {
namespace {

TEST(DecodeText, ValidUtf8IsReadAsUtf8AndItsByteOrderMarkDropped) {
    const DecodedText decoded = DecodeText(QByteArray("\xEF\xBB\xBFK\xC3\xB6ln"));
    EXPECT_EQ(decoded.Encoding, TextEncoding::Utf8);
    EXPECT_EQ(decoded.Text, u"Köln");
}

TEST(DecodeText, AnythingElseIsReadAsWindows1252) {
    const DecodedText decoded = DecodeText(QByteArray("K\xF6ln \x80 \x93x\x94 \x81"));
    EXPECT_EQ(decoded.Encoding, TextEncoding::Windows1252);
    EXPECT_EQ(decoded.Text, QString::fromUtf16(u"Köln € \u201Cx\u201D \u0081"));
}

TEST(EncodeText, Windows1252RoundTripsAndReplacesWhatItCannotHold) {
    const QString text = QString::fromUtf16(u"Köln € \u0153 \u4E2D");
    const QByteArray bytes = EncodeText(text, TextEncoding::Windows1252);
    EXPECT_EQ(bytes, QByteArray("K\xF6ln \x80 \x9C ?"));
    EXPECT_EQ(DecodeText(bytes).Text, QString::fromUtf16(u"Köln € \u0153 ?"));
    EXPECT_EQ(EncodeText(text, TextEncoding::Utf8), text.toUtf8());
}

} // namespace
} // namespace sky
