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

TEST(SortRows, NumbersInsideTextsCompareByValueAndEqualRowsKeepTheirOrder) {
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
    Load({PilotLine(1, {{0, u"DLH1"_s},
                        {1, u"123"_s},
                        {2, u"Jane Roe"_s},
                        {5, u"50"_s},
                        {6, u"6"_s},
                        {7, u"35000"_s},
                        {8, u"300"_s},
                        {9, u"A320"_s},
                        {11, u"EDDF"_s},
                        {13, u"EGLL"_s},
                        {30, u"DCT ANEKI Y7 NIK DCT"_s},
                        {37, u"20261121120000"_s}})});
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
    Load({AtcLine(1, {{0, u"EDDF_TWR"_s},
                      {2, u"Hans"_s},
                      {4, u"119.900"_s},
                      {19, u"50"_s},
                      {35, u"Frankfurt Tower^§$ voice^§Information B"_s}})});
    const InfoBoxContent info = ControllerInfo(1, m_data, 1, m_friends);
    EXPECT_TRUE(info.Lines.contains(u"Facility Tower, EDDF"_s));
    EXPECT_TRUE(info.Lines.contains(u"Frequency 119.900"_s));
    EXPECT_EQ(info.Lines.mid(info.Lines.size() - 2), (QStringList{u"Frankfurt Tower"_s, u"Information B"_s}));
}

TEST_F(PanelContent, TheListPagesThroughEachKindOfClient) {
    QStringList clients;
    for (int i = 0; i < 95; ++i)
        clients.append(PilotLine(1, {{0, u"P%1"_s.arg(i)}, {1, QString::number(i)}}));
    clients.append(AtcLine(1, {{0, u"EDDF_TWR"_s}, {1, u"500"_s}}));
    clients.append(AtcLine(1, {{0, u"JOE_OBS"_s}, {1, u"501"_s}}));
    Load(clients);
    m_friends.Add(u"7"_s);
    m_friends.Add(u"501"_s);
    EXPECT_EQ(PageCount(95, 40), 3);
    const TableContent last = ListPageContent(1, m_data, ListPage::Pilots, 2, 40, m_friends);
    EXPECT_EQ(last.Rows.size(), 15u);
    EXPECT_EQ(last.PageText, u"Page 3/3");
    EXPECT_EQ(last.Tabs, (QStringList{u"Friends (2)"_s, u"ATC (1)"_s, u"Pilots (95)"_s, u"Observers (1)"_s,
                                      u"Events"_s}));
    EXPECT_EQ(ListPageContent(1, m_data, ListPage::Pilots, 99, 40, m_friends).PageText, u"Page 3/3");
    const TableContent friends = ListPageContent(1, m_data, ListPage::Friends, 0, 40, m_friends);
    ASSERT_EQ(friends.Rows.size(), 2u);
    EXPECT_EQ(friends.Rows[0].value(0), u"JOE_OBS"); // controllers and observers first
    EXPECT_EQ(friends.RowClients[1], (ClientRef{1, true, 8}));
}

TEST_F(PanelContent, TheBoardListsArrivalsAndDeparturesWithin100Nm) {
    Load(
        {PilotLine(
             1,
             {{0, u"OUT"_s}, {5, u"50.5"_s}, {6, u"8.5"_s}, {8, u"250"_s}, {11, u"EDDF"_s}, {13, u"EGLL"_s}}),
         PilotLine(
             1,
             {{0, u"FAR"_s}, {5, u"52"_s}, {6, u"8.5"_s}, {8, u"450"_s}, {11, u"EDDF"_s}, {13, u"EGLL"_s}}),
         PilotLine(
             1,
             {{0, u"IN"_s}, {5, u"51"_s}, {6, u"8.5"_s}, {8, u"300"_s}, {11, u"EGLL"_s}, {13, u"EDDF"_s}})});
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
