#include "conditions/flight_category.h"

#include <gtest/gtest.h>

namespace sky::conditions {
namespace {

TEST(FlightCategory, FromTheCeilingAndTheVisibilityTheWorseDecides) {
    const struct {
        const char16_t* metar;
        const char16_t* category;
    } rows[] = {
        {u"EDDF 211420Z 24010KT CAVOK 08/03 Q1012", u"VFR"},
        {u"KJFK 211451Z 31012KT 10SM FEW050 SCT250 08/M06 A3012", u"VFR"},
        {u"KJFK 211451Z 31012KT 10SM BKN030 08/M06 A3012", u"MVFR"},
        {u"KJFK 211451Z 31012KT 10SM OVC031 08/M06 A3012", u"VFR"},
        {u"KJFK 211451Z 31012KT 5SM BR BKN040 08/07 A3012", u"MVFR"},
        {u"KJFK 211451Z 31012KT 2 1/2SM BR OVC008 08/07 A3012", u"IFR"},
        {u"KJFK 211451Z 00000KT 1SM FG BKN010 08/07 A3012", u"IFR"},
        {u"KJFK 211451Z 00000KT 1/2SM FG VV002 08/08 A3012", u"LIFR"},
        {u"KJFK 211451Z 00000KT M1/4SM FG VV001 08/08 A3012", u"LIFR"},
        {u"KSFO 211456Z 28015KT P6SM SKC 15/08 A3001", u"VFR"},
        {u"EGLL 211420Z 24010KT 9999 BKN012 10/08 Q1002", u"MVFR"},
        {u"EGLL 211420Z 24010KT 4000 RA BKN007 10/08 Q1002", u"IFR"},
        {u"EGLL 211420Z 24010KT 0800 FG OVC002 10/10 Q1002", u"LIFR"},
        {u"EHAM 211425Z 21012KT 6000 SCT014 BKN020 09/07 Q1009", u"MVFR"},
        {u"LFPG 211430Z 22008KT 2000 BR NSC 06/06 Q1020", u"IFR"},
        {u"LFPG 211430Z 22008KT 1500 BR NSC 06/06 Q1020", u"LIFR"},     // 1500 m: under a mile
        {u"EDDF 211420Z 24010KT 08/03 Q1012", u""},                     // no visibility, no clouds
        {u"EDDF 211420Z 24010KT BKN004 08/03 Q1012", u"LIFR"},          // clouds without visibility
        {u"KJFK 211451Z 31012KT 10SM 08/M06 A3012 RMK BKN002", u"VFR"}, // the remarks do not count
        {u"", u""},
    };
    for (const auto& row : rows) {
        const QString metar = QString::fromUtf16(row.metar);
        EXPECT_EQ(CategoryName(CategoryOf(ReadConditions(metar))), QString::fromUtf16(row.category))
            << metar.toStdString();
    }
}

} // namespace
} // namespace sky::conditions
