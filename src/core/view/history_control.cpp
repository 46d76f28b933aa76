#include "view/history_control.h"

#include <algorithm>

#include "history/history_store.h"
#include "network/whazzup.h"
#include "route/route_resolver.h"
#include "view/map_state.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

// All the tracks of the last two hours: enough to see where everyone came from, and quick to read.
constexpr qint64 kAllTracksSeconds = 2 * 3600;

std::vector<geo::LatLon> Line(const std::vector<history::TrackPoint>& points) {
    std::vector<geo::LatLon> line;
    for (const history::TrackPoint& p : points)
        line.push_back({p.Latitude, p.Longitude});
    return line;
}

} // namespace

HistoryControl::HistoryControl(MapState& state, SceneControl& scene, history::HistoryStore* store,
                               const Navaids& navaids)
    : m_state(state), m_scene(scene), m_store(store), m_navaids(navaids) {}

void HistoryControl::Interpreted(int network, const QString& text, const QDateTime& now) {
    // A download brings the newest data: the replay is over.
    m_index = -1;
    m_state.Display.Replaying = false;
    if (m_store)
        m_store->Record(network, text, now);
}

FlightPaths HistoryControl::Paths(const network::ClientRef& client) const {
    FlightPaths paths;
    if (!client.IsPilot)
        return paths;
    const network::PilotRecord& p = m_state.AllTables()[client.Network].Pilots[size_t(client.Slot)];
    if (m_store) {
        for (const auto& piece : history::SplitTrack(m_store->Track(client.Network, p.Callsign, p.VID)))
            paths.Flown.push_back(Line(piece));
        // The flown part reaches where the aircraft is now.
        if (!paths.Flown.empty())
            paths.Flown.back().push_back({p.Latitude, p.Longitude});
    }
    if (p.DestAirport.isEmpty())
        return paths;
    const auto route =
        route::ResolveRoute(p.DepAirport, p.DestAirport, p.Route, m_state.Reference, m_navaids);
    paths.RoutePoints = int(route.size());
    // Ahead: from the aircraft, the route's points that lie nearer the destination than it does.
    paths.Ahead.push_back({p.Latitude, p.Longitude});
    if (route.empty())
        return paths;
    const geo::LatLon end{route.back().Latitude, route.back().Longitude};
    const float toGo = geo::Distance(p.Latitude, p.Longitude, end.Lat, end.Lon);
    for (const route::RoutePoint& point : route) {
        if (geo::Distance(point.Latitude, point.Longitude, end.Lat, end.Lon) < toGo)
            paths.Ahead.push_back({point.Latitude, point.Longitude});
    }
    return paths;
}

std::vector<std::vector<geo::LatLon>> HistoryControl::AllTracks() const {
    std::vector<std::vector<geo::LatLon>> lines;
    const int shown = m_state.Display.ShownNetwork;
    if (!m_store || shown > 1)
        return lines;
    const network::NetworkData& data = m_state.AllTables()[shown];
    QSet<QString> online;
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        online.insert(data.Pilots[size_t(slot)].Callsign + u':' + data.Pilots[size_t(slot)].VID);
    const qint64 since = QDateTime::currentSecsSinceEpoch() - kAllTracksSeconds;
    for (const auto& [flight, track] : m_store->Tracks(shown, since)) {
        if (!online.contains(flight))
            continue;
        for (const auto& piece : history::SplitTrack(track))
            if (piece.size() > 1)
                lines.push_back(Line(piece));
    }
    return lines;
}

bool HistoryControl::Show(int index) {
    const std::vector<history::StoredSnapshot> snapshots =
        m_store ? m_store->Snapshots(m_network) : std::vector<history::StoredSnapshot>();
    if (index < 0 || index >= int(snapshots.size()))
        return false;
    const QString text = m_store->SnapshotText(snapshots[size_t(index)].Id);
    network::NetworkData& data = m_state.AllTables()[m_network];
    // The stored snapshot through the same interpreter; the network's reload guard stays as it was.
    const QDateTime lastDownload = data.LastDownload;
    network::InterpretWhazzup(m_network, text, m_state.Reference, data, lastDownload);
    data.LastDownload = lastDownload;
    const bool live = index == int(snapshots.size()) - 1;
    m_index = live ? -1 : index;
    m_state.Display.Replaying = !live;
    m_scene.RebuildScene(m_network);
    m_scene.ClientCountChanged(); // the figures of the snapshot shown
    if (!live)
        m_scene.SetStatus(network::NetworkName(m_network) + u" data of "_s +
                          network::StampTime(data.UpdateStamp) +
                          u"Z (replay %1/%2)"_s.arg(index + 1).arg(snapshots.size()));
    m_scene.Redraw();
    return true;
}

bool HistoryControl::Step(int direction) {
    const int shown = m_state.Display.ShownNetwork;
    if (!m_store || shown > 1)
        return false;
    m_store->Flush(); // the newest snapshot is written before the snapshots are counted
    if (m_index < 0 || m_network != shown) {
        m_network = shown;
        const int count = int(m_store->Snapshots(shown).size());
        // From live, one step back is the snapshot before the newest (which is what shows).
        return direction < 0 && Show(count - 2);
    }
    return Show(m_index + direction);
}

bool HistoryControl::ShowSnapshot(int network, qint64 snapshotId) {
    if (!m_store || (network != 0 && network != 1))
        return false;
    m_store->Flush();
    const std::vector<history::StoredSnapshot> snapshots = m_store->Snapshots(network);
    const auto found = std::find_if(snapshots.begin(), snapshots.end(),
                                    [&](const history::StoredSnapshot& s) { return s.Id == snapshotId; });
    if (found == snapshots.end())
        return false;
    if (m_state.Display.ShownNetwork != network)
        m_scene.ShowNetwork(network);
    m_network = network;
    return Show(int(found - snapshots.begin()));
}

void HistoryControl::Live() {
    if (m_index < 0)
        return;
    Show(int(m_store->Snapshots(m_network).size()) - 1);
}

QString HistoryControl::TakeProblem() {
    if (m_problemSaid || !m_store || m_store->Problem().isEmpty())
        return {};
    m_problemSaid = true;
    return m_store->Problem();
}

} // namespace sky::view
