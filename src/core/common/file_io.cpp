#include "common/file_io.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace sky {

std::optional<QByteArray> ReadWholeFile(const QString& path, qint64 maxBytes) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (file.size() > maxBytes)
        return std::nullopt;
    // The buffer grows with what arrives: a regular file's size is known, while a pipe or a special
    // file says 0 and is read in pieces, up to the limit. The limit is a limit, never a reservation.
    QByteArray bytes;
    bytes.reserve(qsizetype(file.size()) + 1);
    constexpr qint64 kPiece = qint64(1) << 16;
    while (true) {
        const qint64 wanted = std::min(kPiece, maxBytes + 1 - qint64(bytes.size()));
        const QByteArray piece = file.read(std::max(wanted, qint64(1)));
        if (piece.isEmpty())
            break;
        bytes += piece;
        if (bytes.size() > maxBytes)
            return std::nullopt;
    }
    return bytes;
}

WriteResult WriteFileMakingFolder(const QString& path, const QByteArray& bytes) {
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return {false, u"Could not write "_s + QDir::toNativeSeparators(path) +
                           u": cannot create the folder "_s + QDir::toNativeSeparators(folder)};
    return WriteFileAtomically(path, bytes);
}

WriteResult WriteFileAtomically(const QString& path, const QByteArray& bytes) {
    const auto failed = [&path](const QString& why) {
        return WriteResult{false, u"Could not write "_s + QDir::toNativeSeparators(path) + u": "_s + why};
    };
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return failed(file.errorString());
    // The write lands in a buffer that flush() hands to the disk; commit() would rename whatever got
    // there (an empty file, on a full disk) over the old one, so both are checked before it.
    if (file.write(bytes) != bytes.size() || !file.flush() || file.error() != QFileDevice::NoError) {
        const QString why = file.errorString();
        file.cancelWriting();
        return failed(why);
    }
    if (!file.commit())
        return failed(file.errorString());
    return {};
}

} // namespace sky
