#include "companion_fixture.h"

namespace sky::companion {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;
using testing::Companion;

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
