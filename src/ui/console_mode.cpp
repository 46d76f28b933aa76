#include "console_mode.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "qt_http_client.h"
#include "render/null_gl.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

void Write(std::FILE* stream, QString text) {
    text.replace(u"\r\n"_s, u"\n"_s);
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

// A map without a screen: nothing to draw; what would be a box, and each new status text, go to standard
// error.
class TerminalHost final : public view::MapHost {
public:
    void Watch(const view::DisplayState* display) { m_display = display; }
    void Redraw() override {
        if (!m_display || m_display->StatusText == m_shown)
            return;
        m_shown = m_display->StatusText;
        Write(stderr, m_shown + u'\n');
    }
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString& text) override {
        Write(stderr, u"Important Network Message: "_s + text + u'\n');
    }
    void EnableAutoDownload(bool) override {}
    void OpenUrl(const QString& address) override { Write(stderr, u"Profile: "_s + address + u'\n'); }

private:
    const view::DisplayState* m_display = nullptr;
    QString m_shown;
};

} // namespace

int RunConsole(const LaunchOptions& launch) {
    const Folders folders = PrepareFolders(launch, [](const QString& text) { PrintLine(stderr, u"Skylantra: "_s + text); });
    Friends friends;
    Settings config = LoadSettings(folders.Home, ScreenMetrics{}, friends);
    UseDemoWeather(launch, folders, config);
    render::NullGl gl;
    TerminalHost host;
    net::QtHttpClient http(config.Timeout * 1000, config.Proxy);
    view::MapSession session(folders, config, friends, gl, host, http);
    host.Watch(&session.Display());
    const NetworkAddresses addresses = ChooseAddresses(launch, config, folders);
    for (int n = 0; n < network::kNetworkCount; ++n) {
        session.Downloads().Networks[n].StatusFileAddress = addresses.Status[size_t(n)];
        session.Downloads().Networks[n].JsonAddress = addresses.Json[size_t(n)];
    }
    const QString missing = session.StartUp();
    if (!missing.isEmpty())
        Write(stderr, u"Skylantra: cannot read "_s + missing + u'\n');
    Write(stdout, companion::CompanionConsole::WelcomeText());
    session.Companion().SetSink([](const QString& text) { Write(stdout, text + u'\n'); });
    const QString& which = launch.DownloadNetworks;
    if (which == u"ivao")
        session.Downloader().BtnDownload(0);
    else if (which == u"vatsim")
        session.Downloader().BtnDownload(1);
    else if (which == u"both")
        session.Downloader().BtnDownload(2);
    std::string line;
    while (std::getline(std::cin, line))
        session.CompanionEnter(QString::fromStdString(line));
    return 0;
}

} // namespace sky::ui
