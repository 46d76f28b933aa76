#pragma once

#include <functional>

#include <QString>
#include <QStringList>

#include "common/keyed_lines.h"
#include "filter/traffic_filter.h"

namespace sky::view {

struct MapState;
class SceneControl;

// What the filter bar set, and the filters the user saved by name.
struct FilterState {
    filter::TrafficFilter Filter;
    KeyedLines Saved; // name -> the filter's text
};

// The saved filters' file in the home folder: data/filters.dat, "name<TAB>filter text" a line.
QString SavedFiltersPath(const QString& home);

// The filter bar's part: reads the bar's text into the filter that the traffic lists, the pointer, the
// list panel and the search obey, for both networks, and keeps the friends-only switch (F2) in step
// with the text's "friends"; keeps the saved filters, changed in their file at once. The one writer of
// FilterState. The Companion never sees the filter.
class FilterControl {
public:
    // friendsKey: the friends-only key (F2) as the keys carry it out; changed: what shows the filter
    // besides the map (the open panels, the bar) catches up.
    FilterControl(MapState& state, SceneControl& scene, std::function<void()> friendsKey,
                  std::function<void()> changed);

    // Reads the saved filters (at start).
    void Load();
    // The map shows what passes text from now on, redrawn at once; the terms it could not read.
    QStringList Apply(const QString& text);
    // Everything shows again, friends-only off too (the X key); false when nothing was filtered.
    bool Clear();
    // The filter in its canonical text, "friends" at the end while only friends show.
    QString Text() const;

    const KeyedLines& Saved() const;
    // Saves the current filter under name, replacing one of that name; or forgets name. The status text
    // says so; a file that could not be written is said in the result.
    WriteResult Save(const QString& name);
    WriteResult Forget(const QString& name);
    // Applies the saved filter of that name; false when there is none.
    bool Pick(const QString& name);

private:
    WriteResult ChangeSaved(const QString& name, const QString& text);

    MapState& m_state;
    SceneControl& m_scene;
    std::function<void()> m_friendsKey;
    std::function<void()> m_changed;
};

} // namespace sky::view
