#pragma once

#include "network/client_records.h"
#include "render/panel_layout.h"
#include "render/scene_drawing.h"

namespace sky::render {

struct TrafficInputs;

// The aircraft symbols of a network's shown pilots, turned to their heading (or course), sized for the
// zoom band so they keep their size on screen: each a square of the symbol's mask for that size (defined
// here as a texture), all fills first, then all edges. Their corners go into vertex array `array`, which
// the list being recorded draws.
void AircraftSymbols(GlApi& gl, int array, const network::NetworkData& data, const TrafficInputs& in,
                     const drawing::Style& style);
// The corners of the same symbols set again where the inputs now draw them (live motion): the list
// that draws array stays as recorded.
void MoveAircraftSymbols(GlApi& gl, int array, const network::NetworkData& data, const TrafficInputs& in);
// The marks of the crowds of network: a ring round the airport and the number of aircraft parked there,
// in the aircraft colours.
void CrowdMarks(GlApi& gl, int network, const TrafficInputs& in, const drawing::Style& style);
// Where a crowd's number is printed, from the airport's point: the raster move (pixels, y up) and the
// box it takes (pixels from the point, y down), which labels keep clear of and a click finds.
inline constexpr int kCrowdTextDx = 8;
inline constexpr int kCrowdTextDy = -4;
PixelRect CrowdMarkBox(const GlApi& gl, int count);
// A point at the departure and destination airport of every shown pilot.
void AirportMarkers(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in);
// From every flight with a known destination that it has not reached yet, along the great circle.
void InboundLines(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in);

// Half the length of an aircraft symbol, in units of the globe's radius, for a zoom.
double SymbolSize(float viewZ);
// The number of the texture of the symbol's mask for a zoom and window height: one for each few
// percent of the symbol's size on screen, so its edge stays a pixel wide as the view zooms within a
// band (the symbols are recorded again when the number changes), and symbols recorded for other sizes
// keep theirs.
int SymbolMaskTexture(float viewZ, int windowHeightPx);

} // namespace sky::render
