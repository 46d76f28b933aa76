#include "gui_fixture.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

// Alerts on a real desktop session bus: a stand-in notification service records what the program
// sends and clicks it.
namespace {

using namespace sky::gui;

TEST_F(Gui, AFriendInTheSecondFeedIsNotifiedOnTheDesktopAndAClickShowsThem) {
    if (QStandardPaths::findExecutable(u"dbus-run-session"_s).isEmpty())
        GTEST_SKIP() << "no dbus-run-session";
    Write(u"data/friends.dat"_s, "111111\n");
    const QString stranger = sky::network::testing::PilotLine(0, u"0=AFR1|1=999999|5=48|6=2"_s);
    const QString friendLine = sky::network::testing::PilotLine(0, u"0=DLH1|1=111111|2=Anna Berg|5=50|6=8"_s);
    const QStringList feed = LocalFeed({stranger}, u"20261121140000"_s, 0);
    const QString record = m_home.filePath(u"notifications.txt"_s);

    QProcess session;
    session.setProcessChannelMode(QProcess::ForwardedChannels);
    session.start(u"dbus-run-session"_s,
                  QStringList{u"--"_s, kBuild + u"/tests/notification_stand_in"_s, record, u"--click"_s,
                              u"--"_s, kBuild + u"/skylantra"_s, u"--home"_s, m_home.path()} +
                      feed);
    const QString window = FindWindow(u"^Skylantra$"_s);
    ASSERT_FALSE(window.isEmpty());
    QThread::msleep(1500);
    LocalFeed({stranger, friendLine}, u"20261121140300"_s, 0);
    Keys(window, {u"i"_s});
    QThread::msleep(2000);

    const auto sent = sky::ReadWholeFile(record);
    ASSERT_TRUE(sent.has_value()) << "nothing was sent to the notification service";
    EXPECT_EQ(
        QString::fromUtf8(*sent),
        u"Friend Anna Berg (DLH1) is online on IVAO|Click to show on the map|default,Show on the map\n"_s);
    // The click came back: the friend's info box is open.
    EXPECT_GT(BlackIn(Grab(window), kInfoBox), 50000) << "no info box";
    ASSERT_TRUE(CloseAndWait(session, window));
}

} // namespace
