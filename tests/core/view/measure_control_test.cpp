#include "view/measure_control.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

TEST(MeasureFigures, CourseFromNorthTimeAtTheMovingEndsSpeed) {
    const struct {
        MeasureLine line;
        QStringList figures;
    } rows[] = {
        {{{{0, 0}, {}, {}}, {{0, 1}, {}, {}}}, {u"60.04 nm  111.19 km"_s, u"course 090° true"_s}},
        {{{{0, 1}, u"A"_s, 30.0f}, {{0, 0}, u"B"_s, 120.0f}},
         {u"60.04 nm  111.19 km"_s, u"course 270° true"_s, u"30 min at 120 kt"_s}},
        {{{{1, 0}, u"A"_s, 60.0f}, {{0, 0}, {}, {}}},
         {u"60.04 nm  111.19 km"_s, u"course 180° true"_s, u"1h 00m at 60 kt"_s}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(MeasureFigures(row.line), row.figures);
}

} // namespace
} // namespace sky::view
