#include "app/window_geometry.h"

#include <algorithm>

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

int ResizeEdgesAt(int x, int y, int width, int height, bool maximised) {
    if (maximised || x < 0 || y < 0 || x >= width || y >= height)
        return kResizeNone;
    int edges = kResizeNone;
    if (x < kResizeBorderPx)
        edges |= kResizeLeft;
    if (x >= width - kResizeBorderPx)
        edges |= kResizeRight;
    if (y >= height - kResizeBorderPx)
        edges |= kResizeBottom;
    // The three buttons reach the top right corner: there they click, and resize nowhere.
    if (y < kStripPx && x >= width - 3 * kButtonPx)
        return kResizeNone;
    if (y < kResizeBorderPx)
        edges |= kResizeTop;
    return edges;
}

PixelBox FitOnScreens(const PixelBox& window, const std::vector<PixelBox>& screens) {
    if (screens.empty())
        return window;
    const auto overlap = [](const PixelBox& a, const PixelBox& b) {
        const long long w =
            std::max(0LL, std::min<long long>(a.Left + a.Width, b.Left + b.Width) - std::max(a.Left, b.Left));
        const long long h =
            std::max(0LL, std::min<long long>(a.Top + a.Height, b.Top + b.Height) - std::max(a.Top, b.Top));
        return std::pair{w, h};
    };
    const auto centreDistance = [&](const PixelBox& s) {
        const double dx = (window.Left + window.Width / 2.0) - (s.Left + s.Width / 2.0);
        const double dy = (window.Top + window.Height / 2.0) - (s.Top + s.Height / 2.0);
        return dx * dx + dy * dy;
    };
    const PixelBox* home = &screens.front();
    for (const PixelBox& s : screens) {
        const auto [w, h] = overlap(window, s);
        if (w >= 64 && h >= 48)
            home = nullptr;
    }
    PixelBox fitted = window;
    if (home) { // off every screen: onto the nearest, centred
        for (const PixelBox& s : screens)
            if (centreDistance(s) < centreDistance(*home))
                home = &s;
        fitted.Width = std::min(window.Width, home->Width);
        fitted.Height = std::min(window.Height, home->Height);
        fitted.Left = home->Left + (home->Width - fitted.Width) / 2;
        fitted.Top = home->Top + (home->Height - fitted.Height) / 2;
        return fitted;
    }
    // On a screen, but larger than it: as large as the screen it is most on, kept on it.
    const PixelBox* most = &screens.front();
    long long best = -1;
    for (const PixelBox& s : screens) {
        const auto [w, h] = overlap(window, s);
        if (w * h > best) {
            best = w * h;
            most = &s;
        }
    }
    fitted.Width = std::min(window.Width, most->Width);
    fitted.Height = std::min(window.Height, most->Height);
    fitted.Left = std::clamp(window.Left, most->Left, most->Left + most->Width - fitted.Width);
    fitted.Top = std::clamp(window.Top, most->Top, most->Top + most->Height - fitted.Height);
    if (fitted.Width == window.Width && fitted.Height == window.Height)
        fitted = window; // it fits as it is: not moved
    return fitted;
}

} // namespace sky
