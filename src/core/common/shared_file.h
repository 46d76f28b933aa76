#pragma once

#include <functional>
#include <optional>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include "common/file_io.h"

namespace sky {

// A file that this program and another on the same home folder may both change (the friends list, the
// watch list): every change is read-modify-write under a short-lived lock file beside it (the path and
// ".lock"), saved through the checked atomic save, so neither program's change is lost; and a change
// the other program made is noticed.
class SharedFile {
public:
    explicit SharedFile(QString path);
    const QString& Path() const { return m_path; }

    // What change makes of the file as it is now (empty when missing) is saved, under the lock; nullopt
    // from change saves nothing. A lock held elsewhere for more than a few seconds, or a save that
    // fails, leaves the file as it was; the message names the file.
    using Change = std::function<std::optional<QByteArray>(const QByteArray& current)>;
    WriteResult Update(const Change& change);

    // The file's content when it changed since this program last read or saved it through here (a file
    // that went away reads empty); nullopt when it did not.
    std::optional<QByteArray> ReadIfChanged();
    // Reads the file (empty when missing) and remembers it as seen.
    QByteArray Read();

private:
    struct Stamp {
        bool Exists = false;
        qint64 SizeBytes = 0;
        QDateTime Modified, Changed;
        bool operator==(const Stamp&) const = default;
    };
    Stamp StampNow() const;

    QString m_path;
    Stamp m_seen;
    QByteArray m_seenBytes; // the content read or saved with m_seen
};

} // namespace sky
