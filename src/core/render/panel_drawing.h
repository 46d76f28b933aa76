#pragma once

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;
struct PanelLayout;
struct InfoBoxContent;
struct TableContent;

// Records the info box (list 40): a title in the network's colour, its lines, and the Center,
// Profile and friend buttons, in the window colours of the theme. Lines that do not fit are cut.
void BuildInfoBox(GlApi& gl, const ColourTable& colours, const PanelLayout& layout, int width, int height,
                  const InfoBoxContent& content);

// Records the list panel or the airport board (list 41): tabs or a title, one row per client in
// columns, and the page indicator between the previous and next controls.
void BuildTablePanel(GlApi& gl, const ColourTable& colours, const PanelLayout& layout, int width, int height,
                     const TableContent& content);

} // namespace sky::render
