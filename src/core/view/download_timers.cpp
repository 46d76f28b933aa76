#include "view/download_timers.h"

#include <limits>

namespace sky::view {

qint64 SecondsSinceDownload(const network::NetworkData& data, const QDateTime& now) {
    if (!data.LastDownload.isValid())
        return std::numeric_limits<qint64>::max() / 2;
    return data.LastDownload.secsTo(now);
}

void AutoDownloadTick(TimerContext& c) {
    if (c.AutoDownloadCountdown > std::numeric_limits<std::int16_t>::min())
        --c.AutoDownloadCountdown;
    if (c.AutoDownloadCountdown >= 1)
        return;
    const int network = c.ShownNetwork;
    if (network == 0 || network == 1) {
        const network::NetworkData& data = c.Tables[network];
        if (SecondsSinceDownload(data, c.Now) < qint64(data.ReloadMinutes) * 60) {
            c.AutoDownloadCountdown = kRetrySeconds;
            return;
        }
    }
    if (c.Downloads.DownloadIdle) {
        if ((network == 0 || network == 1) && c.Download)
            c.Download(network);
        return;
    }
    c.AutoDownloadCountdown = kRetrySeconds;
}

void DownloadTick(TimerContext& c) {
    for (int network = 0; network < network::kNetworkCount; ++network) {
        network::NetworkDownloadState& state = c.Downloads.Networks[network];
        if (!state.DownloadReady)
            continue;
        const network::NetworkData& data = c.Tables[network];
        if (SecondsSinceDownload(data, c.Now) >= qint64(data.ReloadMinutes) * 60) {
            state.DownloadReady = false;
            if (c.MarksChanged)
                c.MarksChanged();
        }
    }
}

} // namespace sky::view
