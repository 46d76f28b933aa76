#include "view/alert_control.h"

#include <QDir>

#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

QString WatchPath(const QString& home) {
    return QDir(home).filePath(u"data/watch.dat"_s);
}

} // namespace

AlertControl::AlertControl(MapState& state, std::function<void(const alerts::OnlineChange&)> tell)
    : m_state(state), m_tell(std::move(tell)), m_watches(alerts::WatchList::Load(WatchPath(state.Home))) {}

void AlertControl::Downloaded(int network) {
    if (network != 0 && network != 1)
        return;
    alerts::WatchedOnline now =
        alerts::WhoIsOnline(m_state.AllTables()[network], m_state.FriendList, m_watches);
    if (m_before[network]) {
        for (alerts::OnlineChange change : alerts::CompareOnline(network, *m_before[network], now)) {
            // A friend goes by the name the user gave them.
            const bool isFriend = change.Kind == alerts::ChangeKind::FriendOnline ||
                                  change.Kind == alerts::ChangeKind::FriendOffline;
            if (const QString name = m_state.FriendNames.Value(change.Client.Member);
                isFriend && !name.isEmpty())
                change.Client.Name = name;
            m_tell(change);
        }
    }
    m_before[network] = std::move(now);
}

void AlertControl::ListsChanged() {
    for (int network = 0; network < 2; ++network) {
        if (m_before[network])
            m_before[network] =
                alerts::WhoIsOnline(m_state.AllTables()[network], m_state.FriendList, m_watches);
    }
}

QString AlertControl::Save() {
    ListsChanged();
    const WriteResult saved = m_watches.Save(WatchPath(m_state.Home));
    return saved.Ok ? QString() : saved.Message;
}

QString AlertControl::ToggleWatch(const QString& callsign, QString& problem) {
    const bool watched = m_watches.Patterns().contains(alerts::WatchList::Normalised(callsign));
    if (watched ? !m_watches.Remove(callsign) : !m_watches.Add(callsign))
        return {};
    problem = Save();
    return (watched ? u"No longer watching "_s : u"Watching "_s) + callsign.toUpper();
}

QStringList AlertControl::WatchCommand(const QString& line, QString& problem) {
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty() || words.size() > 2)
        return {};
    const bool add = words[0].compare(u"watch"_s, Qt::CaseInsensitive) == 0;
    if (words.size() == 1) {
        if (!add)
            return {};
        return {u"> watch"_s, m_watches.Patterns().isEmpty()
                                  ? u"Nothing is watched"_s
                                  : u"Watched: "_s + m_watches.Patterns().join(u' ')};
    }
    const QString pattern = alerts::WatchList::Normalised(words[1]);
    QStringList answer{u"> "_s + words[0].toLower() + u' ' + words[1]};
    if (pattern.isEmpty()) {
        answer.append(u"Not a callsign pattern: "_s + words[1]);
        return answer;
    }
    const bool changed = add ? m_watches.Add(pattern) : m_watches.Remove(pattern);
    if (add)
        answer.append(changed ? u"Watching "_s + pattern : u"Already watched: "_s + pattern);
    else
        answer.append(changed ? u"No longer watching "_s + pattern : u"Not watched: "_s + pattern);
    if (changed)
        problem = Save();
    return answer;
}

} // namespace sky::view
