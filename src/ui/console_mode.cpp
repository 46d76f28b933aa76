#include "console_mode.h"

#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include <QCoreApplication>
#include <QTimer>

#include "qt_http_client.h"
#include "render/null_gl.h"
#include "sql_history_store.h"
#include "view/demo_live_feed.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

// A map without a screen: nothing to draw; what would be a box, and each new status text, go to standard
// error.
class TerminalHost final : public view::MapHost {
public:
    void Watch(const view::DisplayState* display) { m_display = display; }
    void Redraw() override {
        if (!m_display || m_display->StatusText == m_shown)
            return;
        m_shown = m_display->StatusText;
        PrintLine(stderr, m_shown);
    }
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString& text) override {
        PrintLine(stderr, u"Important Network Message: "_s + text);
    }
    void EnableAutoDownload(bool) override {}
    void OpenUrl(const QString& address) override { PrintLine(stderr, u"Profile: "_s + address); }
    void Report(const QString& text) override { PrintLine(stderr, u"Skylantra: "_s + text); }

private:
    const view::DisplayState* m_display = nullptr;
    QString m_shown;
};

} // namespace

int RunConsole(const LaunchOptions& launch) {
    const auto report = [](const QString& text) { PrintLine(stderr, u"Skylantra: "_s + text); };
    QString downloadNotice;
    const Folders folders = PrepareFolders(launch, report, &downloadNotice);
    if (!downloadNotice.isEmpty())
        report(downloadNotice);
    Friends friends;
    Settings config = LoadSettings(folders.Home, ScreenMetrics{}, friends);
    UseDemoWeather(launch, folders, config);
    config.Live = config.Live || launch.Live;
    render::NullGl gl;
    TerminalHost host;
    net::QtHttpClient http(config.Timeout * 1000, config.Proxy);
    // The terminal shows no board, list or map: bookings and events are not fetched.
    network::FeedAddresses addresses = ChooseAddresses(launch, config, folders);
    addresses.Bookings.clear();
    addresses.Events.clear();
    config.ShowWeather = false; // nor the weather layer's METARs
    // Every download is kept in the history here too, in the same file as a map on this home folder.
    std::unique_ptr<store::SqlHistoryStore> history;
    if (config.HistoryHours > 0) {
        history = std::make_unique<store::SqlHistoryStore>(folders.HomeFile(u"history.db"_s),
                                                           config.HistoryHours, false);
        history->OnWriteFailed([](const QString& why) { PrintLine(stderr, u"Skylantra: "_s + why); });
    }
    // The demo's VATSIM feed moves, made here, so the demo can be followed live offline.
    view::DemoLiveFeed demoFeed(
        http, addresses.Json[1], [] { return QDateTime::currentMSecsSinceEpoch(); },
        [&config] { return config.Live; });
    network::HttpClient& client = launch.Demo ? static_cast<network::HttpClient&>(demoFeed) : http;
    view::MapSession session(folders, config, friends, gl, host, client, history.get(), addresses);
    host.Watch(&session.Display());
    const QString missing = session.StartUp();
    if (!missing.isEmpty())
        PrintLine(stderr, u"Skylantra: cannot read "_s + missing);
    PrintText(stdout, companion::CompanionConsole::WelcomeText());
    session.Companion().SetSink([](const QString& text) { PrintLine(stdout, text); });
    session.DownloadOnStart(launch.DownloadNetworks);
    const auto enter = [&session](const std::string& line) {
        session.CheckSharedFiles(); // the map beside this may have changed the friends or watch list
        session.CompanionEnter(QString::fromStdString(line));
    };
    std::string line;
    if (!config.Live) {
        while (std::getline(std::cin, line))
            enter(line);
        return 0;
    }
    // Live, the feed is followed while the terminal waits for input: the lines are read on a thread of
    // their own and carried out here, between the live fetches, until the input ends.
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&session] { session.Live().Tick(); });
    tick.start(1000);
    std::thread reader([&enter] {
        std::string typed;
        while (std::getline(std::cin, typed))
            QMetaObject::invokeMethod(QCoreApplication::instance(), [&enter, typed] { enter(typed); });
        QMetaObject::invokeMethod(QCoreApplication::instance(), [] { QCoreApplication::quit(); });
    });
    QCoreApplication::exec();
    reader.join();
    return 0;
}

} // namespace sky::ui
