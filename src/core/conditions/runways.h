#pragma once

#include <QString>
#include <QStringList>

#include "network/client_records.h"

namespace sky::conditions {

// The runways an ATIS says are in use, split where it says so: for arrivals, for departures; runways
// it gives without saying which are in both. Designators as "07L", in the order first named.
struct RunwaysInUse {
    QStringList Arrival;
    QStringList Departure;
    bool IsEmpty() const { return Arrival.isEmpty() && Departure.isEmpty(); }
};

// What an ATIS text of airport (its ICAO code) says of the runways in use, in the phrasings real ATIS
// use ("RWY 25R IN USE", "LANDING RUNWAY 07L, DEPARTING RUNWAY 07R", "RUNWAYS IN USE 26L AND 26R",
// "ARR RWY 27 DEP RWY 33", "EXPECT ILS APPROACH RUNWAY 24"). Runways of another airport the text names
// are left out, as are numbers that are no runway (above 36, or 00).
RunwaysInUse ParseRunways(const QString& atisText, const QString& airport);

// The letter of an ATIS ("INFORMATION DELTA", "ATIS D", "INFO D"), or empty.
QString AtisLetter(const QString& atisText);

// "arrival 25L 25R, departure 25C" (Short: "arr 25L 25R, dep 25C"); "25R" alone where both are the same.
enum class RunwayWords { Full, Short };
QString RunwaysText(const RunwaysInUse& runways, RunwayWords words = RunwayWords::Full);

// What an airport's ATIS stations of a network say: the runways in use (a departure ATIS's plain
// runways for departures, an arrival ATIS's for arrivals) and the letter of the first. Where no
// station's callsign ends in ATIS, the airport's stations' own ATIS texts (as one network gives them).
struct AirportAtis {
    bool Online = false;
    QString Letter;
    RunwaysInUse Runways;
};
AirportAtis AtisOf(const network::NetworkData& data, const QString& airport);
// "Runways: arr 25L, dep 25C" as the airport's ATIS gives them; empty when none does.
QString RunwaysLine(const network::NetworkData& data, const QString& airport);

} // namespace sky::conditions
