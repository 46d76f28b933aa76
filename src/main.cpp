#include <QApplication>
#include <QCommandLineParser>

#include "geo/view_option.h"
#include "console_mode.h"
#include "launch.h"
#include "window_run.h"

using namespace Qt::StringLiterals;

namespace {

using sky::ui::PrintLine;

QStringList Arguments(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

} // namespace

int main(int argc, char* argv[]) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Skylantra shows the live traffic of the IVAO and VATSIM flight-simulation networks on a globe."_s);
    const QCommandLineOption homeOption(
        u"home"_s, u"Keep settings, friends and downloads in DIR (and read data and themes there first)."_s,
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
        u"snapshot"_s,
        u"Render one frame after start-up and any download, save it as a PNG image in FILE and exit."_s,
        u"FILE"_s);
    const QCommandLineOption printPanelOption(
        u"print-panel"_s,
        u"With --snapshot, also write the open list or airport board as text to standard output."_s);
    const QCommandLineOption printStatusOption(
        u"print-status"_s, u"With --snapshot, also write the status line's text to standard output."_s);
    const QCommandLineOption filterOption(
        u"filter"_s,
        u"Start with the map filtered by TEXT, as typed in the filter bar, e.g. \"DLH to:EDDF\"."_s,
        u"TEXT"_s);
    const QCommandLineOption historyOption(
        u"history"_s, u"Replay the history kept in FILE (read only, e.g. copied from another machine)."_s,
        u"FILE"_s);
    const QCommandLineOption demoHistoryOption(
        u"demo-history"_s,
        u"With the demo feeds, replay and chart a made-up day of both networks (written to demo-history.db "
        u"in the home folder, apart from your own history)."_s);
    const QCommandLineOption keysOption(
        u"keys"_s, u"Once the map is ready, press these keys and clicks, e.g. \"V;L;click 400 300\"."_s,
        u"SEQUENCE"_s);
    const QCommandLineOption consoleOption(
        u"console"_s,
        u"The Companion in this terminal: commands from standard input, answers on standard output."_s);
    const QCommandLineOption liveOption(
        u"live"_s,
        u"Follow the shown network's JSON feed live (every LiveSeconds of skln.ini, 15 by default); "
        u"also with --console."_s);
    const QCommandLineOption viewOption(
        u"view"_s,
        u"Start with the view LON,LAT,ZOOM (longitude -180 to 180, latitude -90 to 90, zoom 0.3 to 50)."_s,
        u"LON,LAT,ZOOM"_s);
    const QCommandLineOption helpOption(QStringList{u"h"_s, u"help"_s}, u"Show this help and exit."_s);
    const QCommandLineOption versionOption(u"version"_s, u"Show the version and exit."_s);
    parser.addOptions({homeOption, demoOption, ivaoStatusOption, vatsimStatusOption, downloadOption,
                       snapshotOption, viewOption, keysOption, printPanelOption, printStatusOption,
                       filterOption, historyOption, demoHistoryOption, consoleOption, liveOption, helpOption,
                       versionOption});
    // Help and version need no display, so they are answered before any window system is touched.
    if (!parser.parse(Arguments(argc, argv))) {
        PrintLine(stderr, parser.errorText() + u"\nTry skylantra --help."_s);
        return 2;
    }
    if (parser.isSet(helpOption)) {
        // Without an application object the help names the program "<executable_name>".
        QString help = parser.helpText().trimmed();
        help.replace(u"<executable_name>"_s, u"skylantra"_s);
        PrintLine(stdout,
                  help +
                      u"\n\nThe home folder can also be set with the SKYLANTRA_HOME environment variable."_s);
        return 0;
    }
    if (parser.isSet(versionOption)) {
        PrintLine(stdout, u"Skylantra " SKYLANTRA_VERSION ""_s);
        return 0;
    }
    sky::ui::LaunchOptions launch;
    launch.HomeOption = parser.value(homeOption);
    launch.Demo = parser.isSet(demoOption);
    launch.StatusOptions = {parser.value(ivaoStatusOption), parser.value(vatsimStatusOption)};
    launch.DownloadNetworks = parser.value(downloadOption).toLower();
    launch.SnapshotPath = parser.value(snapshotOption);
    launch.Input = parser.value(keysOption);
    launch.PrintPanel = parser.isSet(printPanelOption);
    launch.HistoryFile = parser.value(historyOption);
    launch.DemoHistory = parser.isSet(demoHistoryOption);
    launch.Demo = launch.Demo || launch.DemoHistory;
    launch.Filter = parser.value(filterOption);
    launch.PrintStatus = parser.isSet(printStatusOption);
    launch.Live = parser.isSet(liveOption);
    if (parser.isSet(downloadOption) && !sky::network::NetworkNamed(launch.DownloadNetworks)) {
        PrintLine(stderr, u"--download takes ivao, vatsim or both."_s);
        return 2;
    }
    if (parser.isSet(viewOption)) {
        const QString text = parser.value(viewOption);
        const std::optional<sky::geo::ViewOption> view = sky::geo::ParseViewOption(text);
        if (!view) {
            PrintLine(stderr, u"--view takes LON,LAT,ZOOM, e.g. 8.5,50,2."_s);
            return 2;
        }
        // Out of range is no reason to refuse: the map starts at the nearest view it can show.
        if (view->Clamped)
            PrintLine(stderr, u"Skylantra: --view "_s + text + u" is out of range; starting at "_s +
                                  sky::geo::ViewOptionText(view->View) + u"."_s);
        launch.View = view->View;
    }

    if (parser.isSet(consoleOption)) {
        QCoreApplication app(argc, argv);
        QCoreApplication::setApplicationName(u"Skylantra"_s);
        return sky::ui::RunConsole(launch);
    }
    // Without any display the window system library would abort; say what to do instead.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        PrintLine(stderr,
                  u"Skylantra: no display to show the map on. Run it in a desktop session, under xvfb-run, "
                  u"or use --console for the Companion in this terminal."_s);
        return 1;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"Skylantra"_s);
    QApplication::setApplicationVersion(QStringLiteral(SKYLANTRA_VERSION));
    QGuiApplication::setDesktopFileName(u"skylantra"_s);
    return sky::ui::RunWindow(launch);
}
