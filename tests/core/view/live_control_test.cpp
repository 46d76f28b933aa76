#include "view/live_control.h"

#include <cmath>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include "network/live_schedule.h"
#include "render/list_numbers.h"
#include "view/aircraft_motion.h"
#include "view/demo_live_feed.h"
#include "testing/fakes.h"
#include "testing/recording_gl.h"
#include "testing/source_files.h"
#include "view/keys.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

using network::FetchResult;
using network::LiveSchedule;

// Fetches go as planned: the interval after an answer, 30 s, 1, 2, 4, 5, 5 minutes after failures in a
// row, none while one runs.
TEST(LiveSchedule, WaitsTheIntervalAndBacksOffAfterFailures) {
    LiveSchedule schedule;
    schedule.SetInterval(20);
    EXPECT_TRUE(schedule.Due(1, 0));
    schedule.Started(1);
    EXPECT_FALSE(schedule.Due(1, 1'000'000)); // never doubled
    const struct {
        bool ok;
        int waitS;
    } rows[] = {{true, 20},   {false, 30},  {false, 60}, {false, 120}, {false, 240},
                {false, 300}, {false, 300}, {true, 20},  {false, 30}};
    qint64 nowMs = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.waitS);
        schedule.Finished(1, nowMs, row.ok);
        EXPECT_FALSE(schedule.Due(1, nowMs + row.waitS * 1000 - 1));
        EXPECT_TRUE(schedule.Due(1, nowMs + row.waitS * 1000));
        EXPECT_TRUE(schedule.Due(0, nowMs)); // each network its own
        nowMs += row.waitS * 1000;
        schedule.Started(1);
    }
}

// An answer is read when it is a new version: not for "not modified", nor for the stamp (or, without
// one, the bytes) read last.
TEST(LiveSchedule, ReadsOnlyNewAnswers) {
    const QByteArray v1 = R"({"update_timestamp": "2026-11-21T14:23:05Z", "pilots": [1]})";
    LiveSchedule schedule;
    const struct {
        FetchResult answer;
        bool isNew;
    } rows[] = {{{true, v1, {}, false, {u"\"a\""_s, {}}}, true},
                {{true, {}, {}, true, {}}, false},
                {{true, QByteArray(v1).replace("[1]", "[2]"), {}, false, {}}, false},
                {{true, R"({"updatedAt" : "1"})", {}, false, {}}, true},
                {{true, "no stamp", {}, false, {}}, true},
                {{true, "no stamp", {}, false, {}}, false},
                {{false, {}, u"refused"_s, false, {}}, false}};
    for (const auto& row : rows)
        EXPECT_EQ(schedule.IsNew(0, row.answer), row.isNew) << row.answer.Body.toStdString();
    EXPECT_EQ(schedule.Known(0).ETag, u"\"a\""); // kept from the answer that named it
}

// Great-circle steps, and when a feed's positions were reported.
TEST(AircraftMotion, AdvancesAlongTheTrackAndDatesTheReport) {
    const double degreeNm = geo::kEarthRadiusNm * geo::DegToRad;
    EXPECT_NEAR(Advanced(0, 0, 0, degreeNm).Lat, 1, 1e-4);
    EXPECT_NEAR(Advanced(0, 179.5f, 90, degreeNm).Lon, -179.5, 1e-4); // across the antimeridian
    const qint64 stampMs = QDateTime(QDate(2026, 11, 21), QTime(14, 23, 5), Qt::UTC).toMSecsSinceEpoch();
    EXPECT_EQ(ReportTimeMs(u"20261121142305"_s, stampMs + 7000, 30000), stampMs);
    EXPECT_EQ(ReportTimeMs(u"20261121142305"_s, stampMs - 1, 30000), stampMs - 1);         // from the future
    EXPECT_EQ(ReportTimeMs(u"20261121142305"_s, stampMs + 30001, 30000), stampMs + 30001); // too old
    EXPECT_EQ(ReportTimeMs(u"2026112114230x"_s, 5, 30000), 5);
    network::PilotRecord pilot; // a pilot's own report time, where the feed gives one
    EXPECT_EQ(PilotReportMs(pilot, stampMs + 5000, 30000), stampMs + 5000);
    pilot.ReportedAt = u"20261121142305"_s;
    EXPECT_EQ(PilotReportMs(pilot, stampMs + 5000, 30000), stampMs);
}

// Faster than 40 kt moves for two intervals at most; at a new report it glides there within a second.
TEST(AircraftMotion, MovesFastAircraftForTwoIntervalsAndGlidesToTheNextReport) {
    network::NetworkData data;
    data.PilotCount = 2;
    data.Pilots[1].Callsign = u"FAST"_s;
    data.Pilots[1].Heading = 90;
    data.Pilots[1].GroundSpeed = 480;
    data.Pilots[2].Callsign = u"TAXI"_s;
    data.Pilots[2].GroundSpeed = 39;
    AircraftMotion motion;
    motion.Reported(data, 0, 0, 15);
    const double degPerS = 480.0 / 3600 / (geo::kEarthRadiusNm * geo::DegToRad);
    for (const auto& [nowMs, lon, moving] :
         {std::tuple{0, 0.0, true}, {15000, 15 * degPerS, true}, {90000, 30 * degPerS, false}}) {
        EXPECT_EQ(motion.Step(nowMs), moving) << nowMs;
        EXPECT_NEAR(motion.Drawn()[1].Lon, lon, 1e-5) << nowMs;
        EXPECT_EQ(motion.Drawn()[2].Lon, 0.0f); // the taxiing one stays
    }
    // Reported back at the start: half way back after half a second, there (and moving on) after one.
    motion.Step(10000);
    motion.Reported(data, 10000, 10000, 15);
    EXPECT_TRUE(motion.Step(10500));
    EXPECT_NEAR(motion.Drawn()[1].Lon, (10 * degPerS + 0.5 * degPerS) / 2, 1e-5);
    motion.Step(11000);
    EXPECT_NEAR(motion.Drawn()[1].Lon, 1 * degPerS, 1e-5);
}

// The demo's feed made live: every 15 s its fast aircraft have flown on and its stamp is that moment's;
// within a step, "not modified"; live off, the file as shipped.
TEST(DemoLiveFeed, AdvancesTheDemoEveryFifteenSeconds) {
    sky::testing::FakeHttp files;
    const QString demo = u"file:///demo/vatsim-data.json"_s;
    files.Answers[demo] = sky::testing::SourceFile(u"tests/data/vatsim-v3.json"_s);
    qint64 nowMs = 1'800'000'000'000;
    bool live = true;
    DemoLiveFeed feed(
        files, demo, [&] { return nowMs; }, [&] { return live; });
    const FetchResult first = feed.Fetch(demo);
    nowMs += 14'999;
    EXPECT_TRUE(feed.FetchIfChanged(demo, first.Version).NotModified);
    nowMs += 1;
    const FetchResult next = feed.FetchIfChanged(demo, first.Version);
    EXPECT_EQ(network::FeedStampOf(next.Body), u"2027-01-15T08:00:15Z");
    const QJsonObject dlh = QJsonDocument::fromJson(next.Body)[u"pilots"_s][0].toObject();
    EXPECT_EQ(dlh[u"last_updated"_s].toString(), u"2027-01-15T08:00:15Z");
    EXPECT_EQ(dlh[u"logon_time"_s].toString(), u"2027-01-15T05:55:09Z"); // 2h 05m 05.4s before, as shipped
    const auto lonOf = [](const QByteArray& body) {                      // of DLH123, 452 kt west
        return QJsonDocument::fromJson(body)[u"pilots"_s][0][u"longitude"_s].toDouble();
    };
    EXPECT_NEAR(lonOf(next.Body) - lonOf(first.Body),
                Advanced(50.5f, 5.25f, 271, 452.0 * 15 / 3600).Lon - 5.25, 1e-4);
    live = false;
    EXPECT_EQ(feed.Fetch(demo).Body, files.Answers[demo]);
}

const QString kFeed = u"http://data.example/v3/vatsim-data.json"_s;
const QString kTransceivers = u"http://data.example/v3/transceivers-data.json"_s;

// VATSIM followed live in a session: fetched at the interval, read only when new, the Companion and the
// selection on the newest data, failures on the network's mark, backing off and recovering.
TEST(LiveControl, FollowsTheFeedAtItsIntervalAndKeepsTheSelection) {
    QTemporaryDir home;
    render::RecordingGl gl;
    sky::testing::FakeMapHost host;
    sky::testing::FakeHttp http;
    const QByteArray v1 = sky::testing::SourceFile(u"tests/data/vatsim-v3.json"_s);
    http.Answers[kFeed] = v1;
    http.Answers[kTransceivers] = "[]";
    network::FeedAddresses feeds;
    feeds.Json[1] = kFeed;
    Settings settings;
    settings.Live = true;
    settings.LiveSeconds = 20;
    sky::testing::MemoryHistory history;
    MapSession session(Folders::OneFolder(home.path()), settings, Friends{}, gl, host, http, &history, feeds);
    qint64 nowMs = 1'000'000;
    session.Live().NowMs = [&] { return nowMs; };
    session.Motion().NowMs = [&] { return nowMs; };
    session.Downloader().Now = [&] { return QDateTime::fromMSecsSinceEpoch(nowMs); };
    session.StartUp();
    session.DownloadOnStart(u"vatsim"_s);
    const auto reads = [&] { return http.Requests.count(kTransceivers); }; // one per feed read
    ASSERT_TRUE(session.GoTo(1, u"N123AB"_s));

    // Not yet due, then due: the same stamp again is not read.
    const auto tick = [&](int seconds) {
        nowMs += seconds * 1000;
        session.Live().Tick();
    };
    const qsizetype asked = http.Requests.count(kFeed);
    tick(19);
    EXPECT_EQ(http.Requests.count(kFeed), asked);
    tick(1);
    EXPECT_EQ(http.Requests.count(kFeed), asked + 1);
    EXPECT_EQ(reads(), 1);

    // A newer snapshot with a new pilot first: read, the selection follows
    // its aircraft to the next slot.
    QByteArray v2 = v1;
    v2.replace("142305", "142320").replace("14:23:05", "14:23:20");
    v2.replace(R"("pilots": [)",
               R"("pilots": [{"cid": 1, "callsign": "NEW1", "latitude": 1, "longitude": 2},)");
    v2.replace(R"("connected_clients": 7)", R"("connected_clients": 8)");
    http.Answers[kFeed] = v2;
    tick(20);
    EXPECT_EQ(reads(), 2);
    EXPECT_EQ(session.Tables()[1].PilotCount, 4);
    ASSERT_TRUE(session.Selected());
    EXPECT_EQ(network::Summarise(session.Tables(), *session.Selected()).Callsign, u"N123AB");
    EXPECT_EQ(session.PanelController().Mode(), PanelMode::InfoBox); // its box stays open

    // Its box says where and how long ago it reported; its Follow button follows it (110 kt east) as it
    // moves, until the map is moved another way; F does the same.
    const auto clock = session.Downloader().Now;
    session.Downloader().Now = [] {
        return QDateTime(QDate(2026, 11, 21), QTime(14, 23, 13), QTimeZone::utc());
    };
    session.Live().Tick();
    const auto box = [&] { return render::RecordingGl::PrintedText(gl.List(render::lists::kInfoBox)); };
    EXPECT_NE(box().find("Reported 12 s ago at N40"), std::string::npos) << box();
    const render::PixelRect follow =
        LayoutPanels(session.State().WidthPx, session.State().HeightPx).FollowButton;
    session.Pointer().Click(follow.X + 1, follow.Y + 1);
    EXPECT_TRUE(session.Motion().Following());
    EXPECT_NE(box().find("Unfollow"), std::string::npos);
    const float followedX = session.View().ViewX;
    // A step moves the symbols in their vertex array: their list is not recorded again.
    const int planes = render::lists::TrafficBase(1) + render::lists::kPlanes,
              recorded = gl.Recordings(planes);
    const std::vector<float> symbols = gl.Array(render::lists::SymbolArray(1, 1));
    nowMs += 10000;
    EXPECT_TRUE(session.Motion().Step());
    EXPECT_EQ(gl.Recordings(planes), recorded);
    EXPECT_NE(gl.Array(render::lists::SymbolArray(1, 1)), symbols);
    EXPECT_NEAR(session.View().ViewX - followedX, 10 * 110 / 3600.0 / 60 / std::cos(40.6 * geo::DegToRad),
                2e-3);
    session.Scene().SetView({0, 0, 1});
    session.Motion().Step();
    EXPECT_FALSE(session.Motion().Following());
    session.KeyUp(keys::Letter('F'), 0);
    EXPECT_TRUE(session.Motion().Following());
    // The Companion says the same of it.
    session.CompanionEnter(u"info N123AB"_s);
    EXPECT_TRUE(session.Companion().PaneText().endsWith(u" Reported 12 s ago at N40°36.0' W073°54.0'\r\n"_s))
        << session.Companion().PaneText().right(200).toStdString();
    session.Downloader().Now = clock;

    // Failures: the mark, no dialog, tries after 30 s and 60 s; the data shown stay; then it recovers.
    http.Answers.erase(kFeed);
    tick(20);
    EXPECT_TRUE(session.Downloads().Networks[1].DownloadFailed);
    EXPECT_TRUE(host.Messages.isEmpty());
    EXPECT_EQ(session.Display().StatusText, u"VATSIM live: no answer, next try in 30 s");
    tick(30);
    tick(59);
    http.Answers[kFeed] = v2;
    tick(1);
    EXPECT_FALSE(session.Downloads().Networks[1].DownloadFailed);

    // Kept in the history once a minute at most: of v1 (0 s), v2 (40 s), v3 (180 s), v4 (200 s), v1 and v3.
    for (const auto& [stamp, iso] : {std::pair{"142340", "14:23:40"}, std::pair{"142400", "14:24:00"}}) {
        http.Answers[kFeed] = QByteArray(v2).replace("142320", stamp).replace("14:23:20", iso);
        tick(20);
    }
    EXPECT_EQ(reads(), 4);
    ASSERT_EQ(history.Kept.size(), 2u);
    EXPECT_TRUE(history.Kept[1].Text.contains(u"20261121142340"_s));

    // Ctrl+L on the bare map turns it off: nothing more is fetched.
    session.KeyUp(keys::kEscape, 0);
    session.KeyUp(keys::Letter('L'), keys::kCtrl);
    const qsizetype offAt = http.Requests.size();
    tick(300);
    EXPECT_EQ(http.Requests.size(), offAt);
}

} // namespace
} // namespace sky::view
