#pragma once

#include <array>
#include <functional>
#include <optional>

#include <QStringList>

#include "alerts/online_changes.h"
#include "alerts/watch_list.h"
#include "common/file_io.h"

namespace sky::view {

struct MapState;

// Alerts: after each download of a network but the first of a run, the friends who came online or
// left and the watched stations that opened or closed, each handed to tell (which says it on the
// desktop, in the Companion and in the status line). Also the watch list, kept in data/watch.dat as
// soon as it changes, and the Companion's watch commands. A friend or pattern added counts what is
// online at that moment as known, so adding someone who is online tells nothing.
class AlertControl {
public:
    AlertControl(MapState& state, std::function<void(const alerts::OnlineChange&)> tell);

    // The tables of network were just read from a download.
    void Downloaded(int network);
    // The friends or the watch list changed.
    void ListsChanged();

    const alerts::WatchList& Watches() const { return m_watches; }
    // The watch button of a station's info box: watches its callsign, or stops watching it. The status
    // text that says so; the file's problem, when it could not be written, goes to problem.
    QString ToggleWatch(const QString& callsign, QString& problem);
    // A Companion line starting "watch" or "unwatch": "watch" lists the patterns, "watch EDDF_*" adds
    // one, "unwatch EDDF_*" removes one. The lines of its answer; a malformed line answers nothing.
    QStringList WatchCommand(const QString& line, QString& problem);

private:
    QString Save();

    MapState& m_state;
    std::function<void(const alerts::OnlineChange&)> m_tell;
    alerts::WatchList m_watches;
    std::array<std::optional<alerts::WatchedOnline>, 2> m_before; // per network, since its last download
};

} // namespace sky::view
