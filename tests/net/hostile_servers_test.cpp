#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include "local_download.h"
#include "local_http_server.h"

using namespace Qt::StringLiterals;

// The HTTP client and the download against servers that mean harm or are broken, each a real server on
// 127.0.0.1.
namespace sky::net {
namespace {

// The peak resident memory of this process since the last reset, in MB.
double PeakMegabytes() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').front().toDouble() / 1024;
    return 0;
}
void ResetPeak() {
    QFile clear(u"/proc/self/clear_refs"_s);
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

QStringList Script(const QStringList& arguments = {}) {
    return QStringList{QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/tests/net/hostile_server.py"_s} + arguments;
}

class HostileServer : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.IsRunning()); }
    QString Url(const QString& path) const { return u"http://127.0.0.1:%1"_s.arg(m_server.Port()) + path; }

    testing::LocalHttpServer m_server{Script()};
};

// Nothing arriving (the time-out), a little all the time (the whole-transfer limit), redirects round in
// circles, elsewhere and to a file of this machine (nothing of it comes back).
TEST_F(HostileServer, NoServerHoldsTheClientLongerThanItsTimeOutsWhileEventsFlow) {
    QTemporaryDir folder;
    QFile secret(folder.filePath(u"secret.txt"_s));
    ASSERT_TRUE(secret.open(QIODevice::WriteOnly));
    secret.write("do not read me");
    secret.close();
    const struct {
        QString path;
        int limitMs; // with a time-out of one second
        const char* error;
    } rows[] = {
        {u"/silent"_s, 3000, ""},
        {u"/trickle"_s, 6000, "the server sends too slowly"},
        {u"/loop"_s, 3000, ""},
        {u"/to-ftp"_s, 3000, ""},
        {u"/to-file?"_s + secret.fileName(), 3000, ""},
    };
    QtHttpClient client(1000, u"0"_s);
    for (const auto& row : rows) {
        // The window's events go on while a fetch waits: a timer keeps firing.
        int ticks = 0;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, [&] { ++ticks; });
        tick.start(100);
        QElapsedTimer took;
        took.start();
        const network::FetchResult result = client.Fetch(Url(row.path));
        EXPECT_FALSE(result.Ok) << row.path.toStdString();
        EXPECT_TRUE(result.Body.isEmpty()) << row.path.toStdString();
        EXPECT_LT(took.elapsed(), row.limitMs) << row.path.toStdString();
        EXPECT_GE(ticks, int(took.elapsed() / 100) - 3)
            << row.path.toStdString() << ": the event loop stalled";
        if (*row.error)
            EXPECT_EQ(result.Error, QString::fromLatin1(row.error)) << row.path.toStdString();
        else
            EXPECT_FALSE(result.Error.isEmpty()) << row.path.toStdString();
    }
}

TEST_F(HostileServer, AGigabyteIsRefusedAtTheLimitAndMemoryStaysLow) {
    ResetPeak();
    const double before = PeakMegabytes();
    const network::FetchResult result = QtHttpClient(5000, u"0"_s, qint64(16) << 20).Fetch(Url(u"/huge"_s));
    EXPECT_FALSE(result.Ok);
    EXPECT_EQ(result.Error, u"the answer is larger than the limit");
    EXPECT_LT(PeakMegabytes() - before, 64.0) << "a 16 MB limit held " << PeakMegabytes() - before << " MB";
}

// A download through a status file: the data address is a gzip bomb, or one of 10,000 servers.
class HostileDownload : public HostileServer {
protected:
    network::DownloadOutcome Run(const QString& statusAddress) {
        m_download.State.Networks[0] = {};
        m_download.State.Networks[0].StatusFileAddress = statusAddress;
        return m_download.Run();
    }
    LocalDownload m_download;
};

TEST_F(HostileDownload, AGzipBombIsRefusedAtTheUnpackedLimitAndATenThousandLineStatusFileWorks) {
    testing::LocalHttpServer files;
    files.Serve(u"status.txt"_s, "gzurl0=" + Url(u"/bomb.gz"_s).toUtf8() + "\n\n\n\n\n");
    ResetPeak();
    const double before = PeakMegabytes();
    EXPECT_EQ(Run(files.Url(u"status.txt"_s)), network::DownloadOutcome::UnzipError);
    EXPECT_EQ(m_download.View.Statuses.last(), u"Error unzipping data");
    EXPECT_LT(PeakMegabytes() - before, 140.0) << "unpacking held " << PeakMegabytes() - before << " MB";

    QElapsedTimer took;
    took.start();
    EXPECT_EQ(Run(Url(u"/status-10k.txt"_s)), network::DownloadOutcome::Interpreted);
    EXPECT_EQ(m_download.State.Networks[0].Servers.ServerCount, 10); // the first ten are kept
    EXPECT_EQ(m_download.Tables[0].Pilots[1].Callsign, u"DLH1");
    EXPECT_LT(took.elapsed(), 5000);
}

TEST(HostileTlsServer, ACertificateThatDoesNotVerifyIsAFailureWithItsReason) {
    QTemporaryDir folder;
    QProcess openssl;
    openssl.start(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s,
                                 u"1"_s, u"-subj"_s, u"/CN=127.0.0.1"_s, u"-keyout"_s,
                                 folder.filePath(u"key.pem"_s), u"-out"_s, folder.filePath(u"cert.pem"_s)});
    if (!openssl.waitForFinished(30000) || openssl.exitCode() != 0)
        GTEST_SKIP() << "no openssl to make a certificate";
    testing::LocalHttpServer server(
        Script({u"--tls"_s, folder.filePath(u"cert.pem"_s), folder.filePath(u"key.pem"_s)}));
    ASSERT_TRUE(server.IsRunning());
    const network::FetchResult result =
        QtHttpClient(5000, u"0"_s).Fetch(u"https://127.0.0.1:%1/whazzup.txt"_s.arg(server.Port()));
    EXPECT_FALSE(result.Ok);
    EXPECT_TRUE(result.Body.isEmpty());
    EXPECT_TRUE(result.Error.contains(u"certificate"_s, Qt::CaseInsensitive)) << result.Error.toStdString();
}

} // namespace
} // namespace sky::net
