#include "window_run.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLockFile>
#include <QMessageBox>
#include <QScreen>

#include "app/colour_theme.h"
#include "close_on_signals.h"
#include "common/file_io.h"
#include "common/text_codec.h"
#include "demo_history.h"
#include "geo/text_format.h"
#include "map_window.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

// A problem the program can run with: on standard error, and in a box unless a snapshot is taken.
class Reporter {
public:
    explicit Reporter(bool boxes) : m_boxes(boxes) {}
    void operator()(const QString& text) const {
        PrintLine(stderr, u"Skylantra: "_s + text);
        if (!m_boxes)
            return;
        auto* box = new QMessageBox(QMessageBox::Warning, u"Skylantra"_s, text, QMessageBox::Ok);
        box->setTextFormat(Qt::PlainText);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->show();
    }

private:
    bool m_boxes;
};

// What the settings file and the theme say of themselves before they are used.
void CheckSettingsFiles(const Folders& folders, const Settings& settings, const Reporter& report) {
    const QFileInfo ini(SettingsPath(folders.Home));
    if (ini.isDir())
        report(ini.absoluteFilePath() + u" is a folder, not a settings file: the defaults are used and "
                                        u"nothing will be saved there."_s);
    else if (ini.exists() && !ini.isWritable())
        report(ini.absoluteFilePath() + u" cannot be written: changes of this run will not be kept."_s);
    const QString theme = u"colours/"_s + settings.ColourTheme;
    if (!QFileInfo(QDir(folders.Holding(theme)).filePath(theme)).isFile())
        report(u"The colour theme "_s + settings.ColourTheme +
               u" is not there: the built-in colours are used."_s);
}

// --demo-history: a made-up day of both networks from the demo feeds, up to the demo feeds' own time,
// a snapshot every ten minutes, in a file of its own. Its path, or empty when it could not be written.
QString WriteDemoDay(const Folders& folders, const Reporter& report) {
    std::array<QString, 2> feeds;
    for (int n = 0; n < 2; ++n) {
        const QString file = n == 0 ? u"data/demo/ivao/whazzup.txt"_s : u"data/demo/vatsim/whazzup.txt"_s;
        // The IVAO demo is in Windows-1252, as the network's own text feed.
        feeds[size_t(n)] =
            DecodeText(ReadWholeFile(QDir(folders.Holding(file)).filePath(file)).value_or(QByteArray())).Text;
    }
    QDateTime end = QDateTime::currentDateTimeUtc();
    for (QStringView line : QStringView(feeds[0]).split(u'\n'))
        if (line.startsWith(u"UPDATE"))
            end = geo::ParseTimeStamp(line.trimmed().right(14)).value_or(end);
    const QString data = QDir(folders.Holding(u"data/airports.dat"_s)).filePath(u"data"_s);
    const QString path = folders.HomeFile(u"demo-history.db"_s);
    const QString problem =
        store::WriteDemoHistory(path, feeds, ReferenceData::Load(data), end.toSecsSinceEpoch(), 600);
    if (!problem.isEmpty()) {
        report(u"The demo history cannot be written: "_s + problem);
        return {};
    }
    return path;
}

} // namespace

int RunWindow(const LaunchOptions& launch) {
    const Reporter report(launch.SnapshotPath.isEmpty());
    QString downloadNotice;
    const Folders folders = PrepareFolders(launch, report, &downloadNotice);
    if (!downloadNotice.isEmpty())
        PrintLine(stderr, u"Skylantra: "_s + downloadNotice);
    // One program per home folder: a second start ends at once, silently, and the first stays as it is.
    // A lock that cannot be made at all is no second program: it is said, and the map runs.
    QLockFile lock(QDir(folders.Home).filePath(u"skylantra.lock"_s));
    if (!lock.tryLock(0)) {
        // A snapshot is asked for by a script, which must be able to tell that none was taken.
        if (lock.error() == QLockFile::LockFailedError && !launch.SnapshotPath.isEmpty()) {
            PrintLine(stderr, u"Skylantra: another Skylantra is running with the home folder "_s +
                                  QDir::toNativeSeparators(folders.Home) + u"; no snapshot was taken."_s);
            return 1;
        }
        if (lock.error() == QLockFile::LockFailedError)
            return 0;
        report(u"Skylantra cannot make its lock file in "_s + QDir::toNativeSeparators(folders.Home) +
               u"; a second start with this home folder will not be noticed."_s);
    }
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) {
        PrintLine(stderr, u"Skylantra: no screen to show the map on."_s);
        return 1;
    }
    if (screen->logicalDotsPerInchX() != screen->logicalDotsPerInchY()) {
        QMessageBox::critical(nullptr, u"Error"_s, u"Anisotropic screen. Skylantra will now exit."_s);
        return 1;
    }
    const float twipsPerPixel = float(1440.0 / screen->logicalDotsPerInchX());
    MapOptions options;
    options.Files = folders;
    const QSize screenSize = screen->geometry().size();
    options.Config = LoadSettings(folders.Home, {twipsPerPixel, screenSize.width(), screenSize.height()},
                                  options.FriendList);
    CheckSettingsFiles(folders, options.Config, report);
    UseDemoWeather(launch, folders, options.Config);
    options.Config.Live = options.Config.Live || launch.Live;
    options.Demo = launch.Demo;
    options.TwipsPerPixel = twipsPerPixel;
    options.Addresses = ChooseAddresses(launch, options.Config, folders);
    options.DownloadNetworks = launch.DownloadNetworks;
    options.SnapshotPath = launch.SnapshotPath;
    options.Input = launch.Input;
    options.View = launch.View;
    options.Report = report;
    options.PrintPanel = launch.PrintPanel;
    options.HistoryFile = launch.HistoryFile;
    options.StartNotice = downloadNotice;
    if (launch.DemoHistory) {
        options.HistoryFile = WriteDemoDay(folders, report);
        options.DemoHistory = !options.HistoryFile.isEmpty();
    }
    options.Filter = launch.Filter;
    options.PrintStatus = launch.PrintStatus;
    MapWindow window(std::move(options));
    // Log-out (SIGTERM), Ctrl+C (SIGINT) and a closed terminal (SIGHUP) close the map as its own close
    // button does: settings, friends and history written, the lock released on the way out.
    const CloseOnSignals closer([&window] { window.close(); });
    window.show();
    return QApplication::exec();
}

} // namespace sky::ui
