#pragma once

#include <optional>

#include <QString>

namespace sky::conditions {

// The flight categories of the US weather services, from the ceiling and the visibility: VFR (ceiling
// above 3000 ft and visibility above 5 statute miles), MVFR (1000-3000 ft or 3-5 SM), IFR (500 to
// below 1000 ft or 1 to below 3 SM), LIFR (below 500 ft or below 1 SM); the worse of the two decides.
enum class FlightCategory { Unknown, Vfr, Mvfr, Ifr, Lifr };

// What a METAR gives: the ceiling (the lowest broken or overcast layer, or the vertical visibility),
// in feet above ground, and the prevailing visibility in statute miles; none where it says nothing.
struct MetarConditions {
    std::optional<int> CeilingFt;
    std::optional<double> VisibilityMiles;
};
MetarConditions ReadConditions(const QString& metar);

FlightCategory CategoryOf(const MetarConditions& conditions);
// "VFR", "MVFR", "IFR", "LIFR", or empty.
QString CategoryName(FlightCategory category);

} // namespace sky::conditions
