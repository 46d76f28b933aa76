#include "render/crowds.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/fir_outlines.h"
#include "refdata/reference_data.h"
#include "render/traffic_scene.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

// Aircraft about Amsterdam, two nautical miles apart: parked ones, one taxiing in, one airborne, a
// friend, one whose flight plan names other airports, and one alone at Rotterdam.
class Crowds : public ::testing::Test {
protected:
    void SetUp() override {
        ReferenceData airports;
        airports.AddAirports(
            u"EHAM:Schiphol:Amsterdam:NL:52.308:4.764\nEHRD:Rotterdam:Rotterdam:NL:51.957:4.764\n"_s);
        const auto at = [](const QString& fields) {
            return network::testing::PilotLine(1, u"1=1|6=4.764|"_s + fields);
        };
        const QStringList lines = {
            at(u"0=KLM1|5=52.308|11=EHAM|13=LOWW"_s),       at(u"0=KLM2|5=52.341|11=EHAM|13=LOWW"_s),
            at(u"0=KLM3|5=52.275|8=10|11=EGLL|13=EHAM"_s),  at(u"0=CPA4|5=52.242|11=BIKF|13=LOWW"_s),
            at(u"0=KLM5|5=52.290|8=180|11=EHAM|13=LOWW"_s), at(u"0=FRND|1=777|5=52.330|11=EHAM|13=LOWW"_s),
            at(u"0=TRA7|5=51.957|11=EHRD|13=LOWW"_s)};
        network::InterpretWhazzup(1, network::testing::WhazzupText(lines), airports, m_tables[1], {});
        m_friends.Add(u"777"_s);
    }

    CrowdPlan Plan(float viewZ, std::optional<network::ClientRef> selected = {}, bool declutter = true) {
        m_view.Selected = selected;
        const TrafficInputs in{m_tables,   m_friends, false, m_colours,
                               m_outlines, false,     viewZ, declutter ? &m_view : nullptr};
        return PlanCrowds(in, {1});
    }

    network::ClientTables m_tables;
    Friends m_friends;
    ColourTable m_colours = DefaultColourTable();
    FirOutlines m_outlines;
    LabelView m_view;
};

TEST_F(Crowds, ParkedAircraftOfAnAirportAreOneMarkWhileTheirSymbolsWouldOverlap) {
    const struct {
        const char* name;
        float viewZ;
        std::optional<network::ClientRef> selected;
        bool declutter;
        std::vector<int> grouped; // slots
        int departing, arrived;
    } rows[] = {
        // Zoomed out: the parked and the taxiing, not the airborne, the friend or the lone one.
        {"zoomed out", 1.0f, {}, true, {1, 2, 3, 4}, 2, 1},
        {"the selected aircraft stands apart", 1.0f, network::ClientRef{1, true, 2}, true, {1, 3, 4}, 1, 1},
        {"zoom 20, two miles apart still overlap", 20.0f, {}, true, {1, 2, 3, 4}, 2, 1},
        {"zoom 25, where parked aircraft are labelled: apart", 25.0f, {}, true, {}, 0, 0},
        {"every label drawn: no crowds", 1.0f, {}, false, {}, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const CrowdPlan plan = Plan(row.viewZ, row.selected, row.declutter);
        std::vector<int> grouped;
        for (int slot = 1; slot <= m_tables[1].PilotCount; ++slot)
            if (plan.IsGrouped(1, slot))
                grouped.push_back(slot);
        EXPECT_EQ(grouped, row.grouped);
        ASSERT_EQ(plan.Crowds.size(), row.grouped.empty() ? 0u : 1u);
        if (plan.Crowds.empty())
            continue;
        const Crowd& crowd = plan.Crowds.front();
        EXPECT_EQ(crowd.Airport, u"EHAM");
        EXPECT_EQ(crowd.Count, int(row.grouped.size()));
        EXPECT_EQ(crowd.Departing, row.departing);
        EXPECT_EQ(crowd.Arrived, row.arrived);
    }
    EXPECT_FALSE(Plan(1.0f).IsGrouped(0, 1)); // another network's slots are never grouped
}

} // namespace
} // namespace sky::render
