#include "render/traffic_scene.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "geo/sphere_geometry.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/fir_outlines.h"
#include "refdata/reference_data.h"
#include "render/aircraft_layer.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using Op = RecordingGl::Op;
using network::testing::AtcLine;
using network::testing::PilotLine;

class TrafficScene : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(
            u"EDDF:Frankfurt:Frankfurt:DE:50.0333:8.5706\nEGLL:Heathrow:London:GB:51.47:-0.46\n");
        m_reference.AddFirCentres(u"EDGG:DE:50.28:8.25:Langen\nXXXX:ZZ:10:10:Nowhere\n");
        m_outlines.Add(u"B:EDGG:0:EDGG\nR\n49:6\n49:10\n50:8\n51:10\n51:6\n49:6\n");
        const QStringList lines = {
            PilotLine(1, u"0=DLH1|1=100|5=50.5|6=5|7=35000|8=450|11=EDDF|13=EGLL"_s),
            PilotLine(1, u"0=BAW2|1=200|5=51|6=-0.4|11=EGLL|13=EDDF"_s),
            AtcLine(1, u"0=EDGG_CTR|1=300"_s),
            AtcLine(1, u"0=XXXX_CTR|1=301|19=100"_s),
            AtcLine(1, u"0=EDDF_APP|1=302"_s),
            AtcLine(1, u"0=EDDF_TWR|1=303"_s),
            AtcLine(1, u"0=EDDF_GND|1=304"_s),
            AtcLine(1, u"0=EDDF_ATIS|1=305"_s),
            AtcLine(1, u"0=JOE_OBS|1=306"_s),
        };
        network::InterpretWhazzup(1, network::testing::WhazzupText(lines), m_reference, m_tables[1],
                                  QDateTime());
    }

    TrafficInputs Inputs(bool friendsOnly = false, float viewZ = 1.0f) {
        return TrafficInputs{m_tables, m_friends, friendsOnly, m_colours, m_outlines, false, viewZ};
    }

    int List(int offset) const { return lists::TrafficBase(1) + offset; }

    ReferenceData m_reference;
    FirOutlines m_outlines;
    network::ClientTables m_tables;
    Friends m_friends;
    ColourTable m_colours = DefaultColourTable();
    RecordingGl m_gl;
};

TEST_F(TrafficScene, RecordsTheNineListsAndDropsTheHighlight) {
    m_gl.NewList(lists::kHighlight);
    m_gl.EndList();
    BuildTrafficLists(m_gl, 1, Inputs());
    for (int offset = 0; offset < lists::kTrafficListCount; ++offset)
        EXPECT_TRUE(m_gl.IsList(List(offset))) << offset;
    EXPECT_FALSE(m_gl.IsList(lists::kHighlight));
    EXPECT_FALSE(m_gl.IsList(lists::TrafficBase(0)));
}

TEST_F(TrafficScene, DrawsEveryShownClientAndLabelsThem) {
    BuildTrafficLists(m_gl, 1, Inputs());
    // Each aircraft a square of the symbol's mask, for the fills and again for the edges.
    const auto& planes = m_gl.List(List(lists::kPlanes));
    EXPECT_EQ(m_gl.ArrayVertices(planes), 2 * 2 * 4);
    const auto bind =
        std::find_if(planes.begin(), planes.end(), [](const auto& c) { return c.What == Op::BindTexture; });
    ASSERT_NE(bind, planes.end());
    EXPECT_EQ(bind->Number, SymbolMaskTexture(1.0f, 600));
    EXPECT_EQ(m_gl.Textures().count(bind->Number), 1u);
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(List(lists::kPlaneLabels))), "DLH1BAW2");
    // A point at each departure and destination.
    EXPECT_EQ(RecordingGl::Count(m_gl.List(List(lists::kAirports)), Op::Vertex), 4);
    // The cruising DLH1's line ends at EGLL; BAW2, parked at its departure, is not yet inbound.
    std::vector<RecordingGl::Call> inbound;
    for (const auto& call : m_gl.List(List(lists::kInbounds)))
        if (call.What == Op::Vertex)
            inbound.push_back(call);
    ASSERT_FALSE(inbound.empty());
    const geo::Vec3 egll = geo::OnGlobe(51.47f, -0.46f);
    EXPECT_NEAR(inbound.back().Values[0], egll.X, 1e-5f);
    EXPECT_NEAR(inbound.back().Values[2], egll.Z, 1e-5f);
    // Each airport is labelled once, however many flights use it.
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(List(lists::kAirportLabels))), "EDDFEGLL");
    // Station labels for all but the observer; the centres in the bold font.
    const auto& atcLabels = m_gl.List(List(lists::kAtcLabels));
    EXPECT_EQ(RecordingGl::Count(atcLabels, Op::RasterPos), 6);
    EXPECT_EQ(RecordingGl::Count(atcLabels, Op::ListBase, lists::kBoldFontBase), 2);
    EXPECT_EQ(RecordingGl::Count(m_gl.List(List(lists::kAtcMarkers)), Op::Vertex), 6);
}

TEST_F(TrafficScene, FillsKnownSectorsWithTrianglesAndOthersAsCircles) {
    BuildTrafficLists(m_gl, 1, Inputs());
    const auto& fills = m_gl.List(List(lists::kSectorFills));
    // EDGG has an outline: triangles that cover it once, without the stencil; XXXX has none: one fan of
    // its range; one fan each for the approach and tower discs.
    EXPECT_EQ(RecordingGl::Count(fills, Op::StencilFunc), 0);
    EXPECT_EQ(RecordingGl::Count(fills, Op::Begin, int(Primitive::TriangleFan)), 3);
    EXPECT_EQ(RecordingGl::Count(fills, Op::Begin, int(Primitive::Triangles)), 1);
    const auto& outlines = m_gl.List(List(lists::kOutlines));
    // EDGG's ring, XXXX's circle, the approach, tower and ground circles and the ATIS diamond.
    EXPECT_EQ(RecordingGl::Count(outlines, Op::Begin), 6);
}

TEST_F(TrafficScene, FriendsOnlyDrawsFriendsAlone) {
    m_friends.Add(u"200"_s);
    m_friends.Add(u"303"_s);
    BuildTrafficLists(m_gl, 1, Inputs(true));
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(List(lists::kPlaneLabels))), "BAW2");
    EXPECT_EQ(RecordingGl::PrintedText(m_gl.List(List(lists::kAtcLabels))), "EDDF_TWR");

    m_friends = Friends();
    BuildTrafficLists(m_gl, 1, Inputs(true));
    EXPECT_EQ(m_gl.ArrayVertices(m_gl.List(List(lists::kPlanes))), 0);
    EXPECT_TRUE(m_gl.IsList(List(lists::kAtcMarkers)));
}

TEST_F(TrafficScene, LabelsAddLevelAndSpeedWhenZoomedIn) {
    BuildTrafficLists(m_gl, 1, Inputs(false, 1.0f));
    const size_t far = RecordingGl::Printed(m_gl.List(List(lists::kPlaneLabels))).size();
    BuildPlaneLists(m_gl, 1, Inputs(false, kDetailedLabelZoom));
    const std::string near = RecordingGl::PrintedText(m_gl.List(List(lists::kPlaneLabels)));
    EXPECT_GT(near.size(), far);
    EXPECT_NE(near.find("FL350 450kt"), std::string::npos);
    EXPECT_NE(SymbolBand(1.0f), SymbolBand(16.0f));
    EXPECT_EQ(SymbolBand(0.1f), SymbolBand(0.3f));
}

TEST_F(TrafficScene, DeclutteredLabelsGroupAirportStationsAndWaitForParkedAircraft) {
    LabelView view;
    view.View = {4.0f, -50.5f, 2.0f}; // over Frankfurt and London
    const TrafficInputs in{m_tables, m_friends, false, m_colours, m_outlines, false, 2.0f, &view};
    BuildTrafficLists(m_gl, 1, in);
    const auto text = [&](int offset) { return RecordingGl::PrintedText(m_gl.List(List(offset))); };
    // Every label in the lists the frame draws after all symbols: stations and airports, then aircraft.
    // Frankfurt's approach, tower, ground and ATIS in one label; the airport not labelled again; BAW2
    // stands at Heathrow: unlabelled until close in.
    EXPECT_EQ(text(lists::kSharedLabels) + text(lists::kPlaneLabels), "EDGG_CTREDDF  G T A IEGLLDLH1");
    EXPECT_EQ(text(lists::kAtcLabels), "");
    EXPECT_EQ(text(lists::kAirportLabels), "");
}

TEST_F(TrafficScene, ComparisonNeedsBothNetworksAndUsesTheirColours) {
    EXPECT_EQ(ComparisonStatusText(m_tables), u"Missing IVAO data. No comparison possible.");
    m_tables[0] = m_tables[1];
    m_tables[0].UpdateStamp = u"20261121142000"_s;
    EXPECT_EQ(ComparisonStatusText(m_tables), u"Merged data of 1420Z/1423Z displayed");
    BuildComparisonLists(m_gl, Inputs());
    const auto& planes = m_gl.List(lists::TrafficBase(2) + lists::kPlanes);
    std::set<float> fillReds;
    for (const auto& call : planes) {
        if (call.What == Op::Colour && call.Values[0] != m_colours.Red[kSlotPlaneBorder])
            fillReds.insert(call.Values[0]);
    }
    EXPECT_EQ(fillReds, (std::set<float>{m_colours.Red[kSlotIVAO], m_colours.Red[kSlotVATSIM]}));
}

TEST_F(TrafficScene, ClientCountPanelShowsEachNetworksFigures) {
    m_tables[1].DroppedPilots = 3; // full tables left some out: "2+"
    BuildClientCountPanel(m_gl, m_tables, m_colours, 800, 600);
    const std::string text = RecordingGl::PrintedText(m_gl.List(lists::kClientCount));
    EXPECT_NE(text.find("IVAO0 pilots0 ATC0 obs0 total"), std::string::npos);
    EXPECT_NE(text.find("VATSIM2+ pilots5 ATC1 obs8 total"), std::string::npos); // ATC as stat counts them
}

} // namespace
} // namespace sky::render
