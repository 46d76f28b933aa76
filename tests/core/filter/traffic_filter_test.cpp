#include "filter/traffic_filter.h"

#include <gtest/gtest.h>

#include "app/friends.h"

using namespace Qt::StringLiterals;

namespace sky::filter {
namespace {

// What the bar's text reads as, in the canonical text it is written back as, and what it could not read.
TEST(ParseFilter, ReadsEveryTermAndWritesItBackCanonically) {
    const struct {
        const char16_t* text;
        const char16_t* canonical;
        QStringList problems;
    } rows[] = {
        {u"", u"", {}},
        {u"dlh, ewg  DLH", u"DLH EWG", {}},
        {u"DLH type:a320, b738 to:eddf from:LF,EG at:egll",
         u"DLH type:A320,B738 from:LF,EG to:EDDF at:EGLL",
         {}},
        {u"FL300-FL100", u"FL100-FL300", {}},
        {u"3000ft-fl100", u"3000ft-FL100", {}},
        {u"-5000", u"-5000ft", {}},
        {u"FL050-", u"5000ft-", {}},
        {u"airborne ground", u"", {}},
        {u"ground air", u"", {}},
        {u"friends Air", u"airborne friends", {}},
        {u"atc:twr atc:ctr", u"atc:ctr,twr", {}},
        {u"atc:fss,dep,obs", u"atc:ctr,app,obs", {}},
        {u"atc:none", u"atc:none", {}},
        {u"DLH foo:bar type: atc:xyz :x - FL9999-",
         u"DLH",
         {u"foo:bar"_s, u"type:"_s, u"atc:xyz"_s, u":x"_s, u"-"_s, u"fl9999-"_s}},
    };
    for (const auto& row : rows) {
        const QString text = QString::fromUtf16(row.text);
        SCOPED_TRACE(text.toStdString());
        const ParsedFilter parsed = ParseFilter(text);
        const QString canonical = FilterText(parsed.Filter, parsed.FriendsOnly);
        EXPECT_EQ(canonical, QString::fromUtf16(row.canonical));
        EXPECT_EQ(parsed.Problems, row.problems);
        const ParsedFilter again = ParseFilter(canonical);
        EXPECT_EQ(again.Filter, parsed.Filter);
        EXPECT_EQ(again.FriendsOnly, parsed.FriendsOnly);
    }
}

network::PilotRecord Pilot(const QString& callsign, const QString& code, const QString& from,
                           const QString& to, float altitudeFt, float speedKts) {
    network::PilotRecord p;
    p.Callsign = callsign;
    p.AircraftCode = code;
    p.AircraftType = u"H/"_s + code + u"/L"_s;
    p.DepAirport = from;
    p.DestAirport = to;
    p.Altitude = altitudeFt;
    p.GroundSpeed = speedKts;
    return p;
}

TEST(TrafficFilter, PilotsPassByPrefixesLevelsAndWhereTheyAre) {
    const network::PilotRecord cruising = Pilot(u"DLH4AB"_s, u"A320"_s, u"EDDF"_s, u"KJFK"_s, 30000, 450);
    network::PilotRecord filedOnly = cruising;
    filedOnly.AircraftCode.clear();
    filedOnly.AircraftType = u"B738/M"_s;
    const struct {
        const char16_t* filter;
        const network::PilotRecord& pilot;
        bool passes;
    } rows[] = {
        {u"", cruising, true},
        {u"dlh", cruising, true},
        {u"EWG BAW", cruising, false},
        {u"DLH4AC", cruising, false},
        {u"type:A32", cruising, true},
        {u"type:B7", cruising, false},
        {u"type:B738", filedOnly, true},
        {u"from:EDDF to:KJFK", cruising, true},
        {u"from:KJFK", cruising, false},
        {u"at:KJ", cruising, true},
        {u"at:EGLL", cruising, false},
        {u"FL100-FL300", cruising, true},
        {u"FL301-", cruising, false},
        {u"-29999", cruising, false},
        {u"airborne", cruising, true},
        {u"ground", cruising, false},
        {u"ground", Pilot(u"DLH1"_s, u"A320"_s, u"EDDF"_s, u"KJFK"_s, 364, 39.9f), true},
        {u"airborne", Pilot(u"DLH1"_s, u"A320"_s, u"EDDF"_s, u"KJFK"_s, 400, 40), true},
        {u"atc:twr", cruising, true}, // station terms never hide pilots
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.filter).toStdString());
        EXPECT_EQ(ParseFilter(QString::fromUtf16(row.filter)).Filter.Passes(row.pilot), row.passes);
    }
}

TEST(TrafficFilter, StationsPassByTheirKindAndPilotTermsNeverHideThem) {
    const struct {
        const char16_t* callsign;
        std::int16_t facility;
        StationBit kind;
    } rows[] = {{u"EDDF_DEL", 3, kDelivery}, {u"EDDF_GND", 3, kGround}, {u"EDDF_TWR", 4, kTower},
                {u"EDDF_APP", 5, kApproach}, {u"EDGG_CTR", 6, kCentre}, {u"EURM_FSS", 7, kCentre},
                {u"EDDF_ATIS", 2, kAtis},    {u"DLH_OBS", 0, kObserver}};
    const TrafficFilter pilotsOnly = ParseFilter(u"DLH type:A320 to:EDDF FL100- airborne"_s).Filter;
    const TrafficFilter towers = ParseFilter(u"atc:twr,del"_s).Filter;
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.callsign).toStdString());
        network::ControllerRecord c;
        c.Callsign = QString::fromUtf16(row.callsign);
        c.FacilityType = row.facility;
        EXPECT_EQ(StationOf(c), row.kind);
        EXPECT_TRUE(pilotsOnly.Passes(c));
        EXPECT_EQ(towers.Passes(c), row.kind == kTower || row.kind == kDelivery);
    }
}

TEST(Visibility, FriendsOnlyAndTheFilterBothApplyAndBadReferencesShowNothing) {
    network::ClientTables tables;
    network::NetworkData& data = tables[1];
    for (const auto& [callsign, member] :
         {std::pair{u"DLH1"_s, u"111"_s}, {u"DLH2"_s, u"222"_s}, {u"BAW3"_s, u"111"_s}}) {
        network::PilotRecord& p = data.Pilots[size_t(++data.PilotCount)];
        p = Pilot(callsign, u"A320"_s, u"EDDF"_s, u"EGLL"_s, 30000, 450);
        p.VID = member;
    }
    const Friends friends = Friends::Parse(u"111\n"_s);
    const TrafficFilter dlh = ParseFilter(u"DLH"_s).Filter;
    EXPECT_EQ(ShownPilots({&dlh, false, &friends}, data), 2);
    EXPECT_EQ(ShownPilots({&dlh, true, &friends}, data), 1);
    EXPECT_EQ(ShownPilots({nullptr, true, &friends}, data), 2);
    EXPECT_FALSE(Visibility{}.Narrows());
    EXPECT_TRUE((Visibility{&dlh, false, &friends}.Narrows()));
    for (const network::ClientRef bad : {network::ClientRef{1, true, 4}, network::ClientRef{1, true, 0},
                                         network::ClientRef{2, true, 1}, network::ClientRef{1, false, 1}})
        EXPECT_FALSE(Visibility{}.Shows(tables, bad));
    EXPECT_TRUE(Visibility{}.Shows(tables, {1, true, 3}));
}

} // namespace
} // namespace sky::filter
