#include "stats/chart_series.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "network/classification.h"
#include "network/client_records.h"
#include "network/fields.h"

namespace sky::stats {

bool IsControllerLine(QStringView stationLine) {
    const network::LineFields fields(stationLine);
    if (fields[3] != u"ATC")
        return false;
    // The same tests the interpreter makes before it counts an observer or takes an ATIS off the count.
    const QStringView callsign = fields[0];
    if (network::FacilityFromCallsign(callsign) <= network::kFacilityAtis)
        return false;
    return callsign.indexOf(u'_') >= 2;
}

int ShownSnapshot(const std::vector<SnapshotCount>& counts, int network, const QString& stamp) {
    int found = -1;
    for (size_t i = 0; i < counts.size(); ++i)
        if (counts[i].Network == network && counts[i].Stamp == stamp &&
            (found < 0 || counts[i].TakenUtc >= counts[size_t(found)].TakenUtc))
            found = int(i);
    return found;
}

int ClickedSnapshot(const std::vector<SnapshotCount>& counts, qint64 takenUtc, double value) {
    // Each network's snapshot nearest the time, then the network whose lines pass nearest the value.
    int nearest[2] = {-1, -1};
    for (size_t i = 0; i < counts.size(); ++i) {
        const int n = counts[i].Network == 1 ? 1 : 0;
        if (nearest[n] < 0 || std::llabs(counts[i].TakenUtc - takenUtc) <
                                  std::llabs(counts[size_t(nearest[n])].TakenUtc - takenUtc))
            nearest[n] = int(i);
    }
    int best = -1;
    double bestDistance = std::numeric_limits<double>::max();
    for (int index : nearest) {
        if (index < 0)
            continue;
        const SnapshotCount& c = counts[size_t(index)];
        const double distance = std::min(std::abs(c.Pilots - value), std::abs(c.Controllers - value));
        if (distance < bestDistance) {
            bestDistance = distance;
            best = index;
        }
    }
    return best;
}

std::vector<std::vector<ProfilePoint>> ProfilePieces(std::vector<ProfilePoint> points, qint64 maxGapSeconds) {
    std::stable_sort(points.begin(), points.end(),
                     [](const ProfilePoint& a, const ProfilePoint& b) { return a.TakenUtc < b.TakenUtc; });
    std::vector<std::vector<ProfilePoint>> pieces;
    for (const ProfilePoint& p : points) {
        if (pieces.empty() || p.TakenUtc - pieces.back().back().TakenUtc > maxGapSeconds)
            pieces.emplace_back();
        pieces.back().push_back(p);
    }
    return pieces;
}

} // namespace sky::stats
