#include "view/history_control.h"

#include <algorithm>

#include "geo/text_format.h"
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

// The data's own time from its "UPDATE = 20261121142300" line, or empty.
QString StampOf(const QString& text) {
    for (QStringView line : QStringView(text).tokenize(u'\n')) {
        line = line.trimmed();
        if (line.startsWith(u"UPDATE"))
            return line.last(std::min<qsizetype>(14, line.size())).toString();
        if (line.startsWith(u"!CLIENTS"))
            break;
    }
    return {};
}

} // namespace

HistoryControl::HistoryControl(MapState& state, SceneControl& scene, history::HistoryStore* store,
                               const Navaids& navaids)
    : m_state(state), m_scene(scene), m_store(store), m_navaids(navaids) {}

void HistoryControl::Interpreted(int network, const QString& text, const QDateTime& now) {
    // A download brings the newest data: the replay is over.
    m_shownId = -1;
    m_state.Display.Replaying = false;
    if (network == 0 || network == 1)
        m_live[size_t(network)] = LiveData{text, now.toSecsSinceEpoch()};
    // Live, a network is kept at most once a minute: a day of 15-second updates would outgrow the store.
    QDateTime& kept = m_keptAt[network == 1 ? 1 : 0];
    if (m_state.Config.Live && kept.isValid() && kept.secsTo(now) < kLiveKeepSeconds)
        return;
    kept = now;
    if (m_store && !AlreadyKept(network, StampOf(text)))
        m_store->Record(network, text, now);
}

bool HistoryControl::AlreadyKept(int network, const QString& stamp) {
    if (stamp.isEmpty() || network < 0 || network > 1)
        return false;
    QString& kept = m_keptStamp[size_t(network)];
    // The newest snapshot a run before this one kept (the demo started again, the map restarted
    // before the feed changed), read once.
    if (!m_keptRead[size_t(network)]) {
        m_keptRead[size_t(network)] = true;
        const std::vector<history::StoredSnapshot> stored = m_store->Snapshots(network);
        if (!stored.empty())
            kept = stored.back().Stamp;
    }
    const bool same = stamp == kept;
    kept = stamp;
    return same;
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

render::AllTrails HistoryControl::AllTracks() const {
    render::AllTrails trails;
    const int shown = m_state.Display.ShownNetwork;
    if (!m_store || shown > 1)
        return trails;
    const network::NetworkData& data = m_state.AllTables()[shown];
    QHash<QString, int> online; // slots by flight
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        online.insert(data.Pilots[size_t(slot)].Callsign + u':' + data.Pilots[size_t(slot)].VID, slot);
    // The two hours before the data shown (a replay's, or a demo day's), not before the clock.
    const qint64 shownUtc =
        geo::ParseTimeStamp(data.UpdateStamp).value_or(QDateTime::currentDateTimeUtc()).toSecsSinceEpoch();
    const qint64 since = shownUtc - kAllTracksSeconds;
    for (const auto& [flight, track] : m_store->Tracks(shown, since)) {
        const auto slot = online.constFind(flight);
        if (slot == online.constEnd() || track.empty())
            continue;
        for (const auto& piece : history::SplitTrack(track))
            if (piece.size() > 1)
                trails.Lines.push_back(Line(piece));
        trails.Ends.push_back({{track.back().Latitude, track.back().Longitude}, *slot});
    }
    return trails;
}

std::vector<history::StoredSnapshot> HistoryControl::Replayable(int network) {
    std::vector<history::StoredSnapshot> snapshots = m_store->Snapshots(network);
    if (!m_live[size_t(network)])
        return snapshots; // nothing downloaded in this run: every kept snapshot is a replay
    // The live download itself may be written already, or still on its way to the file.
    const qint64 liveTaken = m_live[size_t(network)]->TakenUtc;
    std::erase_if(snapshots,
                  [liveTaken](const history::StoredSnapshot& s) { return s.TakenUtc >= liveTaken; });
    return snapshots;
}

void HistoryControl::Interpret(const QString& text) {
    network::NetworkData& data = m_state.AllTables()[m_network];
    // The text through the same interpreter; the network's reload guard stays as it was.
    const QDateTime lastDownload = data.LastDownload;
    network::InterpretWhazzup(m_network, text, m_state.Reference, data, lastDownload);
    data.LastDownload = lastDownload;
    m_scene.RebuildScene(m_network);
    m_scene.ClientCountChanged(); // the figures of the snapshot shown
}

void HistoryControl::Show(const std::vector<history::StoredSnapshot>& before, size_t index) {
    m_shownId = before[index].Id;
    const size_t total = before.size() + (m_live[size_t(m_network)] ? 1 : 0);
    m_state.Display.Replaying = true;
    Interpret(m_store->SnapshotText(m_shownId));
    m_scene.SetStatus(network::NetworkName(m_network) + u" data of "_s +
                      network::StampTime(m_state.AllTables()[m_network].UpdateStamp) +
                      u"Z (replay %1/%2)"_s.arg(index + 1).arg(total));
    m_scene.Redraw();
}

void HistoryControl::ShowLive() {
    m_shownId = -1;
    m_state.Display.Replaying = false;
    Interpret(m_live[size_t(m_network)]->Text);
    m_scene.Redraw();
}

bool HistoryControl::Step(int direction) {
    const int shown = m_state.Display.ShownNetwork;
    if (!m_store || shown > 1)
        return false;
    const std::vector<history::StoredSnapshot> before = Replayable(shown);
    if (m_shownId < 0 || m_network != shown) {
        m_network = shown;
        // From live, one step back is the newest snapshot before what shows.
        if (direction >= 0 || before.empty())
            return false;
        Show(before, before.size() - 1);
        return true;
    }
    // Where the shown snapshot stands now (older ones may have been let go meanwhile).
    const auto at = std::find_if(before.begin(), before.end(),
                                 [this](const history::StoredSnapshot& s) { return s.Id >= m_shownId; });
    const qsizetype index = (at - before.begin()) + direction;
    if (index < 0 || (index >= qsizetype(before.size()) && !m_live[size_t(shown)]))
        return false;
    if (index >= qsizetype(before.size()))
        ShowLive();
    else
        Show(before, size_t(index));
    return true;
}

bool HistoryControl::ShowSnapshot(int network, qint64 snapshotId) {
    if (!m_store || (network != 0 && network != 1))
        return false;
    const auto isIt = [snapshotId](const history::StoredSnapshot& s) { return s.Id == snapshotId; };
    const std::vector<history::StoredSnapshot> before = Replayable(network);
    const auto found = std::find_if(before.begin(), before.end(), isIt);
    // Not among those: the live download itself, if it is kept.
    const bool live = found == before.end();
    if (live && (!m_live[size_t(network)] || std::ranges::none_of(m_store->Snapshots(network), isIt)))
        return false;
    if (m_state.Display.ShownNetwork != network)
        m_scene.ShowNetwork(network);
    m_network = network;
    if (live)
        ShowLive();
    else
        Show(before, size_t(found - before.begin()));
    return true;
}

void HistoryControl::Live() {
    if (m_shownId < 0)
        return;
    if (m_live[size_t(m_network)]) {
        ShowLive();
        return;
    }
    // Nothing downloaded in this run: the newest kept snapshot is the newest there is.
    const std::vector<history::StoredSnapshot> kept = Replayable(m_network);
    if (!kept.empty())
        Show(kept, kept.size() - 1);
}

void HistoryControl::ShowNewest() {
    const int shown = m_state.Display.ShownNetwork;
    if (!m_store || shown > 1 || !m_store->Problem().isEmpty())
        return;
    m_network = shown;
    const std::vector<history::StoredSnapshot> kept = Replayable(shown);
    if (kept.empty()) {
        m_scene.SetStatus(u"The history holds no "_s + network::NetworkName(shown) + u" data"_s);
        m_scene.Redraw();
        return;
    }
    Show(kept, kept.size() - 1);
}

void HistoryControl::WriteFailed(const QString& why) {
    m_scene.SetStatus(why);
    m_scene.Redraw();
}

QString HistoryControl::TakeProblem() {
    if (m_problemSaid || !m_store || m_store->Problem().isEmpty())
        return {};
    m_problemSaid = true;
    return m_store->Problem();
}

} // namespace sky::view
