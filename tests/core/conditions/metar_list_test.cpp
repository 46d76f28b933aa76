#include "conditions/metar_list.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky::conditions {
namespace {

TEST(MetarList, KeepsEachStationsNewestReportAndCountsWhatIsNoReport) {
    const QDateTime now(QDate(2026, 12, 1), QTime(0, 30), Qt::UTC);
    const struct {
        const char16_t* answer;
        const char16_t* station;
        const char16_t* report; // empty: none kept
        int leftOut;
    } rows[] = {
        {u"EGLL 010020Z 24010KT 9999 OVC008 08/06 Q1010", u"EGLL",
         u"EGLL 010020Z 24010KT 9999 OVC008 08/06 Q1010", 0},
        {u"METAR EGLL 010020Z 9999 BKN012=\nSPECI COR EDDF 010025Z CAVOK", u"EDDF", u"EDDF 010025Z CAVOK", 0},
        // Duplicates: the newest wins, in either order; on a tie the later line (a correction).
        {u"EGLL 302350Z 9999 NSC\nEGLL 010020Z 0800 FG\nEGLL 302320Z 3000 BR", u"EGLL",
         u"EGLL 010020Z 0800 FG", 0},
        {u"EGLL 010020Z 9999 NSC\nEGLL 010020Z 9999 BKN004", u"EGLL", u"EGLL 010020Z 9999 BKN004", 0},
        // A report of the day 30 before the first of the month is last month's, not this month's.
        {u"EGLL 302350Z 9999 NSC\nEGLL 010010Z 0800 FG", u"EGLL", u"EGLL 010010Z 0800 FG", 0},
        // A cycle file and a table of the cache: time lines, blanks, headers, fields after the report.
        {u"2026/12/01 00:20\nKJFK 010020Z 10SM FEW050\n\n2026/12/01 00:20\nKBOS 010020Z 1/2SM VV002\n",
         u"KBOS", u"KBOS 010020Z 1/2SM VV002", 0},
        {u"raw_text,station_id,observation_time\nKBOS 010020Z 5SM BR,KBOS,2026-12-01T00:20:00Z", u"KBOS",
         u"KBOS 010020Z 5SM BR", 1},
        // Lines that are no report: cut, no time, impossible day or time, a day more than a day ahead.
        {u"EGL 010020Z 9999\nEGLL 9999 NSC\nEGLL 320020Z 9999\nEGLL 012460Z 9999\nEGLL 000020Z 9999", u"EGLL",
         u"", 5},
        {u"EGLL 310020Z 9999 NSC", u"EGLL", u"", 1}, // November has no 31st either
        {u"EGLL 021200Z 9999 NSC\nEGLL 020020Z 9999 NSC", u"EGLL", u"EGLL 020020Z 9999 NSC", 0},
        // Stations the airport table does not know are dropped, not counted.
        {u"ZZZZ 010020Z 9999 NSC", u"ZZZZ", u"", 0},
        {u"", u"EGLL", u"", 0},
    };
    const auto known = [](const QString& code) { return code != u"ZZZZ"; };
    for (const auto& row : rows) {
        const QString answer = QString::fromUtf16(row.answer);
        SCOPED_TRACE(answer.toStdString());
        const MetarList list = ReadMetarList(answer, now, known);
        const QString station = QString::fromUtf16(row.station);
        EXPECT_EQ(list.Metars.value(station).Text, QString::fromUtf16(row.report));
        EXPECT_EQ(list.LeftOut, row.leftOut);
    }
    EXPECT_EQ(ReadMetarList(u"EGLL 302350Z 9999 NSC"_s, now, known).Metars.value(u"EGLL"_s).ObservedUtc,
              QDateTime(QDate(2026, 11, 30), QTime(23, 50), Qt::UTC));
    EXPECT_EQ(MetarListAddress(u" https://w.example/metar?ids={ids}&format=raw"_s, {u"EGLL"_s, u"EDDF"_s}),
              u"https://w.example/metar?ids=EGLL,EDDF&format=raw"_s);
}

} // namespace
} // namespace sky::conditions
