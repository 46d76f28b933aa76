#include "stats/busiest.h"

#include <algorithm>
#include <map>

#include "geo/geodesy.h"
#include "refdata/fir_outlines.h"
#include "refdata/reference_data.h"
#include "stats/airport_movements.h"

namespace sky::stats {
namespace {

constexpr float kBoardRadiusNm = 100.0f;

std::vector<BusyPlace> Most(std::map<QString, BusyPlace>& places, int most) {
    std::vector<BusyPlace> list;
    for (auto& [code, place] : places)
        if (place.Total() > 0)
            list.push_back(std::move(place));
    std::stable_sort(list.begin(), list.end(),
                     [](const BusyPlace& a, const BusyPlace& b) { return a.Total() > b.Total(); });
    list.resize(std::min(list.size(), size_t(std::max(most, 0))));
    return list;
}

// One ring of an outline holds the point: a ray to the east crosses its edges an odd number of times.
bool RingHolds(const std::vector<geo::LatLon>& ring, float lat, float lon) {
    bool inside = false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const geo::LatLon& a = ring[i];
        const geo::LatLon& b = ring[j];
        if ((a.Lat > lat) != (b.Lat > lat) && lon < (b.Lon - a.Lon) * (lat - a.Lat) / (b.Lat - a.Lat) + a.Lon)
            inside = !inside;
    }
    return inside;
}

struct Box {
    float South = 90.0f, North = -90.0f, West = 180.0f, East = -180.0f;
    bool Holds(float lat, float lon) const {
        return lat >= South && lat <= North && lon >= West && lon <= East;
    }
};

} // namespace

std::vector<BusyPlace> BusiestAirports(const network::ClientTables& tables, const std::vector<int>& networks,
                                       const ReferenceData& reference, int most) {
    std::map<QString, BusyPlace> places;
    const auto count = [&](int network, const QString& code, const network::PilotRecord& p) {
        const Airport* airport = code.isEmpty() ? nullptr : reference.FindAirport(code);
        if (!airport ||
            geo::Distance(p.Latitude, p.Longitude, airport->Latitude, airport->Longitude) > kBoardRadiusNm)
            return;
        BusyPlace& place = places[code];
        if (place.Code.isEmpty())
            place = {code, airport->Name, airport->Latitude, airport->Longitude, {}};
        ++place.Counts[size_t(network)];
    };
    for (int network : networks) {
        if (network < 0 || network >= network::kNetworkCount)
            continue;
        const network::NetworkData& data = tables[size_t(network)];
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            count(network, p.DepAirport, p);
            count(network, p.DestAirport, p);
        }
    }
    return Most(places, most);
}

std::vector<BusyPlace> BusiestFirs(const network::ClientTables& tables, const std::vector<int>& networks,
                                   const FirOutlines& outlines, const ReferenceData& reference, int most) {
    // Whole FIRs only; the outlines of one id (an oceanic and a domestic part) count as one FIR.
    std::vector<const FirOutline*> firs;
    std::vector<Box> boxes;
    for (const FirOutline& outline : outlines.All()) {
        if (outline.BoundaryId.isEmpty() || outline.BoundaryId.contains(u'-'))
            continue;
        Box box;
        for (const auto& ring : outline.Rings)
            for (const geo::LatLon& p : ring) {
                box.South = std::min(box.South, p.Lat);
                box.North = std::max(box.North, p.Lat);
                box.West = std::min(box.West, p.Lon);
                box.East = std::max(box.East, p.Lon);
            }
        firs.push_back(&outline);
        boxes.push_back(box);
    }
    std::map<QString, BusyPlace> places;
    for (int network : networks) {
        if (network < 0 || network >= network::kNetworkCount)
            continue;
        const network::NetworkData& data = tables[size_t(network)];
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            if (p.GroundSpeed < float(kMovingSpeedKt))
                continue;
            for (size_t i = 0; i < firs.size(); ++i) {
                if (!boxes[i].Holds(p.Latitude, p.Longitude) ||
                    std::none_of(firs[i]->Rings.begin(), firs[i]->Rings.end(),
                                 [&](const auto& ring) { return RingHolds(ring, p.Latitude, p.Longitude); }))
                    continue;
                BusyPlace& place = places[firs[i]->BoundaryId];
                if (place.Code.isEmpty()) {
                    place.Code = firs[i]->BoundaryId;
                    const FirCentre* centre = reference.FindFirCentre(place.Code);
                    for (const QString& id : firs[i]->Identifiers)
                        if (!centre)
                            centre = reference.FindFirCentre(id);
                    const Box& b = boxes[i];
                    place.Name = centre ? centre->Name : QString();
                    place.Latitude = centre ? centre->Latitude : (b.South + b.North) / 2;
                    place.Longitude = centre ? centre->Longitude : (b.West + b.East) / 2;
                }
                ++place.Counts[size_t(network)];
                break; // an aircraft counts in one FIR, the first that holds it
            }
        }
    }
    return Most(places, most);
}

} // namespace sky::stats
