#pragma once

#include "network/client_records.h"
#include "render/panel_layout.h"
#include "render/scene_drawing.h"

namespace sky::render {

struct TrafficInputs;

// The aircraft symbols of a network's shown pilots, turned to their heading (or course), sized for the
// zoom band so they keep their size on screen: all fills in one primitive, all outlines in another.
void AircraftSymbols(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                     const drawing::Style& style);
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

} // namespace sky::render
