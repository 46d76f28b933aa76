#include "route/route_resolver.h"

#include <QRegularExpression>

#include "refdata/navaids.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::route {
namespace {

constexpr int kMostWords = 600;
constexpr float kFurthestNavaidNm = 1500.0f;

std::optional<geo::LatLon> Checked(double lat, double lon) {
    if (lat < -90.0 || lat > 90.0 || lon < -180.0 || lon > 180.0)
        return std::nullopt;
    return geo::LatLon{float(lat), float(lon)};
}

double Degrees(const QString& whole, const QString& minutes) {
    return whole.toDouble() + (minutes.isEmpty() ? 0.0 : minutes.toDouble() / 60.0);
}

} // namespace

std::optional<geo::LatLon> ParseRouteCoordinate(QStringView token) {
    static const QRegularExpression latFirst(u"^(\\d{2})(\\d{2})?([NS])(\\d{3})(\\d{2})?([EW])$"_s);
    static const QRegularExpression letterFirst(u"^([NS])(\\d{2})(\\d{2})?([EW])(\\d{3})(\\d{2})?$"_s);
    static const QRegularExpression arincEnd(u"^(\\d{2})(\\d{2})([NESW])$"_s);
    static const QRegularExpression arincMiddle(u"^(\\d{2})([NESW])(\\d{2})$"_s);
    const QString t = token.toString().toUpper();
    if (const auto m = latFirst.match(t); m.hasMatch()) {
        const double lat = Degrees(m.captured(1), m.captured(2)), lon = Degrees(m.captured(4), m.captured(5));
        return Checked(m.captured(3) == u"S" ? -lat : lat, m.captured(6) == u"W" ? -lon : lon);
    }
    if (const auto m = letterFirst.match(t); m.hasMatch()) {
        const double lat = Degrees(m.captured(2), m.captured(3)), lon = Degrees(m.captured(5), m.captured(6));
        return Checked(m.captured(1) == u"S" ? -lat : lat, m.captured(4) == u"W" ? -lon : lon);
    }
    const auto arinc = [](double lat, double lon, QChar quadrant) {
        const bool south = quadrant == u'S' || quadrant == u'W';
        const bool west = quadrant == u'N' || quadrant == u'W';
        return Checked(south ? -lat : lat, west ? -lon : lon);
    };
    if (const auto m = arincEnd.match(t); m.hasMatch())
        return arinc(m.captured(1).toDouble(), m.captured(2).toDouble(), m.captured(3)[0]);
    if (const auto m = arincMiddle.match(t); m.hasMatch())
        return arinc(m.captured(1).toDouble(), 100.0 + m.captured(3).toDouble(), m.captured(2)[0]);
    return std::nullopt;
}

std::vector<RoutePoint> ResolveRoute(const QString& departure, const QString& destination,
                                     const QString& route, const ReferenceData& airports,
                                     const Navaids& navaids) {
    // Words that name no place: airways (UL607, Y7, T161), procedures (ANEKI1A), speed and level groups
    // (N0450F350), and DCT and the like.
    static const QRegularExpression noPlace(
        u"^([A-Z]{1,2}\\d{1,4}[A-Z]?|[A-Z]{3,5}\\d[A-Z]?|[NKM]\\d{3,4}[FASM]\\d{3,4}|"
        u"DCT|SID|STAR|IFR|VFR|OAT|GAT)$"_s);
    std::vector<RoutePoint> points;
    const auto airport = [&](const QString& code) {
        if (const Airport* a = airports.FindAirport(code))
            points.push_back({a->Icao, a->Latitude, a->Longitude});
    };
    airport(departure.trimmed());
    const QStringList words = route.toUpper().split(QRegularExpression(u"[\\s.]+"_s), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < words.size() && i < kMostWords; ++i) {
        const QString word = words[i].section(u'/', 0, 0); // "NIVNU/N0450F350": the place, not its speeds
        if (word.isEmpty() || word.size() > 11)
            continue;
        if (const auto position = ParseRouteCoordinate(word)) {
            points.push_back({word, position->Lat, position->Lon});
            continue;
        }
        if (noPlace.match(word).hasMatch())
            continue;
        if (word.size() == 4 && word != destination && airports.FindAirport(word)) {
            airport(word);
            continue;
        }
        const std::vector<const Navaid*> found =
            word.size() <= 3 ? navaids.Find(word) : std::vector<const Navaid*>();
        const Navaid* nearest = nullptr;
        float best = kFurthestNavaidNm;
        for (const Navaid* n : found) {
            const float away = points.empty() ? 0.0f
                                              : geo::Distance(points.back().Latitude, points.back().Longitude,
                                                              n->Latitude, n->Longitude);
            if (away <= best) {
                best = away;
                nearest = n;
            }
        }
        if (nearest)
            points.push_back({nearest->Ident, nearest->Latitude, nearest->Longitude});
    }
    airport(destination.trimmed());
    return points;
}

} // namespace sky::route
