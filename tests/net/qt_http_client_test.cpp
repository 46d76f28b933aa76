#include "qt_http_client.h"

#include <QUrl>

#include <gtest/gtest.h>

#include "local_http_server.h"

using namespace Qt::StringLiterals;

namespace sky::net {
namespace {

TEST(QtHttpClient, FetchesFromARealServerAndReportsWhatFails) {
    testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    const QByteArray body("!GENERAL\r\nUPDATE = 20261121142305\r\n");
    server.Serve(u"whazzup.txt"_s, body);
    server.Serve(u"big.bin"_s, QByteArray(300 * 1024, 'x'));

    QtHttpClient client(5000, u"0"_s);
    const network::FetchResult ok = client.Fetch(server.Url(u"whazzup.txt"_s));
    EXPECT_TRUE(ok.Ok) << ok.Error.toStdString();
    EXPECT_EQ(ok.Body, body);

    const network::FetchResult missing = client.Fetch(server.Url(u"missing.txt"_s));
    EXPECT_FALSE(missing.Ok);
    EXPECT_TRUE(missing.Body.isEmpty());

    QtHttpClient small(5000, u"0"_s, 100 * 1024);
    EXPECT_FALSE(small.Fetch(server.Url(u"big.bin"_s)).Ok);

    EXPECT_FALSE(client.Fetch(u"not an address"_s).Ok);
    EXPECT_FALSE(client.Fetch(u"http://127.0.0.1:1/nothing-listens-here"_s).Ok);
}

TEST(QtHttpClient, ReadsFileAddresses) {
    testing::LocalHttpServer server; // only for its folder
    server.Serve(u"status.txt"_s, "url0=whazzup.txt\n");
    QtHttpClient client(5000, u""_s);
    const network::FetchResult result =
        client.Fetch(QUrl::fromLocalFile(server.Folder().filePath(u"status.txt"_s)).toString());
    EXPECT_TRUE(result.Ok) << result.Error.toStdString();
    EXPECT_EQ(result.Body, "url0=whazzup.txt\n");
    EXPECT_FALSE(client.Fetch(QUrl::fromLocalFile(server.Folder().filePath(u"none.txt"_s)).toString()).Ok);
}

} // namespace
} // namespace sky::net
