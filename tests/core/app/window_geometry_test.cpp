#include "app/window_geometry.h"

#include <gtest/gtest.h>

#include "app/settings.h"

namespace sky {
namespace {

TEST(TitleStripZone, ButtonsFromTheRightThenTheCaption) {
    EXPECT_EQ(TitleStripZone(799, 0, 800), TitleZone::Close);
    EXPECT_EQ(TitleStripZone(780, 20, 800), TitleZone::Close);
    EXPECT_EQ(TitleStripZone(779, 10, 800), TitleZone::Maximise);
    EXPECT_EQ(TitleStripZone(760, 10, 800), TitleZone::Maximise);
    EXPECT_EQ(TitleStripZone(759, 10, 800), TitleZone::Minimise);
    EXPECT_EQ(TitleStripZone(740, 10, 800), TitleZone::Minimise);
    EXPECT_EQ(TitleStripZone(739, 10, 800), TitleZone::Caption);
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

} // namespace
} // namespace sky
