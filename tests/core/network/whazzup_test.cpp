#include "network/whazzup.h"

#include <gtest/gtest.h>

#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

using testing::AtcLine;
using testing::ClientLine;
using testing::PilotLine;

class Whazzup : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(u"EDDF:Frankfurt:Frankfurt:DE:50.0333:8.5706\n"
                                "KJFK:Kennedy:New York:US:40.6394:-73.7793\n"
                                "EGLL:Heathrow:London:GB:51.4707:-0.4599\n");
        m_reference.AddFirCentres(u"ABC:XX:10.0:20.0:Abc\n"
                                  "LON:GB:51.9:-1.5:London\n"
                                  "LON_S:GB:50.5:0.5:London South\n"
                                  "KZNY_O:US:31.5:-58.5:New York Oceanic\n");
    }

    PilotRecord Pilot(int network, const testing::Fields& fields) {
        PilotRecord pilot;
        ParsePilot(network, PilotLine(network, fields), m_reference, pilot);
        return pilot;
    }

    ControllerRecord Controller(int network, const testing::Fields& fields) {
        ControllerRecord controller;
        ParseController(network, AtcLine(network, fields), m_reference, controller, m_data);
        return controller;
    }

    static QString File(const QStringList& lines, const QString& end = u"\r\n"_s) {
        return lines.join(end) + end;
    }

    InterpretResult Interpret(int network, const QString& text) {
        return InterpretWhazzup(network, text, m_reference, m_data, m_now);
    }

    ReferenceData m_reference;
    NetworkData m_data;
    QDateTime m_now = QDateTime(QDate(2026, 11, 21), QTime(14, 25));
};

// Field 2 gives the name and the home base, field 9 the filed type and the aircraft's code in it.
TEST_F(Whazzup, NamesLoseTheirTailsAndTypesGiveTheirAircraftCode) {
    struct Row {
        int field;
        const char16_t *text, *first, *second;
    };
    const Row rows[] = {
        {2, u"John Smith EDDF", u"John Smith", u"EDDF"},
        {2, u"John Smith eddf", u"John Smith eddf", u""},
        {2, u"John Smith ED1F", u"John Smith ED1F", u""},
        {2, u"Jane Roe°3 EGLL", u"Jane Roe", u""},
        {2, u"Jane Roe EGLL°x", u"Jane Roe", u"EGLL"},
        {2, u"Bob Miller - KLM EHAM", u"Bob Miller", u""},
        {2, u"X EDDF", u"X", u"EDDF"},
        {2, u" EDDF", u" EDDF", u""},
        {2, u"", u"", u""},
        {9, u"H/B744/F", u"B744/F", u"B744"},
        {9, u"B73/G", u"B73/G", u"B73"},
        {9, u"B738", u"B738", u"B738"},
        {9, u"A320/L", u"A320/L", u"A320"},
        {9, u"A/B7/F", u"B7/F", u"B7"},
        {9, u"C172", u"C172", u"C172"},
        {9, u"DH8D-Q400", u"DH8D-Q400", u"DH8D"},
        {9, u"C/", u"", u""},
        {9, u"X", u"X", u"X"},
        {9, u"", u"", u""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        const PilotRecord p = Pilot(1, {{row.field, QString::fromUtf16(row.text)}});
        EXPECT_EQ(row.field == 2 ? p.RealName : p.AircraftType, QString::fromUtf16(row.first));
        EXPECT_EQ(row.field == 2 ? p.HomeBase : p.AircraftCode, QString::fromUtf16(row.second));
    }
}

TEST_F(Whazzup, AltitudeAndSpeedAreLimited) {
    struct Row {
        const char16_t* altitude;
        const char16_t* speed;
        float altitudeFt, speedKts;
    };
    const Row rows[] = {
        {u"35000", u"450", 35000, 450},
        {u"120000", u"12000", 100000, 9999},
        {u"99999", u"9999", 99999, 9999},
        {u"99999.5", u"9999.5", 100000, 9999},
        {u"-50", u"-1", 0, 0},
        {u"abc", u"", 0, 0},
        {u"1e308", u"1e999", 100000, 9999},
        {u"NaN", u"inf", 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.altitude).toStdString());
        const PilotRecord pilot =
            Pilot(0, {{7, QString::fromUtf16(row.altitude)}, {8, QString::fromUtf16(row.speed)}});
        EXPECT_EQ(pilot.Altitude, row.altitudeFt);
        EXPECT_EQ(pilot.GroundSpeed, row.speedKts);
    }
}

TEST_F(Whazzup, EachNetworkReadsItsOwnFieldsForRatingsHeadingAndSoftware) {
    const PilotRecord ivao = Pilot(0, {{16, u"9"_s},
                                       {38, u" IvAp"_s},
                                       {39, u"2.0.2 "_s},
                                       {40, u"2"_s},
                                       {41, u"5"_s},
                                       {43, u"S"_s},
                                       {44, u"180"_s},
                                       {45, u"271.5"_s}});
    EXPECT_EQ(ivao.Rating, 5);
    EXPECT_EQ(ivao.AdminRating, 2);
    EXPECT_EQ(ivao.Heading, 272);
    EXPECT_EQ(ivao.POB, 180);
    EXPECT_EQ(ivao.FlightType, u"S");
    EXPECT_EQ(ivao.Software, u"IvAp 2.0.2");

    const PilotRecord vatsim = Pilot(1, {{16, u"3"_s}, {38, u"90.5"_s}, {40, u"7"_s}, {44, u"180"_s}});
    EXPECT_EQ(vatsim.Rating, 3);
    EXPECT_EQ(vatsim.AdminRating, 3);
    EXPECT_EQ(vatsim.Heading, 90); // 90.5 to the even neighbour
    EXPECT_EQ(vatsim.POB, 0);
    EXPECT_EQ(vatsim.Software, u"");
}

TEST_F(Whazzup, AirportsGivePositionsAndTheCourseToOrFromThem) {
    const PilotRecord enRoute =
        Pilot(1, {{5, u"50"_s}, {6, u"-30"_s}, {11, u"EDDF"_s}, {13, u"KJFK"_s}, {28, u"KBOS"_s}});
    EXPECT_EQ(enRoute.DepLatitude, 50.0333f);
    EXPECT_EQ(enRoute.DestLongitude, -73.7793f);
    EXPECT_EQ(enRoute.AltAirport, u"KBOS");
    EXPECT_EQ(enRoute.Course, -90); // towards New York, due west at first (-89.8), as a negative course

    // Destination unknown: the course from the departure airport to the aircraft.
    const PilotRecord outbound = Pilot(1, {{5, u"55"_s}, {6, u"8.5706"_s}, {11, u"eddf"_s}, {13, u"ZZZZ"_s}});
    EXPECT_EQ(outbound.DestLatitude, 0.0f);
    EXPECT_EQ(outbound.Course, 0); // due north of Frankfurt

    // A departure that is not a four-letter code gives no course.
    EXPECT_EQ(Pilot(1, {{5, u"50"_s}, {11, u"FRA"_s}, {13, u"KJFK"_s}}).Course, 0);
}

// One record read again and again, as a table slot is: a time too long keeps the slot's old value.
TEST_F(Whazzup, DepartureAndEnrouteTimesKeepTheSlotsValueWhenTooLong) {
    const struct {
        const char16_t *dep, *hours, *minutes, *expectedDep, *expectedEnroute;
    } rows[] = {{u"930", u"1", u"5", u"0930", u"0105"},
                {u"12345", u"123", u"5", u"0930", u"0105"},
                {u"", u"12", u"345", u"0000", u"0105"},
                {u"1200", u"12", u"30", u"1200", u"1230"}};
    PilotRecord pilot;
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.dep).toStdString());
        ParsePilot(1,
                   PilotLine(1, {{22, QString::fromUtf16(row.dep)},
                                 {24, QString::fromUtf16(row.hours)},
                                 {25, QString::fromUtf16(row.minutes)}}),
                   m_reference, pilot);
        EXPECT_EQ(pilot.DepTime, QString::fromUtf16(row.expectedDep));
        EXPECT_EQ(pilot.EnrouteTime, QString::fromUtf16(row.expectedEnroute));
    }
}

TEST_F(Whazzup, ControllersAreClassifiedAndPlacedByTheirCallsign) {
    struct Row {
        const char16_t* callsign;
        int facility;
        const char16_t* station;
        float latitude, longitude;
    };
    const Row rows[] = {
        {u"ABC_CTR", kFacilityCentre, u"ABC", 10.0f, 20.0f},
        {u"LON_S_CTR", kFacilityCentre, u"LON_S", 50.5f, 0.5f},
        {u"LON_X_CTR", kFacilityCentre, u"LON", 51.9f, -1.5f},
        {u"QQQ_CTR", kFacilityCentre, u"QQQ", -5.0f, 7.0f}, // unknown FIR: its own position
        {u"KZNY_FSS", kFacilityFlightService, u"KZNY_O", 31.5f, -58.5f},
        {u"jfk_twr", kFacilityTower, u"KJFK", 40.6394f, -73.7793f},
        {u"EDDF_N_APP", kFacilityApproach, u"EDDF", 50.0333f, 8.5706f},
        {u"EGLL_DEL", kFacilityGround, u"EGLL", 51.4707f, -0.4599f},
        {u"EDDF_ATIS", kFacilityAtis, u"EDDF", 50.0333f, 8.5706f},
        {u"LAX_TWR", kFacilityTower, u"LAX", -5.0f, 7.0f}, // no KLAX known: stays as sent
        {u"X_TWR", kFacilityObserver, u"X", -5.0f, 7.0f},
        {u"SMITH_OBS", kFacilityObserver, u"", -5.0f, 7.0f},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.callsign).toStdString());
        const ControllerRecord c =
            Controller(1, {{0, QString::fromUtf16(row.callsign)}, {5, u"-5"_s}, {6, u"7"_s}});
        EXPECT_EQ(c.FacilityType, row.facility);
        EXPECT_EQ(c.Station, QString::fromUtf16(row.station));
        EXPECT_EQ(c.DisplayLatitude, row.latitude);
        EXPECT_EQ(c.DisplayLongitude, row.longitude);
        EXPECT_EQ(c.Latitude, -5.0f);
    }
    EXPECT_EQ(m_data.ObserverCount, 2);
}

TEST_F(Whazzup, ControllerFieldsAreReadAsSent) {
    const ControllerRecord c = Controller(0, {{0, u"eddf_twr"_s},
                                              {1, u"123456"_s},
                                              {2, u"Hans Meier°x"_s},
                                              {4, u"119.900"_s},
                                              {14, u"EU1"_s},
                                              {19, u"50"_s},
                                              {35, u"Frankfurt Tower^§Info A"_s},
                                              {37, u"20261121120000"_s},
                                              {38, u"IvAc"_s},
                                              {39, u"1.2"_s},
                                              {40, u"11"_s},
                                              {41, u"5"_s}});
    EXPECT_EQ(c.Callsign, u"EDDF_TWR");
    EXPECT_EQ(c.RealName, u"Hans Meier");
    EXPECT_EQ(c.Frequency, u"119.900");
    EXPECT_EQ(c.VisualRange, 50.0f);
    EXPECT_EQ(c.AtisMessage, u"Frankfurt Tower^§Info A");
    EXPECT_EQ(c.Rating, 5);
    EXPECT_EQ(c.AdminRating, 11);
    EXPECT_EQ(c.Software, u"IvAc 1.2");
    EXPECT_EQ(c.TimeConnected, u"20261121120000");
}

TEST_F(Whazzup, InterpretationFillsTheTablesAndFigures) {
    const QString text =
        File({u"!GENERAL"_s, u"VERSION = 1"_s, u"RELOAD = 2"_s, u"UPDATE = 20261121142305"_s,
              u"CONNECTED CLIENTS = 6"_s, u"!CLIENTS"_s, PilotLine(1, {{0, u"DLH1"_s}}),
              PilotLine(1, {{0, u"BAW2"_s}}), AtcLine(1, {{0, u"EDDF_TWR"_s}}),
              AtcLine(1, {{0, u"EDDF_ATIS"_s}}), AtcLine(1, {{0, u"JOHN_OBS"_s}}),
              ClientLine(1, u"FOLME"_s, {{0, u"FM1"_s}}), u"!SERVERS"_s, u"EU1:1.2.3.4:Europe:Server:1"_s});
    QStringList shown;
    const InterpretResult result =
        InterpretWhazzup(1, text, m_reference, m_data, m_now, [&](const QString& s) { shown.append(s); });
    EXPECT_TRUE(result.Read);
    EXPECT_TRUE(result.HasClients);
    EXPECT_EQ(result.StatusText, u"VATSIM data interpreted");
    EXPECT_EQ(shown, QStringList{u"VATSIM data downloaded, interpreting data..."_s});
    EXPECT_EQ(m_data.PilotCount, 2);
    EXPECT_EQ(m_data.ControllerCount, 3);
    EXPECT_EQ(m_data.ObserverCount, 1);
    EXPECT_EQ(m_data.ConnectedClients, 4); // 6 less the ATIS and the follow-me car
    EXPECT_EQ(m_data.UpdateStamp, u"20261121142305");
    EXPECT_EQ(m_data.ReloadMinutes, 2);
    EXPECT_EQ(m_data.LastDownload, m_now);
    EXPECT_EQ(m_data.Pilots[2].Callsign, u"BAW2");
    EXPECT_EQ(m_data.Controllers[1].Callsign, u"EDDF_TWR");
}

TEST_F(Whazzup, DecrementsBeforeTheClientCountAreLost) {
    const QString text =
        File({u"!GENERAL"_s, ClientLine(0, u"FOLME"_s, {}), AtcLine(0, {{0, u"EDDF_ATIS"_s}}),
              u"CONNECTED CLIENTS = 3"_s, ClientLine(0, u"FOLME"_s, {}), ClientLine(0, u"FOLME"_s, {}),
              ClientLine(0, u"FOLME"_s, {}), ClientLine(0, u"FOLME"_s, {})});
    const InterpretResult result = Interpret(0, text);
    EXPECT_EQ(m_data.ConnectedClients, 0); // never below 0
    EXPECT_FALSE(result.HasClients);
    EXPECT_EQ(result.StatusText, u"No data to display");
    EXPECT_FALSE(m_data.LastDownload.isValid());
}

TEST_F(Whazzup, FullTablesDropFurtherLinesAndOldSlotsStayStale) {
    // A busy evening of today's VATSIM fits the default tables; the classic limits cut it.
    QStringList lines = {u"CONNECTED CLIENTS = 5400"_s, u"UPDATE = 20261121142305"_s};
    for (int i = 1; i <= 3900; ++i)
        lines.append(PilotLine(1, {{0, u"P%1"_s.arg(i)}}));
    for (int i = 1; i <= 1500; ++i)
        lines.append(AtcLine(1, {{0, u"C%1_CTR"_s.arg(i)}}));
    Interpret(1, File(lines));
    EXPECT_EQ(m_data.PilotCount, 3900);
    EXPECT_EQ(m_data.ControllerCount, 1500);
    EXPECT_EQ(LimitNotice(m_data, 1), u"");

    m_data.SetLimits(1400, 700);
    Interpret(1, File(lines));
    EXPECT_EQ(m_data.PilotCount, 1400);
    EXPECT_EQ(m_data.ControllerCount, 700);
    EXPECT_EQ(m_data.DroppedPilots, 2500); // counted, so the map can say that figures were cut
    EXPECT_EQ(m_data.DroppedControllers, 800);
    EXPECT_EQ(LimitNotice(m_data, 1), u"VATSIM: only 1400 of 3900 pilots and 700 of 1500 controllers and "
                                      u"observers kept; the Preferences raise the limits");
    EXPECT_EQ(m_data.Pilots[1400].Callsign, u"P1400");
    EXPECT_TRUE(m_data.Pilots[1401].Callsign.isEmpty());

    Interpret(1, File({u"CONNECTED CLIENTS = 1"_s, PilotLine(1, {{0, u"NEW"_s}}), u""_s, u""_s, u""_s}));
    EXPECT_EQ(m_data.PilotCount, 1);
    EXPECT_EQ(m_data.Pilots[1].Callsign, u"NEW");
    EXPECT_EQ(m_data.Pilots[2].Callsign, u"P2"); // stale, above the counter
    EXPECT_EQ(m_data.DroppedPilots, 0);
}

TEST_F(Whazzup, HeaderLinesLoseTrailingBlanksAndCarriageReturns) {
    // A real file of 2017 ended its lines with CR CR LF.
    Interpret(1, File({u"UPDATE = 20170101070105 "_s, u"RELOAD = 2\r"_s, u"CONNECTED CLIENTS = 1\r"_s,
                       PilotLine(1, {{0, u"A1"_s}}), u"!SERVERS\r"_s}));
    EXPECT_EQ(m_data.UpdateStamp, u"20170101070105");
    EXPECT_EQ(m_data.ReloadMinutes, 2);
    EXPECT_EQ(m_data.ConnectedClients, 1);
}

TEST_F(Whazzup, TooFewLinesAreNoFile) {
    m_data.PilotCount = 5;
    const InterpretResult result = Interpret(0, u"CONNECTED CLIENTS = 1\nUPDATE = 1\n"_s);
    EXPECT_FALSE(result.Read);
    EXPECT_EQ(m_data.PilotCount, 0);
}

// Random text is the fuzzer's; here lines no buffer, count or number was made for.
TEST_F(Whazzup, OutsizedLinesAndNumbersAreCutToTheirFields) {
    const QString longLine = u"X:1:n:PILOT:"_s + QString(1 << 20, u'7');
    const QString wideLine = u"X:1:n:ATC:"_s + QStringList(10000, u"1e999"_s).join(u':');
    const InterpretResult result =
        Interpret(0, File({u"CONNECTED CLIENTS = 99999999"_s, longLine, wideLine, u"UPDATE"_s, u"RELOAD"_s}));
    EXPECT_TRUE(result.HasClients);
    EXPECT_EQ(m_data.ConnectedClients, 32767);
    EXPECT_EQ(m_data.PilotCount, 1);
    EXPECT_EQ(m_data.UpdateStamp, u"UPDATE");
    EXPECT_EQ(m_data.ReloadMinutes, 0);
    EXPECT_EQ(m_data.Controllers[1].VisualRange, std::numeric_limits<float>::max());
}

} // namespace
} // namespace sky::network
