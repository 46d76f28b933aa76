#include <cstdio>
#include <random>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"
#include "geo/text_format.h"
#include "network/download.h"
#include "qt_http_client.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace {

void Print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

// Until the map window exists, a download reports its progress on standard output.
class PrintedDownloadView final : public sky::network::DownloadView {
public:
    void ShowStatus(const QString& text) override { Print(stdout, text); }
    void ShowNetworkMessage(const QString& text) override {
        Print(stdout, u"Important Network Message: "_s + text);
    }
    void ClearTraffic(int) override {}
    void MarksChanged() override {}
};

QString Summary(int network, const sky::network::NetworkData& data) {
    return u"%1 data of %2: %3 pilots, %4 controllers and %5 observers, %6 clients connected"_s
        .arg(sky::network::NetworkName(network), sky::geo::FormatUtcTime(data.UpdateStamp))
        .arg(data.PilotCount)
        .arg(data.ControllerCount - data.ObserverCount)
        .arg(data.ObserverCount)
        .arg(data.ConnectedClients);
}

int Download(const QString& home, const sky::Settings& settings, const QStringList& networks,
             const std::array<QString, 2>& statusAddresses) {
    const sky::ReferenceData reference = sky::ReferenceData::Load(QDir(home).filePath(u"data"_s));
    sky::net::QtHttpClient http(settings.Timeout * 1000, settings.Proxy);
    sky::network::DownloadState state;
    sky::network::ClientTables tables;
    PrintedDownloadView view;
    for (int network = 0; network < sky::network::kNetworkCount; ++network)
        state.Networks[network].StatusFileAddress = statusAddresses[network];
    state.DownloadIdle = true;
    std::mt19937 random(static_cast<unsigned>(QDateTime::currentMSecsSinceEpoch()));
    sky::network::DownloadContext context{
        state,
        tables,
        reference,
        http,
        view,
        QDir(home).filePath(u"data"_s),
        settings.TextForce,
        [] { return QDateTime::currentDateTime(); },
        [&](int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }};
    int failures = 0;
    for (int network = 0; network < sky::network::kNetworkCount; ++network) {
        if (!networks.contains(sky::network::NetworkName(network).toLower()))
            continue;
        const auto outcome = sky::network::DownloadNetwork(context, network);
        if (outcome == sky::network::DownloadOutcome::Interpreted)
            Print(stdout, Summary(network, tables[network]));
        else
            ++failures;
    }
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"Skylantra"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(SKYLANTRA_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Skylantra shows the live traffic of the IVAO and VATSIM flight-simulation networks on a globe."_s);
    const QCommandLineOption homeOption(
        u"home"_s, u"Read data, colour themes and skln.ini from DIR instead of the program's folder."_s,
        u"DIR"_s);
    const QCommandLineOption demoOption(u"demo"_s,
                                        u"Use the bundled demo feeds instead of the live networks."_s);
    const QCommandLineOption ivaoStatusOption(u"ivao-status"_s, u"Read IVAO's status file from URL."_s,
                                              u"URL"_s);
    const QCommandLineOption vatsimStatusOption(u"vatsim-status"_s, u"Read VATSIM's status file from URL."_s,
                                                u"URL"_s);
    const QCommandLineOption downloadOption(u"download"_s, u"Download the data of ivao, vatsim or both."_s,
                                            u"NETWORK"_s);
    const QCommandLineOption helpOption(QStringList{u"h"_s, u"help"_s}, u"Show this help and exit."_s);
    const QCommandLineOption versionOption(u"version"_s, u"Show the version and exit."_s);
    parser.addOptions({homeOption, demoOption, ivaoStatusOption, vatsimStatusOption, downloadOption,
                       helpOption, versionOption});
    if (!parser.parse(QCoreApplication::arguments())) {
        Print(stderr, parser.errorText() + u"\nTry skylantra --help."_s);
        return 2;
    }
    if (parser.isSet(helpOption)) {
        Print(stdout,
              parser.helpText().trimmed() +
                  u"\n\nThe home folder can also be set with the SKYLANTRA_HOME environment variable."_s);
        return 0;
    }
    if (parser.isSet(versionOption)) {
        Print(stdout, u"Skylantra "_s + QCoreApplication::applicationVersion());
        return 0;
    }
    QStringList networks;
    if (parser.isSet(downloadOption)) {
        const QString which = parser.value(downloadOption).toLower();
        if (which != u"ivao" && which != u"vatsim" && which != u"both") {
            Print(stderr, u"--download takes ivao, vatsim or both."_s);
            return 2;
        }
        networks = which == u"both" ? QStringList{u"ivao"_s, u"vatsim"_s} : QStringList{which};
    }

    const QString home =
        sky::ResolveHomeFolder(parser.value(homeOption), qEnvironmentVariable("SKYLANTRA_HOME"),
                               QCoreApplication::applicationDirPath());
    if (!QFileInfo(home).isDir()) {
        Print(stderr, u"Skylantra: the home folder "_s + home + u" does not exist."_s);
        return 1;
    }
    sky::Friends friends;
    const sky::Settings settings = sky::LoadSettings(home, sky::ScreenMetrics{}, friends);
    const bool demo = parser.isSet(demoOption);
    const std::array<QString, 2> statusAddresses = {
        sky::network::ChooseStatusFileAddress(0, parser.value(ivaoStatusOption), demo, settings.IVAOStatusURL,
                                              home),
        sky::network::ChooseStatusFileAddress(1, parser.value(vatsimStatusOption), demo,
                                              settings.VATSIMStatusURL, home)};
    if (!networks.isEmpty())
        return Download(home, settings, networks, statusAddresses);

    const QString themePath = QDir(home).filePath(u"colours/"_s + settings.ColourTheme);
    Print(stdout, u"Skylantra "_s + QCoreApplication::applicationVersion());
    Print(stdout, u"Home folder: "_s + home);
    Print(stdout,
          u"Settings:    "_s + sky::SettingsPath(home) +
              (QFileInfo::exists(sky::SettingsPath(home)) ? QString() : u" (not yet written: defaults)"_s));
    Print(stdout, u"Theme:       "_s + themePath +
                      (QFileInfo::exists(themePath) ? QString() : u" (missing: built-in colours)"_s));
    Print(stdout, u"Friends:     "_s + QString::number(friends.Count()));
    Print(stdout, u"IVAO:        "_s + statusAddresses[0]);
    Print(stdout, u"VATSIM:      "_s + statusAddresses[1]);
    Print(stdout,
          u"The map window is not part of this build yet; --download shows what the networks send."_s);
    return 0;
}
