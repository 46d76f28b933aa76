#include "conditions/runways.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky::conditions {
namespace {

TEST(ParseRunways, ReadsTheRunwaysInUseAsRealAtisSayThem) {
    const struct {
        const char16_t* text;
        const char16_t* arrival;
        const char16_t* departure;
    } rows[] = {
        // Said once, for both.
        {u"EDDF ATIS INFO D 1450Z RWY 25R IN USE", u"25R", u"25R"},
        {u"RUNWAYS IN USE 26L AND 26R", u"26L 26R", u"26L 26R"},
        {u"RUNWAY IN USE 07", u"07", u"07"},
        {u"ACTIVE RUNWAY 09", u"09", u"09"},
        {u"rwy 25c in use", u"25C", u"25C"},
        {u"RWY 7L IN USE", u"07L", u"07L"},
        {u"RWYS 25L/25R IN USE", u"25L 25R", u"25L 25R"},
        {u"RWY 27L, 27R IN USE. TRL 70", u"27L 27R", u"27L 27R"},
        {u"RUNWAYS 08L & 08R", u"08L 08R", u"08L 08R"},
        {u"RWY: 33", u"33", u"33"},
        // Split into arrivals and departures.
        {u"LANDING RUNWAY 07L, DEPARTING RUNWAY 07R", u"07L", u"07R"},
        {u"ARR RWY 27 DEP RWY 33", u"27", u"33"},
        {u"EXPECT ILS APPROACH RUNWAY 24", u"24", u""},
        {u"ARRIVAL RUNWAY 25L DEPARTURE RUNWAY 25C", u"25L", u"25C"},
        {u"LDG RWY 18 TKOF RWY 36", u"18", u"36"},
        {u"DEP RWY 18. ARR RWYS 25L 25C", u"25L 25C", u"18"},
        {u"RWY 27L FOR LANDING, RWY 27R FOR DEPARTURE", u"27L", u"27R"},
        {u"RWY 09L FOR ARRIVALS RWY 09R FOR TAKEOFF", u"09L", u"09R"},
        {u"APPROACH ILS RWY 23 DEPARTURE RWY 23", u"23", u"23"},
        {u"TAKE-OFF RUNWAY 16 LANDING RUNWAY 14", u"14", u"16"},
        {u"EXPECT VECTORS FOR ILS RWY 28R", u"28R", u""},
        {u"ARRIVALS RWY 04R AND 04L. DEPARTURES RWY 04L", u"04R 04L", u"04L"},
        {u"LANDING RWY 26R DEP RWY 26L AND 26R", u"26R", u"26L 26R"},
        {u"APCH RWY 22 IN USE", u"22", u""},
        // On several lines, as the feeds give them.
        {u"EDDF ATIS INFO B^\u00A7ARR RWY 26L^\u00A7DEP RWY 26R", u"26L", u"26R"},
        {u"ATIS INFORMATION KILO\nRWY 34 IN USE\nQNH 1013", u"34", u"34"},
        // Mistakes and what is not a runway in use.
        {u"RWY 25R CLOSED, RWY 25L IN USE", u"25L", u"25L"},
        {u"RWY 07 CLSD. RWY 25 IN USE", u"25", u"25"},
        {u"RWY 37 IN USE", u"", u""},
        {u"RWY 00 IN USE", u"", u""},
        {u"RWY 45L IN USE", u"", u""},
        {u"RWY IN USE", u"", u""},
        {u"RWY", u"", u""},
        {u"WIND 250 DEGREES 12 KNOTS TEMPERATURE 18", u"", u""},
        {u"QNH 1013 TRANSITION LEVEL 70", u"", u""},
        {u"RWY 25R WIND 240 10KT", u"25R", u"25R"},
        {u"RWY 25R 240 AT 10", u"25R", u"25R"},
        {u"", u"", u""},
        // Two airports in one text: only the own one's runways.
        {u"EDDF RWY 25L IN USE EDDS RWY 07 IN USE", u"25L", u"25L"},
        {u"EDDS RWY 07 IN USE. EDDF RWY 18 DEP", u"18", u"18"},
        {u"EDDF ATIS D RWY 25C. EDFE ATIS RWY 26", u"25C", u"25C"},
        {u"ATIS INFORMATION D RWY 25C", u"25C", u"25C"},
    };
    for (const auto& row : rows) {
        const QString text = QString::fromUtf16(row.text);
        SCOPED_TRACE(text.toStdString());
        const RunwaysInUse r = ParseRunways(text, u"EDDF"_s);
        EXPECT_EQ(r.Arrival.join(u' '), QString::fromUtf16(row.arrival));
        EXPECT_EQ(r.Departure.join(u' '), QString::fromUtf16(row.departure));
    }
}

TEST(AtisLetter, IsTheLetterOrThePhoneticWordAfterInformationOrAtis) {
    const struct {
        const char16_t* text;
        const char16_t* letter;
    } rows[] = {{u"EDDF ATIS INFO D 1450Z", u"D"},
                {u"THIS IS HEATHROW INFORMATION BRAVO", u"B"},
                {u"ATIS INFORMATION X-RAY", u"X"},
                {u"KJFK ATIS INFO Z", u"Z"},
                {u"EDDM ATIS B", u"B"},
                {u"INFORMATION 1234", u""},
                {u"NO LETTER HERE", u""}};
    for (const auto& row : rows)
        EXPECT_EQ(AtisLetter(QString::fromUtf16(row.text)), QString::fromUtf16(row.letter))
            << QString::fromUtf16(row.text).toStdString();
}

TEST(RunwaysText, SaysEachOnceOrSplitsThem) {
    EXPECT_EQ(RunwaysText({{u"25R"_s}, {u"25R"_s}}), u"25R");
    EXPECT_EQ(RunwaysText({{u"25L"_s, u"25R"_s}, {u"25C"_s}}), u"arrival 25L 25R, departure 25C");
    EXPECT_EQ(RunwaysText({{u"25L"_s}, {u"25C"_s}}, RunwayWords::Short), u"arr 25L, dep 25C");
    EXPECT_EQ(RunwaysText({{u"24"_s}, {}}), u"arrival 24");
}

} // namespace
} // namespace sky::conditions
