#pragma once

#include <array>
#include <vector>

#include <QString>
#include <QStringList>

#include "network/client_records.h"

namespace sky::render {

struct TrafficInputs;

// Aircraft parked at one airport, drawn as one mark with their number while their symbols would
// overlap on screen.
struct Crowd {
    int Network = 0;
    QString Airport;
    float Lat = 0.0f, Lon = 0.0f; // the airport
    int Count = 0;                // aircraft on the ground there
    int Departing = 0;            // of them, at their departure airport
    int Arrived = 0;              // at their destination
};

// Which aircraft a scene draws as crowds, for one zoom band.
struct CrowdPlan {
    std::vector<Crowd> Crowds;
    std::array<std::vector<bool>, network::kNetworkCount> Grouped; // by pilot slot
    bool IsGrouped(int network, int slot) const {
        const auto& grouped = Grouped[size_t(network == 1 ? 1 : 0)];
        return size_t(slot) < grouped.size() && grouped[size_t(slot)];
    }
};

// An aircraft on the ground: slower than this.
inline constexpr float kGroundSpeedKts = 40.0f;
// An aircraft on the ground this close to an airport that a flight plan names is parked there.
inline constexpr float kCrowdRadiusNm = 5.0f;

// The crowds of the shown pilots of networks, for the zoom and selection of the inputs' label view: the
// aircraft on the ground near an airport in use (one a flight plan names) are grouped when any two of
// their symbols would overlap. Airborne aircraft, the selected client and friends are never grouped; without
// a label view (every label drawn) nothing is, nor from kGroundLabelZoom on.
CrowdPlan PlanCrowds(const TrafficInputs& in, const std::vector<int>& networks);

// The texts of a crowd's hover card: its airport, then what is on the ground there.
QStringList CrowdCard(const Crowd& crowd);

} // namespace sky::render
