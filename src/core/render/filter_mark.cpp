#include "render/filter_mark.h"

#include <algorithm>

#include "app/colour_theme.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

constexpr int kBoxGapPx = 2;
constexpr int kBoxHeightPx = 18;
constexpr int kBandTextPx = 6; // the status band's text stands this far above the bottom
constexpr int kMarkChars = 48; // a longer filter text is cut, with "..."

QString CountText(const FilterMarkInputs& in) {
    return u"filtered: %1 of %2 pilots"_s.arg(in.ShownPilots).arg(in.AllPilots);
}

QString MarkText(const QString& text) {
    const QString shown = text.size() > kMarkChars ? text.left(kMarkChars - 3) + u"..."_s : text;
    return u"Filter: "_s + shown;
}

} // namespace

PixelRect FilterCountBox(const GlApi& gl, const FilterMarkInputs& in) {
    const int width = TextWidth(gl, CountText(in)) + 12;
    const PixelRect& panel = in.CountPanel;
    return {panel.X + panel.Width - width, panel.Y + panel.Height + kBoxGapPx, width, kBoxHeightPx};
}

void BuildFilterMark(GlApi& gl, const ColourTable& c, int width, int height, const FilterMarkInputs& in) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    const PixelRect box = FilterCountBox(gl, in);
    gl.DeleteList(lists::kFilterMark);
    gl.NewList(lists::kFilterMark);
    gl.Colour(c.Red[kSlotWindowBackground], c.Green[kSlotWindowBackground], c.Blue[kSlotWindowBackground],
              1.0f);
    FillOverlayBox(gl, box.X, box.Y, box.Width, box.Height, width, height);
    gl.Colour(c.Red[kSlotHighlight], c.Green[kSlotHighlight], c.Blue[kSlotHighlight], 1.0f);
    gl.RasterPos(OverlayX(box.X + 6, width), OverlayY(height - box.Y - 13, height), 0.0f);
    PrintText(gl, CountText(in));
    const QString mark = MarkText(in.Text);
    gl.RasterPos(OverlayX(width - 10 - TextWidth(gl, mark), width), OverlayY(kBandTextPx, height), 0.0f);
    PrintText(gl, mark);
    gl.EndList();
}

void DeleteFilterMark(GlApi& gl) {
    gl.DeleteList(lists::kFilterMark);
}

} // namespace sky::render
