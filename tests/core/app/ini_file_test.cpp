#include "app/ini_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

IniFile Parse(const char* text) {
    return IniFile::FromBytes(QByteArray(text));
}

TEST(IniFileRead, MissingFileSectionOrKeyGivesTheDefault) {
    const IniFile missing = IniFile::Load(u"/nonexistent/skln.ini"_s);
    EXPECT_EQ(missing.Value(u"User", u"IVAO_ID", u"100000"_s), u"100000");
    const IniFile ini = Parse("[User]\nIVAO_ID=123\n");
    EXPECT_EQ(ini.Value(u"Display", u"IVAO_ID", u"d"_s), u"d");
    EXPECT_EQ(ini.Value(u"User", u"VATSIM_ID", u"d"_s), u"d");
}

TEST(IniFileRead, SectionsAndKeysIgnoreCaseAndBlanks) {
    const IniFile ini = Parse("[ planes ]\n  PlaneFill = 323274  \n");
    EXPECT_EQ(ini.Value(u"PLANES", u"planefill", u""_s), u"323274");
}

TEST(IniFileRead, ValuesComeBackAsStoredWithSurroundingQuotesRemoved) {
    const IniFile ini = Parse("[a]\n"
                              "quoted=\"a b\"\n"
                              "half=\"a b\n"
                              "single='x'\n"
                              "inner=a\"b\"c\n"
                              "empty=\n"
                              "equals=x=y\n"
                              "lonequote=\"\n");
    EXPECT_EQ(ini.Value(u"a", u"quoted", u"d"_s), u"a b");
    EXPECT_EQ(ini.Value(u"a", u"half", u"d"_s), u"\"a b");
    EXPECT_EQ(ini.Value(u"a", u"single", u"d"_s), u"'x'");
    EXPECT_EQ(ini.Value(u"a", u"inner", u"d"_s), u"a\"b\"c");
    EXPECT_EQ(ini.Value(u"a", u"empty", u"d"_s), u"");
    EXPECT_EQ(ini.Value(u"a", u"equals", u"d"_s), u"x=y");
    EXPECT_EQ(ini.Value(u"a", u"lonequote", u"d"_s), u"\"");
}

TEST(IniFileRead, TheFirstOfDuplicateSectionsAndKeysCounts) {
    const IniFile ini = Parse("[a]\nk=1\nk=2\n[A]\nk=3\nother=4\n");
    EXPECT_EQ(ini.Value(u"a", u"k", u"d"_s), u"1");
    EXPECT_EQ(ini.Value(u"a", u"other", u"d"_s), u"d");
}

TEST(IniFileRead, CommentsStrayLinesAndLinesBeforeAnySectionAreNoKeys) {
    const IniFile ini = Parse("k=0\n[a]\n;k=1\n#k=2\njust text\n=3\n[b\nk=4\n");
    EXPECT_EQ(ini.Value(u"a", u"k", u"d"_s), u"d");
    EXPECT_EQ(ini.Value(u"b", u"k", u"d"_s), u"4");
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

TEST(IniFileRead, BinaryBytesDoNotStopTheOtherKeys) {
    const char raw[] = "[a]\nk=\x00\xFF\xFE\x01garbage\nnext=1\n";
    const QByteArray text(raw, sizeof raw - 1);
    const IniFile ini = IniFile::FromBytes(text);
    EXPECT_EQ(ini.Value(u"a", u"next", u""_s), u"1");
    EXPECT_EQ(ini.ToBytes(), text);
}

TEST(IniFileWrite, RewritesOnlyTheKeysLine) {
    const char* before = "; my settings\n"
                         "[User]\n"
                         "ivao_id = 1\n"
                         "Unknown=keep me\n"
                         "\n"
                         "[Network]\n"
                         "Proxy=proxy.local:3128\n";
    IniFile ini = Parse(before);
    ini.SetValue(u"USER"_s, u"IVAO_ID"_s, u"2"_s);
    EXPECT_EQ(ini.ToBytes(), QByteArray("; my settings\n"
                                        "[User]\n"
                                        "ivao_id=2\n"
                                        "Unknown=keep me\n"
                                        "\n"
                                        "[Network]\n"
                                        "Proxy=proxy.local:3128\n"));
}

TEST(IniFileWrite, AppendsAMissingKeyToItsSectionAndAMissingSectionToTheFile) {
    IniFile ini = Parse("[User]\nIVAO_ID=1\n\n\n[Map]\nShowPlanes=1");
    ini.SetValue(u"User"_s, u"VATSIM_ID"_s, u"2"_s);
    ini.SetValue(u"Zoom"_s, u"X1"_s, u"3"_s);
    ini.SetValue(u"Zoom"_s, u"Y1"_s, u"4"_s);
    EXPECT_EQ(ini.ToBytes(), QByteArray("[User]\nIVAO_ID=1\nVATSIM_ID=2\n\n\n"
                                        "[Map]\nShowPlanes=1\n\n"
                                        "[Zoom]\nX1=3\nY1=4\n"));
}

TEST(IniFileWrite, WritesOnlyTheFirstOfDuplicateKeys) {
    IniFile ini = Parse("[a]\nk=1\nk=2\n");
    ini.SetValue(u"a"_s, u"k"_s, u"9"_s);
    EXPECT_EQ(ini.ToBytes(), QByteArray("[a]\nk=9\nk=2\n"));
    EXPECT_EQ(ini.Value(u"a", u"k", u""_s), u"9");
}

TEST(IniFileWrite, KeepsLineEndsAndEncodingOfTheFile) {
    IniFile crlf = Parse("[a]\r\nk=1\r\nname=K\xF6ln");
    crlf.SetValue(u"a"_s, u"k"_s, u"2"_s);
    crlf.SetValue(u"a"_s, u"city"_s, u"Zürich"_s);
    EXPECT_EQ(crlf.ToBytes(), QByteArray("[a]\r\nk=2\r\nname=K\xF6ln\r\ncity=Z\xFCrich\r\n"));

    IniFile empty;
    empty.SetValue(u"User"_s, u"IVAO_ID"_s, u"1"_s);
    EXPECT_EQ(empty.ToBytes(), QByteArray("[User]\nIVAO_ID=1\n"));
}

TEST(IniFileWrite, UntouchedDocumentsRoundTripByteForByte) {
    const QByteArray texts[] = {"", "\n", "[a]\nk=1", "; only a comment\r\n", "[a]\n\n\nk = \"1\"\n\n"};
    for (const QByteArray& text : texts) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(IniFile::FromBytes(text).ToBytes(), text);
    }
}

TEST(IniFileSave, WritesTheFileAndReportsAFolderItCannotWriteTo) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    IniFile ini;
    ini.SetValue(u"a"_s, u"k"_s, u"1"_s);
    const QString path = dir.filePath(u"skln.ini"_s);
    EXPECT_TRUE(ini.Save(path).Ok);
    EXPECT_EQ(IniFile::Load(path).Value(u"a", u"k", u""_s), u"1");

    // A folder that is a file cannot be written to, even by a superuser.
    QFile blocker(dir.filePath(u"notafolder"_s));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const WriteResult result = ini.Save(dir.filePath(u"notafolder/skln.ini"_s));
    EXPECT_FALSE(result.Ok);
    EXPECT_TRUE(result.Message.contains(u"notafolder/skln.ini"_s)) << result.Message.toStdString();
}

} // namespace
} // namespace sky
