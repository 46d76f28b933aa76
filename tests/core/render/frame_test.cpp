#include "render/frame.h"

#include <gtest/gtest.h>

#include "app/colour_theme.h"
#include "render/list_numbers.h"
#include "testing/recording_gl.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using Op = RecordingGl::Op;

TEST(BuildFrame, HoldsTheProductLineAndRecordsTheStatusLine) {
    RecordingGl gl;
    BuildFrame(gl, DefaultColourTable(), 800, 600, u"Ready"_s);
    EXPECT_EQ(RecordingGl::PrintedText(gl.List(lists::kFrame)), "Skylantra 1.0.0");
    EXPECT_EQ(RecordingGl::PrintedText(gl.List(lists::kStatusLine)), "Ready");
}

TEST(BuildNetworkMarks, MarksOnlyFlaggedNetworksSideBySide) {
    RecordingGl gl;
    const auto marks = [&](bool ivao, bool vatsim) {
        BuildNetworkMarks(gl, DefaultColourTable(), 800, 600, {ivao, vatsim});
        return RecordingGl::Calls(gl.List(lists::kNetworkMarks), Op::Vertex);
    };
    EXPECT_TRUE(marks(false, false).empty());
    const auto one = marks(false, true), both = marks(true, true);
    ASSERT_EQ(one.size(), 4u);
    ASSERT_EQ(both.size(), 8u);
    EXPECT_LT(both[3].Values[0], both[4].Values[0]); // side by side, IVAO first
    EXPECT_EQ(both[4].Values[0], one[0].Values[0]);
}

TEST(BuildTitleBox, NamesTheProgramAndItsSources) {
    RecordingGl gl;
    BuildTitleBox(gl, DefaultColourTable(), 800, 600);
    const std::string text = RecordingGl::PrintedText(gl.List(lists::kTitleBox));
    EXPECT_NE(text.find("Skylantra v1.0.0"), std::string::npos);
    EXPECT_NE(text.find("Natural Earth"), std::string::npos);
}

} // namespace
} // namespace sky::render
