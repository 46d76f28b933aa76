#include "history/history_store.h"

namespace sky::history {

std::vector<std::vector<TrackPoint>> SplitTrack(const std::vector<TrackPoint>& track, qint64 maxGapSeconds) {
    std::vector<std::vector<TrackPoint>> pieces;
    for (const TrackPoint& p : track) {
        if (pieces.empty() || p.TakenUtc - pieces.back().back().TakenUtc > maxGapSeconds)
            pieces.emplace_back();
        pieces.back().push_back(p);
    }
    return pieces;
}

} // namespace sky::history
