#pragma once

// Every layer of the map is a display list with a fixed number; nothing is allocated by a generator.
namespace sky::render::lists {

// The traffic lists of a network n are TrafficBase(n) + the offsets below; n = 2 is the
// comparison of both networks (lists 30 to 38).
constexpr int TrafficBase(int network) {
    return 10 * network + 10;
}
inline constexpr int kPlanes = 0;
inline constexpr int kPlaneLabels = 1;
inline constexpr int kAirports = 2;
inline constexpr int kAirportLabels = 3;
inline constexpr int kInbounds = 4;
inline constexpr int kSectorFills = 5;
inline constexpr int kOutlines = 6;
inline constexpr int kAtcLabels = 7;
inline constexpr int kAtcMarkers = 8;
// Decluttered labels of stations and airports, drawn with the aircraft labels (after every symbol) but
// kept apart from them, so moving aircraft record their own labels alone.
inline constexpr int kSharedLabels = 9;
inline constexpr int kTrafficListCount = 10;

inline constexpr int kInfoBox = 40;
inline constexpr int kListPanel = 41;
inline constexpr int kHighlight = 42;
// Lists of our own, above the numbers of the map's fixed layers.
inline constexpr int kAllTrails = 60;   // the tracks of every shown aircraft
inline constexpr int kHoverCard = 61;   // the card of the client under the resting pointer
inline constexpr int kEventMarks = 62;  // VATSIM's airports with an event in progress
inline constexpr int kFilterMark = 63;  // an active filter: its count and its mark in the status band
inline constexpr int kNight = 64;       // the night side of the globe
inline constexpr int kMeasureLine = 65; // the measuring line and its figures
inline constexpr int kWeather = 68;     // airports' dots in their flight category's colour
// The land of the globe from here on: one list per tile of each detail band (render/land_layer.h).
inline constexpr int kLandFirst = 1000;
inline constexpr int kFrame = 50;
inline constexpr int kGrid = 51;
inline constexpr int kGlobe = 52;
inline constexpr int kCoastlines = 53;
inline constexpr int kBorders = 54;
inline constexpr int kStatusLine = 55;
inline constexpr int kClientCount = 56;
inline constexpr int kNetworkMarks = 57;
inline constexpr int kTitleBox = 58;
inline constexpr int kSmallFontBase = 64725; // glyphs of codes 0 to 254
inline constexpr int kBoldFontBase = 65000;
inline constexpr int kGlyphCount = 255;
// From here on, lists a GL may make for itself (those that draw vertex arrays record in pieces).
inline constexpr int kGlLists = 66000;

// Textures have fixed numbers too: the aircraft symbol's masks from here, one per scale (see
// aircraft_layer.h).
inline constexpr int kSymbolMaskTextures = 1000;

// Vertex arrays have fixed numbers too: the corners of the aircraft symbols of each network (0 or 1)
// in each scene (0, 1 or 2 for the comparison).
constexpr int SymbolArray(int scene, int network) {
    return 2 * scene + network;
}
// The lines from the end of each aircraft's trail to where it is drawn.
inline constexpr int kTrailEndsArray = 6;

} // namespace sky::render::lists
