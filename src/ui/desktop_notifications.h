#pragma once

#include <functional>

#include <QHash>
#include <QObject>
#include <QPair>
#include <QString>

namespace sky::ui {

// Desktop notifications through the freedesktop notification service on the session bus. Each one
// carries a default action: a click on it hands its client back through clicked. Without a session
// bus or a notification service nothing shows and nothing is said; the alerts reach the user through
// the Companion and the status line as well.
class DesktopNotifications final : public QObject {
    Q_OBJECT
public:
    explicit DesktopNotifications(std::function<void(int network, const QString& callsign)> clicked);

    // Sends one notification; returns at once (the service answers later, or never).
    void Show(int network, const QString& callsign, const QString& text);

private Q_SLOTS:
    void ActionInvoked(uint id, const QString& action);

private:
    std::function<void(int, const QString&)> m_clicked;
    QHash<uint, QPair<int, QString>> m_shown; // the service's id -> the client it is about
};

} // namespace sky::ui
