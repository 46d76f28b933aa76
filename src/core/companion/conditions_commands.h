#pragma once

#include "companion/command_context.h"

// The commands about an airport's conditions as its stations give them.
namespace sky::companion {

// rwy ICAO: "EDDF runways in use: arrival 25L 25R, departure 25C (ATIS D)", from the shown network's
// ATIS of that airport; "EDDF runways in use: no ATIS online" without one.
void Rwy(CommandContext& c, const QString& code);

} // namespace sky::companion
