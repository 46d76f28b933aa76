#include "coming/answer_cache.h"

#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace sky::coming {
namespace {

constexpr char kFirstLine[] = "Skylantra answer cache 1\n";

// A header value on one line, whatever the server sent.
QByteArray OneLine(const QString& text) {
    QByteArray bytes = text.toUtf8();
    bytes.replace('\r', ' ').replace('\n', ' ');
    return bytes;
}

} // namespace

QByteArray CacheBytes(const CachedAnswer& answer) {
    QByteArray bytes(kFirstLine);
    bytes += "Address: " + OneLine(answer.Address) + '\n';
    bytes += "Fetched: " + answer.Fetched.toUTC().toString(Qt::ISODate).toLatin1() + '\n';
    bytes += "ETag: " + OneLine(answer.Version.ETag) + '\n';
    bytes += "Last-Modified: " + OneLine(answer.Version.LastModified) + "\n\n";
    return bytes + answer.Body;
}

std::optional<CachedAnswer> ReadCache(const QByteArray& bytes) {
    if (!bytes.startsWith(kFirstLine))
        return std::nullopt;
    const qsizetype end = bytes.indexOf("\n\n");
    if (end < 0)
        return std::nullopt;
    CachedAnswer answer;
    for (const QByteArray& line : bytes.mid(0, end).split('\n')) {
        const qsizetype colon = line.indexOf(": ");
        if (colon < 0)
            continue;
        const QByteArray name = line.left(colon);
        const QString value = QString::fromUtf8(line.mid(colon + 2));
        if (name == "Address")
            answer.Address = value;
        else if (name == "Fetched")
            answer.Fetched = QDateTime::fromString(value, Qt::ISODate).toUTC();
        else if (name == "ETag")
            answer.Version.ETag = value;
        else if (name == "Last-Modified")
            answer.Version.LastModified = value;
    }
    if (!answer.Fetched.isValid())
        return std::nullopt;
    answer.Body = bytes.mid(end + 2);
    return answer;
}

} // namespace sky::coming
