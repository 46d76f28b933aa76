#pragma once

#include <array>
#include <memory>
#include <vector>

namespace sky::ui {

// Where the set pixels of one glyph lie in the atlas texture (the smallest box round them, empty for a
// blank) and how they sit beside the pen and on the baseline, in device pixels.
struct GlyphBox {
    int Advance = 0;
    int Width = 0;
    int Height = 0;
    int Left = 0;               // columns right of the pen
    int Descent = 0;            // rows below the baseline (negative: above it)
    float U0 = 0, V0 = 0;       // the texture coordinates of its lower left corner
    float U1 = 0, V1 = 0;       // and of its upper right corner
    int TexelX = 0, TexelY = 0; // its lower left texel in the atlas
};

// Both fonts' glyphs, codes 0 to 254, in one texture: alpha the glyph, luminance the glyph grown by a
// texel each way (its outline). Glyphs lie two texels apart, so a glyph's outline, a texel round it, takes
// nothing of its neighbours.
struct GlyphAtlas {
    unsigned Texture = 0;
    int Width = 1, Height = 1; // of the texture, in texels
    // The texture's texels as uploaded, two bytes each (outline, glyph), rows from the bottom up.
    std::shared_ptr<const std::vector<unsigned char>> Texels;
    double DevicePixelRatio = 1.0;
    std::array<GlyphBox, 255> Small{};
    std::array<GlyphBox, 255> Bold{};
    const GlyphBox& Glyph(bool bold, unsigned char code) const { return bold ? Bold[code] : Small[code]; }
};

// Records the two bitmap fonts as display lists, one per Windows-1252 code 0 to 254: the small font
// (DejaVu Sans Mono, 10 px) from list 64725, the bold font (Liberation Sans Bold, 12 px) from 65000,
// each sized for the screen's device pixel ratio. Each glyph is drawn without antialiasing and
// advances the raster position by its own width. The same glyphs go into one texture, which the map
// draws its labels from. Needs the map's GL context current; a texture made before is replaced.
GlyphAtlas BuildGlyphFonts(double devicePixelRatio, unsigned previousTexture = 0);

} // namespace sky::ui
