#include "common/file_io.h"

#include <QFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace sky {

std::optional<QByteArray> ReadWholeFile(const QString& path, qint64 maxBytes) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (file.size() > maxBytes)
        return std::nullopt;
    // Read up to the limit even when size() is 0, as it is for pipes and some special files.
    QByteArray bytes = file.read(maxBytes + 1);
    if (bytes.size() > maxBytes)
        return std::nullopt;
    return bytes;
}

WriteResult WriteFileAtomically(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {false, u"Could not write "_s + path + u": "_s + file.errorString()};
    if (file.write(bytes) != bytes.size()) {
        const QString message = u"Could not write "_s + path + u": "_s + file.errorString();
        file.cancelWriting();
        return {false, message};
    }
    if (!file.commit())
        return {false, u"Could not write "_s + path + u": "_s + file.errorString()};
    return {};
}

} // namespace sky
