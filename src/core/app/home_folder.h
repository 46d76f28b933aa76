#pragma once

#include <QString>
#include <QStringList>

namespace sky {

// Where the program's files are. The home folder holds what a run writes (skln.ini, data/friends.dat,
// the downloaded data, the watch list and the history); the shipped folder holds the read-only files
// that come with the program (data/*.dat, data/demo, colours/*.dc). A shipped file that also lies in
// the home folder is read from there, so a user can replace one. Often both are one folder.
struct Folders {
    QString Home;
    QString Shipped;
    QString Downloads; // where the downloaded network files go; empty: the home folder's data/

    static Folders OneFolder(const QString& folder) { return {folder, folder, {}}; }
    // The folder to read relative (a shipped file) from: the home folder when it holds it, else the
    // shipped folder.
    QString Holding(const QString& relative) const;
    QString HomeFile(const QString& relative) const;
    QString DownloadFolder() const;
};

// What the choice of the folders rests on, read from the command line, the environment and the disk.
struct FolderFacts {
    QString HomeOption;       // --home
    QString HomeEnvironment;  // SKYLANTRA_HOME
    QString ExecutableFolder; // the program's own folder
    bool ExecutableFolderWritable = false;
    bool ExecutableFolderHasData = false; // it holds data/ (a build tree or a portable copy)
    QString UserDataFolder;   // the desktop's per-user data folder for the program
    QString InstalledFolder;  // where the install put the shipped files (share/skylantra)
};

// The home folder: --home, else SKYLANTRA_HOME, else the executable's folder when it holds data/ and
// can be written, else the user's data folder. The shipped files: the executable's folder when it holds
// data/, else the installed folder. Both absolute.
Folders ResolveFolders(const FolderFacts& facts);

// The same, with the facts read from the disk and the desktop's standard locations. Needs an
// application object (for the program's name in the user's data folder).
Folders FindFolders(const QString& homeOption, const QString& homeEnvironment, const QString& executableFolder);

// The home folder of a run that is given one: --home, else SKYLANTRA_HOME, else executableFolder.
QString ResolveHomeFolder(const QString& homeOption, const QString& homeEnvironment,
                          const QString& executableFolder);

// The first of the folders that can be made and written in (a file is made there and removed again),
// or empty when none can.
QString FirstWritableFolder(const QStringList& candidates);

} // namespace sky
