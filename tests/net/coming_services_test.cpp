#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "local_http_server.h"
#include "qt_http_client.h"
#include "qt_printers.h"
#include "render/list_numbers.h"
#include "testing/fakes.h"
#include "testing/recording_gl.h"
#include "view/keys.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

// VATSIM's coming traffic as a user meets it: its v3 data with prefiles, and its bookings and events
// services, each served from 127.0.0.1 to a map through the real HTTP client.
namespace sky::view {
namespace {

using render::RecordingGl;
namespace lists = render::lists;

// VATSIM's data of 14:00Z: EDDF's tower online, these pilots (callsign and member) and two prefiles
// from EDDF, DLH4 of member 100.
QByteArray Feed(const QString& pilots = {}) {
    return (uR"({"general": {"version": 3, "update": "20261121140000", "connected_clients": 9},
        "controllers": [{"cid": 5, "name": "Ute", "callsign": "EDDF_TWR", "frequency": "119.900",
                         "facility": 4, "rating": 3}],
        "pilots": [)"_s +
            pilots + uR"(],
        "prefiles": [{"cid": 100, "name": "Ann Lee", "callsign": "DLH4", "flight_plan": {"departure": "EDDF",
                      "arrival": "EGLL", "deptime": "1530", "route": "DCT"}},
                     {"cid": 200, "callsign": "BAW9", "flight_plan": {"departure": "EDDF", "deptime": "1500"}}]})"_s)
        .toUtf8();
}

constexpr char kBookings[] = R"([
    {"id": 1, "callsign": "EDDF_TWR", "cid": 5, "type": "booking", "start": "2026-11-21 13:00:00", "end": "2026-11-21 15:00:00"},
    {"id": 2, "callsign": "EDDF_DEL", "cid": 6, "type": "training", "start": "2026-11-21 13:00:00", "end": "2026-11-21 16:00:00"},
    {"id": 3, "callsign": "EDDF_APP", "cid": 7, "type": "booking", "start": "2026-11-21 18:00:00", "end": "2026-11-21 20:00:00"}])";
constexpr char kEvents[] = R"x({"data": [
    {"id": 1, "name": "Test Night", "start_time": "2026-11-21T13:00:00.000000Z", "end_time": "2026-11-21T18:00:00.000000Z",
     "airports": [{"icao": "EDDF"}], "routes": [], "link": "https://example.org/e/1"},
    {"id": 2, "name": "Sneaky", "start_time": "2026-11-22T13:00:00Z", "end_time": "2026-11-22T18:00:00Z",
     "airports": [{"icao": "EGLL"}], "link": "javascript:alert(1)"}]})x";

class ComingServices : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_server.IsRunning() && m_home.isValid());
        QDir(m_home.path()).mkpath(u"data"_s);
        QFile::copy(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/airports.dat"_s,
                    m_home.filePath(u"data/airports.dat"_s));
        m_server.Serve(u"vatsim.json"_s, Feed());
        m_server.Serve(u"bookings.json"_s, kBookings);
        m_server.Serve(u"events.json"_s, kEvents);
        Start();
    }
    // A map session on this home folder, started: the services fetched, the kept lists read.
    void Start() {
        network::FeedAddresses a;
        a.Status[1] = m_server.Url(u"status.txt"_s);
        a.Json[1] = m_server.Url(u"vatsim.json"_s);
        a.Bookings = m_server.Url(u"bookings.json"_s);
        a.Events = m_server.Url(u"events.json"_s);
        Settings settings;
        settings.WeatherServer = m_server.Url(u"weather"_s);
        m_session = std::make_unique<MapSession>(Folders::OneFolder(m_home.path()), settings, Friends{}, m_gl,
                                                 m_host, m_http, nullptr, a);
        m_session->Downloader().Now = [this] { return m_now.toLocalTime(); };
        m_session->Coming().Clock = [this] { return m_now; };
        m_session->StartUp();
    }
    void Download() {
        m_now = m_now.addSecs(120);
        m_session->Downloader().BtnDownload(1);
    }
    QString Shown() const {
        QStringList rows;
        for (const QStringList& row : m_session->PanelController().ShownTable().Rows)
            rows.append(row.join(u'|'));
        return rows.join(u'\n');
    }
    const QString& Status() const { return m_session->Display().StatusText; }

    testing::LocalHttpServer m_server;
    QTemporaryDir m_home;
    net::QtHttpClient m_http{1000, u"0"_s};
    RecordingGl m_gl;
    sky::testing::FakeMapHost m_host;
    QDateTime m_now = QDateTime(QDate(2026, 11, 21), QTime(14, 5), Qt::UTC);
    std::unique_ptr<MapSession> m_session;
};

TEST_F(ComingServices, PrefilesBookingsAndEventsShowOnTheBoardTheSearchTheBoxesAndTheMap) {
    QString problem;
    m_session->Alerts().WatchCommand(u"watch EDDF_*"_s, problem);
    Download();
    // A watched position booked and not online is told once.
    EXPECT_EQ(m_host.Notified, QStringList{u"1|EDDF_DEL|EDDF_DEL booked from 1300Z, not online"_s});
    m_session->PanelController().OpenBoard(u"EDDF"_s);
    EXPECT_EQ(Shown(), u"EDDF_TWR|119.900|Tower|Ute\n"
                       u"Event: Test Night, until 1800Z\n"
                       u"EDDF_TWR|booked 1300-1500Z|online|\n"
                       u"EDDF_DEL|booked 1300-1600Z|not online|training\n"
                       u"EDDF_APP|booked 1800-2000Z||\n"
                       u"BAW9|to |filed|dep 1500Z\n"
                       u"DLH4|to EGLL|filed|dep 1530Z"_s);
    // The event's airport is marked on the map; its page lists it and opens only a web address.
    EXPECT_NE(RecordingGl::PrintedText(m_gl.List(lists::kEventMarks)).find("EVENT"), std::string::npos);
    m_session->KeyUp(keys::kEscape, 0);
    m_session->KeyUp(keys::Letter('L'), 0);
    m_session->KeyUp(keys::kDown, 0);
    m_session->KeyUp(keys::kDown, 0);
    EXPECT_TRUE(Shown().endsWith(u"now|Test Night|1300-1800Z|EDDF\nSun 22 Nov|Sneaky|1300-1800Z|EGLL"_s))
        << Shown().toStdString();
    const PanelLayout layout = LayoutPanels(800, 600);
    for (int row : {1, 2})
        m_session->Pointer().Click(layout.Rows[size_t(row)].X + 5, layout.Rows[size_t(row)].Y + 5);
    EXPECT_EQ(m_host.Opened, QStringList{u"https://example.org/e/1"_s});
    // Found by search, a prefile opens its box with the route dashed from its departure.
    const auto found = m_session->Search(u"dlh4"_s);
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].Text, u"DLH4  Ann Lee  EDDF-EGLL  prefiled");
    m_session->ChooseSearchResult(found[0]);
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(lists::kInfoBox)).rfind("DLH4Ann Lee", 0), 0u);
    const auto& highlight = m_gl.List(lists::kHighlight);
    EXPECT_TRUE(std::any_of(highlight.begin(), highlight.end(), [](const RecordingGl::Call& c) {
        return c.What == RecordingGl::Op::Enable && c.Number == int(render::Capability::LineStipple);
    }));
    // The tower's box says its bookings.
    m_session->PanelController().OpenInfoBox({1, false, 1});
    EXPECT_NE(RecordingGl::PrintedText(m_gl.List(lists::kInfoBox)).find("booked 1300-1500Z, now"),
              std::string::npos);

    // DLH4's member connects as DLH4: the prefile goes, though the feed still lists it.
    m_server.Serve(u"vatsim.json"_s,
                   Feed(uR"({"cid": 100, "callsign": "DLH4", "latitude": 50, "longitude": 8.6,
        "flight_plan": {"departure": "EDDF", "arrival": "EGLL"}})"_s)
                       .replace("20261121140000", "20261121140200"));
    Download();
    ASSERT_EQ(m_session->ComingLists().Prefiles.size(), 1u);
    EXPECT_EQ(m_session->ComingLists().Prefiles[0].Callsign, u"BAW9");
    EXPECT_EQ(m_session->Search(u"dlh4"_s).at(0).Kind, search::ResultKind::Client);
    EXPECT_EQ(m_host.Notified.size(), 1); // the missed booking was told before
}

// Lists fetched once are kept: a start while the services are down shows them with their age, and a
// list the server says is unchanged is not fetched again.
TEST_F(ComingServices, TheLastListsShowWhileTheServicesAreDown) {
    const QString cache = m_home.filePath(u"data/vatsim-bookings.cache"_s);
    const auto kept = ReadWholeFile(cache);
    ASSERT_TRUE(kept.has_value());
    Download();
    m_now = m_now.addSecs(31 * 60);
    m_session->Coming().Tick();
    EXPECT_EQ(m_session->ComingLists().BookingsFetched, m_now);
    EXPECT_EQ(ReadWholeFile(cache), kept); // "not modified": nothing new to keep

    QFile::remove(m_server.Folder().filePath(u"bookings.json"_s));
    QFile::remove(m_server.Folder().filePath(u"events.json"_s));
    m_now = m_now.addSecs(3 * 3600);
    Start();
    EXPECT_EQ(m_session->ComingLists().Bookings.size(), 3u);
    EXPECT_EQ(m_session->ComingLists().Events.size(), 2u);
    EXPECT_TRUE(Status().startsWith(u"VATSIM events not updated ("_s)) << Status().toStdString();
    EXPECT_TRUE(Status().endsWith(u"), list of 3 h ago kept"_s)) << Status().toStdString();
}

// Whatever a service answers, the last good list stays and one line of the status band says what
// happened; entries that cannot be read are left out.
TEST_F(ComingServices, BadAnswersKeepTheLastGoodListAndSayWhyInOneLine) {
    QTcpServer silent; // takes the connection and never answers
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    Download();
    QByteArray many = "[";
    for (int i = 0; i < 50000; ++i)
        many += QByteArray(i ? "," : "") +
                R"({"callsign": "X_TWR", "start": "2026-11-21 18:00:00", "end": "2026-11-21 19:00:00"})";
    many += "]";
    const struct {
        bool events;
        const char* name; // served as this, or a path of the silent server
        QByteArray body;
        const char* status; // as said, up to "..." when the rest is the server's own words
        size_t kept;
    } rows[] = {
        {false, "b1.json", "<!DOCTYPE html><html><body>Maintenance</body></html>",
         "VATSIM bookings not updated (the answer is a web page, not JSON), list of 33 min ago kept", 3},
        {false, "b2.json", R"({"data": []})",
         "VATSIM bookings not updated (the answer is no list of bookings), list of 1 h ago kept", 3},
        {false, "/silent", {}, "VATSIM bookings not updated (...", 3},
        {false, "missing.json", {}, "VATSIM bookings not updated (...", 3},
        {false, "b3.json",
         R"([{"start": "2026-11-21 18:00:00", "end": "2026-11-21 19:00:00"},
             {"callsign": 7, "start": "2026-11-21 18:00:00", "end": "2026-11-21 19:00:00"},
             {"callsign": "A_TWR", "start": "2026-11-21T18:00:00", "end": "2026-11-21T19:00:00"},
             {"callsign": "B_TWR", "start": "2026-11-21 19:00:00", "end": "2026-11-21 18:00:00"},
             {"callsign": "C_TWR", "start": "2026-11-21 18:00:00", "end": "2026-11-21 19:00:00"}, 17])",
         "VATSIM bookings: 5 of 6 unreadable, left out", 1},
        {false, "b4.json", many, "VATSIM bookings: the first 10000 of 50000 kept", 10000},
        {true, "e1.json",
         R"({"data": [{"name": "No zone", "start_time": "2026-11-21T18:00:00", "end_time": "2026-11-21T19:00:00"},
                      {"name": "Fine", "start_time": "2026-11-21T18:00:00Z", "end_time": "2026-11-21T19:00:00Z"}]})",
         "VATSIM events: 1 of 2 unreadable, left out", 1},
        {true, "e2.json", "[1, 2]",
         "VATSIM events not updated (the answer is no list of events), list of 31 min ago kept", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString name = QString::fromLatin1(row.name);
        if (!row.body.isEmpty())
            m_server.Serve(name, row.body);
        const QString address = name.startsWith(u'/')
                                    ? u"http://127.0.0.1:%1"_s.arg(silent.serverPort()) + name
                                    : m_server.Url(name);
        m_session->Coming().SetAddresses(row.events ? QString() : address, row.events ? address : QString());
        m_now = m_now.addSecs(31 * 60);
        m_session->Coming().Tick();
        const QString said = QString::fromLatin1(row.status);
        if (said.endsWith(u"..."_s))
            EXPECT_TRUE(Status().startsWith(said.chopped(3)) && Status().endsWith(u" ago kept"_s))
                << Status().toStdString();
        else
            EXPECT_EQ(Status().toStdString(), said.toStdString());
        EXPECT_EQ(row.events ? m_session->ComingLists().Events.size()
                             : m_session->ComingLists().Bookings.size(),
                  row.kept);
    }
}

} // namespace
} // namespace sky::view
