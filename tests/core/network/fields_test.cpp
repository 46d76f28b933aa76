#include "network/fields.h"

#include <gtest/gtest.h>

#include "network/lines.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

TEST(LineFields, AgreesWithGetFieldOnEveryIndex) {
    const QString lines[] = {u""_s, u":"_s, u"a"_s, u"a::b:"_s, u"::::"_s, u"x:y:z:PILOT:1:2:3"_s};
    for (const QString& line : lines) {
        SCOPED_TRACE(line.toStdString());
        const LineFields fields(line);
        EXPECT_EQ(fields.Count(), line.count(u':') + 1);
        for (qsizetype index = 0; index < 10; ++index)
            EXPECT_EQ(fields.Text(index), GetField(line, index));
    }
    const QString wide = QStringList(10000, u"9"_s).join(u':');
    EXPECT_EQ(LineFields(wide)[9999], u"9");
    EXPECT_EQ(LineFields(wide)[10000], u"");
}

TEST(SplitNetworkLines, ReadsLfCrLfOrAMixTheSameAndCrAloneAndNeedsFivePieces) {
    const QList<QStringView> five{u"a", u"b", u"c", u"d", u"e"};
    struct Row {
        const char16_t* text;
        QList<QStringView> lines;
    };
    const Row rows[] = {
        {u"a\r\nb\r\nc\r\nd\r\ne", five},
        {u"a\nb\nc\nd\ne", five},
        {u"a\r\nb\nc\r\nd\ne", five}, // one line added with LF alone
        {u"a\rb\rc\rd\re", five},
        {u"a\r\nb\rx\r\nc\r\nd\r\ne", {u"a", u"b\rx", u"c", u"d", u"e"}}, // a CR alone stays in its line
        {u"a\nb\nc\nd\n", {u"a", u"b", u"c", u"d", u""}},
        {u"a\nb\nc\nd", {}},
        {u"", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        EXPECT_EQ(SplitNetworkLines(row.text), row.lines);
    }
}

} // namespace
} // namespace sky::network
