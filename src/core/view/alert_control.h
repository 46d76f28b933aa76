#pragma once

#include <array>
#include <functional>
#include <optional>
#include <utility>

#include <QStringList>

#include "alerts/online_changes.h"
#include "alerts/watch_list.h"
#include "app/friends.h"
#include "common/shared_file.h"

namespace sky::view {

struct MapState;

// Alerts: after each download of a network but the first of a run, the friends who came online or
// left and the watched stations that opened or closed, each handed to tell (which says it on the
// desktop, in the Companion and in the status line). Also the two lists they are about, as files the
// map and the terminal Companion share: the watch list (data/watch.dat, changed by the Companion's
// watch commands and the info box) and the friends list (data/friends.dat), each saved as soon as it
// changes, merged with what the other program changed, and read again when the other changes it. A
// friend or pattern added counts what is online at that moment as known, so adding someone who is
// online tells nothing.
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
    // Keeps the state's friends list as the friend buttons changed it; the file's problem, or empty.
    QString SaveFriends();

    // Which lists another program changed since they were last read here: those are read again.
    struct Reloaded {
        bool Friends = false;
        bool Watches = false;
    };
    Reloaded ReloadChangedLists();
    // What the lists' files said of themselves at start-up (a watch list too long), once; or empty.
    QString TakeProblem() { return std::exchange(m_problem, QString()); }

private:
    // Applies change to the watch list as the file holds it now and keeps the result; the file's
    // problem, or empty. change says whether it changed anything.
    QString ChangeWatches(const std::function<bool(alerts::WatchList&)>& change);
    void LoadWatches(const QByteArray& bytes);

    MapState& m_state;
    std::function<void(const alerts::OnlineChange&)> m_tell;
    SharedFile m_watchFile;
    FriendsFile m_friendsFile;
    alerts::WatchList m_watches;
    QString m_problem;
    std::array<std::optional<alerts::WatchedOnline>, 2> m_before; // per network, since its last download
};

} // namespace sky::view
