#include "view/map_session.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "geo/projection.h"
#include "render/aircraft_layer.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"
#include "view/keys.h"
#include "view/panels.h"
#include "testing/fakes.h"
#include "testing/gzip.h"
#include "testing/source_files.h"
#include "network/whazzup_lines.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

namespace lists = render::lists;
using render::RecordingGl;

// The bundled demo feeds as if they were on a web server.
sky::testing::FakeHttp DemoServer() {
    sky::testing::FakeHttp server;
    for (const QString& network : {u"ivao/"_s, u"vatsim/"_s})
        for (const QString& file : {u"status.txt"_s, u"whazzup.txt"_s, u"whazzup.txt.gz"_s})
            server.Answers[u"http://demo.example/"_s + network + file] =
                sky::testing::SourceFile(u"data/demo/"_s + network + file);
    return server;
}

class Session : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_home.isValid());
        Write(u"data/coastline.dat"_s, "50:0\n51:1\nend\n");
        Write(u"data/countries.dat"_s, "50:5\n51:6\nend\n");
        const QString source = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/"_s;
        for (const QString& file : {u"airports.dat"_s, u"firlist.dat"_s, u"firdisplay.dat"_s})
            QFile::copy(source + file, m_home.filePath(u"data/"_s + file));
        m_server.Answers[u"http://demo.example/feed/status.txt"_s] = "url0=whazzup.txt\n\n\n\n\n";
        MakeSession({u"http://demo.example/ivao/status.txt"_s, u"http://demo.example/vatsim/status.txt"_s});
    }
    // A new session reading the networks' status files from these addresses.
    void MakeSession(const std::array<QString, 2>& status, const Settings& settings = {},
                     const Friends& friends = {}, history::HistoryStore* history = nullptr,
                     std::optional<Folders> folders = {}) {
        network::FeedAddresses feed;
        feed.Status = status;
        m_session = std::make_unique<MapSession>(folders.value_or(Folders::OneFolder(m_home.path())),
                                                 settings, friends, m_gl, m_host, m_server, history, feed);
        m_session->Downloader().Now = [this] { return m_now; };
        m_session->Downloader().Random = [](int) { return 0; };
    }

    void Write(const QString& name, const QByteArray& bytes) {
        ASSERT_TRUE(WriteFileMakingFolder(m_home.filePath(name), bytes).Ok);
    }

    void StartAndDownload(int network) {
        ASSERT_TRUE(m_session->StartUp().isEmpty());
        m_session->Downloader().BtnDownload(network);
    }

    // A new session on a feed of its own for IVAO, started.
    void StartOwnFeed(const Settings& settings = {}, const Friends& friends = {},
                      history::HistoryStore* history = nullptr) {
        MakeSession({u"http://demo.example/feed/status.txt"_s, QString()}, settings, friends, history);
        ASSERT_TRUE(m_session->StartUp().isEmpty());
    }
    // The feed of that time with these client lines, downloaded three minutes after the last.
    void DownloadOwnFeed(const QString& stamp, const QStringList& clients) {
        m_server.Answers[u"http://demo.example/feed/whazzup.txt"_s] =
            network::testing::WhazzupText(clients, stamp, 1).toUtf8();
        m_now = m_now.addSecs(180);
        m_session->Downloader().BtnDownload(0);
    }
    // What the Companion answers to a line.
    QString Answer(const QString& line) {
        const QString before = m_session->Companion().PaneText();
        m_session->CompanionEnter(line);
        return m_session->Companion().PaneText().mid(before.size()).trimmed();
    }

    QTemporaryDir m_home;
    RecordingGl m_gl;
    sky::testing::FakeMapHost m_host;
    sky::testing::FakeHttp m_server = DemoServer();
    QDateTime m_now = QDateTime(QDate(2026, 11, 21), QTime(15, 0));
    std::unique_ptr<MapSession> m_session;
};

// The lists of the frame, the globe and what is read, no more; the traffic scene's tests tell what each
// list holds.
TEST_F(Session, StartUpBuildsTheMapAndNamesAMissingGeographyFile) {
    QFile::remove(m_home.filePath(u"data/countries.dat"_s));
    EXPECT_TRUE(m_session->StartUp().endsWith(u"countries.dat"));
    for (int list : {lists::kFrame, lists::kGrid, lists::kGlobe, lists::kCoastlines, lists::kStatusLine,
                     lists::kClientCount, lists::kNetworkMarks})
        EXPECT_TRUE(m_gl.IsList(list)) << list;
    EXPECT_FALSE(m_gl.IsList(lists::kBorders));
    EXPECT_FALSE(m_gl.IsList(lists::kTitleBox));
    EXPECT_EQ(m_session->Display().StatusText, u"Ready");
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::None);
    EXPECT_TRUE(m_session->Downloads().DownloadIdle);
}

TEST_F(Session, TheDownloadButtonShowsTheNetworksTrafficOrBothCompared) {
    Write(u"data/whazzup.txt"_s, "stale");
    StartAndDownload(0);
    EXPECT_EQ(m_session->Display().ShownNetwork, 0);
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1423Z displayed");
    EXPECT_TRUE(m_gl.IsList(lists::TrafficBase(0) + lists::kPlanes));
    // The IVAO data file is not kept once drawn.
    EXPECT_FALSE(QFile::exists(m_home.filePath(u"data/whazzup.txt"_s)));
    EXPECT_EQ(m_session->Downloader().AutoDownloadCountdown(), 5 * 60);

    m_session->KeyUp(keys::Letter('B'), 0);
    EXPECT_EQ(m_session->Display().ShownNetwork, 2);
    EXPECT_EQ(m_session->Display().StatusText, u"Merged data of 1423Z/1423Z displayed");
    EXPECT_TRUE(m_gl.IsList(lists::TrafficBase(2) + lists::kPlanes));
}

// The download's tests keep the tables; here the lists drawn from them stay too.
TEST_F(Session, AFailedDownloadKeepsTheOldTrafficAndSaysWhy) {
    StartAndDownload(1);
    EXPECT_EQ(m_host.Messages.size(), 1); // the demo status file's broadcast
    m_server.Answers.clear();
    m_now = m_now.addSecs(3600);
    m_session->Downloader().BtnDownload(1);
    EXPECT_EQ(m_session->Display().StatusText, u"Could not contact server");
    EXPECT_TRUE(m_gl.IsList(lists::TrafficBase(1) + lists::kPlanes));
}

TEST_F(Session, AClickOpensTheNearestClientsBoxAndBesideTheGlobeClears) {
    StartOwnFeed();
    // The map starts looking down on 54.15 N 13.34 E: DLH1 in the window's middle, FAR beside it.
    DownloadOwnFeed(u"20261121140000"_s, {network::testing::PilotLine(0, u"0=FAR|5=54.15|6=14.5"_s),
                                          network::testing::PilotLine(0, u"0=DLH1|5=54.15|6=13.34"_s)});
    m_session->Pointer().Click(403, 300);
    ASSERT_TRUE(m_session->Selected().has_value());
    EXPECT_EQ(m_session->Selected()->Slot, 2);
    EXPECT_TRUE(m_gl.IsList(lists::kHighlight));
    ASSERT_EQ(m_session->PanelController().Mode(), PanelMode::InfoBox);
    EXPECT_TRUE(m_session->Display().StatusText.startsWith(u"DLH1"_s));
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(lists::kInfoBox)).rfind("DLH1", 0), 0u);
    // Its callsign once: by the highlight, not by a label of its own as well.
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(lists::kHighlight)), "DLH1");
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(lists::TrafficBase(0) + lists::kPlaneLabels)).find("DLH1"),
              std::string::npos);
    m_session->KeyUp(keys::kEscape, 0);
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::None);
    m_session->Scene().SetView({m_session->View().ViewX, m_session->View().ViewY, 0.3f});
    m_session->Pointer().Click(1, 30);
    EXPECT_FALSE(m_session->Selected().has_value());
    EXPECT_FALSE(m_gl.IsList(lists::kHighlight));
}

TEST_F(Session, AClickOnACrowdsNumberOpensItsAirportsBoardAndItsCardCountsIt) {
    StartAndDownload(1);
    const auto& crowds = m_session->Scene().Crowds().Crowds;
    const auto seen = std::find_if(crowds.begin(), crowds.end(), [&](const render::Crowd& c) {
        const auto p = geo::LatLonToScreen(c.Lat, c.Lon, 800, 600, m_session->View());
        return p && p->X > 100 && p->X < 480 && p->Y > 100 && p->Y < 500;
    });
    ASSERT_NE(seen, crowds.end());
    const render::Crowd crowd = *seen; // the crowds are planned again with every placement of labels
    const auto point = geo::LatLonToScreen(crowd.Lat, crowd.Lon, 800, 600, m_session->View());
    const double x = point->X + render::kCrowdTextDx + 3, y = point->Y;
    ASSERT_TRUE(m_session->Pointer().Hover(x, y));
    EXPECT_NE(RecordingGl::PrintedText(m_gl.List(lists::kHoverCard)).find(" on the ground"),
              std::string::npos);
    m_session->Pointer().Click(x, y);
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::Table);
    EXPECT_EQ(m_session->Panels().BoardAirport, crowd.Airport);
}

TEST_F(Session, LabelsArePlacedForTheViewWhenItComesToRestAndDTurnsDeclutteringOff) {
    StartAndDownload(1);
    const int list = lists::TrafficBase(1) + lists::kPlaneLabels;
    const auto placed = RecordingGl::Printed(m_gl.List(list));
    m_session->Pointer().Drag(400, 300, 250, 320); // the labels move with the globe while it turns
    EXPECT_EQ(RecordingGl::Printed(m_gl.List(list)), placed);
    m_session->Scene().ViewSettled();
    const auto settled = RecordingGl::Printed(m_gl.List(list));
    EXPECT_NE(settled, placed);
    m_session->Resize(1024, 768); // a larger window: more room, and the labels placed for it
    m_session->Scene().ViewSettled();
    EXPECT_GT(RecordingGl::Printed(m_gl.List(list)).size(), settled.size());
    m_session->KeyUp(keys::Letter('D'), 0);
    EXPECT_EQ(m_session->Display().StatusText, u"All labels shown");
    EXPECT_FALSE(m_session->Config().DeclutterLabels);
    EXPECT_GT(RecordingGl::Printed(m_gl.List(list)).size(), placed.size() * 2); // every aircraft's
}

TEST_F(Session, TheListPagesAndARowOpensThatClient) {
    StartAndDownload(0);
    m_session->KeyUp(keys::Letter('L'), 0);
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::Table);
    const auto before = RecordingGl::Printed(m_gl.List(lists::kListPanel));
    m_session->KeyUp(keys::kRight, 0);
    EXPECT_EQ(m_session->Panels().PageIndex, 1);
    EXPECT_NE(RecordingGl::Printed(m_gl.List(lists::kListPanel)), before);
    const PanelLayout layout = LayoutPanels(800, 600);
    const auto click = [&](const PixelRect& r) { m_session->Pointer().Click(r.X + 5, r.Y + 5); };
    click(layout.NextPage);
    EXPECT_EQ(m_session->Panels().PageIndex, 2);
    click(layout.Rows[0]);
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::TableAndInfoBox);
    EXPECT_EQ(m_session->Panels().InfoClient->Slot,
              2 * int(layout.Rows.size()) + 1); // the third page's first
    // A header sorts by its column from the first page (the panels' tests sort), the same one again
    // turns the order round.
    for (bool descending : {false, true}) {
        click(layout.Headers[0]);
        EXPECT_EQ(m_session->Panels().Sorts[size_t(ListPage::Pilots)].Column, 0);
        EXPECT_EQ(m_session->Panels().Sorts[size_t(ListPage::Pilots)].Descending, descending);
        EXPECT_EQ(m_session->Panels().PageIndex, 0);
    }
    m_session->Resize(1024, 768);
    EXPECT_EQ(m_session->PanelController().Mode(), PanelMode::None);
    // Each frame brings the view back into range, each correction once.
    m_session->Scene().SetView({600.0f, -95.0f, 80.0f});
    EXPECT_EQ(m_session->Frame().View.ViewX, 240.0f);
    EXPECT_EQ(m_session->Frame().View.ViewX, -120.0f);
}

TEST_F(Session, TheFriendButtonRebuildsWhatShowsFriends) {
    Settings settings;
    settings.DeclutterLabels = false;
    MakeSession({u"http://demo.example/ivao/status.txt"_s, QString()}, settings);
    StartAndDownload(0);
    m_session->PanelController().OpenInfoBox({0, true, 5});
    const auto& pilot = m_session->Tables()[0].Pilots[5];
    m_session->PanelController().ToggleInfoClientFriend();
    EXPECT_EQ(m_session->Display().StatusText,
              pilot.RealName + u" ("_s + pilot.VID + u") added to friends list"_s);
    EXPECT_TRUE(m_session->FriendList().Contains(pilot.VID));
    // Only friends shown, then the friend removed: the scene is rebuilt at once, without that pilot.
    m_session->KeyUp(keys::kEscape, 0);
    m_session->KeyUp(keys::F(2), 0);
    ASSERT_TRUE(m_session->Display().FriendsOnly);
    EXPECT_EQ(RecordingGl::Printed(m_gl.List(lists::kPlaneLabels + 10)).size(),
              size_t(pilot.Callsign.size()));
    m_session->PanelController().OpenInfoBox({0, true, 5});
    m_session->PanelController().ToggleInfoClientFriend();
    EXPECT_TRUE(RecordingGl::Printed(m_gl.List(lists::kPlaneLabels + 10)).empty());
    EXPECT_TRUE(m_session->Display().StatusText.endsWith(u"removed from friends list"_s));
}

// Three downloads of a feed whose aircraft moves: the store keeps them, the selection shows where it
// flew, and the keys step back through what was kept, stat answering as of then.
TEST_F(Session, TheHistoryKeepsEachDownloadTrailsTheSelectionAndReplaysIt) {
    sky::testing::MemoryHistory history;
    StartOwnFeed({}, {}, &history);
    // A second aircraft in the first snapshot only.
    const QString other = network::testing::PilotLine(0, u"0=AFR1|1=999999|5=48"_s);
    for (int step = 0; step < 3; ++step) {
        history.WriterBusy = step == 2; // the newest download is still on its way to the file
        DownloadOwnFeed(u"2026112114"_s + QString::number(step) + u"000"_s,
                        QStringList{network::testing::PilotLine(
                            0, u"0=DLH1|1=200001|5=%1|6=8|11=EDDF|13=EKCH|30=DCT"_s.arg(50 + step))} +
                            (step == 0 ? QStringList{other} : QStringList{}));
    }
    const auto counted = [&] { return RecordingGl::PrintedText(m_gl.List(lists::kClientCount)); };
    ASSERT_EQ(history.Kept.size(), 2u);
    m_session->Scene().Select(network::ClientRef{0, true, 1});
    // Flown: through the three positions; ahead: dashed to the destination.
    EXPECT_EQ(RecordingGl::Count(m_gl.List(lists::kHighlight), RecordingGl::Op::Begin,
                                 int(render::Primitive::LineStrip)),
              2);
    // T: the trails of the two hours before the data's own time, whatever the clock says.
    m_session->KeyUp(keys::Letter('T'), 0);
    EXPECT_EQ(RecordingGl::Count(m_gl.List(lists::kAllTrails), RecordingGl::Op::Vertex), 2); // those written
    m_session->KeyUp(keys::Letter('T'), 0);

    // The map never waits for the writer: stepping back reads what is written, at once.
    m_session->Companion().SetSink({});
    QElapsedTimer stepping;
    stepping.start();
    m_session->KeyUp(keys::F(7), 0);
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1410Z (replay 2/3)");
    m_session->KeyUp(keys::F(7), 0);
    EXPECT_TRUE(Answer(u"stat"_s).contains(u"IVAO data of 1400Z"_s));
    EXPECT_FLOAT_EQ(m_session->Tables()[0].Pilots[1].Latitude, 50.0f);
    EXPECT_NE(counted().find("2 pilots"), std::string::npos); // the count panel shows the snapshot too
    m_session->KeyUp(keys::F(7), 0);                          // nothing earlier
    EXPECT_EQ(m_session->Display().StatusText, u"No earlier data kept");
    m_session->Downloader().AutoDownloadTimerTick(); // no automatic download replaces a replay
    EXPECT_EQ(history.Kept.size() + history.Pending.size(), 3u);
    m_session->KeyUp(keys::F(9), 0); // live: the newest download, written or not
    EXPECT_TRUE(Answer(u"stat"_s).contains(u"IVAO data of 1420Z"_s));
    EXPECT_FALSE(m_session->Display().Replaying);
    EXPECT_NE(counted().find("1 pilots"), std::string::npos);
    EXPECT_LT(stepping.elapsed(), 1000);
    // A click on the chart replays that moment; the info box's chart button asks for the flight's chart.
    m_session->ReplaySnapshot(0, 2);
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1410Z (replay 2/3)");
    m_session->PanelController().OpenInfoBox({0, true, 1});
    const render::PixelRect chart =
        render::LayoutPanels(m_session->State().WidthPx, m_session->State().HeightPx).ChartButton;
    m_session->Pointer().Click(chart.X + 5, chart.Y + 5);
    EXPECT_EQ(m_host.Charts, QStringList{u"0|DLH1|200001"_s});
    history.WriterBusy = false;

    // The same history given to replay, without a download: its newest snapshot at once, F7 and F8 step;
    // an empty one says so.
    history.Flush();
    sky::testing::MemoryHistory empty;
    for (auto* store : {&empty, &history}) {
        StartOwnFeed({}, {}, store);
        m_session->History().ShowNewest();
        if (store == &empty) {
            EXPECT_EQ(m_session->Display().StatusText, u"The history holds no IVAO data");
        }
    }
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1420Z (replay 3/3)");
    m_session->KeyUp(keys::F(8), 0);
    EXPECT_EQ(m_session->Display().StatusText, u"Showing the newest data");
    m_session->KeyUp(keys::F(7), 0);
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1410Z (replay 2/3)");

    // The same data downloaded again, in the next run or in the same, is kept once.
    StartOwnFeed({}, {}, &history);
    for (const QString& stamp : {u"20261121142000"_s, u"20261121142000"_s, u"20261121143000"_s})
        DownloadOwnFeed(stamp, {network::testing::PilotLine(0, u"0=DLH1|1=200001|5=53|6=8"_s)});
    history.Flush();
    EXPECT_EQ(history.Kept.size(), 4u);
}

// Two downloads of a feed; a friend and a watched tower come online in the second.
TEST_F(Session, AFriendOrAWatchedStationComingOnlineIsToldEveryWayAndIsOneClickAway) {
    Write(u"data/watch.dat"_s, "EDDF_*\n");
    StartOwnFeed({}, Friends::Parse(u"111111\n"_s));
    const QString stranger = network::testing::PilotLine(0, u"0=AFR1|1=999999|5=48|6=2"_s);
    DownloadOwnFeed(u"20261121140000"_s, {stranger});
    EXPECT_TRUE(m_host.Notified.isEmpty()); // the first download of a run tells nothing
    DownloadOwnFeed(u"20261121140300"_s,
                    {stranger, network::testing::PilotLine(0, u"0=DLH1|1=111111|2=Anna Berg|5=50|6=8"_s),
                     network::testing::AtcLine(0, u"0=EDDF_TWR|1=999998|5=50.03|6=8.57"_s)});
    EXPECT_EQ(m_host.Notified, (QStringList{u"0|DLH1|Friend Anna Berg (DLH1) is online on IVAO"_s,
                                            u"0|EDDF_TWR|EDDF_TWR opened on IVAO"_s}));
    EXPECT_TRUE(m_session->Companion().PaneText().contains(u"Friend Anna Berg (DLH1) is online on IVAO"_s));
    EXPECT_EQ(m_session->Display().StatusText, u"EDDF_TWR opened on IVAO");

    // A click on a notification (or Go) selects the friend, centres on them and opens their box.
    ASSERT_TRUE(m_session->GoTo(0, u"dlh1"_s));
    ASSERT_TRUE(m_session->Selected().has_value());
    EXPECT_EQ(m_session->Tables()[0].Pilots[size_t(m_session->Selected()->Slot)].Callsign, u"DLH1");
    EXPECT_TRUE(m_session->Panels().InfoClient.has_value());
    EXPECT_FALSE(m_session->GoTo(0, u"KLM9"_s));

    // The Companion edits the watch list, which is kept at once.
    EXPECT_EQ(Answer(u"watch *_CTR"_s), u"> watch *_CTR\r\nWatching *_CTR");
    EXPECT_EQ(Answer(u"unwatch eddf_*"_s), u"> unwatch eddf_*\r\nNo longer watching EDDF_*");
    EXPECT_EQ(Answer(u"watch"_s), u"> watch\r\nWatched: *_CTR");
    EXPECT_EQ(Answer(u"watch a:b"_s), u"> watch a:b\r\nNot a callsign pattern: a:b");
    EXPECT_EQ(ReadWholeFile(m_home.filePath(u"data/watch.dat"_s)), QByteArray("*_CTR\n"));
    // The tower's leaving is no news now that it is not watched; the friend's is.
    DownloadOwnFeed(u"20261121140600"_s, {stranger});
    EXPECT_EQ(m_host.Notified.size(), 3);
    EXPECT_EQ(m_host.Notified.back(), u"0|DLH1|Friend Anna Berg (DLH1) went offline on IVAO");

    // The terminal Companion on this home changes both lists: the map takes them up when it looks.
    Write(u"data/watch.dat"_s, "*_CTR\nLON_*\n");
    Write(u"data/friends.dat"_s, "333333\n");
    m_session->CheckSharedFiles();
    EXPECT_EQ(m_session->FriendList().Entries(), QStringList{u"333333"_s});
    EXPECT_EQ(m_session->Alerts().Watches().Patterns(), (QStringList{u"*_CTR"_s, u"LON_*"_s}));
    EXPECT_EQ(m_session->Display().StatusText, u"Friends list changed by another program");
}

// A home folder that cannot be written sends the downloads elsewhere (the cache); full tables are said
// in the status line once a run.
TEST_F(Session, DownloadsGoToTheirOwnFolderAndFullTablesAreSaidOnce) {
    Folders folders = Folders::OneFolder(m_home.path());
    folders.Downloads = m_home.filePath(u"cache"_s);
    Settings settings;
    settings.MaxPilots = 800;
    MakeSession({u"http://demo.example/ivao/status.txt"_s, QString()}, settings, {}, nullptr, folders);
    StartAndDownload(0);
    EXPECT_EQ(m_session->Display().StatusText,
              u"IVAO: only 800 of 900 pilots kept; the Preferences raise the limits");
    EXPECT_TRUE(QFile::exists(m_home.filePath(u"cache/whazzup.txt.gz"_s)));
    EXPECT_FALSE(QFile::exists(m_home.filePath(u"cache/whazzup.txt"_s))); // not kept once drawn
    EXPECT_FALSE(QFile::exists(m_home.filePath(u"data/whazzup.txt.gz"_s)));

    const QString gz = u"http://demo.example/ivao/whazzup.txt.gz"_s;
    QByteArray newer = ReadWholeFile(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/demo/ivao/whazzup.txt"_s)
                           .value_or(QByteArray());
    newer.replace("UPDATE = 20261121142300", "UPDATE = 20261121143000");
    m_server.Answers[gz] = sky::testing::Gzip(newer);
    m_now = m_now.addSecs(3600);
    m_session->Downloader().BtnDownload(0);
    EXPECT_EQ(m_session->Display().StatusText, u"IVAO data of 1430Z displayed");
    EXPECT_EQ(m_session->Tables()[0].DroppedPilots, 100);
}

TEST_F(Session, AutomaticDownloadRunsFromStartUp) {
    Settings settings;
    settings.AutoDownload = true;
    StartOwnFeed(settings);
    EXPECT_TRUE(m_host.AutoDownload);
    m_server.Answers[u"http://demo.example/feed/whazzup.txt"_s] =
        m_server.Answers[u"http://demo.example/ivao/whazzup.txt"_s];
    m_session->Downloader().AutoDownloadTimerTick();
    EXPECT_GT(m_session->Tables()[0].ConnectedClients, 0);
}

// A pilot of the own feed: callsign, member, where, type, route, level and ground speed.
QString FlightLine(const QString& callsign, const QString& member, double lat, double lon, const QString& to,
                   int speedKts = 450) {
    return network::testing::PilotLine(0, {{0, callsign},
                                           {1, member},
                                           {2, u"Test Pilot"_s},
                                           {5, QString::number(lat)},
                                           {6, QString::number(lon)},
                                           {7, u"30000"_s},
                                           {8, QString::number(speedKts)},
                                           {9, u"A320"_s},
                                           {11, u"LFPG"_s},
                                           {13, to}});
}

QStringList Callsigns(const TableContent& table) {
    QStringList callsigns;
    for (const QStringList& row : table.Rows)
        callsigns.append(row.value(0));
    return callsigns;
}

TEST_F(Session, AFilterNarrowsTheMapListsSearchAndPointerButNeverTheCompanion) {
    StartOwnFeed({}, Friends::Parse(u"222\n"_s));
    DownloadOwnFeed(u"20261121140000"_s, {FlightLine(u"DLH1"_s, u"111"_s, 50, 8, u"EDDF"_s),
                                          FlightLine(u"DLH2"_s, u"222"_s, 51, 9, u"EGLL"_s),
                                          FlightLine(u"BAW3"_s, u"333"_s, 52, 1, u"EDDF"_s)});
    const QString stat = Answer(u"stat"_s);
    m_session->Scene().SetView({4.0f, -51.0f, 4.0f});
    const auto baw = geo::LatLonToScreen(52, 1, 800, 600, m_session->View());
    ASSERT_TRUE(baw && m_session->Pointer().ClientAt(baw->X, baw->Y, 4));

    EXPECT_TRUE(m_session->Filters().Apply(u"dlh what:ever"_s) == QStringList{u"what:ever"_s});
    EXPECT_EQ(m_session->Display().StatusText, u"Filter applied (2 of 3 pilots)");
    EXPECT_TRUE(m_session->Frame().Filtered);
    EXPECT_NE(RecordingGl::PrintedText(m_gl.List(lists::kFilterMark)).find("filtered: 2 of 3 pilots"),
              std::string::npos);
    EXPECT_FALSE(m_session->Pointer().ClientAt(baw->X, baw->Y, 4));
    m_session->PanelController().OpenList();
    EXPECT_EQ(Callsigns(m_session->PanelController().ShownTable()), (QStringList{u"DLH1"_s, u"DLH2"_s}));
    EXPECT_EQ(Answer(u"stat"_s), stat);
    EXPECT_TRUE(Answer(u"dist BAW3 DLH1"_s).contains(u"Distance: "_s));

    m_session->Filters().Apply(u"to:EDDF"_s); // the open list follows
    EXPECT_EQ(Callsigns(m_session->PanelController().ShownTable()), (QStringList{u"DLH1"_s, u"BAW3"_s}));
    m_session->Filters().Apply(u"to:EDDF friends"_s); // friends only, as F2 turns it on
    EXPECT_TRUE(m_session->Display().FriendsOnly);
    EXPECT_EQ(m_session->Filters().Text(), u"to:EDDF friends");
    EXPECT_TRUE(Callsigns(m_session->PanelController().ShownTable()).isEmpty());
    const auto clientsFound = [&] {
        const auto found = m_session->Search(u"DLH"_s);
        return std::count_if(found.begin(), found.end(),
                             [](const auto& r) { return r.Kind == search::ResultKind::Client; });
    };
    EXPECT_EQ(clientsFound(), 0);

    m_session->KeyUp(keys::kEscape, 0);
    m_session->KeyUp(keys::Letter('X'), 0); // X: everything shows again
    EXPECT_FALSE(m_session->Display().FriendsOnly);
    EXPECT_EQ(m_session->Filters().Text(), QString());
    EXPECT_FALSE(m_session->Frame().Filtered);
    EXPECT_FALSE(m_gl.IsList(lists::kFilterMark));
    EXPECT_EQ(clientsFound(), 2);
}

TEST_F(Session, SavedFiltersAndFriendsNamesSurviveARestart) {
    StartOwnFeed({}, Friends::Parse(u"111\n"_s));
    m_session->Filters().Apply(u"DLH to:EDDF"_s);
    EXPECT_TRUE(m_session->Filters().Save(u"Lufthansa in"_s).Ok);
    m_session->NameFriend(u"111"_s, u"  Anna  "_s);
    EXPECT_EQ(m_session->Display().StatusText, u"Member 111 named Anna");
    StartOwnFeed({}, Friends::Parse(u"111\n"_s));
    EXPECT_EQ(m_session->FriendName(u"111"_s), u"Anna");
    EXPECT_EQ(m_session->Filters().Text(), QString());
    EXPECT_TRUE(m_session->Filters().Pick(u"lufthansa IN"_s));
    EXPECT_EQ(m_session->Filters().Text(), u"DLH to:EDDF");
    EXPECT_FALSE(m_session->Filters().Pick(u"Air France"_s));
    EXPECT_TRUE(m_session->Filters().Forget(u"Lufthansa in"_s).Ok);
    EXPECT_EQ(ReadWholeFile(m_home.filePath(u"data/filters.dat"_s)), QByteArray());
    EXPECT_EQ(ReadWholeFile(m_home.filePath(u"data/friendnames.dat"_s)), QByteArray("111\tAnna\n"));
}

TEST_F(Session, AFriendsNameShowsInTheLabelTheListTheCardAndTheAlert) {
    StartOwnFeed({}, Friends::Parse(u"111\n"_s));
    const QString other = FlightLine(u"AFR1"_s, u"999"_s, 48, 2, u"EDDF"_s);
    DownloadOwnFeed(u"20261121140000"_s, {other});
    m_session->NameFriend(u"111"_s, u"Anna"_s);
    DownloadOwnFeed(u"20261121140300"_s, {other, FlightLine(u"DLH1"_s, u"111"_s, 50, 8, u"EDDF"_s)});
    EXPECT_EQ(m_host.Notified, QStringList{u"0|DLH1|Friend Anna (DLH1) is online on IVAO"_s});
    const auto labels = [&] {
        return RecordingGl::PrintedText(m_gl.List(lists::TrafficBase(0) + lists::kPlaneLabels));
    };
    EXPECT_NE(labels().find("DLH1 Anna"), std::string::npos);
    const TableContent pilots =
        ListPageContent(0, m_session->Tables()[0], ListPage::Pilots, 0, 20, m_session->FriendList(), {}, {},
                        {}, &m_session->State().FriendNames);
    EXPECT_EQ(pilots.Rows[1][1], u"Anna (Test Pilot)");
    EXPECT_EQ(m_session->Search(u"anna"_s).at(0).Text, u"DLH1  Anna (Test Pilot)  LFPG-EDDF");
    m_session->Scene().SetView({8.0f, -50.0f, 4.0f});
    ASSERT_TRUE(m_session->Pointer().Hover(400, 300));
    EXPECT_NE(RecordingGl::PrintedText(m_gl.List(lists::kHoverCard)).find("Anna (Test Pilot)"),
              std::string::npos);
    Settings instead = m_session->Config();
    instead.FriendNamesInstead = true;
    m_session->ApplyPreferences(instead);
    EXPECT_EQ(labels().find("DLH1"), std::string::npos);
    EXPECT_NE(labels().find("Anna"), std::string::npos);
}

TEST_F(Session, TheMeasuringLineAgreesWithDistAndAClickOrEscapeClearsIt) {
    StartOwnFeed();
    DownloadOwnFeed(u"20261121140000"_s, {FlightLine(u"DLH1"_s, u"111"_s, 50, 8, u"EDDF"_s, 480),
                                          FlightLine(u"BAW2"_s, u"222"_s, 51.5, -0.5, u"EGLL"_s)});
    m_session->Scene().SetView({4.0f, -51.0f, 3.0f});
    const auto from = geo::LatLonToScreen(50, 8, 800, 600, m_session->View());
    const auto to = geo::LatLonToScreen(51.5f, -0.5f, 800, 600, m_session->View());
    ASSERT_TRUE(from && to);
    ASSERT_TRUE(m_session->Measurer().Begin(from->X + 5, from->Y - 3));
    m_session->Measurer().Follow(to->X - 4, to->Y + 4);
    const QString dist = Answer(u"dist DLH1 BAW2"_s).section(u"Distance: "_s, 1).section(u' ', 0, 0);
    ASSERT_FALSE(dist.isEmpty());
    const QString& status = m_session->Display().StatusText;
    EXPECT_TRUE(status.startsWith(u"Measured DLH1 - BAW2: "_s + dist + u" nm  "_s)) << status.toStdString();
    EXPECT_TRUE(status.endsWith(u" km, course 289° true, 42 min at 480 kt"_s)) << status.toStdString();
    EXPECT_TRUE(m_session->Frame().Measuring);
    m_session->Pointer().Click(to->X, to->Y); // clears the line and selects nothing
    EXPECT_FALSE(m_gl.IsList(lists::kMeasureLine));
    EXPECT_FALSE(m_session->Selected().has_value());
    ASSERT_TRUE(m_session->Measurer().Begin(400, 300));
    m_session->KeyUp(keys::kEscape, 0);
    EXPECT_FALSE(m_session->Frame().Measuring);
    m_session->Scene().SetView({4.0f, -51.0f, 0.5f});
    EXPECT_FALSE(m_session->Measurer().Begin(5, 5)); // beside the globe
}

// The weather layer asks for its airports' METARs in one request while it is on, again only once ten
// minutes have passed (an answer without reports keeps the list known), and nothing while it is off;
// the card of an airport's dot tells its weather.
TEST_F(Session, TheWeatherLayerAsksInOneRequestAtMostEveryTenMinutesAndOnlyWhileOn) {
    Settings settings;
    settings.MetarListURL = u"http://wx.example/metar?ids={ids}"_s;
    StartOwnFeed(settings);
    DownloadOwnFeed(u"20261121140000"_s, {FlightLine(u"DLH1"_s, u"111"_s, 51, 5, u"EDDF"_s)});
    const QString address = u"http://wx.example/metar?ids=EDDF,LFPG"_s;
    m_server.Answers[address] = "EDDF 211450Z 24010KT 2000 BR OVC008 08/07 Q1002\n";
    const auto asked = [&] { return m_server.Requests.count(address); };
    m_session->MinuteTick();
    EXPECT_EQ(asked(), 0);
    m_session->KeyUp(keys::Letter('W'), 0);
    EXPECT_EQ(asked(), 1);
    EXPECT_TRUE(m_gl.IsList(lists::kWeather));
    m_server.Answers[address] = "<html>Down for maintenance</html>\n";
    for (const auto& [minutes, requests] : {std::pair{9, 1}, std::pair{2, 2}}) {
        m_now = m_now.addSecs(60 * minutes);
        m_session->MinuteTick();
        EXPECT_EQ(asked(), requests) << minutes;
    }
    m_session->Scene().SetView({8.5706f, -50.0333f, 8.0f});
    ASSERT_TRUE(m_session->Pointer().Hover(400, 300));
    EXPECT_NE(
        RecordingGl::PrintedText(m_gl.List(lists::kHoverCard)).find("Flight category IFRMETAR EDDF 211450Z"),
        std::string::npos)
        << RecordingGl::PrintedText(m_gl.List(lists::kHoverCard));
    m_session->KeyUp(keys::Letter('W'), 0);
    m_now = m_now.addSecs(3600);
    m_session->MinuteTick();
    EXPECT_EQ(asked(), 2);
}

} // namespace
} // namespace sky::view
