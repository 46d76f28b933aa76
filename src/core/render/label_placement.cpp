#include "render/label_placement.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace sky::render {
namespace {

// The small font's baseline lies kLabelAscentPx below the top of its line; a descender goes 3 below it.
constexpr int kAscentPx = kLabelAscentPx;
constexpr int kDescentPx = 3;

// The box of a label whose first line starts at (left, top), and the spot that puts it there.
struct Place {
    PixelRect Box;
    LabelSpot Spot;
};

Place PlaceAt(const LabelRequest& r, int left, int top) {
    const int height = kLabelLinePx * (r.Lines - 1) + kAscentPx + kDescentPx;
    const int x = int(std::lround(r.X)), y = int(std::lround(r.Y));
    return {{left, top, r.WidthPx, height}, {true, left - x, y - (top + kAscentPx), r.WidthPx, height}};
}

std::vector<Place> Places(const LabelRequest& r) {
    const int x = int(std::lround(r.X)), y = int(std::lround(r.Y));
    const int gap = r.SymbolRadiusPx + 1;
    const int height = kLabelLinePx * (r.Lines - 1) + kAscentPx + kDescentPx;
    // Beside, then above and below, then at the four corners.
    return {PlaceAt(r, x + gap, y - 6),
            PlaceAt(r, x - gap - r.WidthPx, y - 6),
            PlaceAt(r, x - r.WidthPx / 2, y - gap - height),
            PlaceAt(r, x - r.WidthPx / 2, y + gap),
            PlaceAt(r, x + gap, y - gap - height),
            PlaceAt(r, x + gap, y + gap),
            PlaceAt(r, x - gap - r.WidthPx, y - gap - height),
            PlaceAt(r, x - gap - r.WidthPx, y + gap)};
}

// Boxes in cells of a coarse grid, so a test looks at the few boxes near it.
class BoxGrid {
public:
    BoxGrid(int width, int height)
        : m_columns(std::max(1, width / kCell + 1)), m_rows(std::max(1, height / kCell + 1)),
          m_cells(size_t(m_columns) * size_t(m_rows)) {}

    void Add(const PixelRect& box) {
        const int index = int(m_boxes.size());
        m_boxes.push_back(box);
        for (size_t cell : Cells(box))
            m_cells[cell].push_back(index);
    }
    // True when box meets a box of the grid other than one equal to except.
    bool Hits(const PixelRect& box, const PixelRect* except = nullptr) const {
        for (size_t cell : Cells(box)) {
            for (int i : m_cells[cell]) {
                const PixelRect& other = m_boxes[size_t(i)];
                if (other.Intersects(box) && !(except && SameBox(other, *except)))
                    return true;
            }
        }
        return false;
    }

private:
    static constexpr int kCell = 32;
    static bool SameBox(const PixelRect& a, const PixelRect& b) {
        return a.X == b.X && a.Y == b.Y && a.Width == b.Width && a.Height == b.Height;
    }
    std::vector<size_t> Cells(const PixelRect& box) const {
        const auto column = [&](int x) { return std::clamp(x / kCell, 0, m_columns - 1); };
        const auto row = [&](int y) { return std::clamp(y / kCell, 0, m_rows - 1); };
        std::vector<size_t> cells;
        for (int r = row(box.Y); r <= row(box.Y + box.Height); ++r)
            for (int c = column(box.X); c <= column(box.X + box.Width); ++c)
                cells.push_back(size_t(r * m_columns + c));
        return cells;
    }

    int m_columns, m_rows;
    std::vector<std::vector<int>> m_cells;
    std::vector<PixelRect> m_boxes;
};

PixelRect SymbolBox(const LabelRequest& r) {
    const int x = int(std::lround(r.X)), y = int(std::lround(r.Y)), s = r.SymbolRadiusPx;
    return {x - s, y - s, 2 * s + 1, 2 * s + 1};
}

} // namespace

LabelSpot DefaultSpot(const LabelRequest& request) {
    return Places(request).front().Spot;
}

std::vector<LabelSpot> PlaceLabels(const std::vector<LabelRequest>& requests,
                                   const std::vector<PixelRect>& symbols,
                                   const std::vector<PixelRect>& reserved, int width, int height) {
    std::vector<LabelSpot> spots(requests.size());
    std::vector<size_t> order(requests.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return requests[a].Priority < requests[b].Priority; });
    BoxGrid symbolGrid(width, height);
    for (const PixelRect& s : symbols)
        symbolGrid.Add(s);
    BoxGrid taken(width, height);
    for (const PixelRect& r : reserved)
        taken.Add(r);
    const PixelRect area{0, 0, width, height};
    for (size_t index : order) {
        const LabelRequest& r = requests[index];
        if (r.X < 0 || r.Y < 0 || r.X >= width || r.Y >= height)
            continue;
        const PixelRect own = SymbolBox(r);
        const Place* chosen = nullptr;
        const Place* fallback = nullptr;
        const std::vector<Place> places = Places(r);
        for (const Place& place : places) {
            const PixelRect& b = place.Box;
            if (b.X < area.X || b.Y < area.Y || b.X + b.Width > width || b.Y + b.Height > height)
                continue;
            if (taken.Hits(b))
                continue;
            if (!symbolGrid.Hits(b, &own)) {
                chosen = &place;
                break;
            }
            if (r.Insistent && !fallback)
                fallback = &place;
        }
        if (!chosen)
            chosen = fallback;
        if (chosen) {
            const PixelRect& b = chosen->Box;
            // A pixel of room on every side, so two labels never run into one word.
            taken.Add({b.X - 1, b.Y - 1, b.Width + 2, b.Height + 2});
            spots[index] = chosen->Spot;
        }
    }
    return spots;
}

} // namespace sky::render
