#pragma once

#include <array>
#include <optional>
#include <vector>

#include <QDateTime>
#include <QString>

#include "geo/geodesy.h"
#include "history/history_store.h"
#include "network/client_records.h"
#include "render/highlight.h"

namespace sky {
class Navaids;
}

namespace sky::view {

struct MapState;
class SceneControl;

using render::FlightPaths;

// The map's memory: every interpreted snapshot goes to the history store; a selected flight's track
// and filed route; the tracks of every shown aircraft (T); and the replay of stored snapshots (back,
// forward, live), read through the same interpreter, so everything answers as of that moment. The map
// never waits for the store's writer: replay steps through what has been written, and live is the
// newest download as it was shown.
class HistoryControl {
public:
    HistoryControl(MapState& state, SceneControl& scene, history::HistoryStore* store,
                   const Navaids& navaids);

    // A download interpreted this text: it is kept unless the newest kept snapshot of the network has
    // its time (the same data again) or, live, one was kept less than a minute ago; a replay ends.
    void Interpreted(int network, const QString& text, const QDateTime& now);
    // The track and route of a flight; a station has none.
    FlightPaths Paths(const network::ClientRef& client) const;
    // The tracks of every shown aircraft over the last two hours, and where each ends.
    render::AllTrails AllTracks() const;

    // Steps the shown network's data back (-1) or forward (+1) through the stored snapshots taken
    // before the live data; forward past the last returns to live, if this run downloaded any. False
    // when there is nothing to step to.
    bool Step(int direction);
    // The live data again; without a download in this run, the newest kept snapshot.
    void Live();
    // Shows network (0 or 1) as in its stored snapshot of this id; false when it is not kept.
    bool ShowSnapshot(int network, qint64 snapshotId);
    // A history opened to replay: the shown network's newest kept snapshot, as a replay; a history
    // without one says so in the status line.
    void ShowNewest();
    bool Replaying() const { return m_shownId >= 0; }
    // Why there is no history, said once; empty when there is one or it was said before.
    QString TakeProblem();
    // The store could not write a download (or let old ones go): said in the status line at once.
    void WriteFailed(const QString& why);

private:
    // The live data of a network: the newest download of this run.
    struct LiveData {
        QString Text;
        qint64 TakenUtc = 0;
    };
    // The stored snapshots of the network that replay steps through: those taken before its live data,
    // or all of them while this run has downloaded none.
    std::vector<history::StoredSnapshot> Replayable(int network);
    void Show(const std::vector<history::StoredSnapshot>& before, size_t index);
    void ShowLive();
    void Interpret(const QString& text);
    // True when the newest snapshot kept of network has this data time; it is the newest from now on.
    bool AlreadyKept(int network, const QString& stamp);

    MapState& m_state;
    SceneControl& m_scene;
    history::HistoryStore* m_store;
    const Navaids& m_navaids;
    std::array<std::optional<LiveData>, 2> m_live;
    static constexpr qint64 kLiveKeepSeconds = 60;
    std::array<QDateTime, 2> m_keptAt; // when each network was last kept
    qint64 m_shownId = -1;             // the replayed snapshot, -1 live
    int m_network = -1;                // the replayed network
    bool m_problemSaid = false;
    std::array<QString, 2> m_keptStamp; // the data time of each network's newest kept snapshot
    std::array<bool, 2> m_keptRead{};   // whether that was read from the store
};

} // namespace sky::view
