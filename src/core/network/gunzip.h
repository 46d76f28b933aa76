#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

namespace sky::network {

// Ten times the largest network file of today: more is no feed, but a gzip bomb.
inline constexpr qint64 kMaxUnzippedBytes = qint64(64) << 20;

// The contents of gzip data (every member, when several follow each other); nullopt for data that is
// not gzip, is cut short, fails its checksum, or would unpack to more than maxBytes.
std::optional<QByteArray> GunzipBytes(const QByteArray& compressed, qint64 maxBytes = kMaxUnzippedBytes);

// Unpacks the file gzPath (ending in ".gz") into the same path without ".gz"; false on any failure,
// leaving an existing unpacked file as it was.
bool GunzipFile(const QString& gzPath, qint64 maxBytes = kMaxUnzippedBytes);

} // namespace sky::network
