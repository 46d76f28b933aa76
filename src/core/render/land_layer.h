#pragma once

#include <array>

#include <QByteArray>
#include <QByteArrayView>

namespace sky {
struct ColourTable;
}

namespace sky::geo {
struct ViewState;
}

namespace sky::render {

class GlApi;

// The land of the globe comes in detail bands, each for a range of globe sizes on screen: a band's
// outlines lie within ToleranceDeg of the full ones (0: every point), and its triangles are grouped in
// tiles of TileDeg by TileDeg degrees, one display list per tile, so that a view calls only the tiles it
// shows. land.dat (written by tools/make_land.py, which holds the same table) names each band's values;
// a band whose values differ is not loaded.
struct LandBand {
    double ToleranceDeg;
    int TileDeg;
};
inline constexpr std::array<LandBand, 5> kLandBands = {
    {{0.12, 15}, {0.064, 10}, {0.0356, 10}, {0.012, 15}, {0.0, 10}}};

// How many lists the land layer uses from lists::kLandFirst on: every tile of every band.
int LandListCount();

// The list of a band's tile; rows count from the south pole, columns east from 180 W.
int LandList(int band, int row, int column);

// Records the land lists from the bytes of land.dat (data/FORMATS.md): land in the Land colour, water
// (lakes, and the seas the land encloses) in the globe's colour of its latitude band, so that it reads
// as sea. A piece with a point out of range and a triangle with a corner that is not a point of its
// piece are left out; reading stops at the first record that is cut short or unknown. Returns the
// number of tiles recorded (0 for a file that does not start with the format's mark). With onlyBand
// set, the tiles of that band alone are recorded.
int BuildLand(GlApi& gl, QByteArrayView bytes, const ColourTable& colours, int onlyBand = -1);

// The band for a globe of radiusPx pixels: the coarsest whose tolerance stays within a pixel.
int LandBandFor(double radiusPx);

// The land's lists, recorded a band at a time the first time a frame draws that band: most of the
// file's triangles are in the fine bands that only a close zoom draws, so start-up records little.
class LandLists {
public:
    // Keeps land.dat's bytes (empty: no land); every band is recorded again when next drawn, in the
    // colours given then (a new theme, a new GL context).
    void Reset(QByteArray bytes);
    // Records the band DrawLand draws this view with, unless it was since the last Reset.
    void Need(GlApi& gl, const ColourTable& colours, const geo::ViewState& view, int heightPx);

private:
    QByteArray m_bytes;
    std::array<bool, kLandBands.size()> m_recorded{};
};

// Calls the recorded lists of the tiles of the view's band that can show in a window of widthPx by
// heightPx, drawn opaque, as the globe is.
void DrawLand(GlApi& gl, const geo::ViewState& view, int widthPx, int heightPx);

} // namespace sky::render
