#pragma once

#include <vector>

#include <QString>

#include "network/client_records.h"

namespace sky {
class Friends;
}

namespace sky::alerts {

class WatchList;

// Who of interest is online in one download of a network: the friends (by member number, whatever
// their callsign) and the watched stations (by callsign, whoever staffs them).
struct OnlineClient {
    QString Callsign;
    QString Member;
    QString Name;
    bool Pilot = false;
};
struct WatchedOnline {
    std::vector<OnlineClient> Friends;
    std::vector<OnlineClient> Stations;
};
WatchedOnline WhoIsOnline(const network::NetworkData& data, const sky::Friends& friends,
                          const WatchList& watches);

// One change between two downloads of a network.
enum class ChangeKind { FriendOnline, FriendOffline, StationOpened, StationClosed };
struct OnlineChange {
    ChangeKind Kind = ChangeKind::FriendOnline;
    int Network = 0;
    OnlineClient Client;
    // "Friend Anna Berg (DLH12) is online on IVAO", "EDDF_TWR opened on VATSIM" and the like.
    QString Text() const;
};

// What changed from before to after: friends who connected or left (a friend who reconnected under
// another callsign is neither), stations that opened or closed (a station handed to another
// controller is neither). Friends first, each kind in the order of the downloads.
std::vector<OnlineChange> CompareOnline(int network, const WatchedOnline& before, const WatchedOnline& after);

} // namespace sky::alerts
