#pragma once

#include "companion/command_context.h"

// The commands that list several clients at once.
namespace sky::companion {

void Vis(CommandContext& c, const QString& callsign);
void Members(CommandContext& c, const QString& countryCode);
void Find(CommandContext& c, const QString& text);

} // namespace sky::companion
