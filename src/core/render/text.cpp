#include "render/text.h"

#include "common/text_codec.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"

namespace sky::render {
namespace {

void Print(GlApi& gl, const QString& text, int base) {
    if (text.isEmpty())
        return;
    gl.ListBase(base);
    for (QChar c : text) {
        const unsigned char code = ToWindows1252(c);
        if (code < lists::kGlyphCount)
            gl.CallListByte(code);
    }
}

} // namespace

void PrintText(GlApi& gl, const QString& text) {
    Print(gl, text, lists::kSmallFontBase);
}

void PrintBoldText(GlApi& gl, const QString& text) {
    Print(gl, text, lists::kBoldFontBase);
}

int TextWidth(const GlApi& gl, const QString& text, bool bold) {
    int width = 0;
    for (QChar c : text) {
        const unsigned char code = ToWindows1252(c);
        if (code < lists::kGlyphCount)
            width += gl.GlyphAdvance(bold, code);
    }
    return width;
}

void BuildStatusLine(GlApi& gl, const QString& statusText, int width, int height) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    gl.DeleteList(lists::kStatusLine);
    gl.NewList(lists::kStatusLine);
    gl.RasterPos(OverlayX(65, width), OverlayY(6, height), 0.0f);
    PrintText(gl, statusText);
    gl.EndList();
}

void FillOverlayBox(GlApi& gl, int x, int y, int boxWidth, int boxHeight, int width, int height) {
    const float left = OverlayX(x, width), right = OverlayX(x + boxWidth, width);
    const float top = OverlayY(height - y, height), bottom = OverlayY(height - y - boxHeight, height);
    gl.Begin(Primitive::Quads);
    gl.Vertex(left, bottom, 0.0f);
    gl.Vertex(right, bottom, 0.0f);
    gl.Vertex(right, top, 0.0f);
    gl.Vertex(left, top, 0.0f);
    gl.End();
}

} // namespace sky::render
