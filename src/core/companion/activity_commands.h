#pragma once

#include "companion/command_context.h"

// Airport activity for controllers: who is around an airport, and what moves there.
namespace sky::companion {

// Everyone within kVicinityNm of the airport: controllers (by where they are drawn, or serving it),
// pilots marked outbound or inbound when the airport is in their plan, and observers; then the map
// centres on the airport as icao does.
void Act(CommandContext& c, const QString& code);

// With an airport code: aircraft departing (on the ground within kAirportRadiusNm, not yet airborne),
// airborne outbound, airborne inbound, landed (on the ground within kAirportRadiusNm) and aircraft
// without a flight plan on the airport, then how many of those listed are outbound and inbound. With a
// two-letter country code: every flight that departs from or arrives at one of the country's airports.
void Traffic(CommandContext& c, const QString& code);

inline constexpr float kVicinityNm = 20.0f;
inline constexpr float kAirportRadiusNm = 10.0f;
inline constexpr float kGroundSpeedKts = 40.0f; // below: on the ground

} // namespace sky::companion
