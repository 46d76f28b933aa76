#pragma once

#include <QString>

namespace sky::render {

class GlApi;

// Prints text at the current raster position with the small (PrintText) or the bold (PrintBoldText)
// glyph lists, one Windows-1252 code per character; a character the code page lacks prints as "?",
// and code 255, which has no glyph list, prints nothing. An empty text touches nothing.
void PrintText(GlApi& gl, const QString& text);
void PrintBoldText(GlApi& gl, const QString& text);
// How wide a text prints, in pixels.
int TextWidth(const GlApi& gl, const QString& text, bool bold = false);

// Records the status line (list 55): the text 65 pixels from the left and 6 above the bottom of a
// client area width by height pixels, in the small font. The list holds no colour of its own.
void BuildStatusLine(GlApi& gl, const QString& statusText, int width, int height);

// The overlay coordinate (-1 to +1 across the client area) of a pixel offset from the left or bottom.
inline float OverlayX(double pixels, int width) {
    return float(pixels * (2.0 / width) - 1.0);
}
inline float OverlayY(double pixels, int height) {
    return float(pixels * (2.0 / height) - 1.0);
}

// Fills the box of boxWidth by boxHeight pixels whose top left is pixel (x, y) of the client area (from
// its top left) in the current colour: what a panel of figures is printed on.
void FillOverlayBox(GlApi& gl, int x, int y, int boxWidth, int boxHeight, int width, int height);

} // namespace sky::render
