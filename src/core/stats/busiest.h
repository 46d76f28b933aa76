#pragma once

#include <array>
#include <vector>

#include <QString>

#include "network/client_records.h"

namespace sky {
class ReferenceData;
class FirOutlines;
} // namespace sky

namespace sky::stats {

// An airport or FIR with its traffic per network, and where the map goes to show it.
struct BusyPlace {
    QString Code; // the airport's ICAO code or the FIR's boundary id
    QString Name;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    std::array<int, network::kNetworkCount> Counts{};
    int Total() const { return Counts[0] + Counts[1]; }
};

// The most places, busiest first (equal ones by code), among the networks given (0, 1 or both).
// An airport counts the rows of its board: each flight within 100 nm that departs from it or is bound
// for it. A FIR counts the aircraft moving (40 kt or more) inside its outline; sub-sectors are left
// out, so an aircraft counts once. Unknown airports and empty places are never listed.
std::vector<BusyPlace> BusiestAirports(const network::ClientTables& tables, const std::vector<int>& networks,
                                       const ReferenceData& reference, int most = 10);
std::vector<BusyPlace> BusiestFirs(const network::ClientTables& tables, const std::vector<int>& networks,
                                   const FirOutlines& outlines, const ReferenceData& reference,
                                   int most = 10);

} // namespace sky::stats
