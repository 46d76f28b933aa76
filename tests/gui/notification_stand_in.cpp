// A stand-in for the desktop's notification service, for tests on a private session bus:
//   notification_stand_in RECORD_FILE [--click] -- PROGRAM ARGUMENTS...
// It takes the service's name, writes each notification it is sent as a line "summary|body|actions"
// to RECORD_FILE, with --click answers each one as if the user had clicked it, and runs PROGRAM,
// ending with its exit code.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <QTimer>
#include <QVariantMap>

#include <cstdio>

namespace {

const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kInterface = QStringLiteral("org.freedesktop.Notifications");

class StandIn : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    StandIn(QString record, bool click) : m_record(std::move(record)), m_click(click) {}

public Q_SLOTS:
    uint Notify(const QString& app, uint replaces, const QString& icon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout) {
        (void)app, (void)replaces, (void)icon, (void)hints, (void)timeout;
        QFile file(m_record);
        if (file.open(QIODevice::Append))
            file.write((summary + u'|' + body + u'|' + actions.join(u',') + u'\n').toUtf8());
        const uint id = ++m_last;
        if (m_click) {
            QTimer::singleShot(300, this, [id] {
                QDBusMessage clicked =
                    QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("ActionInvoked"));
                clicked << id << QStringLiteral("default");
                QDBusConnection::sessionBus().send(clicked);
            });
        }
        return id;
    }
    QStringList GetCapabilities() { return {QStringLiteral("actions"), QStringLiteral("body")}; }

private:
    QString m_record;
    bool m_click;
    uint m_last = 0;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    const qsizetype dashes = arguments.indexOf(QStringLiteral("--"));
    if (arguments.isEmpty() || dashes < 1 || dashes + 1 >= arguments.size()) {
        std::fprintf(stderr, "usage: notification_stand_in RECORD_FILE [--click] -- PROGRAM ARGUMENTS...\n");
        return 2;
    }
    StandIn service(arguments[0], arguments.mid(1, dashes - 1).contains(QStringLiteral("--click")));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerService(kInterface) ||
        !bus.registerObject(kPath, &service, QDBusConnection::ExportAllSlots)) {
        std::fprintf(stderr, "notification_stand_in: no session bus, or the name is taken\n");
        return 2;
    }
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    QObject::connect(&program, &QProcess::finished, &app, [&](int code) { app.exit(code); });
    QObject::connect(&program, &QProcess::errorOccurred, &app,
                     [&](QProcess::ProcessError) { app.exit(127); });
    program.start(arguments[dashes + 1], arguments.mid(dashes + 2));
    return app.exec();
}

#include "notification_stand_in.moc"
