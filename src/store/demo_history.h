#pragma once

#include <array>

#include <QString>

namespace sky {
class ReferenceData;
}

namespace sky::store {

// Writes a made-up day of both networks, from their demo feeds (see stats::DemoDay), into a new history
// file at path: a snapshot of each network every stepSeconds over the 24 hours up to endUtc. What was at
// path goes first. Returns why it could not, or empty.
QString WriteDemoHistory(const QString& path, const std::array<QString, 2>& feeds,
                         const ReferenceData& reference, qint64 endUtc, qint64 stepSeconds);

} // namespace sky::store
