#include "search/search_index.h"

#include <gtest/gtest.h>

#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"
#include "search/text_fold.h"

using namespace Qt::StringLiterals;

namespace sky::search {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;

TEST(Fold, LowerCaseWithoutAccentsAndOneBlankBetweenWords) {
    EXPECT_EQ(Fold(u"Zürich-Kloten  Airport"_s), u"zurich kloten airport");
    EXPECT_EQ(Fold(u"  Straße, Øresund; Łódź "_s), u"strasse oresund lodz");
    EXPECT_EQ(Fold(u"DLH4AB"_s), u"dlh4ab");
    EXPECT_EQ(Fold(u"--"_s), u"");
}

class Search : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(u"EDDF:Frankfurt Main Airport:Frankfurt am Main:DE:50.03:8.56:FRA\n"
                                "EDFH:Frankfurt-Hahn Airport:Hahn:DE:49.95:7.26:HHN\n"
                                "LSZH:Zürich Airport:Zürich:CH:47.46:8.55:ZRH\n"
                                "KJFK:John F Kennedy International Airport:New York:US:40.64:-73.78:JFK\n"_s);
        m_reference.AddFirCentres(u"EDGG:DE:50.28:8.25:Langen\n"_s);
        const QStringList lines = {PilotLine(1, u"0=DLH4AB|1=1234567|2=Jöhn Müller|11=EDDF|13=KJFK"_s),
                                   PilotLine(1, u"0=DLH40|1=7654321|2=A B"_s),
                                   PilotLine(1, u"0=BAW4|1=1234|2=C D"_s),
                                   AtcLine(1, u"0=EDDF_TWR|1=888888|2=Hans Meier"_s)};
        network::InterpretWhazzup(1, network::testing::WhazzupText(lines), m_reference, m_tables[1],
                                  QDateTime());
        m_index.SetPlaces(m_reference);
        m_index.SetClients(m_tables, {1});
    }

    QStringList Codes(const QString& query) const {
        QStringList codes;
        for (const SearchResult& r : m_index.Find(query, 4))
            codes.append(r.Code);
        return codes;
    }

    ReferenceData m_reference;
    network::ClientTables m_tables;
    SearchIndex m_index;
};

TEST_F(Search, FindsCallsignsMembersNamesAirportsAndFirsBestFirst) {
    const struct {
        const char16_t* query;
        QStringList first;
    } rows[] = {
        {u"DLH4AB", {u"DLH4AB"_s}},             // a callsign as typed
        {u"dlh4", {u"DLH40"_s, u"DLH4AB"_s}},   // prefixes, the shorter line first
        {u"muller", {u"DLH4AB"_s}},             // a name, accents ignored
        {u"JOHN", {u"DLH4AB"_s, u"KJFK"_s}},    // whole words of names and airports
        {u"1234", {u"BAW4"_s, u"DLH4AB"_s}},    // a member number, then one beginning so
        {u"eddf", {u"EDDF"_s, u"EDDF_TWR"_s}},  // the airport, then its station
        {u"eddf_twr", {u"EDDF_TWR"_s}},         // a callsign with its "_"
        {u"FRA", {u"EDDF"_s}},                  // an IATA code
        {u"frankfurt", {u"EDDF"_s, u"EDFH"_s}}, // the airport in use first
        {u"Zurich", {u"LSZH"_s}},               // a city, accents ignored
        {u"langen", {u"EDGG"_s}},               // a FIR's name
        {u"h4a", {u"DLH4AB"_s}},                // inside a callsign
        {u"  ", {}},
        {u"xyzzy", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.query).toStdString());
        EXPECT_EQ(Codes(QString::fromUtf16(row.query)).mid(0, row.first.size()), row.first);
    }
    const auto both = m_index.Find(u"DLH4AB"_s);
    ASSERT_FALSE(both.empty());
    EXPECT_EQ(both[0].Network, 1);
    EXPECT_EQ(both[0].Client, (network::ClientRef{1, true, 1}));
}

} // namespace
} // namespace sky::search
