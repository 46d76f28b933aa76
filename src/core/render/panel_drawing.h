#pragma once

#include <QStringList>

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
// Records the hover card (list 61): a small box beside the pointer at (x, y) with a title in the
// network's colour and a few lines, kept inside the map between the title strip and the status band.
void BuildHoverCard(GlApi& gl, const ColourTable& colours, int width, int height, int x, int y,
                    const QString& title, const QStringList& lines, int networkSlot);
void DeleteHoverCard(GlApi& gl);

void BuildTablePanel(GlApi& gl, const ColourTable& colours, const PanelLayout& layout, int width, int height,
                     const TableContent& content);

} // namespace sky::render
