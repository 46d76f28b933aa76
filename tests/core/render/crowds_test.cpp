#include "render/crowds.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "refdata/fir_outlines.h"
#include "render/traffic_scene.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

// Aircraft about Amsterdam, two nautical miles apart: parked ones, one taxiing in, one airborne, a
// friend, one whose flight plan names other airports, and one alone at Rotterdam.
class Crowds : public ::testing::Test {
protected:
    void SetUp() override {
        network::NetworkData& d = m_tables[1];
        const auto add = [&](const char16_t* callsign, float lat, float speedKts, const char16_t* from,
                             const char16_t* to, const char16_t* vid = u"1") {
            network::PilotRecord& p = d.Pilots[size_t(++d.PilotCount)];
            p = {};
            p.Callsign = QString::fromUtf16(callsign);
            p.VID = QString::fromUtf16(vid);
            p.Latitude = lat;
            p.Longitude = 4.764f;
            p.GroundSpeed = speedKts;
            p.DepAirport = QString::fromUtf16(from);
            p.DestAirport = QString::fromUtf16(to);
            const bool fromAmsterdam = p.DepAirport == u"EHAM", toAmsterdam = p.DestAirport == u"EHAM";
            p.DepLatitude = fromAmsterdam ? 52.308f : (p.DepAirport == u"EHRD" ? 51.957f : 40.0f);
            p.DepLongitude = fromAmsterdam ? 4.764f : (p.DepAirport == u"EHRD" ? 4.764f : 0.0f);
            p.DestLatitude = toAmsterdam ? 52.308f : 30.0f;
            p.DestLongitude = toAmsterdam ? 4.764f : 0.0f;
        };
        add(u"KLM1", 52.308f, 0.0f, u"EHAM", u"LOWW");
        add(u"KLM2", 52.341f, 0.0f, u"EHAM", u"LOWW");
        add(u"KLM3", 52.275f, 10.0f, u"EGLL", u"EHAM");
        add(u"CPA4", 52.242f, 0.0f, u"BIKF", u"LOWW");
        add(u"KLM5", 52.290f, 180.0f, u"EHAM", u"LOWW");
        add(u"FRND", 52.330f, 0.0f, u"EHAM", u"LOWW", u"777");
        add(u"TRA7", 51.957f, 0.0f, u"EHRD", u"LOWW");
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
        {"zoomed out: the parked and the taxiing, not the airborne, the friend or the lone one",
         1.0f,
         {},
         true,
         {1, 2, 3, 4},
         2,
         1},
        {"the selected aircraft stands apart", 1.0f, network::ClientRef{1, true, 2}, true, {1, 3, 4}, 1, 1},
        {"zoomed in, two miles apart stand clear", 50.0f, {}, true, {}, 0, 0},
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
