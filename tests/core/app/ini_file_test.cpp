#include "app/ini_file.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

TEST(IniFileRead, FindsKeysAsTheClassicReaderDoes) {
    const struct {
        const char* text;
        const char16_t *section, *key, *expected; // "d": the default came back
    } rows[] = {
        {"[User]\nIVAO_ID=123\n", u"Display", u"IVAO_ID", u"d"},
        {"[User]\nIVAO_ID=123\n", u"User", u"VATSIM_ID", u"d"},
        {"[ planes ]\n  PlaneFill = 323274  \n", u"PLANES", u"planefill", u"323274"},
        {"[a]\nk=\"a b\"\n", u"a", u"k", u"a b"},
        {"[a]\nk=\"a b\n", u"a", u"k", u"\"a b"},
        {"[a]\nk='x'\n", u"a", u"k", u"'x'"},
        {"[a]\nk=a\"b\"c\n", u"a", u"k", u"a\"b\"c"},
        {"[a]\nk=\n", u"a", u"k", u""},
        {"[a]\nk=x=y\n", u"a", u"k", u"x=y"},
        {"[a]\nk=\"\n", u"a", u"k", u"\""},
        {"[a]\nk=1\nk=2\n[A]\nk=3\nother=4\n", u"a", u"k", u"1"},
        {"[a]\nk=1\nk=2\n[A]\nk=3\nother=4\n", u"a", u"other", u"d"},
        {"k=0\n[a]\n;k=1\n#k=2\njust text\n=3\n[b\nk=4\n", u"a", u"k", u"d"},
        {"k=0\n[a]\n;k=1\n#k=2\njust text\n=3\n[b\nk=4\n", u"b", u"k", u"4"},
        {"[a]\nk=\x01\xFF\xFEgarbage\nnext=1\n", u"a", u"next", u"1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(IniFile::FromBytes(row.text).Value(row.section, row.key, u"d"_s),
                  QString::fromUtf16(row.expected));
    }
    EXPECT_EQ(IniFile::Load(u"/nonexistent/skln.ini"_s).Value(u"User", u"IVAO_ID", u"d"_s), u"d");
    EXPECT_EQ(IniFile::FromBytes(QByteArray("[a]\nk=\x00\nnext=1\n", 15)).Value(u"a", u"next", u""_s), u"1");
}

TEST(IniFileRead, LongValuesAreCutLikeTheClassicBuffer) {
    QByteArray text = "[a]\nk=";
    text += QByteArray(10 * 1024 * 1024, 'x');
    text += "\nnext=1\n";
    const IniFile ini = IniFile::FromBytes(text);
    EXPECT_EQ(ini.Value(u"a", u"k", u""_s), QString(IniFile::kMaxValueChars, u'x'));
    EXPECT_EQ(ini.Value(u"a", u"next", u""_s), u"1");
    EXPECT_EQ(ini.Value(u"a", u"absent", QString(300, u'y')).size(), IniFile::kMaxValueChars);
}

// Only the line of a key set is written anew; a missing key joins its section, a missing section the
// file's end, in the file's own line ends and encoding; anything untouched comes back byte for byte.
TEST(IniFileWrite, RewritesOnlyWhatIsSet) {
    const struct {
        QByteArray before;
        std::vector<std::array<QString, 3>> set;
        QByteArray after;
    } rows[] = {
        {"; mine\n[User]\nivao_id = 1\nUnknown=keep me\n\n[Network]\nProxy=p:3128\n",
         {{u"USER"_s, u"IVAO_ID"_s, u"2"_s}},
         "; mine\n[User]\nivao_id=2\nUnknown=keep me\n\n[Network]\nProxy=p:3128\n"},
        {"[User]\nIVAO_ID=1\n\n\n[Map]\nShowPlanes=1",
         {{u"User"_s, u"VATSIM_ID"_s, u"2"_s}, {u"Zoom"_s, u"X1"_s, u"3"_s}, {u"Zoom"_s, u"Y1"_s, u"4"_s}},
         "[User]\nIVAO_ID=1\nVATSIM_ID=2\n\n\n[Map]\nShowPlanes=1\n\n[Zoom]\nX1=3\nY1=4\n"},
        {"[a]\nk=1\nk=2\n", {{u"a"_s, u"k"_s, u"9"_s}}, "[a]\nk=9\nk=2\n"},
        {"[a]\r\nk=1\r\nname=K\xF6ln",
         {{u"a"_s, u"k"_s, u"2"_s}, {u"a"_s, u"city"_s, u"Zürich"_s}},
         "[a]\r\nk=2\r\nname=K\xF6ln\r\ncity=Z\xFCrich\r\n"},
        {"", {{u"User"_s, u"IVAO_ID"_s, u"1"_s}}, "[User]\nIVAO_ID=1\n"},
        {"\n", {}, "\n"},
        {"; only a comment\r\n", {}, "; only a comment\r\n"},
        {"[a]\n\n\nk = \"1\"\n\n", {}, "[a]\n\n\nk = \"1\"\n\n"},
        {QByteArray("[a]\nk=\x00\xFF\n", 9), {}, QByteArray("[a]\nk=\x00\xFF\n", 9)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.before.toStdString());
        IniFile ini = IniFile::FromBytes(row.before);
        for (const auto& [section, key, value] : row.set)
            ini.SetValue(section, key, value);
        EXPECT_EQ(ini.ToBytes(), row.after);
        if (!row.set.empty()) {
            EXPECT_EQ(ini.Value(row.set.back()[0], row.set.back()[1], u""_s), row.set.back()[2]);
        }
    }
}

} // namespace
} // namespace sky
