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

TEST(SplitNetworkLines, TriesCrLfThenCrThenLfAndNeedsFivePieces) {
    EXPECT_EQ(SplitNetworkLines(u"a\r\nb\r\nc\r\nd\r\ne").size(), 5);
    EXPECT_EQ(SplitNetworkLines(u"a\nb\nc\nd\ne\n").size(), 6);
    EXPECT_EQ(SplitNetworkLines(u"a\rb\rc\rd\re"), (QList<QStringView>{u"a", u"b", u"c", u"d", u"e"}));
    EXPECT_EQ(SplitNetworkLines(u"a\r\nb\r\nc\nd\ne\n").size(), 6); // too few CR LF: split on LF
    EXPECT_TRUE(SplitNetworkLines(u"a\nb\nc\nd").isEmpty());
    EXPECT_TRUE(SplitNetworkLines(u"").isEmpty());
}

} // namespace
} // namespace sky::network
