#include "app/friends.h"

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

// Adding and removing is said by the map session's tests; a client without a member number is no one's
// friend.
TEST(ToggleFriend, NeedsAMemberNumber) {
    Friends friends = Friends::Parse(u"200001\n"_s);
    EXPECT_TRUE(ToggleFriend(friends, u"No Number"_s, QString()).StatusText.isEmpty());
    EXPECT_EQ(friends.Entries(), QStringList{u"200001"_s});
}

} // namespace
} // namespace sky
