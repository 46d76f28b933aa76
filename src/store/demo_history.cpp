#include "demo_history.h"

#include <QDateTime>
#include <QFile>

#include "sql_history_store.h"
#include "stats/demo_day.h"

using namespace Qt::StringLiterals;

namespace sky::store {

QString WriteDemoHistory(const QString& path, const std::array<QString, 2>& feeds,
                         const ReferenceData& reference, qint64 endUtc, qint64 stepSeconds) {
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(path + suffix);
    const stats::DemoDay days[2] = {{0, feeds[0], reference}, {1, feeds[1], reference}};
    // Kept for two days, so none of it goes before it is shown.
    SqlHistoryStore store(path, 48, false);
    stepSeconds = std::max<qint64>(stepSeconds, 60);
    for (qint64 utc = endUtc - 24 * 3600 + stepSeconds; utc <= endUtc && store.Problem().isEmpty();
         utc += stepSeconds)
        for (int network = 0; network < 2; ++network)
            store.Record(network, days[network].At(utc), QDateTime::fromSecsSinceEpoch(utc, Qt::UTC));
    store.Flush();
    return store.Problem();
}

} // namespace sky::store
