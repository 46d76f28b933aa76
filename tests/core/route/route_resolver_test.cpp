#include "route/route_resolver.h"

#include <gtest/gtest.h>

#include "refdata/navaids.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::route {
namespace {

TEST(ParseRouteCoordinate, TheFormsOfOceanicRoutes) {
    const struct {
        const char16_t* token;
        float lat, lon;
    } rows[] = {
        {u"50N020W", 50, -20}, {u"55N020W", 55, -20},        {u"5530N02000W", 55.5f, -20},
        {u"N50W020", 50, -20}, {u"N5030W02000", 50.5f, -20}, {u"47S170E", -47, 170},
        {u"5020N", 50, -20},   {u"5020E", 50, 20},           {u"5020S", -50, 20},
        {u"5020W", -50, -20},  {u"50N40", 50, -140},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.token).toStdString());
        const auto p = ParseRouteCoordinate(QString::fromUtf16(row.token));
        ASSERT_TRUE(p.has_value());
        EXPECT_NEAR(p->Lat, row.lat, 1e-4);
        EXPECT_NEAR(p->Lon, row.lon, 1e-4);
    }
    for (const char16_t* nothing : {u"95N020W", u"50N190W", u"DCT", u"N0450F350", u"5020", u"", u"50N020"})
        EXPECT_FALSE(ParseRouteCoordinate(QString::fromUtf16(nothing)).has_value())
            << QString::fromUtf16(nothing).toStdString();
}

class Routes : public ::testing::Test {
protected:
    void SetUp() override {
        m_airports.AddAirports(
            u"EDDF:Frankfurt:Frankfurt:DE:50.03:8.56\nKJFK:Kennedy:New York:US:40.64:-73.78\n"
            "EGLL:Heathrow:London:GB:51.47:-0.46\nEHAM:Schiphol:Amsterdam:NL:52.31:4.76\n"
            "LIRF:Fiumicino:Rome:IT:41.80:12.24\n"_s);
        m_navaids.Add(u"TGO:VOR-DME:19.0478:96.3964:Taungoo\nTGO:VORTAC:48.6184:9.2592:Tango\n"
                      "FFM:VORTAC:50.0537:8.6371:Frankfurt\nBPK:VOR-DME:51.7497:-0.1067:Brookmans Park\n"_s);
    }
    // The names of the places found for a plan written "DEP DEST route...", blank-separated.
    QString Names(const QString& plan) const {
        const QStringList words = plan.split(u' ');
        QStringList names;
        for (const RoutePoint& p :
             ResolveRoute(words.value(0), words.value(1), words.mid(2).join(u' '), m_airports, m_navaids))
            names.append(p.Name);
        return names.join(u' ');
    }
    ReferenceData m_airports;
    Navaids m_navaids;
};

TEST_F(Routes, PlacesAreFoundAndTheRestPassedOver) {
    const struct {
        const char* name;
        const char16_t *plan, *points;
    } rows[] = {
        {"VATSIM, airways and a SID", u"EDDF LIRF ANEKI1A ANEKI Y163 TGO UN871 DCT EHAM/N0450F350",
         u"EDDF TGO EHAM LIRF"},
        {"oceanic, every form", u"EGLL KJFK BPK UL9 50N020W 5230N03000W N52W040 5150N DCT",
         u"EGLL BPK 50N020W 5230N03000W N52W040 5150N KJFK"},
        {"IVAO, speed groups with dots", u"EDDF EHAM N0450F350 DCT FFM.DCT..EHAM", u"EDDF FFM EHAM"},
        {"garbage", u"EDDF XXXX §$%& ::: 99N999W TGOTGOTGO", u"EDDF"},
        {"no plan", u"", u""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Names(QString::fromUtf16(row.plan)), QString::fromUtf16(row.points)) << row.name;
    // TGO near Frankfurt is the German one, not Myanmar's.
    const auto points = ResolveRoute(u"EDDF"_s, u"LIRF"_s, u"TGO"_s, m_airports, m_navaids);
    ASSERT_EQ(points.size(), 3u);
    EXPECT_NEAR(points[1].Latitude, 48.6184f, 1e-3);
    // Thousands of words: the first 600 are read, none breaks anything.
    QString many;
    for (int i = 0; i < 5000; ++i)
        many += u"50N020W "_s;
    EXPECT_EQ(ResolveRoute(u"EGLL"_s, u"KJFK"_s, many, m_airports, m_navaids).size(), 602u);
}

} // namespace
} // namespace sky::route
