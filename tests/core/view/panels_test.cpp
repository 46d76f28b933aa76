#include "view/panels.h"

#include <gtest/gtest.h>

#include "app/friends.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "qt_printers.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;

TEST(PanelModeOf, FollowsTheOpenPanels) {
    const struct {
        bool starting, info, list, board;
        PanelMode mode;
    } rows[] = {{true, false, false, false, PanelMode::Starting},
                {false, false, false, false, PanelMode::None},
                {false, true, false, false, PanelMode::InfoBox},
                {false, false, true, false, PanelMode::Table},
                {false, false, false, true, PanelMode::Table},
                {false, true, true, false, PanelMode::TableAndInfoBox},
                {false, true, false, true, PanelMode::TableAndInfoBox}};
    for (const auto& row : rows) {
        PanelState p;
        p.Starting = row.starting;
        if (row.info)
            p.InfoClient = ClientRef{0, true, 1};
        p.ListOpen = row.list;
        p.BoardOpen = row.board;
        EXPECT_EQ(PanelModeOf(p), row.mode);
    }
}

TEST(HitTestPanels, FindsButtonsTabsRowsAndPagersTheInfoBoxOnTop) {
    for (const auto& [w, h] : {std::pair{800, 600}, std::pair{1920, 1080}}) {
        SCOPED_TRACE(w);
        const PanelLayout l = LayoutPanels(w, h);
        EXPECT_LE(l.InfoBox.X + l.InfoBox.Width, w);
        EXPECT_LE(l.ListPanel.Y + l.ListPanel.Height, h);
        EXPECT_GE(l.Rows.size(), 30u);
        PanelState p;
        p.ListOpen = true;
        p.InfoClient = ClientRef{};
        const auto at = [&](const PixelRect& r) { return HitTestPanels(l, p, r.X + 2, r.Y + 2); };
        EXPECT_EQ(at(l.CentreButton).Kind, PanelHitKind::Centre);
        EXPECT_EQ(at(l.ProfileButton).Kind, PanelHitKind::Profile);
        EXPECT_EQ(at(l.FriendButton).Kind, PanelHitKind::Friend);
        EXPECT_EQ(at(l.ChartButton).Kind, PanelHitKind::Chart); // a pilot's; a station has Watch there
        EXPECT_EQ(at(l.Tabs[3]).Kind, PanelHitKind::Tab);
        EXPECT_EQ(at(l.Tabs[3]).Index, 3);
        EXPECT_EQ(at(l.Rows[5]).Index, 5);
        EXPECT_EQ(at(l.PreviousPage).Kind, PanelHitKind::PreviousPage);
        EXPECT_EQ(at(l.NextPage).Kind, PanelHitKind::NextPage);
        EXPECT_EQ(HitTestPanels(l, p, l.InfoBox.X + 10, l.InfoBox.Y + 24 + 3 * 13 + 5).Index, 3);
        EXPECT_EQ(HitTestPanels(l, p, w - 2, h - 2).Kind, PanelHitKind::None);
        p.InfoClient.reset();
        EXPECT_EQ(at(l.FriendButton).Kind, PanelHitKind::None);          // no box open, nothing there
        EXPECT_NE(at(l.BoardChartButton).Kind, PanelHitKind::Chart); // only the board has one
        p.ListOpen = false;
        p.BoardOpen = true;
        EXPECT_EQ(at(l.BoardChartButton).Kind, PanelHitKind::Chart);
    }
}

TEST(WrapText, BreaksAtBlanksAndCutsOverlongWords) {
    EXPECT_EQ(WrapText(u"DCT ANEKI Y7 NIK DCT"_s, 10), (QStringList{u"DCT ANEKI"_s, u"Y7 NIK DCT"_s}));
    EXPECT_EQ(WrapText(u"ABCDEFGHIJKLMNO X"_s, 6), (QStringList{u"ABCDEF"_s, u"GHIJKL"_s, u"MNO X"_s}));
    EXPECT_TRUE(WrapText(u"   "_s, 10).isEmpty());
}

TEST(SortRows, NumbersInsideTextsCompareByValue) {
    std::vector<QStringList> rows;
    for (const QString& cell : {u"AAL1784"_s, u"Member 123456"_s, u"12.5 nm"_s, u"AAL198"_s, u"eddf"_s,
                                u"Member 0099"_s, u"aal20"_s, u"3.25 nm"_s, u"EDDF"_s})
        rows.push_back({cell});
    std::vector<ClientRef> clients(rows.size());
    SortRows(rows, clients, {0, false});
    QStringList sorted;
    for (const QStringList& row : rows)
        sorted.append(row[0]);
    EXPECT_EQ(sorted, (QStringList{u"3.25 nm"_s, u"12.5 nm"_s, u"aal20"_s, u"AAL198"_s, u"AAL1784"_s,
                                   u"eddf"_s, u"EDDF"_s, u"Member 0099"_s, u"Member 123456"_s}));
}

// Numbers by their value, texts ignoring case, equal rows in their order; the clients go along.
TEST(SortRows, ByOneColumnEitherWayEqualRowsKeepingTheirOrder) {
    const std::vector<QStringList> rows = {
        {u"KLM3"_s, u"120 nm"_s}, {u"afr9"_s, u"15 nm"_s}, {u"DLH2"_s, u"120 nm"_s}, {u"BAW5"_s, u"-"_s}};
    const struct {
        SortOrder sort;
        std::vector<int> order;
    } cases[] = {{{-1, false}, {0, 1, 2, 3}},
                 {{0, false}, {1, 3, 2, 0}},
                 {{0, true}, {0, 2, 3, 1}},
                 {{1, false}, {3, 1, 0, 2}},
                 {{1, true}, {0, 2, 1, 3}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sort.Column * 10 + c.sort.Descending);
        std::vector<QStringList> sorted = rows;
        std::vector<ClientRef> clients = {{0, true, 0}, {0, true, 1}, {0, true, 2}, {0, true, 3}};
        SortRows(sorted, clients, c.sort);
        for (size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(sorted[i], rows[size_t(c.order[i])]);
            EXPECT_EQ(clients[i].Slot, c.order[i]);
        }
    }
}

class PanelContent : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(
            u"EDDF:Frankfurt Airport:Frankfurt:DE:50.0:8.5\nEGLL:Heathrow:London:GB:51.47:-0.46\n");
    }
    void Load(const QStringList& clients) {
        network::InterpretWhazzup(1, network::testing::WhazzupText(clients, u"20261121140000"_s), m_reference,
                                  m_data, QDateTime());
    }
    ReferenceData m_reference;
    network::NetworkData m_data;
    Friends m_friends;
};

TEST_F(PanelContent, ThePilotBoxTellsTheFlightAndLinksItsAirports) {
    Load({PilotLine(1, u"0=DLH1|1=123|2=Jane Roe|5=50|6=6|7=35000|8=300|9=A320|11=EDDF|13=EGLL|"
                       "30=DCT ANEKI Y7 NIK DCT|37=20261121120000"_s)});
    m_friends.Add(u"123"_s);
    const InfoBoxContent info = PilotInfo(1, m_data, 1, m_reference, m_friends);
    EXPECT_EQ(info.Title, u"DLH1");
    EXPECT_TRUE(info.IsFriend);
    EXPECT_EQ(info.Lines.value(info.DepartureLine), u"From EDDF Frankfurt Airport");
    EXPECT_EQ(info.DestinationAirport, u"EGLL");
    EXPECT_TRUE(info.Lines.contains(u"Status En route"_s));
    EXPECT_TRUE(info.Lines.contains(u"Route DCT ANEKI Y7 NIK DCT"_s));
    EXPECT_EQ(info.Lines.last(), u"Online 2h 00m");
    // 300 kts and 262 nm to go: there 52 minutes after the data's 14:00.
    EXPECT_EQ(EstimatedArrival(m_data.Pilots[1], m_data.UpdateStamp), u"1452Z");
}

TEST_F(PanelContent, TheControllerBoxShowsItsAtisLikeTheCompanion) {
    Load({AtcLine(1, u"0=EDDF_TWR|2=Hans|4=119.900|19=50|35=Frankfurt Tower^§$ voice^§Information B"_s)});
    const InfoBoxContent info = ControllerInfo(1, m_data, 1, m_friends);
    EXPECT_TRUE(info.Lines.contains(u"Facility Tower, EDDF"_s));
    EXPECT_TRUE(info.Lines.contains(u"Frequency 119.900"_s));
    EXPECT_EQ(info.Lines.mid(info.Lines.size() - 2), (QStringList{u"Frankfurt Tower"_s, u"Information B"_s}));
}

TEST_F(PanelContent, TheListPagesThroughEachKindOfClient) {
    QStringList clients;
    for (int i = 0; i < 95; ++i)
        clients.append(PilotLine(1, u"0=P%1|1=%1"_s.arg(i)));
    clients.append(AtcLine(1, u"0=EDDF_TWR|1=500"_s));
    clients.append(AtcLine(1, u"0=JOE_OBS|1=501"_s));
    Load(clients);
    m_friends.Add(u"7"_s);
    m_friends.Add(u"501"_s);
    m_friends.Add(u"999"_s); // not online
    EXPECT_EQ(PageCount(95, 40), 3);
    const TableContent last = ListPageContent(1, m_data, ListPage::Pilots, 2, 40, m_friends);
    EXPECT_EQ(last.Rows.size(), 15u);
    EXPECT_EQ(last.PageText, u"Page 3/3");
    EXPECT_EQ(last.Tabs, (QStringList{u"Friends (2)"_s, u"ATC (1)"_s, u"Pilots (95)"_s, u"Observers (1)"_s,
                                      u"Events"_s}));
    EXPECT_EQ(ListPageContent(1, m_data, ListPage::Pilots, 99, 40, m_friends).PageText, u"Page 3/3");
    const TableContent friends = ListPageContent(1, m_data, ListPage::Friends, 0, 40, m_friends);
    ASSERT_EQ(friends.Rows.size(),
              3u); // controllers and observers first, then pilots, then who is not online
    EXPECT_EQ(friends.Rows[0].value(0), u"JOE_OBS");
    EXPECT_EQ(friends.RowClients[1], (ClientRef{1, true, 8}));
    EXPECT_EQ(friends.Rows[2], (QStringList{QString(), u"Member 999"_s, QString(), u"Offline"_s}));
    EXPECT_EQ(friends.RowClients[2].Slot, 0);
    EXPECT_TRUE(friends.GoButtons);
}

TEST_F(PanelContent, TheBoardListsArrivalsAndDeparturesWithin100Nm) {
    Load({PilotLine(1, u"0=OUT|5=50.5|6=8.5|8=250|11=EDDF|13=EGLL"_s),
          PilotLine(1, u"0=FAR|5=52|6=8.5|8=450|11=EDDF|13=EGLL"_s),
          PilotLine(1, u"0=IN|5=51|6=8.5|8=300|11=EGLL|13=EDDF"_s)});
    const TableContent board = AirportBoardContent(1, m_data, u"EDDF"_s, m_reference, 0, 40);
    EXPECT_EQ(board.Title, u"Traffic at EDDF Frankfurt Airport");
    ASSERT_EQ(board.Rows.size(), 2u);
    EXPECT_EQ(board.Rows[0], (QStringList{u"OUT"_s, u"to EGLL"_s, u"Climbing"_s, u"30 nm"_s}));
    EXPECT_EQ(board.Rows[1].value(3), u"ETA 1412Z");
    EXPECT_EQ(AirportBoardContent(1, m_data, u"EGLL"_s, m_reference, 0, 40).Rows,
              std::vector<QStringList>{QStringList{u"No arrivals or departures within 100 nm"_s}});
}

} // namespace
} // namespace sky::view
