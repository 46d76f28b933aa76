#include "render/symbol_mask.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace sky::render {
namespace {

TEST(SymbolMask, FillsTheOutlineAndEdgesItOnePixelWideAtEveryScale) {
    const OutlinePoint square[] = {{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.5f, 0.5f}, {-0.5f, 0.5f}};
    for (const double pixelsPerUnit : {4.0, 7.2, 13.0, 40.0}) {
        SCOPED_TRACE(pixelsPerUnit);
        const SymbolMask mask = RasteriseSymbol(square, pixelsPerUnit);
        const int n = mask.SizeTexels;
        ASSERT_EQ(mask.Alpha.size(), size_t(n * n));
        const double unitsPerTexel = 2.0 * mask.Reach / n;
        EXPECT_LE(unitsPerTexel * pixelsPerUnit, 0.5) << "texels finer than pixels";
        // The texel under a point of the symbol's units; rows go up.
        const auto at = [&](double x, double y) {
            const int col = int(std::floor((x + mask.Reach) / unitsPerTexel));
            const int row = int(std::floor((y + mask.Reach) / unitsPerTexel));
            return int(mask.Alpha[size_t(row * n + col)]);
        };
        const double px = 1.0 / pixelsPerUnit;
        const struct {
            double X, Y;
            int Alpha;
        } points[] = {{0, 0, SymbolMask::kFill},
                      {0.5, 0, SymbolMask::kEdge},
                      {0, -0.5 + 0.3 * px, SymbolMask::kEdge},
                      {-0.5 - 0.3 * px, 0.2, SymbolMask::kEdge},
                      {0.5 - 0.7 * px, 0, SymbolMask::kFill},
                      {0.5 + 0.7 * px, 0, 0},
                      {0.5 + 0.7 * px, 0.5 + 0.7 * px, 0},
                      {mask.Reach * 0.99, 0, 0}};
        for (const auto& p : points)
            EXPECT_EQ(at(p.X, p.Y), p.Alpha) << p.X << "," << p.Y;
    }
    // Nothing to draw, or no usable scale: a clear mask of the smallest size.
    const SymbolMask none = RasteriseSymbol({}, std::nan(""));
    EXPECT_EQ(none.SizeTexels, 32);
    EXPECT_EQ(std::count(none.Alpha.begin(), none.Alpha.end(), 0), 32 * 32);
}

} // namespace
} // namespace sky::render
