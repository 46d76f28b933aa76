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

// A map without a screen: nothing to draw, and what would be a box goes to standard error.
class TerminalHost final : public view::MapHost {
public:
    void Redraw() override {}
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString& text) override {
        Write(stderr, u"Important Network Message: "_s + text + u'\n');
    }
    void EnableAutoDownload(bool) override {}
    void OpenUrl(const QString& address) override { Write(stderr, u"Profile: "_s + address + u'\n'); }
};

} // namespace

int RunConsole(const ConsoleOptions& options) {
    render::NullGl gl;
    TerminalHost host;
    net::QtHttpClient http(options.Config.Timeout * 1000, options.Config.Proxy);
    view::MapSession session(options.Home, options.Config, options.FriendList, gl, host, http);
    for (int n = 0; n < network::kNetworkCount; ++n) {
        session.Downloads().Networks[n].StatusFileAddress = options.StatusAddresses[n];
        session.Downloads().Networks[n].JsonAddress = options.JsonAddresses[n];
    }
    const QString missing = session.StartUp();
    if (!missing.isEmpty()) {
        Write(stderr, u"Skylantra: cannot read "_s + missing + u'\n');
        return 1;
    }
    Write(stdout, companion::CompanionConsole::WelcomeText());
    session.Companion().SetSink([](const QString& text) { Write(stdout, text + u'\n'); });
    const QString& which = options.DownloadNetworks;
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
