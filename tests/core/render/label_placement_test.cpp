#include "render/label_placement.h"

#include <gtest/gtest.h>

namespace sky::render {
namespace {

TEST(PlaceLabels, EachTakesTheFirstFreePlaceByPriorityOrIsLeftOut) {
    const LabelRequest a{400, 300, 60, 1, 5, 8};
    const struct {
        const char* name;
        std::vector<LabelRequest> requests;
        std::vector<PixelRect> reserved;
        std::vector<bool> shown;
        std::vector<int> dx; // of the shown ones, in order
    } rows[] = {
        {"alone: right of the symbol, baseline 3 below", {a}, {}, {true}, {9}},
        {"the same spot twice: the second goes left", {a, a}, {}, {true, true}, {9, -69}},
        {"a reserved area on the right: left", {a}, {{405, 292, 100, 20}}, {true}, {-69}},
        {"right and left reserved: above", {a}, {{405, 292, 100, 20}, {300, 292, 95, 20}}, {true}, {-30}},
        {"no room anywhere: left out", {a}, {{0, 0, 800, 600}}, {false}, {}},
        {"off the area: left out", {{820, 300, 60, 1, 0, 8}}, {}, {false}, {}},
        {"priority beats order", {a, {400, 300, 60, 1, 1, 8}}, {}, {true, true}, {-69, 9}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<LabelSpot> spots = PlaceLabels(row.requests, {}, row.reserved, 800, 600);
        ASSERT_EQ(spots.size(), row.shown.size());
        size_t next = 0;
        for (size_t i = 0; i < spots.size(); ++i) {
            EXPECT_EQ(spots[i].Shown, row.shown[i]) << i;
            if (spots[i].Shown) {
                EXPECT_EQ(spots[i].Dx, row.dx[next++]) << i;
            }
        }
    }
    EXPECT_EQ(DefaultSpot(a).Dy, -3);
}

TEST(PlaceLabels, LabelsKeepClearOfOtherSymbolsButNotTheirOwn) {
    const LabelRequest a{400, 300, 60, 2, 0, 8};
    // Another aircraft just right of this one: its label goes left.
    const std::vector<PixelRect> symbols = {{392, 292, 17, 17}, {430, 296, 9, 9}};
    const std::vector<LabelSpot> spots = PlaceLabels({a}, symbols, {}, 800, 600);
    ASSERT_TRUE(spots[0].Shown);
    EXPECT_LT(spots[0].Dx, 0);
}

} // namespace
} // namespace sky::render
