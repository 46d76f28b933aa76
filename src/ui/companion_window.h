#pragma once

#include <functional>

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace sky::view {
class MapSession;
}

namespace sky::ui {

// frmCompanion: the Companion's window, always on top, beside the map. An output pane that only
// grows and an input line; Enter carries out the line, Up brings back the last command. Closing only
// hides it. All it shows comes from the session's Companion console.
class CompanionWindow final : public QWidget {
public:
    // runCommand carries out one input line with the map's GL context current.
    CompanionWindow(view::MapSession& session, std::function<bool(const QString&)> runCommand);

    // Shows the window at the lower left of the map window (in pixels), inset 8 pixels.
    void ShowBeside(const QRect& mapGeometry);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ArrangeControls();
    void Append(const QString& text);

    view::MapSession& m_session;
    std::function<bool(const QString&)> m_runCommand;
    QPlainTextEdit* m_response;
    QLineEdit* m_input;
};

} // namespace sky::ui
