#pragma once

#include <span>
#include <vector>

namespace sky::render {

// A point of a symbol's outline, in the symbol's own units (its half-length).
struct OutlinePoint {
    float X = 0, Y = 0;
};

// A symbol as an alpha texture, made for the scale it is drawn at: a square of texels reaching from
// -Reach to +Reach units on both axes, rows from the bottom up. A texel is kEdge within 0.45 pixels of
// the outline (as wide as a line drawn along it, on average over its slopes), kFill elsewhere inside
// it, and 0 outside. Drawn twice with an alpha test, the fill first
// (alpha above one quarter) and the edge over it (above three quarters), it gives the pixels of the
// outline's fill and its one-pixel edge.
struct SymbolMask {
    static constexpr unsigned char kFill = 128;
    static constexpr unsigned char kEdge = 255;
    int SizeTexels = 0;
    float Reach = 1.0f;
    std::vector<unsigned char> Alpha; // SizeTexels * SizeTexels
};

// The mask of a closed outline (corners in order, within -1 to 1) for pixelsPerUnit screen pixels to
// one unit. A few texels to the pixel, from 32 to 256 across; a scale below a pixel to the unit is taken
// as one.
SymbolMask RasteriseSymbol(std::span<const OutlinePoint> outline, double pixelsPerUnit);

} // namespace sky::render
