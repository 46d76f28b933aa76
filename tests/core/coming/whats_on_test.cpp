#include "coming/whats_on.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include "coming/answer_cache.h"
#include "common/json_values.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "qt_printers.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::coming {
namespace {

QDateTime At(const char* iso) {
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
}

TEST(ServiceTime, ReadsTheServicesUtcFormsAndRefusesATimeOfNoZone) {
    const struct {
        const char* text;
        const char* utc; // empty: no time
    } rows[] = {{"2026-11-21 18:00:00", "2026-11-21T18:00:00Z"},
                {" 2026-11-21 18:05 ", "2026-11-21T18:05:00Z"},
                {"2026-11-21T18:00:00.000000Z", "2026-11-21T18:00:00Z"},
                {"2026-11-21T20:00:00+02:00", "2026-11-21T18:00:00Z"},
                {"2026-11-21T00:30:00-0130", "2026-11-21T02:00:00Z"},
                {"2026-11-21T18:00:00", ""}, // whose 18:00?
                {"2026-02-30 18:00:00", ""},
                {"2026-11-21 25:00:00", ""},
                {"2026-11-21T18:00:00+15:00", ""},
                {"1795700000", ""},
                {"", ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto time = ServiceTime(QString::fromLatin1(row.text));
        EXPECT_EQ(time ? time->toUTC().toString(Qt::ISODate) : QString(), QString::fromLatin1(row.utc));
    }
}

TEST(ParsePrefiles, KeepsEntriesWithACallsignAndADeparture) {
    const QJsonDocument feed = QJsonDocument::fromJson(R"([
        {"cid": 1234567, "name": "Ann Lee", "callsign": "dlh4ab", "flight_plan": {"departure": "eddf",
         "arrival": "KJFK", "deptime": 930, "enroute_time": "2535", "aircraft_faa": "B748", "route": "DCT"}},
        {"cid": 1, "callsign": 42, "flight_plan": {"departure": "EDDF"}},
        {"cid": 2, "callsign": "NOPLAN", "flight_plan": null},
        {"cid": 3, "callsign": "NODEP", "flight_plan": {"arrival": "EDDF"}},
        {"cid": "4", "callsign": "LATE1", "flight_plan": {"departure": "EGLL", "deptime": "2460"}},
        "junk"])");
    const std::vector<network::Prefile> plans = network::ParsePrefiles(feed.array());
    ASSERT_EQ(plans.size(), 2u);
    EXPECT_EQ(plans[0].Callsign, u"DLH4AB");
    EXPECT_EQ(plans[0].Member, u"1234567");
    EXPECT_EQ(plans[0].Departure, u"EDDF");
    EXPECT_EQ(plans[0].DepTime, u"0930");
    EXPECT_EQ(plans[0].EnrouteTime, u"2535");
    EXPECT_EQ(plans[1].Member, u"4");
    EXPECT_EQ(plans[1].DepTime, u""); // 24:60 is no time of day
    EXPECT_TRUE(network::ParsePrefiles(QJsonValue(u"prefiles"_s)).empty());
}

TEST(AnswerCache, KeepsAnAnswerWithItsOriginTimeAndVersionAndRefusesOtherFiles) {
    const CachedAnswer kept{u"https://bookings.example/api"_s,
                            At("2026-11-21T14:05:00Z"),
                            {u"\"v7\""_s, u"Sat, 21 Nov 2026 14:00:00 GMT"_s},
                            "[{\"a\": 1}]\n\n[]"};
    const auto read = ReadCache(CacheBytes(kept));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Address, kept.Address);
    EXPECT_EQ(read->Fetched, kept.Fetched);
    EXPECT_EQ(read->Version.ETag, kept.Version.ETag);
    EXPECT_EQ(read->Version.LastModified, kept.Version.LastModified);
    EXPECT_EQ(read->Body, kept.Body);
    const QByteArray bytes = CacheBytes(kept);
    for (const QByteArray& other :
         {QByteArray("[]"), bytes.left(40), QByteArray(bytes).replace("Fetched", "Fetchet")})
        EXPECT_FALSE(ReadCache(other)) << other.toStdString();
}

class WhatsOn : public ::testing::Test {
protected:
    // VATSIM's data of 14:00Z with these stations and pilots online.
    void Online(const QStringList& clients) {
        ReferenceData reference;
        network::InterpretWhazzup(1, network::testing::WhazzupText(clients, u"20261121140000"_s), reference,
                                  m_data, QDateTime());
    }
    static Booking Booked(const QString& callsign, const char* start, const char* end) {
        return {0, callsign, u"1"_s, u"booking"_s, At(start), At(end), {}, {}};
    }
    network::NetworkData m_data;
    const QDateTime m_now = At("2026-11-21T14:00:00Z");
};

TEST_F(WhatsOn, ABoardShowsItsPositionsBookingsOfTheNextDay) {
    const std::vector<Booking> bookings = {
        Booked(u"EDDF_TWR"_s, "2026-11-21T13:00:00Z", "2026-11-21T15:00:00Z"),
        Booked(u"EDDF_N_APP"_s, "2026-11-22T13:30:00Z", "2026-11-22T15:00:00Z"),
        Booked(u"EDDF_GND"_s, "2026-11-22T14:00:00Z", "2026-11-22T16:00:00Z"),
        Booked(u"EDDF_DEL"_s, "2026-11-21T12:00:00Z", "2026-11-21T14:00:00Z"),
        Booked(u"EDDFX_TWR"_s, "2026-11-21T14:00:00Z", "2026-11-21T15:00:00Z"),
        Booked(u"JFK_TWR"_s, "2026-11-21T18:00:00Z", "2026-11-21T20:00:00Z")};
    const auto callsigns = [](const std::vector<const Booking*>& found) {
        QStringList list;
        for (const Booking* b : found)
            list.append(b->Callsign);
        return list;
    };
    // Running or starting within 24 hours; one that ended at this moment or starts in 24 hours is not.
    EXPECT_EQ(callsigns(BookingsAt(bookings, u"EDDF"_s, m_now)),
              (QStringList{u"EDDF_TWR"_s, u"EDDF_N_APP"_s}));
    EXPECT_EQ(callsigns(BookingsAt(bookings, u"KJFK"_s, m_now)), QStringList{u"JFK_TWR"_s});
    EXPECT_EQ(callsigns(BookingsOf(bookings, u"eddf_twr"_s, m_now)), QStringList{u"EDDF_TWR"_s});
    EXPECT_EQ(BookedText(bookings[5]), u"booked 1800-2000Z");
}

TEST_F(WhatsOn, AWatchedPositionBookedButNotOnlineIsMissedTenMinutesAfterItsStart) {
    Online({network::testing::AtcLine(1, {{0, u"EDDF_TWR"_s}})});
    const struct {
        const char* callsign;
        const char* start;
        const char* end;
        bool missed;
    } rows[] = {{"EDDF_APP", "2026-11-21T13:50:00Z", "2026-11-21T16:00:00Z", true},
                {"EDDF_APP", "2026-11-21T13:51:00Z", "2026-11-21T16:00:00Z", false},  // not ten minutes yet
                {"EDDF_TWR", "2026-11-21T13:00:00Z", "2026-11-21T16:00:00Z", false},  // online
                {"EGLL_TWR", "2026-11-21T13:00:00Z", "2026-11-21T16:00:00Z", false},  // not watched
                {"EDDF_GND", "2026-11-21T11:00:00Z", "2026-11-21T14:00:00Z", false}}; // over
    for (const auto& row : rows) {
        SCOPED_TRACE(row.callsign);
        const std::vector<Booking> bookings = {Booked(QString::fromLatin1(row.callsign), row.start, row.end)};
        const auto missed =
            MissedBookings(bookings, m_data, m_now, [](const QString& c) { return c.startsWith(u"EDDF"); });
        EXPECT_EQ(missed.size(), row.missed ? 1u : 0u);
    }
    EXPECT_EQ(MissedText(Booked(u"EDDF_TWR"_s, "2026-11-21T18:00:00Z", "2026-11-21T20:00:00Z")),
              u"EDDF_TWR booked from 1800Z, not online");
}

TEST_F(WhatsOn, APrefileGoesWhenItsMemberConnectsWithThatCallsign) {
    Online({network::testing::PilotLine(1, {{0, u"DLH1"_s}, {1, u"100"_s}}),
            network::testing::PilotLine(1, {{0, u"BAW2"_s}, {1, u"999"_s}})});
    std::vector<network::Prefile> plans(3);
    plans[0].Callsign = u"DLH1"_s, plans[0].Member = u"100"_s;
    plans[1].Callsign = u"BAW2"_s, plans[1].Member = u"200"_s; // another member flies that callsign
    plans[2].Callsign = u"AFR3"_s, plans[2].Member = u"100"_s;
    EXPECT_EQ(DropConnected(plans, m_data), 1);
    ASSERT_EQ(plans.size(), 2u);
    EXPECT_EQ(plans[0].Callsign, u"BAW2");
}

TEST_F(WhatsOn, TheEventsPageShowsTodayAndTheNextSevenDays) {
    std::vector<Event> events(4);
    const char* times[][2] = {{"2026-11-21T08:00:00Z", "2026-11-21T10:00:00Z"}, // earlier today
                              {"2026-11-20T20:00:00Z", "2026-11-20T23:00:00Z"}, // yesterday
                              {"2026-11-28T13:59:00Z", "2026-11-28T18:00:00Z"}, // within the week
                              {"2026-11-28T14:00:00Z", "2026-11-28T18:00:00Z"}};
    for (size_t i = 0; i < events.size(); ++i)
        events[i] = {qint64(i), u"E%1"_s.arg(i), At(times[i][0]), At(times[i][1]), {}, {}, {}, {}};
    const auto ahead = EventsAhead(events, m_now);
    ASSERT_EQ(ahead.size(), 2u);
    EXPECT_EQ(ahead[0]->Name, u"E0");
    EXPECT_EQ(ahead[1]->Name, u"E2");
    EXPECT_TRUE(EventsInProgress(events, m_now).empty());
    EXPECT_EQ(EventsInProgress(events, At("2026-11-21T09:00:00Z")).size(), 1u);
}

} // namespace
} // namespace sky::coming
