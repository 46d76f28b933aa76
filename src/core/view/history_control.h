#pragma once

#include <array>
#include <vector>

#include <QDateTime>
#include <QString>

#include "geo/geodesy.h"
#include "network/client_records.h"
#include "render/highlight.h"

namespace sky {
class Navaids;
}
namespace sky::history {
class HistoryStore;
}

namespace sky::view {

struct MapState;
class SceneControl;

using render::FlightPaths;

// The map's memory: every interpreted snapshot goes to the history store; a selected flight's track
// and filed route; the tracks of every shown aircraft (T); and the replay of stored snapshots (back,
// forward, live), read through the same interpreter, so everything answers as of that moment.
class HistoryControl {
public:
    HistoryControl(MapState& state, SceneControl& scene, history::HistoryStore* store,
                   const Navaids& navaids);

    // A download interpreted this text: it is kept, and a replay ends.
    void Interpreted(int network, const QString& text, const QDateTime& now);
    // The track and route of a flight; a station has none.
    FlightPaths Paths(const network::ClientRef& client) const;
    // The tracks of every shown aircraft over the last two hours.
    std::vector<std::vector<geo::LatLon>> AllTracks() const;

    // Steps the shown network's data back (-1) or forward (+1) through the stored snapshots; forward
    // past the last returns to live. Live reads the newest again. False when there is nothing to step to.
    bool Step(int direction);
    void Live();
    // Shows network (0 or 1) as in its stored snapshot of this id; false when it is not kept.
    bool ShowSnapshot(int network, qint64 snapshotId);
    bool Replaying() const { return m_index >= 0; }
    // Why there is no history, said once; empty when there is one or it was said before.
    QString TakeProblem();

private:
    bool Show(int index);

    MapState& m_state;
    SceneControl& m_scene;
    history::HistoryStore* m_store;
    const Navaids& m_navaids;
    int m_index = -1; // the replayed snapshot among the shown network's, -1 live
    int m_network = -1;
    bool m_problemSaid = false;
};

} // namespace sky::view
