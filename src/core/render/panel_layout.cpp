#include "render/panel_layout.h"

#include <algorithm>

namespace sky::render {
namespace {

constexpr int kInfoWidth = 300;
constexpr int kButtonHeight = 18;

} // namespace

PanelLayout LayoutPanels(int width, int height) {
    PanelLayout l;
    const int infoHeight = std::max(120, std::min(height - 90, 340));
    l.InfoBox = {width - kInfoWidth - 10, 60, kInfoWidth, infoHeight};
    const int buttonY = l.InfoBox.Y + l.InfoBox.Height - kButtonHeight - 6;
    l.CentreButton = {l.InfoBox.X + 10, buttonY, 80, kButtonHeight};
    l.ProfileButton = {l.InfoBox.X + 110, buttonY, 80, kButtonHeight};
    l.FriendButton = {l.InfoBox.X + 210, buttonY, 80, kButtonHeight};
    l.WatchButton = {l.InfoBox.X + kInfoWidth - 72, l.InfoBox.Y + 1, 70, kButtonHeight};
    l.ChartButton = l.WatchButton;
    l.FollowButton = {l.FriendButton.X, buttonY - kButtonHeight - 4, 80, kButtonHeight};
    l.ListPanel = {10, 30, std::min(width - 20, 520), std::max(100, height - 60)};
    for (int tab = 0; tab < 5; ++tab)
        l.Tabs.push_back({l.ListPanel.X + 6 + tab * 102, l.ListPanel.Y + 4, 98, 16});
    const int headerTop = l.ListPanel.Y + 26;
    for (int c = 0; c < 4; ++c) {
        const int next = c + 1 < 4 ? PanelLayout::kColumns[c + 1] : l.ListPanel.Width - 8;
        l.Headers.push_back({l.ListPanel.X + 4 + PanelLayout::kColumns[c], headerTop,
                             next - PanelLayout::kColumns[c], PanelLayout::kLineHeight});
    }
    const int rowsTop = headerTop + PanelLayout::kLineHeight + 2;
    const int rows =
        std::max(1, (l.ListPanel.Height - 26 - PanelLayout::kLineHeight - 2 - 26) / PanelLayout::kLineHeight);
    for (int row = 0; row < rows; ++row)
        l.Rows.push_back({l.ListPanel.X + 4, rowsTop + row * PanelLayout::kLineHeight, l.ListPanel.Width - 8,
                          PanelLayout::kLineHeight});
    const int pagerY = l.ListPanel.Y + l.ListPanel.Height - kButtonHeight - 4;
    l.PreviousPage = {l.ListPanel.X + 6, pagerY, 70, kButtonHeight};
    l.NextPage = {l.ListPanel.X + l.ListPanel.Width - 76, pagerY, 70, kButtonHeight};
    l.BoardChartButton = {l.ListPanel.X + l.ListPanel.Width - 62, l.ListPanel.Y + 2, 58, kButtonHeight};
    return l;
}

} // namespace sky::render
