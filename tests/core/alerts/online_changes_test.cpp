#include "alerts/online_changes.h"

#include <gtest/gtest.h>

#include "alerts/watch_list.h"
#include "app/friends.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::alerts {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;

TEST(WatchPattern, MatchesStarsAndQuestionMarksIgnoringCase) {
    struct Row {
        const char16_t* pattern;
        const char16_t* callsign;
        bool matches;
    } rows[] = {
        {u"EDDF_*", u"EDDF_TWR", true},
        {u"EDDF_*", u"eddf_n_app", true},
        {u"EDDF_*", u"EDDM_TWR", false},
        {u"*_CTR", u"LON_S_CTR", true},
        {u"*_CTR", u"LON_S_CTR1", false},
        {u"LON_?_CTR", u"LON_S_CTR", true},
        {u"LON_?_CTR", u"LON_CTR", false},
        {u"*", u"", true},
        {u"", u"A", false},
        {u"*A*B*", u"XXAYYBZZ", true},
        {u"*A*B", u"XXAYYBZZ", false},
        {u"EDDF_TWR", u"EDDF_TWR", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(MatchesPattern(row.pattern, row.callsign), row.matches)
            << QString::fromUtf16(row.pattern).toStdString() << " "
            << QString::fromUtf16(row.callsign).toStdString();
}

TEST(WatchPattern, TheListKeepsEachPatternOnceNormalisedUpToItsLimit) {
    WatchList list = WatchList::Parse(u"eddf_*\n  *_CTR \r\nEDDF_*\nnot a pattern\n;drop\nEGLL_TWR\n\n"_s);
    EXPECT_EQ(list.Patterns(), (QStringList{u"EDDF_*"_s, u"*_CTR"_s, u"EGLL_TWR"_s}));
    EXPECT_FALSE(list.Add(u"x"_s.repeated(21)));
    EXPECT_TRUE(list.Matches(u"egll_twr"_s));
    EXPECT_TRUE(list.Remove(u"egll_twr"_s));
    EXPECT_TRUE(list.Remove(u"*_ctr"_s));
    EXPECT_FALSE(list.Remove(u"*_CTR"_s));
    EXPECT_FALSE(list.Matches(u"EGLL_TWR"_s) || list.Matches(u"LON_CTR"_s));
    EXPECT_EQ(WatchList::Parse(QString::fromUtf8(list.ToBytes())).Patterns(), list.Patterns());
    // A list grown by a script: the first ones are kept, the rest counted as refused (a quadratic load
    // of these 200,000 lines would outlast the test's time limit).
    QString text;
    for (int i = 0; i < 200000; ++i)
        text += u"W%1_*\n"_s.arg(i);
    WatchList big = WatchList::Parse(text);
    ASSERT_EQ(big.Patterns().size(), WatchList::kMaxPatterns);
    EXPECT_EQ(big.Refused(), 200000 - WatchList::kMaxPatterns);
    EXPECT_FALSE(big.Add(u"EDDF_TWR"_s));
    EXPECT_TRUE(big.Remove(u"W0_*"_s));
    EXPECT_TRUE(big.Add(u"EDDF_TWR"_s));
}

// One download of a network holding these clients.
network::NetworkData Download(int n, const QStringList& clientLines) {
    static const ReferenceData reference;
    network::NetworkData data;
    network::InterpretWhazzup(n, network::testing::WhazzupText(clientLines), reference, data, {});
    return data;
}

QString Pilot(int n, const QString& callsign, const QString& member) {
    return PilotLine(n, {{0, callsign}, {1, member}, {2, u"Anna Berg"_s}, {5, u"50"_s}, {6, u"8"_s}});
}
QString Station(int n, const QString& callsign, const QString& member) {
    return AtcLine(
        n, {{0, callsign}, {1, member}, {2, u"Ben Cole"_s}, {5, u"50"_s}, {6, u"8"_s}, {4, u"118.500"_s}});
}

TEST(CompareOnline, TellsWhoOfInterestCameOrWentOnEitherNetwork) {
    const Friends friends = Friends::Parse(u"111111\n222222\n"_s);
    const WatchList watches = WatchList::Parse(u"EDDF_*\n*_CTR\n"_s);
    struct Row {
        const char* what;
        QStringList before, after;
        QStringList told; // per network 0 and 1 alike
    } rows[] = {
        {"a friend connects", {}, {u"P:DLH1:111111"_s}, {u"Friend Anna Berg (DLH1) is online on %1"_s}},
        {"a friend leaves", {u"P:DLH1:111111"_s}, {}, {u"Friend Anna Berg (DLH1) went offline on %1"_s}},
        {"a friend reconnects as another callsign", {u"P:DLH1:111111"_s}, {u"P:DLH2:111111"_s}, {}},
        {"a friend staffs a station",
         {},
         {u"A:EDDM_TWR:222222"_s},
         {u"Friend Ben Cole (EDDM_TWR) is online on %1"_s}},
        {"a stranger comes and goes", {u"P:AFR1:999999"_s}, {u"P:BAW1:888888"_s}, {}},
        {"a watched station opens", {}, {u"A:EDDF_TWR:999999"_s}, {u"EDDF_TWR opened on %1"_s}},
        {"a watched station closes", {u"A:LON_S_CTR:999999"_s}, {}, {u"LON_S_CTR closed on %1"_s}},
        {"a watched station changes hands", {u"A:EDDF_TWR:999999"_s}, {u"A:EDDF_TWR:888888"_s}, {}},
        {"an unwatched station opens", {}, {u"A:EDDM_TWR:999999"_s}, {}},
        {"both at once, friends first",
         {u"A:EDDF_GND:999999"_s},
         {u"P:DLH1:111111"_s},
         {u"Friend Anna Berg (DLH1) is online on %1"_s, u"EDDF_GND closed on %1"_s}},
    };
    for (int n = 0; n < 2; ++n) {
        for (const Row& row : rows) {
            const auto lines = [&](const QStringList& clients) {
                QStringList out;
                for (const QString& c : clients) {
                    const QStringList f = c.split(u':');
                    out.append(f[0] == u"P" ? Pilot(n, f[1], f[2]) : Station(n, f[1], f[2]));
                }
                return out;
            };
            const auto changes =
                CompareOnline(n, WhoIsOnline(Download(n, lines(row.before)), friends, watches),
                              WhoIsOnline(Download(n, lines(row.after)), friends, watches));
            QStringList told;
            for (const OnlineChange& change : changes) {
                told.append(change.Text());
                EXPECT_EQ(change.Network, n);
            }
            QStringList expected;
            for (const QString& text : row.told)
                expected.append(text.arg(network::NetworkName(n)));
            EXPECT_EQ(told, expected) << row.what << " on network " << n;
        }
    }
}

} // namespace
} // namespace sky::alerts
