#include "view/download_timers.h"

#include <gtest/gtest.h>

namespace sky::view {
namespace {

class Timers : public ::testing::Test {
protected:
    void SetUp() override {
        m_downloads.DownloadIdle = true;
        m_tables[0].ReloadMinutes = 2;
        m_tables[0].LastDownload = m_start;
    }
    TimerContext Context(qint64 secondsLater) {
        const auto download = [this](int n) {
            m_downloaded.push_back(n);
            m_countdown = 300;
        };
        const auto marksChanged = [this] { ++m_markChanges; };
        return {m_countdown, m_shown,     m_tables, m_downloads, m_start.addSecs(secondsLater),
                download,    marksChanged};
    }

    void Auto(qint64 secondsLater) {
        TimerContext context = Context(secondsLater);
        AutoDownloadTick(context);
    }
    void Marks(qint64 secondsLater) {
        TimerContext context = Context(secondsLater);
        DownloadTick(context);
    }

    QDateTime m_start = QDateTime(QDate(2026, 11, 21), QTime(12, 0));
    std::int16_t m_countdown = 300;
    int m_shown = 0;
    network::ClientTables m_tables;
    network::DownloadState m_downloads;
    std::vector<int> m_downloaded;
    int m_markChanges = 0;
};

TEST_F(Timers, TheAutomaticDownloadFires300TicksAfterTheLastAttempt) {
    for (int tick = 1; tick < 300; ++tick)
        Auto(tick);
    EXPECT_TRUE(m_downloaded.empty());
    Auto(300);
    EXPECT_EQ(m_downloaded, std::vector<int>{0});
}

TEST_F(Timers, TooEarlyOrBusyAsksAgainFiveSecondsLater) {
    m_countdown = 1;
    m_tables[0].ReloadMinutes = 10;
    Auto(60);
    EXPECT_EQ(m_countdown, kRetrySeconds);
    EXPECT_TRUE(m_downloaded.empty());

    m_countdown = 1;
    m_downloads.DownloadIdle = false;
    Auto(601);
    EXPECT_EQ(m_countdown, kRetrySeconds);

    m_countdown = 1;
    m_downloads.DownloadIdle = true;
    m_shown = 2; // both networks compared: nothing downloads
    Auto(601);
    EXPECT_TRUE(m_downloaded.empty());
    EXPECT_EQ(m_countdown, 0);
}

TEST_F(Timers, AReadyMarkStaysUntilTheReloadIntervalHasPassed) {
    m_downloads.Networks[0].DownloadReady = true;
    Marks(119);
    EXPECT_TRUE(m_downloads.Networks[0].DownloadReady);
    EXPECT_EQ(m_markChanges, 0);
    Marks(120);
    EXPECT_FALSE(m_downloads.Networks[0].DownloadReady);
    EXPECT_EQ(m_markChanges, 1);
}

} // namespace
} // namespace sky::view
