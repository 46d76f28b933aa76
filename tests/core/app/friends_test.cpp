#include "app/friends.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

TEST(FriendsParse, ReadsDelimitedEntriesSkippingEmptyAndRepeatedOnes) {
    struct Row {
        const char* text;
        QStringList expected;
    };
    const Row rows[] = {
        {"", {}},
        {"200001\n200002\n", {u"200001"_s, u"200002"_s}},
        {"200001,300002\r\n", {u"200001"_s, u"300002"_s}},
        {"\n\n  \n200001\n\n", {u"200001"_s}},
        {"\"200001\"\n \"200002\" , 200003 \n", {u"200001"_s, u"200002"_s, u"200003"_s}},
        {"\"1,2\",3", {u"1,2"_s, u"3"_s}},
        {",,200001,,", {u"200001"_s}},
        {"200001\n200001\n200002,200001", {u"200001"_s, u"200002"_s}},
        {"\"unclosed", {u"unclosed"_s}},
        {"\"a\"junk,b", {u"a"_s, u"b"_s}},
        {"\"\",\"\"", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Friends::Parse(QString::fromUtf8(row.text)).Entries(), row.expected);
    }
}

TEST(Friends, MembershipAndDuplicatesIgnoreCaseLikeTheKeyedCollection) {
    Friends friends;
    EXPECT_TRUE(friends.Add(u"abc"_s));
    EXPECT_FALSE(friends.Add(u"ABC"_s));
    EXPECT_FALSE(friends.Add(QString()));
    EXPECT_TRUE(friends.Contains(u"Abc"_s));
    EXPECT_FALSE(friends.Contains(u"ab"_s));
    EXPECT_TRUE(friends.Remove(u"ABC"_s));
    EXPECT_FALSE(friends.Remove(u"abc"_s));
    EXPECT_EQ(friends.Count(), 0);
}

TEST(Friends, SavingWritesOnePerLineInOrderAndCreatesTheFolder) {
    QTemporaryDir home;
    const QString path = home.filePath(u"data/friends.dat"_s);
    EXPECT_EQ(Friends::Load(path).Count(), 0);
    Friends friends = Friends::Parse(u"300003,200001\n100002"_s);
    ASSERT_TRUE(friends.Save(path).Ok);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("300003\n200001\n100002\n"));
    EXPECT_EQ(Friends::Load(path).Entries(), friends.Entries());
}

TEST(ToggleFriend, AddsThenRemovesAndSaysSo) {
    Friends friends = Friends::Parse(u"200001\n"_s);
    const QByteArray before = friends.ToBytes();

    const FriendToggle added = ToggleFriend(friends, u"Jane Doe"_s, u"300002"_s);
    EXPECT_TRUE(added.Added);
    EXPECT_EQ(added.StatusText, u"Jane Doe (300002) added to friends list");
    EXPECT_EQ(friends.Entries(), (QStringList{u"200001"_s, u"300002"_s}));

    const FriendToggle removed = ToggleFriend(friends, u"Jane Doe"_s, u"300002"_s);
    EXPECT_FALSE(removed.Added);
    EXPECT_EQ(removed.StatusText, u"Jane Doe (300002) removed from friends list");
    EXPECT_EQ(friends.ToBytes(), before);

    const FriendToggle nobody = ToggleFriend(friends, u"No Number"_s, QString());
    EXPECT_TRUE(nobody.StatusText.isEmpty());
    EXPECT_EQ(friends.ToBytes(), before);
}

} // namespace
} // namespace sky
