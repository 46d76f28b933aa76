#pragma once

#include "network/client_records.h"
#include "render/scene_drawing.h"

namespace sky::render {

struct TrafficInputs;

// The aircraft symbols of a network's shown pilots, turned to their heading (or course), sized for the
// zoom band so they keep their size on screen: all fills in one primitive, all outlines in another.
void AircraftSymbols(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in,
                     const drawing::Style& style);
// A point at the departure and destination airport of every shown pilot.
void AirportMarkers(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in);
// From every flight with a known destination that it has not reached yet, along the great circle.
void InboundLines(GlApi& gl, const network::NetworkData& data, const TrafficInputs& in);

// Half the length of an aircraft symbol, in units of the globe's radius, for a zoom.
double SymbolSize(float viewZ);

} // namespace sky::render
