#include "app/home_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

QString Absolute(const QString& folder) {
    return QDir::cleanPath(QDir(folder).absolutePath());
}

} // namespace

QString Folders::Holding(const QString& relative) const {
    return QFileInfo::exists(QDir(Home).filePath(relative)) ? Home : Shipped;
}

QString Folders::HomeFile(const QString& relative) const {
    return QDir(Home).filePath(relative);
}

QString Folders::DownloadFolder() const {
    return Downloads.isEmpty() ? HomeFile(u"data"_s) : Downloads;
}

QString FirstWritableFolder(const QStringList& candidates) {
    for (const QString& folder : candidates) {
        if (folder.isEmpty() || !QDir().mkpath(folder))
            continue;
        // Permissions say too little (a read-only mount, access lists): a file is made to be sure.
        QTemporaryFile probe(QDir(folder).filePath(u".probe-XXXXXX"_s));
        if (probe.open())
            return Absolute(folder);
    }
    return {};
}

QString ResolveHomeFolder(const QString& homeOption, const QString& homeEnvironment,
                          const QString& executableFolder) {
    const QString& chosen = !homeOption.isEmpty()        ? homeOption
                            : !homeEnvironment.isEmpty() ? homeEnvironment
                                                         : executableFolder;
    return Absolute(chosen);
}

Folders ResolveFolders(const FolderFacts& f) {
    const QString shipped = f.ExecutableFolderHasData || f.InstalledFolder.isEmpty() ? f.ExecutableFolder
                                                                                      : f.InstalledFolder;
    QString home;
    if (!f.HomeOption.isEmpty() || !f.HomeEnvironment.isEmpty())
        home = ResolveHomeFolder(f.HomeOption, f.HomeEnvironment, f.ExecutableFolder);
    else if (f.ExecutableFolderHasData && f.ExecutableFolderWritable)
        home = f.ExecutableFolder;
    else
        home = f.UserDataFolder.isEmpty() ? f.ExecutableFolder : f.UserDataFolder;
    return {Absolute(home), Absolute(shipped), {}};
}

Folders FindFolders(const QString& homeOption, const QString& homeEnvironment, const QString& executableFolder) {
    FolderFacts facts;
    facts.HomeOption = homeOption;
    facts.HomeEnvironment = homeEnvironment;
    facts.ExecutableFolder = executableFolder;
    const QFileInfo folder(executableFolder);
    facts.ExecutableFolderWritable = folder.isWritable();
    facts.ExecutableFolderHasData = QFileInfo(QDir(executableFolder).filePath(u"data"_s)).isDir();
    facts.UserDataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    // An install puts the program in bin/ and what it reads in share/skylantra/.
    facts.InstalledFolder = QDir(executableFolder).filePath(u"../share/skylantra"_s);
    return ResolveFolders(facts);
}

} // namespace sky
