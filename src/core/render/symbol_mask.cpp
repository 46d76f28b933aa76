#include "render/symbol_mask.h"

#include <algorithm>
#include <cmath>

namespace sky::render {
namespace {

// Texels to a screen pixel: enough that sampling the nearest texel puts the edge within a sixth of a
// pixel of where the outline's own lines would be drawn.
constexpr double kTexelsPerPixel = 3.0;
// Half the width of the edge, in pixels: a one-pixel line drawn across the pixels reaches 0.35 to 0.5
// to either side by its slope, 0.45 on average.
constexpr double kEdgeHalfWidthPx = 0.45;

double SegmentDistance(double x, double y, const OutlinePoint& a, const OutlinePoint& b) {
    const double abX = b.X - a.X, abY = b.Y - a.Y;
    const double length2 = abX * abX + abY * abY;
    const double t = length2 > 0 ? std::clamp(((x - a.X) * abX + (y - a.Y) * abY) / length2, 0.0, 1.0) : 0.0;
    return std::hypot(x - a.X - t * abX, y - a.Y - t * abY);
}

// Even-odd rule, as the outline's triangles fill it.
bool Inside(double x, double y, std::span<const OutlinePoint> outline) {
    bool inside = false;
    for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const OutlinePoint& a = outline[i];
        const OutlinePoint& b = outline[j];
        if ((a.Y > y) != (b.Y > y) && x < (b.X - a.X) * (y - a.Y) / (b.Y - a.Y) + a.X)
            inside = !inside;
    }
    return inside;
}

} // namespace

SymbolMask RasteriseSymbol(std::span<const OutlinePoint> outline, double pixelsPerUnit) {
    const double scale = std::isfinite(pixelsPerUnit) ? std::clamp(pixelsPerUnit, 1.0, 1000.0) : 1.0;
    SymbolMask mask;
    // Room for the edge's outer half beyond the outline, and a pixel more.
    mask.Reach = float(1.0 + (kEdgeHalfWidthPx + 1.0) / scale);
    const double spanPx = 2.0 * mask.Reach * scale;
    mask.SizeTexels = std::clamp(int(std::ceil(spanPx * kTexelsPerPixel / 16.0)) * 16, 32, 256);
    const int n = mask.SizeTexels;
    mask.Alpha.assign(size_t(n * n), 0);
    if (outline.size() < 3)
        return mask;
    const double edgeUnits = kEdgeHalfWidthPx / scale;
    for (int row = 0; row < n; ++row) {
        const double y = ((row + 0.5) / n * 2.0 - 1.0) * mask.Reach;
        for (int col = 0; col < n; ++col) {
            const double x = ((col + 0.5) / n * 2.0 - 1.0) * mask.Reach;
            double nearest = edgeUnits + 1.0;
            for (size_t i = 0; i < outline.size(); ++i)
                nearest =
                    std::min(nearest, SegmentDistance(x, y, outline[i], outline[(i + 1) % outline.size()]));
            unsigned char& texel = mask.Alpha[size_t(row * n + col)];
            if (nearest <= edgeUnits)
                texel = SymbolMask::kEdge;
            else if (Inside(x, y, outline))
                texel = SymbolMask::kFill;
        }
    }
    return mask;
}

} // namespace sky::render
