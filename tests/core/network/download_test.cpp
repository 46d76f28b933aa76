#include "network/download.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "testing/fakes.h"
#include "testing/gzip.h"
#include "testing/source_files.h"

#include "network/http_client.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

using sky::testing::FakeHttp;
using sky::testing::SourceFile;

using sky::testing::Gzip;

QByteArray WhazzupFile(int clients, const QString& callsign = u"DLH1"_s) {
    const QStringList lines =
        clients > 0 ? QStringList{testing::PilotLine(1, u"0="_s + callsign)} : QStringList();
    return testing::WhazzupText(lines, u"20261121142305"_s, 2, clients).toUtf8();
}

class Download : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_home.isValid());
        m_state.DownloadIdle = true;
        m_state.Networks[1].StatusFileAddress = kStatus;
    }

    DownloadOutcome Run() {
        const auto now = [this] { return m_now; };
        const auto lastServer = [](int count) { return count - 1; };
        DownloadContext context{m_state,     m_tables, m_reference,
                                m_http,      m_view,   m_home.filePath(u"data"_s),
                                m_textForce, now,      lastServer};
        return DownloadNetwork(context, 1);
    }

    void ServeStatus(const QString& servers) {
        m_http.Answers[kStatus] =
            (u"; VATSIM status\n"_s + servers + u"\nuser0=https://stats.example/member\n\n\n"_s).toUtf8();
    }

    static inline const QString kStatus = u"http://status.example/data/status.txt"_s;
    QTemporaryDir m_home;
    DownloadState m_state;
    ClientTables m_tables;
    ReferenceData m_reference;
    FakeHttp m_http;
    sky::testing::RecordingDownloadView m_view;
    bool m_textForce = false;
    QDateTime m_now = QDateTime(QDate(2026, 11, 21), QTime(15, 0));
};

TEST_F(Download, ReadsTheStatusFilePrefersCompressedServersAndInterprets) {
    ServeStatus(u"url0=http://a.example/w.txt\ngzurl0=http://b.example/w.gz\ngzurl0=http://c.example/w.gz"_s);
    m_http.Answers[u"http://c.example/w.gz"_s] = Gzip(WhazzupFile(3));
    EXPECT_EQ(Run(), DownloadOutcome::Interpreted);
    EXPECT_EQ(m_http.Requests, (QStringList{kStatus, u"http://c.example/w.gz"_s}));
    EXPECT_EQ(m_view.Statuses,
              (QStringList{u"Locating VATSIM server..."_s,
                           u"Downloading VATSIM data from http://c.example/w.gz..."_s,
                           u"VATSIM data downloaded, interpreting data..."_s, u"VATSIM data interpreted"_s}));
    EXPECT_EQ(m_view.Cleared, QList<int>{1});
    EXPECT_TRUE(m_state.DownloadIdle);
    EXPECT_FALSE(m_state.Networks[1].DownloadFailed);
    EXPECT_EQ(m_tables[1].PilotCount, 1);
    EXPECT_EQ(m_tables[1].LastDownload, m_now);
    EXPECT_EQ(m_tables[0].PilotCount, 0);
    EXPECT_TRUE(QFile::exists(m_home.filePath(u"data/whazzup.txt"_s)));
    EXPECT_EQ(ProfileAddress(m_state.Networks[1], u"800123"_s), u"https://stats.example/member?ID=800123");
    // Text forced when the status file is read again: the plain server, though compressed ones are listed.
    m_textForce = true;
    m_state.Networks[1].Servers = {};
    m_http.Answers[u"http://a.example/w.txt"_s] =
        testing::WhazzupText({testing::PilotLine(1, u"0=PLAIN"_s)}, u"20261121152305"_s).toUtf8();
    m_now = m_now.addSecs(3600);
    EXPECT_EQ(Run(), DownloadOutcome::Interpreted);
    EXPECT_EQ(m_tables[1].Pilots[1].Callsign, u"PLAIN");
}

TEST_F(Download, ReloadIntervalAndBusyFlagRefuseADownload) {
    ServeStatus(u"url0=http://a.example/w.txt"_s);
    m_http.Answers[u"http://a.example/w.txt"_s] = WhazzupFile(3);
    ASSERT_EQ(Run(), DownloadOutcome::Interpreted);
    m_http.Requests.clear();

    m_now = m_now.addSecs(119); // RELOAD = 2 minutes
    EXPECT_EQ(Run(), DownloadOutcome::TooEarly);
    EXPECT_TRUE(m_state.Networks[1].DownloadReady);
    EXPECT_TRUE(m_http.Requests.isEmpty());

    m_now = m_now.addSecs(1);
    EXPECT_EQ(Run(), DownloadOutcome::Interpreted);
    EXPECT_FALSE(m_state.Networks[1].DownloadReady);
    EXPECT_EQ(m_http.Requests, QStringList{u"http://a.example/w.txt"_s}); // the server list is kept

    m_state.DownloadIdle = false;
    m_now = m_now.addSecs(3600);
    EXPECT_EQ(Run(), DownloadOutcome::Busy);
    EXPECT_FALSE(m_state.DownloadIdle);
}

TEST_F(Download, EveryFailureHasItsTextAndKeepsThePreviousTables) {
    ServeStatus(u"gzurl0=http://b.example/w.gz"_s);
    m_http.Answers[u"http://b.example/w.gz"_s] = Gzip(WhazzupFile(3, u"KEPT"_s));
    ASSERT_EQ(Run(), DownloadOutcome::Interpreted);

    const QByteArray fresh = Gzip(WhazzupFile(3, u"NEW"_s));
    const struct {
        QByteArray answer;
        bool answered;
        DownloadOutcome outcome;
        QString status;
    } rows[] = {
        {{}, false, DownloadOutcome::FetchFailed, u"Could not contact server"_s},
        {fresh.first(fresh.size() / 2), true, DownloadOutcome::UnzipError, u"Error unzipping data"_s},
        {"not gzip at all", true, DownloadOutcome::UnzipError, u"Error unzipping data"_s},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status.toStdString());
        if (row.answered)
            m_http.Answers[u"http://b.example/w.gz"_s] = row.answer;
        else
            m_http.Answers.erase(u"http://b.example/w.gz"_s);
        m_now = m_now.addSecs(3600);
        EXPECT_EQ(Run(), row.outcome);
        EXPECT_EQ(m_view.Statuses.last(), row.status);
        EXPECT_EQ(m_tables[1].PilotCount, 1);
        EXPECT_EQ(m_tables[1].Pilots[1].Callsign, u"KEPT");
        EXPECT_TRUE(m_state.DownloadIdle);
    }
}

TEST_F(Download, AFolderThatCannotHoldTheFileIsReported) {
    ServeStatus(u"gzurl0=http://b.example/w.gz"_s);
    m_http.Answers[u"http://b.example/w.gz"_s] = Gzip(WhazzupFile(3));
    QFile blocker(m_home.filePath(u"data"_s));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    EXPECT_EQ(Run(), DownloadOutcome::FileError);
    EXPECT_EQ(m_view.Statuses.last(), u"Error creating file");
}

TEST_F(Download, NoServerOrNoClientsMarksTheNetworkFailed) {
    EXPECT_EQ(Run(), DownloadOutcome::NoServer);
    EXPECT_EQ(m_view.Statuses, (QStringList{u"Locating VATSIM server..."_s, u"Could not contact server"_s}));
    EXPECT_TRUE(m_state.Networks[1].DownloadFailed);
    EXPECT_TRUE(m_state.DownloadIdle);

    ServeStatus(u"url0=http://a.example/w.txt\nmsg0=Maintenance tonight"_s);
    m_http.Answers[u"http://a.example/w.txt"_s] = WhazzupFile(0);
    EXPECT_EQ(Run(), DownloadOutcome::NoClients);
    EXPECT_EQ(m_view.Messages, QStringList{u"Maintenance tonight"_s});
    EXPECT_EQ(m_view.Statuses.last(), u"No data to display");
    EXPECT_TRUE(m_state.Networks[1].DownloadFailed);
    EXPECT_FALSE(m_tables[1].LastDownload.isValid());
}

TEST(ProfileAddress, OnlyWebAddressesAreEverOpened) {
    NetworkDownloadState network;
    QStringList opened;
    const auto open = [&](const QString& address) { opened += address; };
    for (const QString& profile : {u"javascript:alert(1)"_s, u"file:///etc/passwd"_s, u""_s,
                                   u"www.example.net"_s, u"http://"_s, u"mailto:x@example.net"_s}) {
        network.Servers.ProfileUrl = profile;
        EXPECT_EQ(ProfileAddress(network, u"1"_s), u"") << profile.toStdString();
        OpenProfile(network, u"1"_s, open);
    }
    EXPECT_TRUE(opened.isEmpty());
    network.Servers.ProfileUrl = u"HTTP://www.example.net/profile"_s;
    OpenProfile(network, u"123456"_s, open);
    EXPECT_EQ(opened, QStringList{u"HTTP://www.example.net/profile?ID=123456"_s});
    // Without a status file's address: today's page of the network, the number in place of {id}.
    network.Servers.ProfileUrl.clear();
    network.FallbackProfileUrl = DefaultProfileAddress(1);
    EXPECT_EQ(ProfileAddress(network, u"1234567"_s), u"https://stats.vatsim.net/stats/1234567");
    network.FallbackProfileUrl = DefaultProfileAddress(0);
    EXPECT_EQ(ProfileAddress(network, u"512345"_s), u"https://www.ivao.aero/Member.aspx?ID=512345");
}

TEST(ChooseStatusFileAddress, CommandLineBeatsDemoBeatsSettingsBeatsTheDefault) {
    const QString home = u"/opt/sky"_s;
    EXPECT_EQ(ChooseStatusFileAddress(0, u"http://cli/s.txt"_s, true, u"http://ini/s.txt"_s, home),
              u"http://cli/s.txt");
    EXPECT_EQ(ChooseStatusFileAddress(0, QString(), true, u"http://ini/s.txt"_s, home),
              u"file:///opt/sky/data/demo/ivao/status.txt");
    EXPECT_EQ(ChooseStatusFileAddress(1, QString(), true, QString(), home),
              u"file:///opt/sky/data/demo/vatsim/status.txt");
    EXPECT_EQ(ChooseStatusFileAddress(1, u"  "_s, false, u"http://ini/s.txt"_s, home), u"http://ini/s.txt");
    EXPECT_EQ(ChooseStatusFileAddress(0, QString(), false, QString(), home), DefaultStatusFileAddress(0));
}

TEST(ChooseJsonAddress, TheSettingElseTheDefaultUnlessAStatusFileWasChosenAndTheServicesLikewise) {
    EXPECT_EQ(ChooseJsonAddress(0, false, false, QString()), DefaultJsonAddress(0));
    EXPECT_EQ(ChooseJsonAddress(1, false, false, QString()), u""); // VATSIM's comes from its status file
    EXPECT_EQ(ChooseJsonAddress(0, true, false, QString()), u"");
    EXPECT_EQ(ChooseJsonAddress(0, false, true, QString()), u"");
    EXPECT_EQ(ChooseJsonAddress(1, true, true, u" http://mine/feed.json "_s), u"http://mine/feed.json");
    // The demo reads VATSIM as today's network is read: its v3 data.
    EXPECT_EQ(ChooseJsonAddress(1, false, true, QString(), u"/opt/sky"_s),
              u"file:///opt/sky/data/demo/vatsim/vatsim-data.json");
    // Bookings and events likewise, but a run on feeds of its own reads no live service beside them.
    const QString live = DefaultBookingsAddress();
    EXPECT_EQ(ChooseServiceAddress(QString(), false, u"/d/b.json"_s, false, live), live);
    EXPECT_EQ(ChooseServiceAddress(QString(), false, u"/d/b.json"_s, true, live), u"");
    EXPECT_EQ(ChooseServiceAddress(QString(), true, u"/d/b.json"_s, true, live), u"file:///d/b.json");
    EXPECT_EQ(ChooseServiceAddress(u" http://mine/b "_s, true, u"/d/b.json"_s, true, live), u"http://mine/b");
}

TEST_F(Download, ReadsTheJsonDataWhenTheTextServerGivesNothing) {
    // Today's VATSIM: the old text address answers with a stub; json3 names the data.
    ServeStatus(u"url0=http://a.example/w.txt\njson3=http://data.example/v3/vatsim-data.json"_s);
    m_http.Answers[u"http://a.example/w.txt"_s] = "; this feed is retired\n";
    m_http.Answers[u"http://data.example/v3/vatsim-data.json"_s] = SourceFile(u"tests/data/vatsim-v3.json"_s);
    m_http.Answers[u"http://data.example/v3/transceivers-data.json"_s] =
        SourceFile(u"tests/data/vatsim-transceivers.json"_s);
    EXPECT_EQ(Run(), DownloadOutcome::Interpreted);
    EXPECT_EQ(m_view.Statuses.last(), u"VATSIM data interpreted");
    EXPECT_EQ(m_tables[1].PilotCount, 3);
    EXPECT_FLOAT_EQ(m_tables[1].Controllers[1].Latitude, 50.03f);
    EXPECT_FALSE(m_state.Networks[1].DownloadFailed);

    // The same snapshot again, after the reload interval: not interpreted a second time.
    m_tables[1].Pilots[1].Callsign = u"MARKED"_s;
    m_now = m_now.addSecs(120);
    EXPECT_EQ(Run(), DownloadOutcome::Unchanged);
    EXPECT_EQ(m_tables[1].Pilots[1].Callsign, u"MARKED");
    EXPECT_EQ(m_view.Statuses.last(), u"VATSIM data of 1423Z is the newest");
}

TEST_F(Download, AnUnreadableFeedKeepsThePreviousTables) {
    m_state.Networks[1].JsonAddress = u"http://data.example/feed.json"_s;
    m_http.Answers[u"http://data.example/feed.json"_s] = SourceFile(u"tests/data/vatsim-v3.json"_s);
    ASSERT_EQ(Run(), DownloadOutcome::Interpreted);
    // The status file is read once all the same, for the profile address and the message.
    EXPECT_EQ(m_http.Requests.mid(0, 2), (QStringList{kStatus, u"http://data.example/feed.json"_s}));

    const QByteArray full = SourceFile(u"tests/data/vatsim-v3.json"_s);
    const struct {
        QByteArray body;
        const char16_t* status;
    } broken[] = {{full.left(full.size() / 2), u"No data to display"},
                  {R"({"general": {"version": 2}, "clients": []})", u"Unsupported VATSIM data format"}};
    for (const auto& b : broken) {
        m_http.Answers[u"http://data.example/feed.json"_s] = b.body;
        m_now = m_now.addSecs(3600);
        EXPECT_EQ(Run(), DownloadOutcome::NoClients);
        EXPECT_EQ(m_view.Statuses.last(), QString::fromUtf16(b.status));
        EXPECT_TRUE(m_state.Networks[1].DownloadFailed);
        EXPECT_EQ(m_tables[1].PilotCount, 3);
        EXPECT_EQ(m_tables[1].Pilots[1].Callsign, u"DLH123");
    }
    EXPECT_EQ(m_http.Requests.count(kStatus), 1);
}

} // namespace
} // namespace sky::network
