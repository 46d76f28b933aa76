#pragma once

#include <array>

#include <QString>

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

inline constexpr int kTitleStripPx = 20;

// Records the screen frame (list 50) for a client area width by height pixels: the title strip with
// the product line and its three buttons, shaded bands along the edges and a frame line; it ends by
// recording the status line (list 55) with statusText.
void BuildFrame(GlApi& gl, const ColourTable& colours, int width, int height, const QString& statusText);

// Records the per-network marks (list 57): a small cross at the bottom left for each network whose
// flag is set (a download refused for now, or one that failed), IVAO first, 20 pixels apart.
void BuildNetworkMarks(GlApi& gl, const ColourTable& colours, int width, int height,
                       const std::array<bool, 2>& marked);

// Records the title box (list 58) shown while the data load; DeleteTitleBox takes it away.
void BuildTitleBox(GlApi& gl, const ColourTable& colours, int width, int height);
void DeleteTitleBox(GlApi& gl);
// The screen is cleared to the theme's background colour.
void SetBackground(GlApi& gl, const ColourTable& colours);

} // namespace sky::render
