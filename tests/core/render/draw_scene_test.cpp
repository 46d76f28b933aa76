#include "render/draw_scene.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "app/settings.h"
#include "render/land_layer.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"

namespace sky::render {
namespace {

using Op = RecordingGl::Op;

class Frame : public ::testing::Test {
protected:
    std::vector<int> CalledLists() {
        std::vector<int> called;
        for (const auto& call : RecordingGl::Calls(m_gl.Immediate(), Op::CallList))
            called.push_back(call.Number);
        return called;
    }
    void Draw() {
        m_gl.ClearImmediate();
        m_frame.View = m_view;
        DrawScene(m_gl, m_frame);
    }

    Settings m_settings;
    ColourTable m_colours = DefaultColourTable();
    FrameInputs m_frame{m_settings, m_colours, {},   0,  PanelMode::None, true, true, false,
                        false,      false,     1000, 600};
    geo::ViewState m_view{10.0f, -50.0f, 1.0f};
    RecordingGl m_gl;
};

TEST_F(Frame, DrawsEveryLayerInItsFixedOrder) {
    m_frame.ShownNetwork = 1;
    m_frame.ShowAbout = false;
    m_settings.ShowInbounds = true;
    const int land = LandList(1, 14, 19); // the tile of the view's centre, 50 N 10 E
    m_gl.NewList(land);
    m_gl.EndList();
    Draw();
    // clang-format off
    EXPECT_EQ(CalledLists(), (std::vector<int>{lists::kGlobe, land, lists::kNight, lists::kGrid, lists::kBorders,
                                               25, 26, lists::kCoastlines, 22, 23, lists::kEventMarks, 27, 28,
                                               lists::kHighlight, 24, 20, 29, 21, lists::kFrame,
                                               lists::kNetworkMarks, lists::kStatusLine, lists::kClientCount}));
    // clang-format on
}

TEST_F(Frame, SwitchesGateTheirLayers) {
    m_frame.ShownNetwork = 0;
    m_frame.ShowCountries = false;
    m_frame.Panels = PanelMode::TableAndInfoBox;
    m_settings.ShowLatLon = false;
    m_settings.ShowNight = false;
    m_settings.ShowPlaneLabels = false;
    m_settings.ShowATC = false;
    m_settings.ShowAirports = false;
    m_settings.ShowInbounds = true; // but airports are off
    Draw();
    EXPECT_EQ(CalledLists(),
              (std::vector<int>{lists::kGlobe, lists::kCoastlines, lists::kHighlight, 10, lists::kFrame,
                                lists::kNetworkMarks, lists::kTitleBox, lists::kStatusLine,
                                lists::kClientCount, lists::kListPanel, lists::kInfoBox}));
}

// The globe's viewport: a square of twice the window's height, or as wide as a window wider than that.
TEST_F(Frame, TheGlobesViewportIsTwiceTheHeightSquareOrTheWholeOfAWideWindow) {
    const struct {
        int width;
        std::vector<float> viewport;
    } rows[] = {{1000, {-100, -300, 1200, 1200}}, {1600, {0, -300, 1600, 1200}}};
    for (const auto& row : rows) {
        m_frame.WidthPx = row.width;
        Draw();
        const RecordingGl::Call viewport = RecordingGl::Calls(m_gl.Immediate(), Op::Viewport).at(0);
        EXPECT_EQ(std::vector<float>(viewport.Values, viewport.Values + 4), row.viewport) << row.width;
    }
}

// The pixel tests see the globe's square viewport; here the depth that cuts it.
TEST_F(Frame, ZoomedOutTheGlobeIsCutAtItsCentreZoomedInAtItsNearSurface) {
    Draw();
    EXPECT_EQ(RecordingGl::Calls(m_gl.Immediate(), Op::Translate).at(0).Values[2], -1.0f);
    m_view.ViewZ = 8.0f;
    Draw();
    EXPECT_EQ(RecordingGl::Calls(m_gl.Immediate(), Op::Translate).at(0).Values[2], 1.0f - 8.0f);
}

} // namespace
} // namespace sky::render
