#include "companion/query_commands.h"

#include "companion_fixture.h"

namespace sky::companion {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;
using testing::Companion;

// The level divides by a thousand on purpose and leaves texts alone; the speed pads to four digits.
TEST(FlightPlanFields, LevelAndSpeedAsTheMessageWritesThem) {
    const struct {
        QString (*format)(const QString&);
        const char16_t *filed, *written;
    } rows[] = {
        {FlightPlanLevel, u"35000", u"F35"},   {FlightPlanLevel, u"5000", u"F05"},
        {FlightPlanLevel, u"350", u"F350"},    {FlightPlanLevel, u"85", u"F085"},
        {FlightPlanLevel, u"FL350", u"FL350"}, {FlightPlanLevel, u"5", u"5"},
        {FlightPlanLevel, u"35500", u"F36"},   {FlightPlanLevel, u"34500", u"F34"},
        {FlightPlanLevel, u"", u""},           {FlightPlanLevel, u"0", u"0"},
        {FlightPlanSpeed, u"450", u"N0450"},   {FlightPlanSpeed, u"85", u"N0085"},
        {FlightPlanSpeed, u"12000", u"N9999"}, {FlightPlanSpeed, u"1000", u"N1000"},
        {FlightPlanSpeed, u"5", u"5"},         {FlightPlanSpeed, u"M082", u"M082"},
        {FlightPlanSpeed, u"", u""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.format(QString::fromUtf16(row.filed)), QString::fromUtf16(row.written))
            << QString::fromUtf16(row.filed).toStdString();
}

TEST_F(Companion, DistMeasuresBetweenAirportsAndClientsAndReportsZerosAsNotFound) {
    EXPECT_EQ(Run(u"dist EDDF KJFK"_s).value(1), u"Distance: 3342.00 nm\r\n");
    EXPECT_EQ(Run(u"dist EDDF XXXX"_s).value(1), u"Callsigns / codes not found\r\n");
    Load(0, {PilotLine(0, u"0=DLH123|5=50.0333|6=9.5706"_s), AtcLine(0, u"0=EDDF|5=50.0333|6=7.5706"_s)});
    // The pilot's own position; a client named like an airport overrides the airport.
    EXPECT_EQ(Run(u"dist DLH123 EDDF"_s).value(1), u"Distance: 77.13 nm\r\n");
    Load(0, {PilotLine(0, u"0=EQ|5=0|6=10"_s)});
    EXPECT_EQ(Run(u"dist EQ EDDF"_s).value(1), u"Callsigns / codes not found\r\n");
}

TEST_F(Companion, IcaoNamesTheAirportMarksItAndCentresTheMap) {
    EXPECT_EQ(
        Run(u"icao eddf"_s),
        (QStringList{u"> icao EDDF"_s, u"EDDF is Frankfurt am Main Airport (Frankfurt am Main, DE)\r\n"_s}));
    EXPECT_EQ(m_host.Marked, QStringList{u"EDDF"_s});
    EXPECT_EQ(m_host.Centred, QStringList{u"EDDF"_s});
    EXPECT_EQ(Run(u"icao zzzz"_s).value(1), u"Unrecognized ICAO code\r\n");
}

TEST_F(Companion, AtisPrintsItsLinesButNotTheVoiceServer) {
    Load(0, {AtcLine(0, u"0=EDDF_TWR|35=EDDF Tower^§Information B^§$ voice line"_s),
             AtcLine(0, u"0=EDDF_GND"_s), AtcLine(0, u"0=EDDM_TWR|35=^§^§Munich^§"_s)});
    EXPECT_EQ(Run(u"atis eddf_twr"_s),
              (QStringList{u"> atis EDDF_TWR"_s, u"EDDF Tower"_s, u"Information B"_s, u""_s}));
    EXPECT_EQ(Run(u"atis EDDF_GND"_s).value(1), u"No ATIS available\r\n");
    EXPECT_EQ(Run(u"atis EDDM_TWR"_s), (QStringList{u"> atis EDDM_TWR"_s, u"Munich"_s, u""_s}));
    EXPECT_EQ(Run(u"atis XXX"_s).value(1), u"XXX is not online\r\n");
}

TEST_F(Companion, FpWritesTheFlightPlanMessage) {
    Load(1, {PilotLine(1, u"0=DLH123|9=H/B744/F|10=450|11=EDDF|12=35000|13=KJFK|21=I|22=930|24=7|25=55|"
                          "28=KBOS|29=RMK/TCAS|30=DCT NIVNU DCT"_s),
             PilotLine(1, u"0=NOPLAN"_s)});
    EXPECT_EQ(Run(u"fp dlh123"_s),
              (QStringList{u"> fp DLH123"_s, u"(FPL-DLH123-I"_s, u"-B744/F"_s, u"-EDDF0930"_s,
                           u"-N0450F35 DCT NIVNU DCT"_s, u"-KJFK0755 KBOS"_s, u"-RMK/TCAS)"_s, u""_s}));
    EXPECT_EQ(Run(u"fp NOPLAN"_s).value(1), u"Flight plan not sent yet\r\n");
    EXPECT_EQ(Run(u"fp GHOST"_s).value(1), u"GHOST is not online\r\n");
}

TEST_F(Companion, InfoListsEveryMatchControllersFirstAndCentresOnTheLast) {
    Load(0, {PilotLine(0, u"0=DLH1|1=123456|2=Jane Roe|5=50|6=8|7=35000|8=450|9=A320|11=EDDF|13=EGLL|"
                          "37=20261121121800|41=5|44=180|45=7"_s),
             AtcLine(0, u"0=EDDF_TWR|1=123456|2=Jane Roe|4=119.900|19=50.4|37=20261121140000|41=4"_s)});
    EXPECT_EQ(Run(u"info 123456"_s),
              (QStringList{u"> info 123456"_s, u"EDDF_TWR is Jane Roe S3 (123456)"_s,
                           u" On 119.900, range 50 nm, online for 0h 23m\r\n"_s,
                           u"DLH1 is Jane Roe FC (123456)"_s, u" Route EDDF-EGLL with A320, 180 POB"_s,
                           u" 35000 ft, 450 kts, hdg 007º, online for 2h 05m\r\n"_s}));
    EXPECT_EQ(m_host.Centred, (QStringList{u"EDDF_TWR"_s, u"DLH1"_s}));
    EXPECT_EQ(m_host.Latitude, 50.0f);
    EXPECT_EQ(Run(u"info nobody"_s).value(1), u"NOBODY is not online\r\n");
}

TEST_F(Companion, ProfOpensTheFirstMatchOrTheSlotAfterTheLastPilot) {
    Load(1,
         {PilotLine(1, u"0=A|1=811111"_s), PilotLine(1, u"0=B|1=822222"_s), PilotLine(1, u"0=C|1=833333"_s)});
    Load(1, {PilotLine(1, u"0=A|1=811111"_s)}); // a smaller download: slot 2 is stale
    EXPECT_EQ(Run(u"prof a"_s).value(1), u"Opened profile of 811111\r\n");
    EXPECT_EQ(Run(u"prof 42"_s).value(1), u"42 is not online\r\n");
    EXPECT_EQ(Run(u"prof 3000000"_s).value(1), u"3000000 is not online\r\n");
    EXPECT_EQ(Run(u"prof 150000"_s).value(1), u"Opened profile of 822222\r\n");
    EXPECT_EQ(m_host.Profiles, (QStringList{u"1:811111"_s, u"1:822222"_s}));
}

TEST_F(Companion, StatAndSupsCountTheNetwork) {
    Load(1,
         {PilotLine(1, u"0=P1"_s), PilotLine(1, u"0=P2"_s), AtcLine(1, u"0=EDDF_TWR"_s),
          AtcLine(1, u"0=JOE_OBS"_s)},
         5);
    EXPECT_EQ(Run(u"stat"_s), (QStringList{u"> stat"_s, u"VATSIM data of 1423Z - 5 clients"_s,
                                           u" (2 ATC, 2 planes, 1 observers)\r\n"_s}));
    EXPECT_EQ(Run(u"sups"_s).value(1), u"No SUP/ADM on VATSIM\r\n");
    Load(0, {AtcLine(0, u"0=XX-SUP|2=Ann Admin|40=11"_s), PilotLine(0, u"0=P1|2=Sam Sup|40=12"_s),
             PilotLine(0, u"0=P2|40=10"_s)});
    EXPECT_EQ(Run(u"sups"_s), (QStringList{u"> sups"_s, u"XX-SUP Ann Admin"_s, u"P1 Sam Sup"_s,
                                           u"\r\nTotal: 2 SUP/ADM on IVAO\r\n"_s}));
}

TEST_F(Companion, RefreshWaitsForTheReloadIntervalThenDownloads) {
    Load(1, {PilotLine(1, u"0=P1"_s)});
    EXPECT_EQ(Run(u"refresh"_s).value(1), u"Please wait at least 120 seconds between two downloads\r\n");
    EXPECT_TRUE(m_host.Downloads.isEmpty());
    m_now = m_now.addSecs(120);
    EXPECT_EQ(Run(u"refresh"_s), (QStringList{u"> refresh"_s, u"Downloading VATSIM data..."_s,
                                              u" VATSIM data of 1423Z downloaded - 1 clients online\r\n"_s}));
    EXPECT_EQ(m_host.Downloads, QList<int>{1});
    m_host.OnDownload = [this](int n) { m_tables[n].PilotCount = 0; };
    m_now = m_now.addSecs(3600);
    EXPECT_EQ(Run(u"refresh"_s).value(2), u" Error downloading VATSIM data\r\n");
}

} // namespace
} // namespace sky::companion
