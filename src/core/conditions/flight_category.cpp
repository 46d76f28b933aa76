#include "conditions/flight_category.h"

#include <algorithm>

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace sky::conditions {
namespace {

constexpr double kMetresPerMile = 1609.344;

// "1/4" or "3": a whole or a fraction; none for anything else.
std::optional<double> Miles(const QString& text) {
    static const QRegularExpression fraction(u"^(\\d{1,2})/(\\d{1,2})$"_s);
    static const QRegularExpression whole(u"^\\d{1,3}$"_s);
    if (const auto m = fraction.match(text); m.hasMatch()) {
        const int below = m.captured(2).toInt();
        return below > 0 ? std::optional<double>(m.captured(1).toDouble() / below) : std::nullopt;
    }
    if (whole.match(text).hasMatch())
        return text.toDouble();
    return std::nullopt;
}

} // namespace

MetarConditions ReadConditions(const QString& metar) {
    MetarConditions found;
    static const QRegularExpression blanks(u"\\s+"_s);
    const QStringList groups = metar.toUpper().split(blanks, Qt::SkipEmptyParts);
    static const QRegularExpression statute(u"^([MP]?)(\\d{1,3}|\\d{1,2}/\\d{1,2})SM$"_s);
    static const QRegularExpression metres(u"^(\\d{4})(NDV)?$"_s);
    static const QRegularExpression cloud(u"^(BKN|OVC|VV)(\\d{3})"_s);
    static const QRegularExpression wholeMiles(u"^\\d$"_s);
    for (qsizetype i = 0; i < groups.size(); ++i) {
        const QString& g = groups[i];
        if (g == u"RMK")
            break; // remarks repeat numbers of their own
        if (g == u"CAVOK") {
            // Ceiling and visibility OK: 10 km or more, no cloud below 5000 ft.
            found.VisibilityMiles = 10000.0 / kMetresPerMile;
            continue;
        }
        if (const auto m = statute.match(g); m.hasMatch() && !found.VisibilityMiles) {
            std::optional<double> miles = Miles(m.captured(2));
            // "1 1/2SM": the whole miles stand in the group before.
            if (miles && i > 0 && wholeMiles.match(groups[i - 1]).hasMatch() && m.captured(2).contains(u'/'))
                *miles += groups[i - 1].toDouble();
            if (miles && m.captured(1) == u"M")
                *miles = std::max(0.0, *miles - 0.01); // less than
            found.VisibilityMiles = miles;
            continue;
        }
        // Four digits after the station and time: metres ("9999" is 10 km or more).
        if (const auto m = metres.match(g); m.hasMatch() && i >= 2 && !found.VisibilityMiles) {
            found.VisibilityMiles = m.captured(1).toInt() / kMetresPerMile;
            continue;
        }
        if (const auto m = cloud.match(g); m.hasMatch()) {
            const int feet = m.captured(2).toInt() * 100;
            if (!found.CeilingFt || feet < *found.CeilingFt)
                found.CeilingFt = feet;
        }
    }
    return found;
}

FlightCategory CategoryOf(const MetarConditions& c) {
    if (!c.CeilingFt && !c.VisibilityMiles)
        return FlightCategory::Unknown;
    const auto byCeiling = [](int feet) {
        return feet < 500     ? FlightCategory::Lifr
               : feet < 1000  ? FlightCategory::Ifr
               : feet <= 3000 ? FlightCategory::Mvfr
                              : FlightCategory::Vfr;
    };
    const auto byVisibility = [](double miles) {
        return miles < 1.0    ? FlightCategory::Lifr
               : miles < 3.0  ? FlightCategory::Ifr
               : miles <= 5.0 ? FlightCategory::Mvfr
                              : FlightCategory::Vfr;
    };
    // No layer that makes a ceiling: none counts as a low one.
    const FlightCategory ceiling = c.CeilingFt ? byCeiling(*c.CeilingFt) : FlightCategory::Vfr;
    const FlightCategory visibility =
        c.VisibilityMiles ? byVisibility(*c.VisibilityMiles) : FlightCategory::Vfr;
    return std::max(ceiling, visibility);
}

QString CategoryName(FlightCategory category) {
    switch (category) {
    case FlightCategory::Vfr:
        return u"VFR"_s;
    case FlightCategory::Mvfr:
        return u"MVFR"_s;
    case FlightCategory::Ifr:
        return u"IFR"_s;
    case FlightCategory::Lifr:
        return u"LIFR"_s;
    case FlightCategory::Unknown:
        break;
    }
    return {};
}

} // namespace sky::conditions
