#include "view/filter_control.h"

#include <QDir>

#include "view/map_state.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

QString SavedFiltersPath(const QString& home) {
    return QDir(home).filePath(u"data/filters.dat"_s);
}

FilterControl::FilterControl(MapState& state, SceneControl& scene, std::function<void()> friendsKey,
                             std::function<void()> changed)
    : m_state(state), m_scene(scene), m_friendsKey(std::move(friendsKey)), m_changed(std::move(changed)) {}

void FilterControl::Load() {
    m_state.Filters.Saved = KeyedLines::Load(SavedFiltersPath(m_state.Home));
}

QString FilterControl::Text() const {
    return filter::FilterText(m_state.Filters.Filter, m_state.Display.FriendsOnly);
}

const KeyedLines& FilterControl::Saved() const {
    return m_state.Filters.Saved;
}

QStringList FilterControl::Apply(const QString& text) {
    const filter::ParsedFilter parsed = filter::ParseFilter(text);
    const bool friendsBefore = m_state.Display.FriendsOnly;
    const bool changed = !(parsed.Filter == m_state.Filters.Filter);
    const bool stationsAsBefore = parsed.Filter.Stations == m_state.Filters.Filter.Stations;
    m_state.Filters.Filter = parsed.Filter;
    if (changed)
        m_scene.MarkAllStale();
    // The friends-only key rebuilds the scene itself, with the filter as it is now.
    if (parsed.FriendsOnly != friendsBefore && m_friendsKey)
        m_friendsKey();
    const bool rebuilt = m_state.Display.FriendsOnly != friendsBefore;
    if (changed && !rebuilt)
        m_scene.Refilter(stationsAsBefore);
    if (changed) {
        const filter::Visibility shown = m_state.Shown();
        const int network = m_state.Display.ShownNetwork;
        int pilots = 0, all = 0;
        for (int n = 0; n < network::kNetworkCount; ++n) {
            if (network == n || network == 2) {
                pilots += filter::ShownPilots(shown, m_state.AllTables()[n]);
                all += m_state.AllTables()[n].PilotCount;
            }
        }
        m_scene.SetStatus(parsed.Filter.IsEmpty()
                              ? u"Filter cleared"_s
                              : u"Filter applied (%1 of %2 pilots)"_s.arg(pilots).arg(all));
    }
    if (changed || rebuilt) {
        if (m_changed)
            m_changed();
        m_scene.Redraw();
    }
    return parsed.Problems;
}

bool FilterControl::Clear() {
    if (!m_state.Shown().Narrows())
        return false;
    Apply(QString());
    return true;
}

WriteResult FilterControl::ChangeSaved(const QString& name, const QString& text) {
    return KeyedLines::Update(
        SavedFiltersPath(m_state.Home), [&](KeyedLines& saved) { saved.Set(name, text); },
        m_state.Filters.Saved);
}

WriteResult FilterControl::Save(const QString& name) {
    const QString text = Text();
    if (name.trimmed().isEmpty() || text.isEmpty())
        return {};
    const WriteResult saved = ChangeSaved(name, text);
    m_scene.SetStatus(u"Filter saved as "_s + name.trimmed());
    m_scene.Redraw();
    return saved;
}

WriteResult FilterControl::Forget(const QString& name) {
    const WriteResult saved = ChangeSaved(name, QString());
    m_scene.SetStatus(u"Filter "_s + name.trimmed() + u" forgotten"_s);
    m_scene.Redraw();
    return saved;
}

bool FilterControl::Pick(const QString& name) {
    const QString text = m_state.Filters.Saved.Value(name);
    if (text.isEmpty())
        return false;
    Apply(text);
    return true;
}

} // namespace sky::view
