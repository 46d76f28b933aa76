#include "view/alert_control.h"

#include <QDir>

#include "app/settings.h"
#include "common/text_codec.h"
#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {

AlertControl::AlertControl(MapState& state, std::function<void(const alerts::OnlineChange&)> tell)
    : m_state(state), m_tell(std::move(tell)), m_watchFile(QDir(state.Home).filePath(u"data/watch.dat"_s)),
      m_friendsFile(FriendsPath(state.Home)) {
    LoadWatches(m_watchFile.Read());
}

void AlertControl::LoadWatches(const QByteArray& bytes) {
    m_watches = alerts::WatchList::Parse(DecodeText(bytes).Text);
    if (m_watches.Refused() > 0)
        m_problem = QDir::toNativeSeparators(m_watchFile.Path()) +
                    u" holds more than %1 patterns: "_s.arg(alerts::WatchList::kMaxPatterns) +
                    u"the first %1 are watched, %2 more are not."_s.arg(alerts::WatchList::kMaxPatterns)
                        .arg(m_watches.Refused());
}

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

QString AlertControl::SaveFriends() {
    const WriteResult saved = m_friendsFile.Save(m_state.FriendList);
    ListsChanged();
    return saved.Ok ? QString() : saved.Message;
}

AlertControl::Reloaded AlertControl::ReloadChangedLists() {
    Reloaded reloaded;
    reloaded.Friends = m_friendsFile.Reload(m_state.FriendList);
    if (const std::optional<QByteArray> watches = m_watchFile.ReadIfChanged()) {
        const QStringList before = m_watches.Patterns();
        LoadWatches(*watches);
        reloaded.Watches = m_watches.Patterns() != before;
    }
    if (reloaded.Friends || reloaded.Watches)
        ListsChanged();
    return reloaded;
}

QString AlertControl::ChangeWatches(const std::function<bool(alerts::WatchList&)>& change) {
    bool applied = false;
    const WriteResult saved = m_watchFile.Update([&](const QByteArray& current) -> std::optional<QByteArray> {
        applied = true;
        m_watches = alerts::WatchList::Parse(DecodeText(current).Text);
        return change(m_watches) ? std::optional(m_watches.ToBytes()) : std::nullopt;
    });
    // A file locked elsewhere: the change still holds for this run.
    if (!applied)
        change(m_watches);
    ListsChanged();
    return saved.Ok ? QString() : saved.Message;
}

QString AlertControl::ToggleWatch(const QString& callsign, QString& problem) {
    if (alerts::WatchList::Normalised(callsign).isEmpty())
        return {};
    bool watched = false, changed = false;
    problem = ChangeWatches([&](alerts::WatchList& list) {
        watched = list.Contains(callsign);
        changed = watched ? list.Remove(callsign) : list.Add(callsign);
        return changed;
    });
    if (!changed)
        return watched ? QString()
                       : u"The watch list is full (%1 patterns)"_s.arg(alerts::WatchList::kMaxPatterns);
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
        ReloadChangedLists();
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
    bool changed = false, full = false;
    problem = ChangeWatches([&](alerts::WatchList& list) {
        changed = add ? list.Add(pattern) : list.Remove(pattern);
        full = add && !changed && !list.Contains(pattern);
        return changed;
    });
    if (full)
        answer.append(u"The watch list is full (%1 patterns)"_s.arg(alerts::WatchList::kMaxPatterns));
    else if (add)
        answer.append(changed ? u"Watching "_s + pattern : u"Already watched: "_s + pattern);
    else
        answer.append(changed ? u"No longer watching "_s + pattern : u"Not watched: "_s + pattern);
    return answer;
}

} // namespace sky::view
