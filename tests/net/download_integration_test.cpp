#include "network/download.h"

#include <QSet>

#include <gtest/gtest.h>

#include "local_download.h"
#include "network/whazzup_lines.h"

#include "local_http_server.h"

using namespace Qt::StringLiterals;

namespace sky::net {
namespace {

QByteArray Whazzup(const QString& callsign) {
    const QString pilot =
        network::testing::PilotLine(0, u"0=%1|1=800001|5=50.1|6=8.6|7=35000"_s.arg(callsign));
    return network::testing::WhazzupText({pilot}, u"20261121142305"_s, 1, 2).toUtf8();
}

class DownloadAgainstLocalServer : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_server.IsRunning());
        m_download.State.Networks[0].StatusFileAddress = m_server.Url(u"status.txt"_s);
    }
    testing::LocalHttpServer m_server;
    LocalDownload m_download;
};

// Without a choice of its own the download picks a server at random: over ten downloads the listed
// servers take turns, a dead one among them failing only its own turns.
TEST_F(DownloadAgainstLocalServer, PicksAServerAtRandom) {
    m_server.Serve(u"status.txt"_s,
                   "url0=http://127.0.0.1:1/whazzup.txt\nurl0=a.txt\nurl0=b.txt\nurl0=c.txt\n\n");
    for (const QString& name : {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s})
        m_server.Serve(name, Whazzup(name.first(1).toUpper()));
    QSet<QString> served;
    int interpreted = 0;
    for (int download = 0; download < 10; ++download) {
        const auto outcome = m_download.Run(false, true);
        interpreted += outcome == network::DownloadOutcome::Interpreted ? 1 : 0;
        if (outcome == network::DownloadOutcome::Interpreted)
            served.insert(m_download.Tables[0].Pilots[1].Callsign);
        else
            EXPECT_EQ(m_download.View.Statuses.last(), u"Could not contact server");
    }
    EXPECT_GE(served.size(), 2); // all ten on one server: one chance in a quarter of a million
    EXPECT_GE(interpreted, 1);
}

} // namespace
} // namespace sky::net
