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

    PilotRecord Pilot(int network, const QString& fields) {
        PilotRecord pilot;
        ParsePilot(network, PilotLine(network, fields), m_reference, pilot);
        return pilot;
    }

    ControllerRecord Controller(int network, const QString& fields) {
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
    const struct {
        int field;
        const char16_t *text, *first, *second;
    } rows[] = {
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
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        const PilotRecord p = Pilot(1, u"%1=%2"_s.arg(row.field).arg(QString::fromUtf16(row.text)));
        EXPECT_EQ(row.field == 2 ? p.RealName : p.AircraftType, QString::fromUtf16(row.first));
        EXPECT_EQ(row.field == 2 ? p.HomeBase : p.AircraftCode, QString::fromUtf16(row.second));
    }
}

TEST_F(Whazzup, AltitudeAndSpeedAreLimited) {
    const struct {
        const char16_t *altitude, *speed;
        float altitudeFt, speedKts;
    } rows[] = {
        {u"35000", u"450", 35000, 450},
        {u"120000", u"12000", 100000, 9999},
        {u"99999", u"9999", 99999, 9999},
        {u"99999.5", u"9999.5", 100000, 9999},
        {u"-50", u"-1", 0, 0},
        {u"abc", u"", 0, 0},
        {u"1e308", u"1e999", 100000, 9999},
        {u"NaN", u"inf", 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.altitude).toStdString());
        const PilotRecord pilot =
            Pilot(0, u"7=%1|8=%2"_s.arg(QString::fromUtf16(row.altitude), QString::fromUtf16(row.speed)));
        EXPECT_EQ(pilot.Altitude, row.altitudeFt);
        EXPECT_EQ(pilot.GroundSpeed, row.speedKts);
    }
}

TEST_F(Whazzup, EachNetworkReadsItsOwnFieldsForRatingsHeadingAndSoftware) {
    const PilotRecord ivao = Pilot(0, u"16=9|38= IvAp|39=2.0.2 |40=2|41=5|43=S|44=180|45=271.5"_s);
    // Rating, supervisor, heading, people on board.
    EXPECT_EQ((std::vector<int>{ivao.Rating, ivao.AdminRating, ivao.Heading, ivao.POB}),
              (std::vector<int>{5, 2, 272, 180}));
    EXPECT_EQ(ivao.FlightType, u"S");
    EXPECT_EQ(ivao.Software, u"IvAp 2.0.2");

    const PilotRecord vatsim = Pilot(1, u"16=3|38=90.5|40=7|44=180"_s);
    // The heading 90.5 to the even neighbour.
    EXPECT_EQ((std::vector<int>{vatsim.Rating, vatsim.AdminRating, vatsim.Heading, vatsim.POB}),
              (std::vector<int>{3, 3, 90, 0}));
    EXPECT_EQ(vatsim.Software, u"");
}

TEST_F(Whazzup, AirportsGivePositionsAndTheCourseToOrFromThem) {
    const PilotRecord enRoute = Pilot(1, u"5=50|6=-30|11=EDDF|13=KJFK|28=KBOS"_s);
    EXPECT_EQ(enRoute.DepLatitude, 50.0333f);
    EXPECT_EQ(enRoute.DestLongitude, -73.7793f);
    EXPECT_EQ(enRoute.AltAirport, u"KBOS");
    EXPECT_EQ(enRoute.Course, -90); // towards New York, due west at first (-89.8), as a negative course

    // Destination unknown: the course from the departure airport to the aircraft.
    const PilotRecord outbound = Pilot(1, u"5=55|6=8.5706|11=eddf|13=ZZZZ"_s);
    EXPECT_EQ(outbound.DestLatitude, 0.0f);
    EXPECT_EQ(outbound.Course, 0); // due north of Frankfurt

    // A departure that is not a four-letter code gives no course.
    EXPECT_EQ(Pilot(1, u"5=50|11=FRA|13=KJFK"_s).Course, 0);
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
                   PilotLine(1, u"22=%1|24=%2|25=%3"_s.arg(QString::fromUtf16(row.dep),
                                                           QString::fromUtf16(row.hours),
                                                           QString::fromUtf16(row.minutes))),
                   m_reference, pilot);
        EXPECT_EQ(pilot.DepTime, QString::fromUtf16(row.expectedDep));
        EXPECT_EQ(pilot.EnrouteTime, QString::fromUtf16(row.expectedEnroute));
    }
}

TEST_F(Whazzup, ControllersAreClassifiedAndPlacedByTheirCallsign) {
    const struct {
        const char16_t* callsign;
        int facility;
        const char16_t* station;
        float latitude, longitude;
    } rows[] = {
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
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.callsign).toStdString());
        const ControllerRecord c = Controller(1, u"0=%1|5=-5|6=7"_s.arg(QString::fromUtf16(row.callsign)));
        EXPECT_EQ(c.FacilityType, row.facility);
        EXPECT_EQ(c.Station, QString::fromUtf16(row.station));
        EXPECT_EQ(c.DisplayLatitude, row.latitude);
        EXPECT_EQ(c.DisplayLongitude, row.longitude);
        EXPECT_EQ(c.Latitude, -5.0f);
    }
    EXPECT_EQ(m_data.ObserverCount, 2);
}

TEST_F(Whazzup, ControllerFieldsAreReadAsSent) {
    const ControllerRecord c =
        Controller(0, u"0=eddf_twr|1=123456|2=Hans Meier°x|4=119.900|14=EU1|19=50|"
                      "35=Frankfurt Tower^§Info A|37=20261121120000|38=IvAc|39=1.2|40=11|41=5"_s);
    EXPECT_EQ((QStringList{c.Callsign, c.RealName, c.Frequency, c.AtisMessage, c.Software, c.TimeConnected}),
              (QStringList{u"EDDF_TWR"_s, u"Hans Meier"_s, u"119.900"_s, u"Frankfurt Tower^§Info A"_s,
                           u"IvAc 1.2"_s, u"20261121120000"_s}));
    EXPECT_EQ(c.VisualRange, 50.0f);
    EXPECT_EQ((std::vector<int>{c.Rating, c.AdminRating}), (std::vector<int>{5, 11}));
}

TEST_F(Whazzup, InterpretationFillsTheTablesAndFigures) {
    const QString text =
        File({u"!GENERAL"_s, u"VERSION = 1"_s, u"RELOAD = 2"_s, u"UPDATE = 20261121142305"_s,
              u"CONNECTED CLIENTS = 6"_s, u"!CLIENTS"_s, PilotLine(1, u"0=DLH1"_s), PilotLine(1, u"0=BAW2"_s),
              AtcLine(1, u"0=EDDF_TWR"_s), AtcLine(1, u"0=EDDF_ATIS"_s), AtcLine(1, u"0=JOHN_OBS"_s),
              ClientLine(1, u"FOLME"_s, u"0=FM1"_s), u"!SERVERS"_s, u"EU1:1.2.3.4:Europe:Server:1"_s});
    const InterpretResult result = Interpret(1, text);
    EXPECT_TRUE(result.Read);
    EXPECT_TRUE(result.HasClients);
    // Pilots, controllers, observers, and the clients: 6 less the ATIS and the follow-me car.
    EXPECT_EQ((std::vector<int>{m_data.PilotCount, m_data.ControllerCount, m_data.ObserverCount,
                                m_data.ConnectedClients}),
              (std::vector<int>{2, 3, 1, 4}));
    EXPECT_EQ(m_data.UpdateStamp, u"20261121142305");
    EXPECT_EQ(m_data.Pilots[2].Callsign, u"BAW2");
    EXPECT_EQ(m_data.Controllers[1].Callsign, u"EDDF_TWR");
}

TEST_F(Whazzup, DecrementsBeforeTheClientCountAreLost) {
    const QString car = ClientLine(0, u"FOLME"_s, QString());
    const QString text = File(
        {u"!GENERAL"_s, car, AtcLine(0, u"0=EDDF_ATIS"_s), u"CONNECTED CLIENTS = 3"_s, car, car, car, car});
    const InterpretResult result = Interpret(0, text);
    EXPECT_EQ(m_data.ConnectedClients, 0); // never below 0
    EXPECT_FALSE(result.HasClients);
    EXPECT_EQ(result.StatusText, u"No data to display");
    EXPECT_FALSE(m_data.LastDownload.isValid());
}

TEST_F(Whazzup, FullTablesDropFurtherLinesAndOldSlotsStayStale) {
    // A quiet network holds little; a busy evening of today's VATSIM fits the default tables; the
    // classic limits cut it.
    Interpret(1, File({u"CONNECTED CLIENTS = 1"_s, PilotLine(1, u"0=ONE"_s), u""_s, u""_s, u""_s}));
    EXPECT_LT(m_data.Pilots.capacity() + m_data.Controllers.capacity(), 1000u);
    QStringList lines = {u"CONNECTED CLIENTS = 5400"_s, u"UPDATE = 20261121142305"_s};
    for (int i = 1; i <= 3900; ++i)
        lines.append(PilotLine(1, u"0=P%1"_s.arg(i)));
    for (int i = 1; i <= 1500; ++i)
        lines.append(AtcLine(1, u"0=C%1_CTR"_s.arg(i)));
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

    m_data.SetLimits(kMaxPilots, kMaxControllers);
    Interpret(1, File(lines));
    EXPECT_EQ(m_data.Pilots[3900].Callsign, u"P3900");
    EXPECT_EQ(m_data.Controllers[1500].Callsign, u"C1500_CTR");

    Interpret(1, File({u"CONNECTED CLIENTS = 1"_s, PilotLine(1, u"0=NEW"_s), u""_s, u""_s, u""_s}));
    EXPECT_EQ(m_data.PilotCount, 1);
    EXPECT_EQ(m_data.Pilots[1].Callsign, u"NEW");
    EXPECT_EQ(m_data.Pilots[2].Callsign, u"P2"); // stale, above the counter
    EXPECT_EQ(m_data.DroppedPilots, 0);
}

TEST_F(Whazzup, HeaderLinesLoseTrailingBlanksAndCarriageReturns) {
    // A real file of 2017 ended its lines with CR CR LF.
    Interpret(1, File({u"UPDATE = 20170101070105 "_s, u"RELOAD = 2\r"_s, u"CONNECTED CLIENTS = 1\r"_s,
                       PilotLine(1, u"0=A1"_s), u"!SERVERS\r"_s}));
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
