#include "app/window_geometry.h"

#include <gtest/gtest.h>

#include "app/settings.h"

namespace sky {
namespace {

// Each button's edges, and below the strip.
TEST(TitleStripZone, ButtonsFromTheRightThenTheCaption) {
    const std::pair<int, TitleZone> rows[] = {
        {780, TitleZone::Close},    {779, TitleZone::Maximise}, {760, TitleZone::Maximise},
        {759, TitleZone::Minimise}, {740, TitleZone::Minimise}, {739, TitleZone::Caption},
    };
    for (const auto& [x, zone] : rows)
        EXPECT_EQ(TitleStripZone(x, 20, 800), zone) << x;
    EXPECT_EQ(TitleStripZone(799, 0, 800), TitleZone::Close);
    EXPECT_EQ(TitleStripZone(799, 21, 800), TitleZone::None);
}

TEST(ToggleMaximised, RestoresExactlyTheGeometryBeforeIt) {
    Settings settings;
    bool maximised = false;
    const TwipsRect before{1500, 3000, 12000, 9000};
    const MonitorInfo primary{0, 0, 1920, 1080, 1040};
    const TwipsRect full = ToggleMaximised(maximised, before, primary, 15.0f, settings);
    EXPECT_TRUE(maximised);
    EXPECT_EQ(full.Width, 1920 * 15);
    EXPECT_EQ(full.Height, 1040 * 15); // the primary monitor leaves the task bar visible
    EXPECT_EQ(settings.WindowLeft, 1500);
    const TwipsRect back = ToggleMaximised(maximised, full, primary, 15.0f, settings);
    EXPECT_FALSE(maximised);
    EXPECT_EQ(back.Left, before.Left);
    EXPECT_EQ(back.Top, before.Top);
    EXPECT_EQ(back.Width, before.Width);
    EXPECT_EQ(back.Height, before.Height);

    const MonitorInfo secondary{1920, 0, 3200, 1024, 1000};
    const TwipsRect other = ToggleMaximised(maximised, before, secondary, 15.0f, settings);
    EXPECT_EQ(other.Left, 1920 * 15);
    EXPECT_EQ(other.Height, 1024 * 15); // the whole height
}

TEST(ResizeEdgesAt, EdgesAndCornersButNotTheButtonsNorWhileMaximised) {
    const struct {
        int x, y;
        bool maximised;
        int edges;
    } rows[] = {
        {0, 300, false, kResizeLeft},
        {799, 300, false, kResizeRight},
        {400, 599, false, kResizeBottom},
        {400, 0, false, kResizeTop},
        {0, 0, false, kResizeLeft | kResizeTop},
        {799, 599, false, kResizeRight | kResizeBottom},
        {799, 2, false, kResizeNone}, // the close button
        {745, 0, false, kResizeNone}, // the minimise button
        {400, 300, false, kResizeNone},
        {0, 300, true, kResizeNone},
    };
    for (const auto& r : rows)
        EXPECT_EQ(ResizeEdgesAt(r.x, r.y, 800, 600, r.maximised), r.edges) << r.x << "," << r.y;
}

TEST(FitOnScreens, AWindowOffEveryScreenOrLargerThanItComesOntoTheNearest) {
    const std::vector<PixelBox> screens = {{0, 0, 1920, 1050}, {1920, 0, 1280, 1024}};
    const struct {
        const char* name;
        PixelBox window, placed;
    } rows[] = {
        {"on the first screen", {100, 100, 800, 600}, {100, 100, 800, 600}},
        {"half off an edge stays", {1500, 900, 800, 600}, {1500, 900, 800, 600}},
        {"on a screen that is gone", {4000, 200, 800, 600}, {2160, 212, 800, 600}},
        {"far above", {100, -5000, 800, 600}, {560, 225, 800, 600}},
        {"larger than any screen", {0, 0, 143165576, 143165576}, {0, 0, 1920, 1050}},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(FitOnScreens(r.window, screens), r.placed);
    }
    EXPECT_EQ(FitOnScreens({5, 5, 10, 10}, {}), (PixelBox{5, 5, 10, 10}));
}

} // namespace
} // namespace sky
