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
#include "map_window.h"

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
    MapWindow window(std::move(options));
    // Log-out (SIGTERM), Ctrl+C (SIGINT) and a closed terminal (SIGHUP) close the map as its own close
    // button does: settings, friends and history written, the lock released on the way out.
    const CloseOnSignals closer([&window] { window.close(); });
    window.show();
    return QApplication::exec();
}

} // namespace sky::ui
