#include "network/json_feeds.h"

#include <gtest/gtest.h>

#include "network/whazzup.h"
#include "qt_printers.h"
#include "refdata/reference_data.h"
#include "testing/source_files.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

using sky::testing::SourceFile;

class JsonFeeds : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(
            u"EDDF:Frankfurt:Frankfurt:DE:50.0333:8.5706\nLFPG:Roissy:Paris:FR:49.0097:2.5479\n");
    }
    InterpretResult Read(int network, const TranslatedFeed& feed) {
        return InterpretWhazzup(network, feed.Text, m_reference, m_data, QDateTime());
    }
    // Pilots, controllers, observers, clients and reload minutes, as read.
    std::vector<int> Figures() const {
        return {m_data.PilotCount, m_data.ControllerCount, m_data.ObserverCount, m_data.ConnectedClients,
                m_data.ReloadMinutes};
    }
    ReferenceData m_reference;
    NetworkData m_data;
};

TEST(DetectFeed, TellsTextFromEachNetworksJson) {
    EXPECT_EQ(DetectFeed("!GENERAL\r\nVERSION = 8\r\n"), FeedKind::Text);
    EXPECT_EQ(DetectFeed(SourceFile(u"tests/data/vatsim-v3.json"_s)), FeedKind::VatsimV3);
    EXPECT_EQ(DetectFeed(SourceFile(u"tests/data/ivao-v2.json"_s)), FeedKind::IvaoV2);
    EXPECT_EQ(DetectFeed("  {\"something\": 1}"), FeedKind::UnknownJson);
    EXPECT_EQ(DetectFeed(SourceFile(u"tests/data/vatsim-v3.json"_s).left(500)),
              FeedKind::Unreadable); // cut short
}

TEST(StampFromIso, ReadsTheFeedsTimesInUtc) {
    EXPECT_EQ(StampFromIso(u"2026-11-21T14:23:05.4821343Z"_s), u"20261121142305");
    EXPECT_EQ(StampFromIso(u"2026-11-21T14:23:05Z"_s), u"20261121142305");
    EXPECT_EQ(StampFromIso(u"2026-11-21T16:23:05+02:00"_s), u"20261121142305");
    EXPECT_EQ(StampFromIso(u"yesterday"_s), u"");
}

// What the translation puts in each field; what the interpreter derives from a field is its own test's.
TEST_F(JsonFeeds, AVatsimCaptureReadsLikeItsTextFile) {
    const auto transceivers = ParseVatsimTransceivers(SourceFile(u"tests/data/vatsim-transceivers.json"_s));
    EXPECT_EQ(transceivers.size(), 2);
    const TranslatedFeed feed = TranslateVatsimV3(SourceFile(u"tests/data/vatsim-v3.json"_s), transceivers);
    ASSERT_TRUE(feed.Ok);
    EXPECT_EQ(feed.UpdateStamp, u"20261121142305");
    EXPECT_TRUE(Read(1, feed).HasClients);
    // Pilots, controllers, observers, the clients (7 connections less the ATIS), the reload minutes.
    EXPECT_EQ(Figures(), (std::vector<int>{3, 4, 2, 6, 1}));

    const PilotRecord& dlh = m_data.Pilots[1];
    EXPECT_EQ((QStringList{dlh.RealName, dlh.AircraftType, dlh.DepTime, dlh.EnrouteTime, dlh.PlannedAltitude,
                           dlh.TimeConnected, dlh.Route, dlh.ReportedAt}),
              (QStringList{u"Jane Roe"_s, u"A320/L"_s, u"1315"_s, u"0125"_s, u"35000"_s, u"20261121121800"_s,
                           u"ANEKI Y7 NIK"_s, u"20261121142301"_s}));
    // Heading, rating, supervisor, certificate: a pilot certificate (IR) is no controller rating.
    EXPECT_EQ((std::vector<int>{dlh.Heading, dlh.Rating, dlh.AdminRating, dlh.PilotCertificate}),
              (std::vector<int>{271, 0, 0, 3}));

    const PilotRecord& strings = m_data.Pilots[2]; // numbers sent as strings, no flight plan
    EXPECT_EQ(strings.Latitude, 40.6f);
    EXPECT_EQ(strings.GroundSpeed, 110.0f);
    EXPECT_TRUE(strings.DestAirport.isEmpty());

    const PilotRecord& colon = m_data.Pilots[3]; // a ":" cannot shift the fields after it
    EXPECT_EQ(colon.Route, u"DCT 50N020W 51N030W DCT");
    EXPECT_EQ(colon.RealName, u"Colon  Person");
    EXPECT_EQ(colon.Remarks, u"/V/");

    const ControllerRecord& tower = m_data.Controllers[1];
    EXPECT_EQ(tower.AtisMessage, u"Frankfurt Tower^§Information B");
    EXPECT_FLOAT_EQ(tower.Latitude, 50.03f);          // the centre of its transceivers
    EXPECT_EQ(m_data.Controllers[2].AdminRating, 11); // the supervisor
    EXPECT_EQ(m_data.Controllers[4].FacilityType, kFacilityAtis);
}

TEST_F(JsonFeeds, AnIvaoCaptureReadsLikeItsTextFile) {
    const TranslatedFeed feed = TranslateIvaoV2(SourceFile(u"tests/data/ivao-v2.json"_s));
    ASSERT_TRUE(feed.Ok);
    EXPECT_EQ(feed.UpdateStamp, u"20261121142305");
    EXPECT_TRUE(Read(0, feed).HasClients);
    EXPECT_EQ(Figures(), (std::vector<int>{2, 2, 1, 4, 1})); // the clients: 5 less the follow-me car

    const PilotRecord& afr = m_data.Pilots[1];
    EXPECT_EQ((QStringList{afr.VID, afr.DepTime, afr.EnrouteTime, afr.FlightType, afr.Software,
                           afr.PlannedAltitude, afr.CruiseSpeed, afr.ReportedAt}),
              (QStringList{u"512345"_s, u"1315"_s, u"0130"_s, u"S"_s, u"altitude/win 1.10.2b"_s, u"F360"_s,
                           u"N0450"_s, u"20261121142300"_s}));
    EXPECT_EQ((std::vector<int>{afr.POB, afr.Rating, afr.Heading}), (std::vector<int>{174, 5, 95}));
    EXPECT_EQ(afr.Altitude, 36000.0f);

    const PilotRecord& nan = m_data.Pilots[2]; // NaN and null values read as 0
    EXPECT_EQ(nan.Latitude, 0.0f);
    EXPECT_EQ(nan.Longitude, 2.5f);
    EXPECT_EQ(nan.Altitude, 0.0f);

    const ControllerRecord& tower = m_data.Controllers[1];
    EXPECT_EQ(tower.Frequency, u"119.250"); // as the text files wrote it
    EXPECT_EQ(tower.VisualRange, 0.0f);
    EXPECT_EQ(tower.AtisMessage, u"aurora.ivao.aero/LFPG_TWR^§Charles de Gaulle Tower^§Information K");
}

TEST_F(JsonFeeds, DocumentsThatAreNotFeedsAreRefused) {
    const QByteArray vatsim = SourceFile(u"tests/data/vatsim-v3.json"_s);
    EXPECT_FALSE(TranslateVatsimV3(vatsim.left(vatsim.size() / 2)).Ok);
    EXPECT_FALSE(TranslateVatsimV3("[1, 2, 3]").Ok);
    EXPECT_FALSE(TranslateVatsimV3("{\"general\": 5}").Ok);
    EXPECT_FALSE(TranslateIvaoV2("{\"updatedAt\": \"2026-11-21T14:23:05Z\"}").Ok);
    EXPECT_FALSE(TranslateIvaoV2(QByteArray(1000, '\x01')).Ok);
    EXPECT_TRUE(ParseVatsimTransceivers("{\"not\": \"a list\"}").isEmpty());

    // Missing sections give a feed without clients: the network has no data to display.
    const TranslatedFeed empty = TranslateVatsimV3("{\"general\": {\"update\": \"20261121142305\"}}");
    ASSERT_TRUE(empty.Ok);
    EXPECT_FALSE(Read(1, empty).HasClients);
}

TEST_F(JsonFeeds, FieldsAreReadByWhatTheNetworksSayTheyMean) {
    // VATSIM: the feed's own names of pilot certificates; a station across 180 degrees stands there.
    const QByteArray vatsim = R"({"general": {"update": "20261121142305", "connected_clients": 3e9},
        "pilots": [{"callsign": "QFA1", "cid": 1, "pilot_rating": 15, "flight_plan": {"enroute_time": "99999999"}}],
        "pilot_ratings": [{"id": 15, "short_name": "ATPL", "long_name": "Airline Transport Pilot Licence"}]})";
    Read(1, TranslateVatsimV3(vatsim));
    EXPECT_EQ(m_data.Pilots[1].PilotCertificateName, u"ATPL");
    EXPECT_EQ(m_data.Pilots[1].PilotCertificateLongName, u"Airline Transport Pilot Licence");
    EXPECT_EQ(m_data.Pilots[1].EnrouteTime, u"9959"); // clamped, not overflowed
    EXPECT_EQ(m_data.ConnectedClients, 32767);
    const auto centres = ParseVatsimTransceivers(
        R"([{"callsign": "NZZO_CTR", "transceivers": [{"latDeg": -40, "lonDeg": 179.0}, {"latDeg": -40, "lonDeg": -179.5}]}])");
    EXPECT_NEAR(std::fabs(centres.value(u"NZZO_CTR"_s).Lon), 179.75, 0.01);
    // IVAO: the clients listed, not the connections counted; the range of 2021; negative times unknown.
    const QByteArray ivao = R"({"updatedAt": "2026-11-21T14:23:05Z", "connections": {"total": 2e11},
        "clients": {"pilots": [{"callsign": "AFR1", "userId": 1, "flightPlan": {"departureTime": -6000, "eet": -5}}],
                    "atcs": [{"callsign": "LFFF_CTR", "userId": 2, "atcSession": {"frequency": 128.1},
                              "lastTrack": {"distance": 150}}],
                    "observers": [], "followMe": []}})";
    Read(0, TranslateIvaoV2(ivao));
    EXPECT_EQ(m_data.ConnectedClients, 2);
    EXPECT_EQ(m_data.Pilots[1].DepTime, u"0000");
    EXPECT_EQ(m_data.Controllers[1].VisualRange, 150.0f);
    EXPECT_EQ(m_data.Controllers[1].Frequency, u"128.100");
    // VATSIM's layout of 2020 (one array of clients) is no IVAO feed.
    EXPECT_EQ(DetectFeed(R"({"general": {"version": 2}, "clients": [{"callsign": "X"}]})"),
              FeedKind::UnknownJson);
}

TEST_F(JsonFeeds, DuplicatedCallsignsAndWrongTypesAreReadAsTheyCome) {
    const QByteArray json =
        R"({"general": {"update": 20261121142305, "reload": "2", "connected_clients": "2"},
        "pilots": [{"callsign": "DUP", "cid": 1, "latitude": "x", "flight_plan": "not an object"},
                   {"callsign": "DUP", "cid": 2, "latitude": 1e308, "longitude": true}],
        "controllers": "none", "atis": null})";
    const TranslatedFeed feed = TranslateVatsimV3(json);
    ASSERT_TRUE(feed.Ok);
    EXPECT_EQ(feed.ReloadMinutes, 2);
    Read(1, feed);
    EXPECT_EQ(m_data.PilotCount, 2);
    EXPECT_EQ(m_data.Pilots[1].Latitude, 0.0f);
    EXPECT_EQ(m_data.Pilots[2].VID, u"2");
}

} // namespace
} // namespace sky::network
