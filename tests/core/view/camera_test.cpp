#include "view/camera.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "app/settings.h"
#include "render/list_numbers.h"
#include "render/recording_gl.h"
#include "view/display_state.h"

namespace sky::view {
namespace {

using render::RecordingGl;
using Op = RecordingGl::Op;
namespace lists = render::lists;

class Camera : public ::testing::Test {
protected:
    std::vector<int> CalledLists() {
        std::vector<int> called;
        for (const auto& call : m_gl.Immediate()) {
            if (call.What == Op::CallList)
                called.push_back(call.Number);
        }
        return called;
    }
    const RecordingGl::Call& First(Op what) {
        const auto& calls = m_gl.Immediate();
        return *std::find_if(calls.begin(), calls.end(), [&](const auto& c) { return c.What == what; });
    }
    void Draw(int width = 1000, int height = 600) {
        m_gl.ClearImmediate();
        DrawScene(m_gl, FrameInputs{m_settings, m_display, m_colours, width, height}, m_view);
    }

    Settings m_settings;
    DisplayState m_display;
    ColourTable m_colours = DefaultColourTable();
    geo::ViewState m_view{10.0f, -50.0f, 1.0f};
    RecordingGl m_gl;
};

TEST_F(Camera, DrawsEveryLayerInItsFixedOrder) {
    m_display.ShownNetwork = 1;
    m_display.PanelMode = 0;
    m_display.ShowAbout = false;
    m_settings.ShowInbounds = true;
    Draw();
    EXPECT_EQ(CalledLists(),
              (std::vector<int>{lists::kGlobe, lists::kGrid, lists::kBorders, 25, 26, lists::kCoastlines, 22,
                                23, 27, 28, lists::kHighlight, 24, 20, 21, lists::kFrame,
                                lists::kNetworkMarks, lists::kStatusLine, lists::kClientCount}));
}

TEST_F(Camera, SwitchesGateTheirLayers) {
    m_display.ShownNetwork = 0;
    m_display.ShowCountries = false;
    m_display.PanelMode = 4;
    m_settings.ShowLatLon = false;
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

// The pixel tests see the globe's square viewport; here the depth that cuts it.
TEST_F(Camera, ZoomedOutTheGlobeIsCutAtItsCentreZoomedInAtItsNearSurface) {
    Draw();
    EXPECT_EQ(First(Op::Translate).Values[2], -1.0f);
    m_view.ViewZ = 8.0f;
    Draw();
    EXPECT_EQ(First(Op::Translate).Values[2], 1.0f - 8.0f);
}

TEST_F(Camera, EveryFrameClampsTheViewOnce) {
    m_view = {600.0f, -95.0f, 80.0f};
    Draw();
    EXPECT_EQ(m_view.ViewX, 240.0f);
    Draw();
    EXPECT_EQ(m_view.ViewX, -120.0f);
}

} // namespace
} // namespace sky::view
