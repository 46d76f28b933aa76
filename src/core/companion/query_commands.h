#pragma once

#include "companion/command_context.h"

// The commands that answer from the traffic in memory and the airport table.
namespace sky::companion {

void Dist(CommandContext& c, const QString& a, const QString& b);
void Icao(CommandContext& c, const QString& code);
void Atis(CommandContext& c, const QString& callsign);
void Fp(CommandContext& c, const QString& callsign);
void Info(CommandContext& c, const QString& argument);
void Prof(CommandContext& c, const QString& argument);
void Stat(CommandContext& c);
void Sups(CommandContext& c);
void Refresh(CommandContext& c);

// The planned level and cruise speed as a flight plan writes them: "35000" is "F35" (a division by
// 1000, kept on purpose), "350" is "F350", "450" knots are "N0450".
QString FlightPlanLevel(const QString& plannedAltitude);
QString FlightPlanSpeed(const QString& cruiseSpeed);

} // namespace sky::companion
