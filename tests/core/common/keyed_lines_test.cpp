#include "common/keyed_lines.h"

#include <QFileInfo>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "app/friend_names.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

using Entries = std::vector<std::pair<QString, QString>>;

TEST(KeyedLines, ReadsKeyTabTextLinesAndSetsByKeyIgnoringCase) {
    const struct {
        const char* text;
        Entries entries;
    } rows[] = {
        {"", {}},
        {"111\tAnna\r\n222\tBen Berg\n", {{u"111"_s, u"Anna"_s}, {u"222"_s, u"Ben Berg"_s}}},
        {"no tab\n\tno key\n333\t\n444\t  Cara  \n", {{u"444"_s, u"Cara"_s}}},
        {"abc\tOne\nABC\tTwo\n", {{u"abc"_s, u"Two"_s}}},
        {"k\ta\tb\n", {{u"k"_s, u"a b"_s}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(KeyedLines::Parse(QString::fromUtf8(row.text)).Entries(), row.entries);
    }
    KeyedLines lines = KeyedLines::Parse(u"a\t1\nb\t2\nc\t3\n"_s);
    EXPECT_TRUE(lines.Set(u"B"_s, QString()));
    EXPECT_TRUE(lines.Set(u"d"_s, u"4\nfour"_s));
    EXPECT_FALSE(lines.Set(u" \t"_s, u"x"_s));
    EXPECT_EQ(lines.Value(u"C"_s), u"3");
    EXPECT_EQ(lines.ToBytes(), "a\t1\nc\t3\nd\t4 four\n");
}

class KeyedFile : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_home.filePath(name); }
    QTemporaryDir m_home;
};

// Another program's change made meanwhile stays; a lock held elsewhere leaves the file as it was.
TEST_F(KeyedFile, AChangeIsMadeToTheFileAsItIsNowUnderItsLock) {
    const QString path = Path(u"data/friendnames.dat"_s);
    KeyedLines mine;
    ASSERT_TRUE(KeyedLines::Update(
                    path, [](KeyedLines& l) { l.Set(u"111"_s, u"Anna"_s); }, mine)
                    .Ok);
    KeyedLines other;
    ASSERT_TRUE(KeyedLines::Update(
                    path, [](KeyedLines& l) { l.Set(u"222"_s, u"Ben"_s); }, other)
                    .Ok);
    ASSERT_TRUE(KeyedLines::Update(
                    path, [](KeyedLines& l) { l.Set(u"111"_s, u"Ann"_s); }, mine)
                    .Ok);
    EXPECT_EQ(mine.Entries(), (Entries{{u"111"_s, u"Ann"_s}, {u"222"_s, u"Ben"_s}}));
    EXPECT_EQ(KeyedLines::Load(path).Entries(), mine.Entries());

    QLockFile held(path + u".lock"_s);
    ASSERT_TRUE(held.tryLock(0));
    const WriteResult locked = KeyedLines::Update(
        path, [](KeyedLines& l) { l.Set(u"333"_s, u"C"_s); }, mine);
    EXPECT_FALSE(locked.Ok);
    EXPECT_TRUE(locked.Message.endsWith(u"another program keeps it locked"));
    EXPECT_EQ(KeyedLines::Load(path).Entries().size(), 2u);
}

// What the killed program saves, over and over: two versions in turn (run by the test below).
TEST(DISABLED_KeyedLinesSaver, SavesWithoutEnd) {
    const QString path = qEnvironmentVariable("SKYLANTRA_SAVE_LOOP");
    KeyedLines lines;
    for (int i = 0;; ++i)
        KeyedLines::Update(
            path, [&](KeyedLines& l) { l.Set(u"k"_s, QString(4000, i % 2 ? u'B' : u'A')); }, lines);
}

// Killed at any moment of a save, a program leaves the names or the saved filters whole, in their old
// or new version, and no lock that stops the next start from saving.
TEST_F(KeyedFile, AKillDuringASaveLeavesTheFileWholeAndUnlocked) {
    const QString self = QFileInfo(u"/proc/self/exe"_s).symLinkTarget();
    for (const QString& path : {FriendNamesPath(m_home.path()), Path(u"data/filters.dat"_s)}) {
        KeyedLines lines;
        ASSERT_TRUE(KeyedLines::Update(
                        path, [](KeyedLines& l) { l.Set(u"k"_s, QString(4000, u'A')); }, lines)
                        .Ok);
        for (int round = 0; round < 4; ++round) {
            SCOPED_TRACE(path.toStdString() + " round " + std::to_string(round));
            QProcess saver;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"SKYLANTRA_SAVE_LOOP"_s, path);
            saver.setProcessEnvironment(environment);
            saver.start(
                self, {u"--gtest_also_run_disabled_tests"_s, u"--gtest_filter=DISABLED_KeyedLinesSaver.*"_s});
            ASSERT_TRUE(saver.waitForStarted());
            QThread::msleep(150 + 37 * round);
            saver.kill();
            saver.waitForFinished();
            const QString text = KeyedLines::Load(path).Value(u"k"_s);
            EXPECT_TRUE(text == QString(4000, u'A') || text == QString(4000, u'B')) << text.size();
            EXPECT_TRUE(KeyedLines::Update(
                            path, [](KeyedLines&) {}, lines)
                            .Ok);
        }
    }
}

} // namespace
} // namespace sky
