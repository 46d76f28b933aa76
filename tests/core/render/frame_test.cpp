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
    const auto vertexXs = [&](int width) {
        std::vector<float> xs;
        for (const auto& call : gl.List(lists::kNetworkMarks)) {
            if (call.What == Op::Vertex)
                xs.push_back((call.Values[0] + 1.0f) * float(width) / 2.0f);
        }
        return xs;
    };
    BuildNetworkMarks(gl, DefaultColourTable(), 800, 600, {false, false});
    EXPECT_TRUE(vertexXs(800).empty());
    BuildNetworkMarks(gl, DefaultColourTable(), 800, 600, {false, true});
    EXPECT_EQ(vertexXs(800).size(), 4u);
    BuildNetworkMarks(gl, DefaultColourTable(), 800, 600, {true, true});
    EXPECT_EQ(vertexXs(800).size(), 8u);
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
