#include "stats/airport_movements.h"

#include <algorithm>

#include "geo/geodesy.h"

namespace sky::stats {
namespace {

constexpr float kBoardRadiusNm = 100.0f; // the airport board's
constexpr qint64 kHour = 3600;
// Back online after this long, a callsign flies another flight (as its track is cut there too).
constexpr qint64 kNewFlightSeconds = 30 * 60;
// A chart of more hours than this (a clock that jumped years) shows its last ones only.
constexpr qint64 kMostHours = 24 * 400;

qint64 HourOf(qint64 utc) {
    return utc / kHour * kHour;
}

} // namespace

std::vector<HourMovements> MovementsPerHour(std::vector<AirportSample> samples, float airportLatitude,
                                            float airportLongitude, qint64 fromUtc, qint64 toUtc) {
    std::vector<HourMovements> hours;
    // Times before 1970 or after 9999 are no download's.
    fromUtc = std::max<qint64>(fromUtc, 0);
    toUtc = std::min<qint64>(toUtc, 253402300799);
    if (fromUtc > toUtc)
        return hours;
    const qint64 last = HourOf(toUtc);
    const qint64 first = std::max(HourOf(fromUtc), last - (kMostHours - 1) * kHour);
    for (qint64 hour = first; hour <= last; hour += kHour)
        hours.push_back({hour, 0, 0});
    std::stable_sort(samples.begin(), samples.end(), [](const AirportSample& a, const AirportSample& b) {
        return a.Flight != b.Flight ? a.Flight < b.Flight : a.TakenUtc < b.TakenUtc;
    });
    const auto away = [&](const AirportSample& s) {
        return geo::Distance(s.Latitude, s.Longitude, airportLatitude, airportLongitude);
    };
    bool arrived = false, departed = false;
    for (size_t i = 0; i < samples.size(); ++i) {
        const AirportSample& s = samples[i];
        if (i == 0 || samples[i - 1].Flight != s.Flight ||
            s.TakenUtc - samples[i - 1].TakenUtc > kNewFlightSeconds) {
            arrived = departed = false;
            continue; // a flight's first sample cannot tell where it was going
        }
        const float nowNm = away(s), beforeNm = away(samples[i - 1]);
        if (nowNm > kBoardRadiusNm || s.SpeedKt < kMovingSpeedKt || s.TakenUtc < first ||
            s.TakenUtc >= last + kHour)
            continue;
        HourMovements& hour = hours[size_t((HourOf(s.TakenUtc) - first) / kHour)];
        if (s.ToAirport && !arrived && nowNm < beforeNm) {
            arrived = true;
            ++hour.Arrivals;
        }
        if (s.FromAirport && !departed && nowNm > beforeNm) {
            departed = true;
            ++hour.Departures;
        }
    }
    return hours;
}

} // namespace sky::stats
