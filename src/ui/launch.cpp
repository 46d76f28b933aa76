#include "launch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

#include "network/download.h"

using namespace Qt::StringLiterals;

namespace sky::ui {

network::FeedAddresses ChooseAddresses(const LaunchOptions& launch, const Settings& settings,
                                       const Folders& folders) {
    network::FeedAddresses a;
    for (int n = 0; n < 2; ++n) {
        const QString& status = n == 0 ? settings.IVAOStatusURL : settings.VATSIMStatusURL;
        const QString& json = n == 0 ? settings.IVAOJsonURL : settings.VATSIMJsonURL;
        const QString demoFolder = folders.Holding(n == 0 ? u"data/demo/ivao"_s : u"data/demo/vatsim"_s);
        a.Status[size_t(n)] = network::ChooseStatusFileAddress(n, launch.StatusOptions[size_t(n)],
                                                               launch.Demo, status, demoFolder);
        a.Json[size_t(n)] = network::ChooseJsonAddress(
            n, !launch.StatusOptions[size_t(n)].trimmed().isEmpty(), launch.Demo, json, demoFolder);
    }
    const bool ownFeeds =
        !launch.StatusOptions[0].trimmed().isEmpty() || !launch.StatusOptions[1].trimmed().isEmpty();
    const QString demo = QDir(folders.Holding(u"data/demo/vatsim"_s)).filePath(u"data/demo/vatsim/"_s);
    a.Bookings =
        network::ChooseServiceAddress(settings.VATSIMBookingsURL, launch.Demo, demo + u"bookings.json"_s,
                                      ownFeeds, network::DefaultBookingsAddress());
    a.Events = network::ChooseServiceAddress(settings.VATSIMEventsURL, launch.Demo, demo + u"events.json"_s,
                                             ownFeeds, network::DefaultEventsAddress());
    return a;
}

void UseDemoWeather(const LaunchOptions& launch, const Folders& folders, Settings& settings) {
    if (!launch.Demo)
        return;
    const QString weather = u"data/demo/weather"_s;
    settings.WeatherServer = QUrl::fromLocalFile(QDir(folders.Holding(weather)).filePath(weather)).toString();
    const QString list = weather + u"/metars.txt"_s;
    settings.MetarListURL = QUrl::fromLocalFile(QDir(folders.Holding(list)).filePath(list)).toString();
}

Folders PrepareFolders(const LaunchOptions& launch, const std::function<void(const QString&)>& report,
                       QString* downloadNotice) {
    Folders folders = FindFolders(launch.HomeOption, qEnvironmentVariable("SKYLANTRA_HOME"),
                                  QCoreApplication::applicationDirPath());
    const QString temporary = QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation))
                                  .filePath(u"skylantra-%1"_s.arg(QCoreApplication::applicationPid()));
    if (!QDir().mkpath(QDir(folders.Home).filePath(u"data"_s))) {
        report(u"Skylantra cannot make its home folder "_s + QDir::toNativeSeparators(folders.Home) +
               u". Settings, friends and downloads of this run will not be kept."_s);
        folders.Home = temporary;
        QDir().mkpath(QDir(folders.Home).filePath(u"data"_s));
    }
    // A data folder that exists but cannot be written (a read-only mount, another user's folder) would
    // fail every download: they go to the cache instead, and the map still shows traffic.
    const QString data = folders.DownloadFolder();
    if (FirstWritableFolder({data}).isEmpty()) {
        folders.Downloads =
            FirstWritableFolder({QStandardPaths::writableLocation(QStandardPaths::CacheLocation),
                                 QDir(temporary).filePath(u"data"_s)});
        if (downloadNotice)
            *downloadNotice =
                QDir::toNativeSeparators(data) + u" cannot be written: downloads go to "_s +
                (folders.Downloads.isEmpty() ? u"no folder"_s : QDir::toNativeSeparators(folders.Downloads));
    }
    return folders;
}

void PrintText(std::FILE* stream, const QString& text) {
    QString unixText = text;
    unixText.replace(u"\r\n"_s, u"\n"_s);
    const QByteArray bytes = unixText.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace sky::ui
