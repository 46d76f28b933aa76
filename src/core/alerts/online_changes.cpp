#include "alerts/online_changes.h"

#include <QSet>

#include "alerts/watch_list.h"
#include "app/friends.h"

using namespace Qt::StringLiterals;

namespace sky::alerts {
namespace {

void Collect(std::vector<OnlineClient>& into, QSet<QString>& seen, const QString& key, OnlineClient client) {
    if (!seen.contains(key)) {
        seen.insert(key);
        into.push_back(std::move(client));
    }
}

// The clients of from whose key is not among those of against.
template <typename Key>
std::vector<OnlineClient> Missing(const std::vector<OnlineClient>& from,
                                  const std::vector<OnlineClient>& against, Key key) {
    QSet<QString> present;
    for (const OnlineClient& c : against)
        present.insert(key(c));
    std::vector<OnlineClient> missing;
    for (const OnlineClient& c : from) {
        if (!present.contains(key(c)))
            missing.push_back(c);
    }
    return missing;
}

} // namespace

WatchedOnline WhoIsOnline(const network::NetworkData& data, const sky::Friends& friends,
                          const WatchList& watches) {
    WatchedOnline online;
    QSet<QString> friendsSeen, stationsSeen;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        if (!p.VID.isEmpty() && friends.Contains(p.VID))
            Collect(online.Friends, friendsSeen, p.VID.toCaseFolded(), {p.Callsign, p.VID, p.RealName, true});
    }
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const network::ControllerRecord& c = data.Controllers[size_t(slot)];
        const OnlineClient client{c.Callsign, c.VID, c.RealName, false};
        if (!c.VID.isEmpty() && friends.Contains(c.VID))
            Collect(online.Friends, friendsSeen, c.VID.toCaseFolded(), client);
        if (c.FacilityType >= network::kFacilityAtis && watches.Matches(c.Callsign))
            Collect(online.Stations, stationsSeen, c.Callsign.toUpper(), client);
    }
    return online;
}

QString OnlineChange::Text() const {
    const QString network = network::NetworkName(Network);
    const QString who =
        Client.Name.isEmpty() ? Client.Callsign : Client.Name + u" ("_s + Client.Callsign + u')';
    switch (Kind) {
    case ChangeKind::FriendOnline:
        return u"Friend "_s + who + u" is online on "_s + network;
    case ChangeKind::FriendOffline:
        return u"Friend "_s + who + u" went offline on "_s + network;
    case ChangeKind::StationOpened:
        return Client.Callsign + u" opened on "_s + network;
    case ChangeKind::StationClosed:
        return Client.Callsign + u" closed on "_s + network;
    }
    return {};
}

std::vector<OnlineChange> CompareOnline(int network, const WatchedOnline& before,
                                        const WatchedOnline& after) {
    const auto member = [](const OnlineClient& c) { return c.Member.toCaseFolded(); };
    const auto callsign = [](const OnlineClient& c) { return c.Callsign.toUpper(); };
    std::vector<OnlineChange> changes;
    const auto add = [&](ChangeKind kind, const std::vector<OnlineClient>& clients) {
        for (const OnlineClient& c : clients)
            changes.push_back({kind, network, c});
    };
    add(ChangeKind::FriendOnline, Missing(after.Friends, before.Friends, member));
    add(ChangeKind::FriendOffline, Missing(before.Friends, after.Friends, member));
    add(ChangeKind::StationOpened, Missing(after.Stations, before.Stations, callsign));
    add(ChangeKind::StationClosed, Missing(before.Stations, after.Stations, callsign));
    return changes;
}

} // namespace sky::alerts
