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

// Replaces the file with bytes in one step: the new content goes to a temporary file that is renamed
// over the old one only when complete, so a crash or a full disk leaves the old file as it was.
WriteResult WriteFileAtomically(const QString& path, const QByteArray& bytes);

// The same, making the file's folder first when it is missing (data/friends.dat, data/watch.dat).
WriteResult WriteFileMakingFolder(const QString& path, const QByteArray& bytes);

} // namespace sky
