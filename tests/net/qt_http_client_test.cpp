#include "qt_http_client.h"

#include <QUrl>

#include <gtest/gtest.h>

#include "local_http_server.h"

using namespace Qt::StringLiterals;

namespace sky::net {
namespace {

// What a fetch brings from a real server on 127.0.0.1 and from files; the download tests fetch the
// feeds through it, the hostile servers test its limits.
TEST(QtHttpClient, FetchesFromARealServerAndFilesAndReportsWhatFails) {
    testing::LocalHttpServer server;
    ASSERT_TRUE(server.IsRunning());
    const QByteArray body("!GENERAL\r\nUPDATE = 20261121142305\r\n");
    server.Serve(u"whazzup.txt"_s, body);
    const QString file = QUrl::fromLocalFile(server.Folder().filePath(u"whazzup.txt"_s)).toString();
    QtHttpClient client(5000, u"0"_s);
    for (const QString& address : {server.Url(u"whazzup.txt"_s), file}) {
        const network::FetchResult ok = client.Fetch(address);
        EXPECT_TRUE(ok.Ok) << ok.Error.toStdString();
        EXPECT_EQ(ok.Body, body);
    }
    for (const QString& address : {server.Url(u"missing.txt"_s), QString(file + u".missing"_s),
                                   u"not an address"_s, u"http://127.0.0.1:1/nothing-listens-here"_s}) {
        const network::FetchResult failed = client.Fetch(address);
        EXPECT_FALSE(failed.Ok) << address.toStdString();
        EXPECT_TRUE(failed.Body.isEmpty());
        EXPECT_FALSE(failed.Error.isEmpty());
    }
}

// A version known (an ETag, a Last-Modified time) is sent, and "not modified" comes back as such.
TEST(QtHttpClient, AsksWhetherAVersionItHoldsIsStillCurrent) {
    testing::LocalHttpServer files;
    testing::LocalHttpServer tagged(
        {QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/tests/net/hostile_server.py"_s});
    ASSERT_TRUE(files.IsRunning() && tagged.IsRunning());
    files.Serve(u"bookings.json"_s, "[]");
    QtHttpClient client(5000, u"0"_s);
    for (const QString& address :
         {files.Url(u"bookings.json"_s), u"http://127.0.0.1:%1/versioned"_s.arg(tagged.Port())}) {
        SCOPED_TRACE(address.toStdString());
        const network::FetchResult first = client.FetchIfChanged(address, {});
        ASSERT_TRUE(first.Ok && !first.NotModified);
        EXPECT_FALSE(first.Version.ETag.isEmpty() && first.Version.LastModified.isEmpty());
        const network::FetchResult again = client.FetchIfChanged(address, first.Version);
        EXPECT_TRUE(again.Ok && again.NotModified && again.Body.isEmpty());
    }
}

} // namespace
} // namespace sky::net
