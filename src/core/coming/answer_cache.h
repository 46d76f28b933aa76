#pragma once

#include <optional>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include "network/http_client.h"

namespace sky::coming {

// A service's last good answer as the home folder keeps it: the address it came from, when it was
// fetched (UTC), the version the server gave it, and the answer itself.
struct CachedAnswer {
    QString Address;
    QDateTime Fetched;
    network::Validators Version;
    QByteArray Body;
};

// The file's bytes: a first line naming the layout, "Name: value" lines, a blank line, the answer.
QByteArray CacheBytes(const CachedAnswer& answer);
// What such a file holds; nullopt for any other file (another layout, a cut header, no fetch time).
std::optional<CachedAnswer> ReadCache(const QByteArray& bytes);

} // namespace sky::coming
