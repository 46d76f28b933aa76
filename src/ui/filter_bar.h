#pragma once

#include <functional>
#include <vector>

#include <QTimer>
#include <QWidget>

class QLineEdit;
class QMenu;
class QToolButton;

namespace sky::view {
class MapSession;
}

namespace sky::ui {

// The filter bar over the map (Ctrl+Shift+F, \, or Filters in the menu): a line of filter text and
// switches for where aircraft are, the kinds of station and friends only, which write their terms into
// the text. The map follows the text a moment after typing pauses, or at Enter, so typing never waits for
// the map; Escape closes the bar and the filter stays. Saved filters are picked and kept from its menu.
// runOnMap carries out a call of the session with the map's GL context current; report says a file that
// could not be written.
class FilterBar final : public QWidget {
public:
    FilterBar(view::MapSession& session, std::function<void(const std::function<void()>&)> runOnMap,
              std::function<void(const QString&)> report, QWidget* parent);

    void Open();
    void Close();
    // The filter changed elsewhere (a key, the menu, the command line): the text and switches follow.
    void Refresh();
    // The menu of saved filters: pick one, save the current one under a name, forget one.
    void FillSavedMenu(QMenu* menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Apply();
    void Toggle(const QString& term);
    void ShowProblems(const QStringList& problems);

    view::MapSession& m_session;
    std::function<void(const std::function<void()>&)> m_runOnMap;
    std::function<void(const QString&)> m_report;
    QLineEdit* m_input;
    QToolButton* m_saved;
    std::vector<std::pair<QString, QToolButton*>> m_switches; // the term each switch stands for
    QTimer m_typed;                                           // typing has paused
};

} // namespace sky::ui
