#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "network/client_records.h"

namespace sky {
class Friends;
}

namespace sky::filter {

// Where an aircraft must be to pass: anywhere, in the air, or on the ground (slower than kGroundKts).
enum class Where { Both, Airborne, OnGround };
inline constexpr float kGroundKts = 40.0f;

// The kinds of station the filter tells apart, as bits of TrafficFilter::Stations.
enum StationBit : unsigned {
    kCentre = 1,   // centre and flight service
    kApproach = 2, // approach and departure
    kTower = 4,
    kGround = 8,
    kDelivery = 16,
    kAtis = 32,
    kObserver = 64,
    kAllStations = 127,
};
// The kind of a controller: its facility type, and for type 3 its callsign (_DEL or ground).
StationBit StationOf(const network::ControllerRecord& controller);

// What the map shows of the traffic. Lists hold upper-case prefixes; an empty list lets everyone
// through. Pilot terms never hide controllers, station terms never hide pilots.
struct TrafficFilter {
    QStringList Callsigns;                  // callsign or airline prefixes: "DLH", "EWG"
    QStringList Types;                      // aircraft type prefixes: "A32", "B738"
    QStringList From;                       // departure airport prefixes
    QStringList To;                         // destination airport prefixes
    QStringList At;                         // departure or destination
    std::optional<int> LowestFt, HighestFt; // the level band, inclusive, in feet
    Where Position = Where::Both;
    unsigned Stations = kAllStations;

    // True when it lets everyone through.
    bool IsEmpty() const { return *this == TrafficFilter{}; }
    bool Passes(const network::PilotRecord& pilot) const;
    bool Passes(const network::ControllerRecord& controller) const;
    bool operator==(const TrafficFilter&) const = default;
};

// The bar's text read: plain words are callsign prefixes ("DLH EWG" or "DLH, EWG"); "type:A320,B738",
// "from:EDDF", "to:KJFK", "at:EGLL" (either end); a level band "FL100-FL300", "3000ft-FL100",
// "FL300-" or "-5000ft" (FL is hundreds of feet, ft or a bare number feet); "airborne" or "ground";
// "atc:ctr,app,twr,gnd,del,atis,obs" (stations shown); "friends" (the friends-only switch). Case is
// ignored; what cannot be read is named in Problems and left out.
struct ParsedFilter {
    TrafficFilter Filter;
    bool FriendsOnly = false;
    QStringList Problems;
};
ParsedFilter ParseFilter(const QString& text);

// The canonical text of a filter, which ParseFilter reads back as the same filter: terms in the order
// above, e.g. "DLH EWG type:A32 to:EDDF FL100-FL300 airborne atc:ctr,app friends". Empty when it lets
// everyone through.
QString FilterText(const TrafficFilter& filter, bool friendsOnly = false);

// Who the map shows: the filter and, with the friends-only switch (F2), friends alone. The one test the
// traffic lists, the pointer, the list panel and the search all ask.
struct Visibility {
    const TrafficFilter* Filter = nullptr; // null: no filter
    bool FriendsOnly = false;
    const Friends* FriendList = nullptr; // needed when FriendsOnly

    bool Shows(const network::PilotRecord& pilot) const;
    bool Shows(const network::ControllerRecord& controller) const;
    bool Shows(const network::ClientTables& tables, const network::ClientRef& client) const;
    // True when anything at all is held back.
    bool Narrows() const { return FriendsOnly || (Filter && !Filter->IsEmpty()); }
};

// How many of network's pilots it shows.
int ShownPilots(const Visibility& visibility, const network::NetworkData& data);

} // namespace sky::filter
