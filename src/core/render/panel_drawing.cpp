#include "render/panel_drawing.h"

#include <algorithm>

#include <QString>

#include "app/colour_theme.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"
#include "render/panel_layout.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

// Drawing in pixels of the client area, origin at the top left.
struct Painter {
    GlApi& Gl;
    const ColourTable& Colours;
    int Width;
    int Height;

    void Colour(int slot, float alpha) const {
        Gl.Colour(Colours.Red[slot], Colours.Green[slot], Colours.Blue[slot], alpha);
    }
    void Vertex(double x, double y) const {
        Gl.Vertex(OverlayX(x, Width), OverlayY(Height - y, Height), 0.0f);
    }
    void Fill(const PixelRect& r, int slot, float alpha) const {
        Colour(slot, alpha);
        Gl.Begin(Primitive::Quads);
        Vertex(r.X, r.Y);
        Vertex(r.X + r.Width, r.Y);
        Vertex(r.X + r.Width, r.Y + r.Height);
        Vertex(r.X, r.Y + r.Height);
        Gl.End();
    }
    void Shade(const PixelRect& r) const {
        Gl.Begin(Primitive::Quads);
        Colour(kSlotWindowShading, 0.6f);
        Vertex(r.X, r.Y);
        Vertex(r.X + r.Width, r.Y);
        Colour(kSlotWindowShading, 0.3f);
        Vertex(r.X + r.Width, r.Y + r.Height);
        Vertex(r.X, r.Y + r.Height);
        Gl.End();
    }
    void Outline(const PixelRect& r, int slot) const {
        Colour(slot, 1.0f);
        Gl.Begin(Primitive::LineLoop);
        Vertex(r.X + 0.5, r.Y + 0.5);
        Vertex(r.X + r.Width - 0.5, r.Y + 0.5);
        Vertex(r.X + r.Width - 0.5, r.Y + r.Height - 0.5);
        Vertex(r.X + 0.5, r.Y + r.Height - 0.5);
        Gl.End();
    }
    // Text with its baseline 11 pixels below top, as the small font sits in a 13-pixel line.
    void Text(double x, double top, const QString& text, bool bold = false) const {
        Gl.RasterPos(OverlayX(x, Width), OverlayY(Height - top - 11, Height), 0.0f);
        if (bold)
            PrintBoldText(Gl, text);
        else
            PrintText(Gl, text);
    }
    void Button(const PixelRect& r, const QString& label) const {
        Fill(r, kSlotWindowShading, 0.35f);
        Outline(r, kSlotScreenBorder);
        Colour(kSlotScreenBorder, 1.0f);
        // The label in the middle of the button's height (a row's button is lower than the others).
        Text(r.X + 6, r.Y + std::max(0, (r.Height - PanelLayout::kLineHeight + 1) / 2), label);
    }
};

// Starts recording a panel's list: its translucent background and frame.
void OpenPanel(const Painter& p, int list, const PixelRect& area) {
    p.Gl.DeleteList(list);
    p.Gl.NewList(list);
    p.Gl.Enable(Capability::Blend);
    p.Gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    p.Fill(area, kSlotWindowBackground, 1.0f); // the map does not show through a panel
    p.Outline(area, kSlotScreenBorder);
}

// The text as it fits in pixels of its font: whole, or cut and ended with an ellipsis.
QString Fit(const GlApi& gl, const QString& text, int pixels, bool bold = false) {
    if (TextWidth(gl, text, bold) <= pixels)
        return text;
    const QString ellipsis = QStringLiteral("\u2026");
    const int room = pixels - TextWidth(gl, ellipsis, bold);
    qsizetype kept = 0;
    for (int used = 0; kept < text.size(); ++kept) {
        used += TextWidth(gl, text.mid(kept, 1), bold);
        if (used > room)
            break;
    }
    return kept > 0 ? text.left(kept) + ellipsis : QString();
}

} // namespace

void BuildInfoBox(GlApi& gl, const ColourTable& colours, const PanelLayout& layout, int width, int height,
                  const InfoBoxContent& content) {
    const Painter p{gl, colours, std::max(width, 1), std::max(height, 1)};
    const PixelRect& box = layout.InfoBox;
    OpenPanel(p, lists::kInfoBox, box);
    p.Shade({box.X, box.Y, box.Width, 20});
    p.Outline(box, kSlotScreenBorder);
    p.Colour(content.NetworkSlot == 1 ? kSlotVATSIM : kSlotIVAO, 1.0f);
    p.Text(box.X + 8, box.Y + 3, Fit(gl, content.Title, box.Width - 16, true), true);
    p.Colour(kSlotScreenBorder, 1.0f);
    const int lastTop =
        (content.Followable ? layout.FollowButton.Y : layout.CentreButton.Y) - PanelLayout::kLineHeight;
    for (qsizetype i = 0; i < content.Lines.size(); ++i) {
        const int top = box.Y + 24 + int(i) * PanelLayout::kLineHeight;
        if (top > lastTop)
            break;
        // The airports of a flight are links to their traffic board.
        const bool link = i == content.DepartureLine || i == content.DestinationLine;
        p.Colour(link ? kSlotHighlight : kSlotScreenBorder, 1.0f);
        p.Text(box.X + 8, top, Fit(gl, content.Lines[i], box.Width - 16));
    }
    p.Button(layout.CentreButton, u"Center"_s);
    p.Button(layout.ProfileButton, u"Profile"_s);
    p.Button(layout.FriendButton, content.IsFriend ? u"Unfriend"_s : u"Add friend"_s);
    if (content.Watchable)
        p.Button(layout.WatchButton, content.Watched ? u"Unwatch"_s : u"Watch"_s);
    else if (content.Chartable)
        p.Button(layout.ChartButton, u"Chart"_s);
    if (content.Followable)
        p.Button(layout.FollowButton, content.Followed ? u"Unfollow"_s : u"Follow"_s);
    gl.EndList();
}

void BuildTablePanel(GlApi& gl, const ColourTable& colours, const PanelLayout& layout, int width, int height,
                     const TableContent& content) {
    const Painter p{gl, colours, std::max(width, 1), std::max(height, 1)};
    const PixelRect& panel = layout.ListPanel;
    OpenPanel(p, lists::kListPanel, panel);
    if (content.Tabs.isEmpty()) {
        p.Shade({panel.X, panel.Y, panel.Width, 22});
        p.Colour(kSlotScreenBorder, 1.0f);
        const int button = content.ChartButton ? layout.BoardChartButton.Width : 0;
        p.Text(panel.X + 8, panel.Y + 5, Fit(gl, content.Title, panel.Width - 16 - button, true), true);
        if (content.ChartButton)
            p.Button(layout.BoardChartButton, u"Chart"_s);
    } else {
        for (qsizetype tab = 0; tab < content.Tabs.size() && tab < qsizetype(layout.Tabs.size()); ++tab) {
            const PixelRect& r = layout.Tabs[size_t(tab)];
            if (tab == content.ActiveTab)
                p.Fill(r, kSlotWindowShading, 0.6f);
            p.Outline(r, kSlotScreenBorder);
            p.Colour(kSlotScreenBorder, 1.0f);
            p.Text(r.X + 5, r.Y + 2, Fit(gl, content.Tabs[tab], r.Width - 8));
        }
    }
    const auto& columns = PanelLayout::kColumns;
    // The column headers, the sorted one marked ("^" rising, "v" falling); a click sorts.
    for (qsizetype h = 0; h < content.Headers.size() && h < qsizetype(layout.Headers.size()); ++h) {
        const PixelRect& r = layout.Headers[size_t(h)];
        p.Fill(r, kSlotWindowShading, h == content.SortColumn ? 0.5f : 0.25f);
        p.Colour(kSlotScreenBorder, 1.0f);
        const QString mark = h == content.SortColumn ? (content.Descending ? u" v"_s : u" ^"_s) : QString();
        p.Text(r.X + 2, r.Y, Fit(gl, content.Headers[h] + mark, r.Width - 4));
    }
    for (size_t row = 0; row < content.Rows.size() && row < layout.Rows.size(); ++row) {
        const PixelRect& r = layout.Rows[row];
        const bool client = row < content.RowClients.size() && content.RowClients[row].Slot > 0;
        p.Colour(!client                                ? kSlotScreenBorder
                 : content.RowClients[row].Network == 1 ? kSlotVATSIM
                                                        : kSlotIVAO,
                 1.0f);
        const QStringList& cells = content.Rows[row];
        if (cells.size() == 1) { // a line of its own across the row
            p.Text(r.X + 4, r.Y, Fit(gl, cells[0], r.Width - 8));
            continue;
        }
        const bool go =
            content.GoButtons && row < content.RowClients.size() && content.RowClients[row].Slot != 0;
        if (go)
            p.Button(PanelLayout::GoButton(r), u"Go"_s);
        for (qsizetype cell = 0; cell < cells.size() && cell < 4; ++cell) {
            const int next = cell + 1 < 4 ? columns[cell + 1] : r.Width - (go ? 32 : 0);
            if (cell == 1)
                p.Colour(kSlotScreenBorder, 1.0f);
            p.Text(r.X + 4 + columns[cell], r.Y, Fit(gl, cells[cell], next - columns[cell] - 6));
        }
    }
    p.Button(layout.PreviousPage, u"< prev"_s);
    p.Button(layout.NextPage, u"next >"_s);
    p.Colour(kSlotScreenBorder, 1.0f);
    p.Text(panel.X + panel.Width / 2 - 30, layout.PreviousPage.Y + 3, content.PageText);
    gl.EndList();
}

void BuildHoverCard(GlApi& gl, const ColourTable& colours, int width, int height, int x, int y,
                    const QString& title, const QStringList& lines, int networkSlot) {
    const Painter p{gl, colours, std::max(width, 1), std::max(height, 1)};
    int textWidth = TextWidth(gl, title, true);
    for (const QString& line : lines)
        textWidth = std::max(textWidth, TextWidth(gl, line));
    const int boxWidth = textWidth + 16, boxHeight = 22 + int(lines.size()) * PanelLayout::kLineHeight + 6;
    // Beside the pointer (left of it near the right edge), kept inside the map: below the title strip,
    // above the status band.
    const int beside = x + 14 + boxWidth + 8 > width ? x - 14 - boxWidth : x + 14;
    const int left = std::clamp(beside, 8, std::max(8, width - boxWidth - 8));
    const int top = std::clamp(y + 14, 24, std::max(24, height - boxHeight - 22));
    const PixelRect box{left, top, boxWidth, boxHeight};
    OpenPanel(p, lists::kHoverCard, box);
    p.Colour(networkSlot == 1 ? kSlotVATSIM : kSlotIVAO, 1.0f);
    p.Text(box.X + 8, box.Y + 4, title, true);
    p.Colour(kSlotScreenBorder, 1.0f);
    for (qsizetype i = 0; i < lines.size(); ++i)
        p.Text(box.X + 8, box.Y + 22 + int(i) * PanelLayout::kLineHeight, lines[i]);
    gl.EndList();
}

void DeleteHoverCard(GlApi& gl) {
    gl.DeleteList(lists::kHoverCard);
}

} // namespace sky::render
