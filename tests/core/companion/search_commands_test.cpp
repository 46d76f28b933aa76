#include "companion_fixture.h"

namespace sky::companion {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;
using testing::Companion;

TEST_F(Companion, VisAroundAPilotCountsPilotsWithin40NmAndControllersWithinTheirRange) {
    // One degree of latitude is 60 nm.
    Load(1, {PilotLine(1, u"0=ME|2=Me|5=50|6=8"_s), PilotLine(1, u"0=NEAR|2=Near|5=50.5|6=8"_s),
             PilotLine(1, u"0=FAR|2=Far|5=51|6=8"_s), AtcLine(1, u"0=BIG_CTR|2=Big|5=52|6=8|19=150"_s),
             AtcLine(1, u"0=SMALL_TWR|2=Small|5=51|6=8|19=30"_s)});
    EXPECT_EQ(Run(u"vis me"_s),
              (QStringList{u"> vis ME"_s, u"BIG_CTR Big (120.1 nm)"_s, u"NEAR Near (30.0 nm)"_s,
                           u"\r\nTotal: 2 clients in visual range of ME\r\n"_s}));
    // Around a controller, pilots count within its own range; other controllers where ranges overlap.
    EXPECT_EQ(Run(u"vis small_twr"_s),
              (QStringList{u"> vis SMALL_TWR"_s, u"BIG_CTR Big (60.0 nm)"_s, u"FAR Far (0.0 nm)"_s,
                           u"\r\nTotal: 2 clients in visual range of SMALL_TWR\r\n"_s}));
    EXPECT_EQ(Run(u"vis far"_s).value(2), u"SMALL_TWR Small (0.0 nm)");
    EXPECT_EQ(Run(u"vis nobody"_s).value(1), u"NOBODY is not online\r\n");
}

TEST_F(Companion, VisThresholdsAreStrictAndARangeOfZeroFindsNoPilots) {
    Load(1, {AtcLine(1, u"0=ZERO_CTR|5=50|6=8"_s), PilotLine(1, u"0=ON|5=50|6=8"_s),
             PilotLine(1, u"0=ALONE|5=10|6=8"_s)});
    EXPECT_EQ(Run(u"vis zero_ctr"_s).value(1), u"No clients in visual range of ZERO_CTR\r\n");
    EXPECT_EQ(Run(u"vis alone"_s).value(1), u"No clients in visual range of ALONE\r\n");
}

TEST_F(Companion, MembersComeFromTheirStationOrHomeBase) {
    Load(0, {AtcLine(0, u"0=EDDF_TWR|1=1|2=Tower"_s), AtcLine(0, u"0=EDGG_CTR|1=2|2=Langen"_s),
             AtcLine(0, u"0=LON_CTR|1=3|2=London"_s), // key "LON_": matches nothing
             PilotLine(0, u"0=DLH1|1=4|2=Hans Meier EDDM"_s), PilotLine(0, u"0=DLH2|1=5|2=Ohne Heimat"_s)});
    EXPECT_EQ(Run(u"members de"_s),
              (QStringList{u"> members DE"_s, u"EDDF_TWR Tower (1)"_s, u"EDGG_CTR Langen (2)"_s,
                           u"DLH1 Hans Meier EDDM (4)"_s, u"\r\nTotal: 3 members from DE on IVAO\r\n"_s}));
    EXPECT_EQ(Run(u"members gb"_s).value(1), u"No members from GB on IVAO\r\n");
}

TEST_F(Companion, FindMatchesCallsignsAndNamesInAnyCaseControllersFirst) {
    Load(0, {PilotLine(0, u"0=DLH1|1=1|2=Jane Roe"_s), AtcLine(0, u"0=EDDF_TWR|1=2|2=Dieter Lehmann"_s)});
    EXPECT_EQ(Run(u"find dl"_s),
              (QStringList{u"> find dl"_s, u"DLH1 Jane Roe (1)"_s, u"\r\nTotal: 1 matches found\r\n"_s}));
    EXPECT_EQ(Run(u"find AN"_s), (QStringList{u"> find an"_s, u"EDDF_TWR Dieter Lehmann (2)"_s,
                                              u"DLH1 Jane Roe (1)"_s, u"\r\nTotal: 2 matches found\r\n"_s}));
    EXPECT_TRUE(Run(u"find E"_s).isEmpty()); // too short a line: ignored
    EXPECT_EQ(Run(u"find zzz"_s).value(1), u"Search string does not match with any callsign / name\r\n");
}

TEST_F(Companion, ActListsWhoIsAroundTheAirportAndCentresOnIt) {
    Load(1, {AtcLine(1, u"0=EDDF_TWR|2=Tower"_s), AtcLine(1, u"0=EDGG_CTR|2=Langen"_s),
             PilotLine(1, u"0=OUT1|2=Out|5=50.05|6=8.6|11=EDDF"_s),
             PilotLine(1, u"0=IN1|2=In|5=50.1|6=8.4|13=EDDF"_s), PilotLine(1, u"0=AWAY|5=40|6=8.4|13=EDDF"_s),
             AtcLine(1, u"0=JOE_OBS|2=Joe|5=50.04|6=8.57"_s)});
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
    Load(0, {PilotLine(0, u"0=DEP|5=50.03|6=8.57|8=0|11=EDDF|13=EGLL"_s),
             PilotLine(0, u"0=CLIMB|5=51|6=7|8=300|11=EDDF|13=EGLL"_s),
             PilotLine(0, u"0=LAND|5=50.04|6=8.58|8=20|11=EGLL|13=EDDF"_s),
             PilotLine(0, u"0=INB|5=49|6=8.57|8=250|11=EDDM|13=EDDF"_s),
             PilotLine(0, u"0=VFR|2=Vic|5=50.02|6=8.56|8=90"_s)});
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
