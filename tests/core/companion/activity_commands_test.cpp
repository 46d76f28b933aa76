#include "companion_fixture.h"

namespace sky::companion {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;
using testing::Companion;

TEST_F(Companion, ActListsWhoIsAroundTheAirportAndCentresOnIt) {
    Load(1, {AtcLine(1, {{0, u"EDDF_TWR"_s}, {2, u"Tower"_s}}),
             AtcLine(1, {{0, u"EDGG_CTR"_s}, {2, u"Langen"_s}}),
             PilotLine(1, {{0, u"OUT1"_s}, {2, u"Out"_s}, {5, u"50.05"_s}, {6, u"8.6"_s}, {11, u"EDDF"_s}}),
             PilotLine(1, {{0, u"IN1"_s}, {2, u"In"_s}, {5, u"50.1"_s}, {6, u"8.4"_s}, {13, u"EDDF"_s}}),
             PilotLine(1, {{0, u"AWAY"_s}, {5, u"40"_s}, {6, u"8.4"_s}, {13, u"EDDF"_s}}),
             AtcLine(1, {{0, u"JOE_OBS"_s}, {2, u"Joe"_s}, {5, u"50.04"_s}, {6, u"8.57"_s}})});
    EXPECT_EQ(
        Run(u"act eddf"_s),
        (QStringList{u"> act EDDF"_s, u"EDDF_TWR Tower"_s, u"OUT1 Out (outbound)"_s, u"IN1 In (inbound)"_s,
                     u"JOE_OBS Joe"_s,
                     u"\r\nTotal: 4 clients in vicinity of EDDF (1 ATC, 2 pilots, 1 observers)\r\n"_s}));
    EXPECT_EQ(m_host.Centred, QStringList{u"EDDF"_s});
    EXPECT_EQ(Run(u"act egll"_s).value(1), u"No clients in vicinity of EGLL\r\n");
    EXPECT_EQ(Run(u"act zzzz"_s).value(1), u"Unrecognized ICAO code\r\n");
}

TEST_F(Companion, TrafficReportsTheMovementsOfAnAirportOrACountry) {
    Load(
        0,
        {PilotLine(
             0,
             {{0, u"DEP"_s}, {5, u"50.03"_s}, {6, u"8.57"_s}, {8, u"0"_s}, {11, u"EDDF"_s}, {13, u"EGLL"_s}}),
         PilotLine(
             0,
             {{0, u"CLIMB"_s}, {5, u"51"_s}, {6, u"7"_s}, {8, u"300"_s}, {11, u"EDDF"_s}, {13, u"EGLL"_s}}),
         PilotLine(0, {{0, u"LAND"_s},
                       {5, u"50.04"_s},
                       {6, u"8.58"_s},
                       {8, u"20"_s},
                       {11, u"EGLL"_s},
                       {13, u"EDDF"_s}}),
         PilotLine(
             0,
             {{0, u"INB"_s}, {5, u"49"_s}, {6, u"8.57"_s}, {8, u"250"_s}, {11, u"EDDM"_s}, {13, u"EDDF"_s}}),
         PilotLine(0, {{0, u"VFR"_s}, {2, u"Vic"_s}, {5, u"50.02"_s}, {6, u"8.56"_s}, {8, u"90"_s}})});
    EXPECT_EQ(Run(u"traffic eddf"_s),
              (QStringList{u"> traffic EDDF"_s, u"DEP to EGLL (departing)"_s, u"CLIMB to EGLL (83 nm out)"_s,
                           u"LAND from EGLL (landed)"_s, u"INB from EDDM (62 nm to go)"_s,
                           u"VFR Vic (no fp)"_s, u"\r\nTotal: 5 aircraft (2 outbound, 2 inbound)\r\n"_s}));
    EXPECT_EQ(Run(u"traffic kjfk"_s).value(1), u"No traffic at KJFK\r\n");
    EXPECT_EQ(Run(u"traffic zzzz"_s).value(1), u"Unrecognized ICAO code\r\n");
    const QStringList germany = Run(u"traffic de"_s);
    EXPECT_EQ(germany.size(), 1 + 4 + 1);
    EXPECT_EQ(germany.value(1), u"DEP EDDF-EGLL (Boarding)");
    EXPECT_EQ(germany.last(), u"\r\nTotal: 4 movements in DE\r\n");
    EXPECT_EQ(Run(u"traffic us"_s).value(1), u"No movements in US\r\n");
}

} // namespace
} // namespace sky::companion
