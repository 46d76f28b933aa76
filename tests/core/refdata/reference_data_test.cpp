#include "refdata/reference_data.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

TEST(ReferenceData, ReadsAirportsAndAnswersThePositionLookupInText) {
    ReferenceData data;
    data.AddAirports(u"EDDF:Frankfurt am Main Airport:Frankfurt am Main:DE:50.0333:8.5706\r\n"
                     "\n"
                     "broken:line\n"
                     "KJFK:John F. Kennedy International Airport:New York:US:40.6394:-73.7793\n"
                     "EDDF:Duplicate:Nowhere:XX:1:1\n");
    EXPECT_EQ(data.Airports().size(), 2);
    EXPECT_EQ(data.AirportPosition(u"EDDF"), u"50.0333:8.5706");
    EXPECT_EQ(data.AirportPosition(u"eddf"), u"50.0333:8.5706");
    EXPECT_EQ(data.AirportPosition(u"ZZZZ"), u"0:0");
    EXPECT_EQ(data.AirportPosition(u""), u"0:0");
    const Airport* jfk = data.FindAirport(u"KJFK");
    ASSERT_NE(jfk, nullptr);
    EXPECT_EQ(jfk->Name, u"John F. Kennedy International Airport");
    EXPECT_EQ(jfk->City, u"New York");
    EXPECT_EQ(jfk->CountryCode, u"US");
    EXPECT_EQ(jfk->Longitude, -73.7793f);
}

TEST(ReferenceData, ReadsFirCentresWithTheirCountryAndName) {
    ReferenceData data;
    data.AddFirCentres(
        u"LON_S:GB:50.5000:0.5000:London ACC (South) - London\nEDGG:DE:50.28:8.25:Langen\nX:1\n");
    const FirCentre* south = data.FindFirCentre(u"lon_s");
    ASSERT_NE(south, nullptr);
    EXPECT_EQ(south->CountryCode, u"GB");
    EXPECT_EQ(south->Latitude, 50.5f);
    EXPECT_EQ(south->Name, u"London ACC (South) - London");
    EXPECT_TRUE(data.HasFirCentre(u"EDGG"));
    EXPECT_FALSE(data.HasFirCentre(u"X"));
}

TEST(ShippedReferenceData, CoversTheAirportsAndFirsEveryoneFliesTo) {
    const ReferenceData data = ReferenceData::Load(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s);
    EXPECT_GT(data.Airports().size(), 19000);
    EXPECT_GT(data.FirCentres().size(), 2000);
    for (const char16_t* code : {u"EDDF", u"KJFK", u"EGLL", u"YSSY", u"SBGR", u"FAOR", u"RJTT", u"ZBAA"})
        EXPECT_TRUE(data.HasAirport(code)) << QString::fromUtf16(code).toStdString();
    for (const char16_t* fir : {u"EDGG", u"LON", u"LON_S", u"EGTT", u"KZNY_O", u"NAT", u"CZQX"})
        EXPECT_TRUE(data.HasFirCentre(fir)) << QString::fromUtf16(fir).toStdString();
    EXPECT_EQ(data.FindFirCentre(u"EDGG")->CountryCode, u"DE");
    EXPECT_EQ(data.FindAirport(u"EGLL")->CountryCode, u"GB");
}

} // namespace
} // namespace sky
