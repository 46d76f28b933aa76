#include "network/status_file.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

TEST(ParseStatusFile, KeepsTenServersOfEachKindAndTheProfileAddress) {
    // A message is handed over as it is written, never read as markup.
    QStringList lines = {u"; status file"_s, u"msg0=<b>Hi</b> & <script>x</script>"_s,
                         u"user0=https://example.net/profile.php"_s};
    for (int i = 0; i < 11; ++i)
        lines += u"url0=http://server%1.example/whazzup.txt"_s.arg(i);
    lines += u"gzurl0=http://gz.example/whazzup.txt.gz"_s;
    lines += u"metar0=http://weather.example/"_s;
    ServerLists servers;
    QStringList messages;
    ASSERT_TRUE(
        ParseStatusFile(lines.join(u"\r\n"), QString(), servers, [&](const QString& m) { messages += m; }));
    EXPECT_EQ(servers.ServerCount, 10);
    EXPECT_EQ(servers.ServerUrl[9], u"http://server9.example/whazzup.txt");
    EXPECT_EQ(servers.GzServerCount, 1);
    EXPECT_EQ(servers.GzServerUrl[0], u"http://gz.example/whazzup.txt.gz");
    EXPECT_EQ(servers.ProfileUrl, u"https://example.net/profile.php");
    EXPECT_EQ(messages, QStringList{u"<b>Hi</b> & <script>x</script>"_s});
}

// Line ends are the splitter's tests; here a file too short for the splitter empties the lists.
TEST(ParseStatusFile, IgnoresShortFiles) {
    ServerLists servers;
    servers.ServerCount = 3;
    EXPECT_FALSE(ParseStatusFile(u"url0=http://a/w.txt\nurl0=http://b/w.txt\n"_s, QString(), servers));
    EXPECT_EQ(servers.ServerCount, 0);
}

TEST(ParseStatusFile, ResolvesRelativeAddressesAgainstTheStatusFile) {
    ServerLists servers;
    const QString text =
        u"url0=whazzup.txt\ngzurl0=whazzup.txt.gz\nurl0=http://other.example/w.txt\nurl0=\n\n"_s;
    ParseStatusFile(text, u"file:///srv/demo/ivao/status.txt"_s, servers);
    EXPECT_EQ(servers.ServerUrl[0], u"file:///srv/demo/ivao/whazzup.txt");
    EXPECT_EQ(servers.GzServerUrl[0], u"file:///srv/demo/ivao/whazzup.txt.gz");
    EXPECT_EQ(servers.ServerUrl[1], u"http://other.example/w.txt");
    EXPECT_EQ(servers.ServerUrl[2], u"");
}

} // namespace
} // namespace sky::network
