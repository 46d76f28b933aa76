#pragma once

#include <functional>
#include <vector>

#include <QWidget>

#include "search/search_index.h"

class QLineEdit;
class QListWidget;

namespace sky::view {
class MapSession;
}

namespace sky::ui {

// The search field over the map (Ctrl+F, /): as the user types, the matches show below it, best first,
// each client in its network's colour; Up and Down move through them, Enter or a click chooses one,
// Escape closes the field. While it has the keys the map's keys rest. The text also filters the open
// list. runOnMap carries out a call of the session with the map's GL context current.
class SearchField final : public QWidget {
public:
    SearchField(view::MapSession& session, std::function<void(const std::function<void()>&)> runOnMap,
                QWidget* parent);

    void Open();
    void Close();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Update(const QString& text);
    void Choose(int row);

    view::MapSession& m_session;
    std::function<void(const std::function<void()>&)> m_runOnMap;
    QLineEdit* m_input;
    QListWidget* m_results;
    std::vector<search::SearchResult> m_found;
};

} // namespace sky::ui
