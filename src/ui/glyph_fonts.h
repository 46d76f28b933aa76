#pragma once

namespace sky::ui {

// Records the two bitmap fonts as display lists, one per Windows-1252 code 0 to 254: the small font
// (DejaVu Sans Mono, 10 px) from list 64725, the bold font (Liberation Sans Bold, 12 px) from 65000.
// Each glyph is drawn without antialiasing and advances the raster position by its own width. Needs the
// map's GL context current.
void BuildGlyphFonts();

} // namespace sky::ui
