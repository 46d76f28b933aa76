#pragma once

#include <cstdint>
#include <functional>

#include <QDateTime>

#include "network/client_records.h"
#include "network/download.h"

namespace sky::view {

// The state and actions the two one-second timers of the map work with.
struct TimerContext {
    std::int16_t& AutoDownloadCountdown; // seconds to the next automatic download
    int ShownNetwork;
    const network::ClientTables& Tables;
    network::DownloadState& Downloads;
    QDateTime Now;
    std::function<void(int network)> Download; // the download button
    std::function<void()> MarksChanged;        // the per-network marks are recorded again, then a redraw
};

// Seconds that must pass before an automatic download asks again when it may not download yet.
inline constexpr std::int16_t kRetrySeconds = 5;

// One tick of the automatic download: counts down, and at zero downloads the shown network unless its
// reload interval has not passed or a fetch is running (then it asks again 5 seconds later). Nothing is
// downloaded while both networks are compared.
void AutoDownloadTick(TimerContext& context);

// One tick of the mark watcher: a network whose download was refused for now loses its mark once its
// reload interval has passed.
void DownloadTick(TimerContext& context);

// Whole seconds since the network's last download (a large number before the first one).
qint64 SecondsSinceDownload(const network::NetworkData& data, const QDateTime& now);

} // namespace sky::view
