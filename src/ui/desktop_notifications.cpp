#include "desktop_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

const QString kService = u"org.freedesktop.Notifications"_s;
const QString kPath = u"/org/freedesktop/Notifications"_s;
constexpr qsizetype kMostRemembered = 200; // clicks on older notifications are ignored

} // namespace

DesktopNotifications::DesktopNotifications(std::function<void(int, const QString&)> clicked)
    : m_clicked(std::move(clicked)) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        bus.connect(kService, kPath, kService, u"ActionInvoked"_s, this, SLOT(ActionInvoked(uint, QString)));
}

void DesktopNotifications::Show(int network, const QString& callsign, const QString& text) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, u"Notify"_s);
    const QVariantMap hints{{u"desktop-entry"_s, u"skylantra"_s}, {u"category"_s, u"presence.online"_s}};
    call << u"Skylantra"_s << uint(0) << u"skylantra"_s << text << u"Click to show on the map"_s
         << QStringList{u"default"_s, u"Show on the map"_s} << hints << int(-1);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, network, callsign] {
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isValid()) {
            if (m_shown.size() >= kMostRemembered)
                m_shown.clear();
            m_shown.insert(reply.value(), {network, callsign});
        }
        watcher->deleteLater();
    });
}

void DesktopNotifications::ActionInvoked(uint id, const QString& action) {
    const auto shown = m_shown.constFind(id);
    if (shown == m_shown.cend() || action != u"default")
        return;
    m_clicked(shown->first, shown->second);
}

} // namespace sky::ui
