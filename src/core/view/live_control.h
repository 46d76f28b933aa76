#pragma once

#include <functional>
#include <optional>

#include <QDateTime>

#include "network/client_records.h"
#include "network/live_schedule.h"

namespace sky::view {

struct MapState;
class SceneControl;
class PanelControl;
class DownloadControl;

// The client of network with this callsign and member number now, whatever its slot; none when gone.
std::optional<network::ClientRef> FindAgain(const network::ClientTables& tables, int network, bool isPilot,
                                            const QString& callsign, const QString& vid);

// Live mode: while Live is set, the shown network's JSON feed (both networks' in the comparison) is
// fetched when the schedule says, asking only for a changed version. New data rebuild the shown scene
// quietly, the selection found again by network, callsign and member and its info box kept open; a
// failure shows as the network's mark and backs off. Tick() once a second (the window, the terminal);
// the legacy text feeds keep their reload guard and automatic download. Owned by the map session.
class LiveControl {
public:
    LiveControl(MapState& state, SceneControl& scene, PanelControl& panels, DownloadControl& download);

    // The key and the menu: live on or off, said in the status line; on fetches at the next tick.
    void SetLive(bool on);
    // Once a second: the networks due are fetched, and an open pilot's box says the age of its report.
    void Tick();

    const network::LiveSchedule& Schedule() const { return m_schedule; }
    // Told of each network whose new data are about to be shown (live motion starts from them).
    std::function<void(int network)> OnNewData;
    // A steady clock in milliseconds; tests fix it.
    std::function<qint64()> NowMs = [] { return QDateTime::currentMSecsSinceEpoch(); };

private:
    MapState& m_state;
    SceneControl& m_scene;
    PanelControl& m_panels;
    DownloadControl& m_download;
    network::LiveSchedule m_schedule;
};

} // namespace sky::view
