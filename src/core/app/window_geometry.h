#pragma once

#include <cstdint>
#include <vector>

namespace sky {

struct Settings;

// The parts of the map window's own title strip, the top 20 pixels.
enum class TitleZone { None, Close, Maximise, Minimise, Caption };

// Which part of the title strip a click at (x, y) pixels of a window width pixels wide hits: the three
// 20-pixel buttons from the right, close, maximise and minimise, else the caption; None below the strip.
TitleZone TitleStripZone(int x, int y, int width);

// The edges of the frameless window a press at (x, y) pixels resizes from: within kResizeBorderPx of an
// edge, corners naming two; none while maximised, and none on the strip's three buttons.
enum ResizeEdge { kResizeNone = 0, kResizeLeft = 1, kResizeRight = 2, kResizeTop = 4, kResizeBottom = 8 };
inline constexpr int kResizeBorderPx = 5;
int ResizeEdgesAt(int x, int y, int width, int height, bool maximised);

// A window rectangle in pixels, or an area of a screen.
struct PixelBox {
    int Left = 0, Top = 0, Width = 0, Height = 0;
    bool operator==(const PixelBox&) const = default;
};

// Where a window restored from the settings goes: where it was, unless too little of it (less than
// 64 x 48 pixels) lies on any screen, then onto the nearest one; never larger than that screen's area.
// No screens: as it was.
PixelBox FitOnScreens(const PixelBox& window, const std::vector<PixelBox>& screens);

// A window rectangle in twips.
struct TwipsRect {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;
};

// A monitor as the maximise sees it, in pixels: its whole rectangle; for the primary monitor also the
// full-screen client height plus the caption height, which leaves the task bar visible.
struct MonitorInfo {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;
    int PrimaryUsableHeight = 0;
};

// Maximise or restore. Maximising remembers the current geometry in the settings' window fields and
// returns the monitor's area; restoring returns the remembered geometry. maximised flips.
TwipsRect ToggleMaximised(bool& maximised, const TwipsRect& current, const MonitorInfo& monitor,
                          float twipsPerPixel, Settings& settings);

} // namespace sky
