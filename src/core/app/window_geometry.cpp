#include "app/window_geometry.h"

#include "app/settings.h"
#include "common/numbers.h"

namespace sky {

namespace {
constexpr int kStripPx = 20;
constexpr int kButtonPx = 20;
} // namespace

TitleZone TitleStripZone(int x, int y, int width) {
    if (y > kStripPx)
        return TitleZone::None;
    if (x >= width - kButtonPx)
        return TitleZone::Close;
    if (x >= width - 2 * kButtonPx)
        return TitleZone::Maximise;
    if (x >= width - 3 * kButtonPx)
        return TitleZone::Minimise;
    return TitleZone::Caption;
}

TwipsRect ToggleMaximised(bool& maximised, const TwipsRect& current, const MonitorInfo& monitor,
                          float twipsPerPixel, Settings& settings) {
    maximised = !maximised;
    if (!maximised)
        return {settings.WindowLeft, settings.WindowTop, settings.WindowWidth, settings.WindowHeight};
    settings.WindowWidth = current.Width;
    settings.WindowHeight = current.Height;
    settings.WindowLeft = current.Left;
    settings.WindowTop = current.Top;
    const auto twips = [&](double pixels) { return ToInt32(pixels * twipsPerPixel); };
    // On the primary monitor (left edge 0) the height stops short of the task bar, on purpose.
    const int heightPx = monitor.Left == 0 ? monitor.PrimaryUsableHeight : monitor.Bottom - monitor.Top;
    return {twips(monitor.Left), twips(monitor.Top), twips(monitor.Right - monitor.Left), twips(heightPx)};
}

} // namespace sky
