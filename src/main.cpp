#include <cstdio>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QMessageBox>
#include <QScreen>

#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"
#include "common/numbers.h"
#include "console_mode.h"
#include "map_window.h"
#include "network/download.h"

using namespace Qt::StringLiterals;

namespace {

void Print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

QStringList Arguments(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

// "LON,LAT,ZOOM" as a view, or nullopt.
std::optional<sky::geo::ViewState> ParseView(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 3)
        return std::nullopt;
    bool ok[3] = {};
    const double lon = parts[0].toDouble(&ok[0]), lat = parts[1].toDouble(&ok[1]),
                 zoom = parts[2].toDouble(&ok[2]);
    if (!ok[0] || !ok[1] || !ok[2])
        return std::nullopt;
    return sky::geo::ViewState{sky::ToSingle(lon), sky::ToSingle(-lat), sky::ToSingle(zoom)};
}

// The Companion in the terminal: no window system at all.
int RunConsoleMode(int argc, char* argv[], const QString& homeOption, bool demo,
                   const std::array<QString, 2>& statusOptions, const QString& download) {
    QCoreApplication app(argc, argv);
    const QString home = sky::ResolveHomeFolder(homeOption, qEnvironmentVariable("SKYLANTRA_HOME"),
                                                QCoreApplication::applicationDirPath());
    if (!QFileInfo(home).isDir()) {
        Print(stderr, u"Skylantra: the home folder "_s + home + u" does not exist."_s);
        return 1;
    }
    sky::ui::ConsoleOptions options;
    options.Home = home;
    options.Config = sky::LoadSettings(home, sky::ScreenMetrics{}, options.FriendList);
    for (int n = 0; n < 2; ++n) {
        const QString& setting = n == 0 ? options.Config.IVAOStatusURL : options.Config.VATSIMStatusURL;
        options.StatusAddresses[n] =
            sky::network::ChooseStatusFileAddress(n, statusOptions[n], demo, setting, home);
    }
    options.DownloadNetworks = download;
    return sky::ui::RunConsole(options);
}

} // namespace

int main(int argc, char* argv[]) {
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
    const QCommandLineOption downloadOption(
        u"download"_s, u"Download the data of ivao, vatsim or both once the map is ready."_s, u"NETWORK"_s);
    const QCommandLineOption snapshotOption(
        u"snapshot"_s, u"Render one frame after start-up and any download, save it as FILE.png and exit."_s,
        u"FILE"_s);
    const QCommandLineOption keysOption(
        u"keys"_s, u"Once the map is ready, press these keys and clicks, e.g. \"V;L;click 400 300\"."_s,
        u"SEQUENCE"_s);
    const QCommandLineOption consoleOption(
        u"console"_s,
        u"The Companion in this terminal: commands from standard input, answers on standard output."_s);
    const QCommandLineOption viewOption(u"view"_s, u"Start with the view LON,LAT,ZOOM."_s, u"LON,LAT,ZOOM"_s);
    const QCommandLineOption helpOption(QStringList{u"h"_s, u"help"_s}, u"Show this help and exit."_s);
    const QCommandLineOption versionOption(u"version"_s, u"Show the version and exit."_s);
    parser.addOptions({homeOption, demoOption, ivaoStatusOption, vatsimStatusOption, downloadOption,
                       snapshotOption, viewOption, keysOption, consoleOption, helpOption, versionOption});
    // Help and version need no display, so they are answered before any window system is touched.
    if (!parser.parse(Arguments(argc, argv))) {
        Print(stderr, parser.errorText() + u"\nTry skylantra --help."_s);
        return 2;
    }
    if (parser.isSet(helpOption)) {
        Print(stdout,
              parser.helpText()
                      .replace(QFileInfo(QString::fromLocal8Bit(argv[0])).filePath(), u"skylantra"_s)
                      .trimmed() +
                  u"\n\nThe home folder can also be set with the SKYLANTRA_HOME environment variable."_s);
        return 0;
    }
    if (parser.isSet(versionOption)) {
        Print(stdout, u"Skylantra " SKYLANTRA_VERSION ""_s);
        return 0;
    }
    const QString download = parser.value(downloadOption).toLower();
    if (parser.isSet(downloadOption) && download != u"ivao" && download != u"vatsim" && download != u"both") {
        Print(stderr, u"--download takes ivao, vatsim or both."_s);
        return 2;
    }
    std::optional<sky::geo::ViewState> view;
    if (parser.isSet(viewOption)) {
        view = ParseView(parser.value(viewOption));
        if (!view) {
            Print(stderr, u"--view takes LON,LAT,ZOOM, e.g. 8.5,50,2."_s);
            return 2;
        }
    }

    if (parser.isSet(consoleOption))
        return RunConsoleMode(argc, argv, parser.value(homeOption), parser.isSet(demoOption),
                              {parser.value(ivaoStatusOption), parser.value(vatsimStatusOption)}, download);

    // Without any display the window system library would abort; say what to do instead.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        Print(stderr, u"Skylantra: no display to show the map on. Run it in a desktop session, under xvfb-run, "
                      u"or use --console for the Companion in this terminal."_s);
        return 1;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"Skylantra"_s);
    QApplication::setApplicationVersion(QStringLiteral(SKYLANTRA_VERSION));
    const QString home =
        sky::ResolveHomeFolder(parser.value(homeOption), qEnvironmentVariable("SKYLANTRA_HOME"),
                               QCoreApplication::applicationDirPath());
    if (!QFileInfo(home).isDir()) {
        Print(stderr, u"Skylantra: the home folder "_s + home + u" does not exist."_s);
        return 1;
    }
    // One program per home folder; a second start ends at once.
    QLockFile lock(QDir(home).filePath(u"skylantra.lock"_s));
    if (!lock.tryLock(0))
        return 0;

    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) {
        Print(stderr, u"Skylantra: no screen to show the map on."_s);
        return 1;
    }
    if (screen->logicalDotsPerInchX() != screen->logicalDotsPerInchY()) {
        QMessageBox::critical(nullptr, u"Error"_s, u"Anisotropic screen. Skylantra will now exit."_s);
        return 1;
    }
    const float twipsPerPixel = float(1440.0 / screen->logicalDotsPerInchX());

    sky::Friends friends;
    const QSize screenSize = screen->geometry().size();
    sky::Settings settings =
        sky::LoadSettings(home, {twipsPerPixel, screenSize.width(), screenSize.height()}, friends);
    const bool demo = parser.isSet(demoOption);
    sky::ui::MapOptions options;
    options.Home = home;
    options.Config = settings;
    options.FriendList = friends;
    options.TwipsPerPixel = twipsPerPixel;
    options.StatusAddresses = {sky::network::ChooseStatusFileAddress(0, parser.value(ivaoStatusOption), demo,
                                                                     settings.IVAOStatusURL, home),
                               sky::network::ChooseStatusFileAddress(1, parser.value(vatsimStatusOption),
                                                                     demo, settings.VATSIMStatusURL, home)};
    options.JsonAddresses = {
        sky::network::ChooseJsonAddress(0, parser.isSet(ivaoStatusOption), demo, settings.IVAOJsonURL),
        sky::network::ChooseJsonAddress(1, parser.isSet(vatsimStatusOption), demo, settings.VATSIMJsonURL)};
    options.DownloadNetworks = download;
    options.SnapshotPath = parser.value(snapshotOption);
    options.Input = parser.value(keysOption);
    options.View = view;

    sky::ui::MapWindow window(std::move(options));
    window.show();
    return app.exec();
}
