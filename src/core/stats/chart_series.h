#pragma once

#include <vector>

#include <QString>
#include <QStringView>

namespace sky::stats {

// Who was online in one kept snapshot of a network: the line the traffic chart draws, a point a snapshot.
struct SnapshotCount {
    qint64 SnapshotId = 0;
    int Network = 0;
    qint64 TakenUtc = 0; // seconds since 1970, the download's time
    QString Stamp;       // the data's yyyymmddhhmmss
    int Pilots = 0;
    int Controllers = 0; // as the count panel counts them: no observers, no ATIS, no follow-me cars
};

// True for a kept station line of a controller: an ATC line whose callsign names a facility from
// delivery to flight service and a station of two characters or more.
bool IsControllerLine(QStringView stationLine);

// The snapshot of network whose data time is stamp (the one the map shows), the newest when several
// are; -1 when none is kept.
int ShownSnapshot(const std::vector<SnapshotCount>& counts, int network, const QString& stamp);

// What a click on the traffic chart at a time and a count means: the snapshot of the network whose
// pilots or controllers line passes nearest the click at that time, the one nearest in time; -1 when
// nothing is kept.
int ClickedSnapshot(const std::vector<SnapshotCount>& counts, qint64 takenUtc, double value);

// One point of a flight's profile from its stored track.
struct ProfilePoint {
    qint64 TakenUtc = 0;
    int AltitudeFt = 0;
    int SpeedKt = 0;
};

// A flight's profile in pieces, cut where it was not seen for more than maxGapSeconds (it went offline
// and came back), so no line is drawn across the gap; points in time order.
std::vector<std::vector<ProfilePoint>> ProfilePieces(std::vector<ProfilePoint> points,
                                                     qint64 maxGapSeconds = 30 * 60);

} // namespace sky::stats
