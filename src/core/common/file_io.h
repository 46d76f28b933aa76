#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

namespace sky {

// The outcome of a write: Ok, or a message fit to show the user.
struct WriteResult {
    bool Ok = true;
    QString Message;
};

// Reads a whole file; nullopt when it is missing or cannot be read. Files above maxBytes are
// refused too, so a hostile file cannot exhaust memory.
std::optional<QByteArray> ReadWholeFile(const QString& path, qint64 maxBytes = qint64(64) << 20);

// The one way a user's file is saved: the new content goes to a temporary file, every write and the
// flush are checked, and only then is it renamed over the old one; a crash, a full disk or any failed
// write leaves the old file as it was. The message names the file.
WriteResult WriteFileAtomically(const QString& path, const QByteArray& bytes);

// The same, making the file's folder first when it is missing (data/friends.dat, data/watch.dat).
WriteResult WriteFileMakingFolder(const QString& path, const QByteArray& bytes);

} // namespace sky
