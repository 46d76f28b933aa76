#pragma once

#include <vector>

#include <QtGlobal>

namespace sky::stats {

// Where one flight was in one kept snapshot, and whether its flight plan then named the airport as its
// departure or destination.
struct AirportSample {
    qint64 Flight = 0; // the flight's row in the store: one callsign and member
    qint64 TakenUtc = 0;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    int SpeedKt = 0;
    bool FromAirport = false; // its departure airport
    bool ToAirport = false;   // its destination
};

// The movements of one hour (from HourUtc, a whole hour) at an airport.
struct HourMovements {
    qint64 HourUtc = 0;
    int Arrivals = 0;
    int Departures = 0;
};

// A flight is moving from this ground speed on: on the runway or in the air, not taxiing.
inline constexpr int kMovingSpeedKt = 40;

// The airport's arrivals and departures per hour, every hour from the one holding fromUtc to the one
// holding toUtc. As the airport's board counts them, a flight is an arrival while its destination is
// the airport and it is within 100 nm, a departure likewise with its departure airport; it counts once,
// in the hour of the first snapshot where it is seen so, moving (kMovingSpeedKt or more) towards the
// airport (an arrival) or away from it (a departure) since its snapshot before. Seen again after more
// than 30 minutes offline, it is another flight.
std::vector<HourMovements> MovementsPerHour(std::vector<AirportSample> samples, float airportLatitude,
                                            float airportLongitude, qint64 fromUtc, qint64 toUtc);

} // namespace sky::stats
