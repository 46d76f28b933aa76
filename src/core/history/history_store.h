#pragma once

#include <functional>
#include <vector>

#include <QDateTime>
#include <QString>

namespace sky::history {

// A point of a flight's track as the store kept it.
struct TrackPoint {
    qint64 TakenUtc = 0; // seconds since 1970, the download's time
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    float AltitudeFt = 0.0f;
};

// A snapshot the store keeps: what it is, not what it holds.
struct StoredSnapshot {
    qint64 Id = 0;
    int Network = 0;
    QString Stamp; // the data's yyyymmddhhmmss
    qint64 TakenUtc = 0;
};

// Where the program keeps what it has seen: every snapshot it interpreted and every client's position
// in it. The map asks it for a flight's track and for earlier snapshots to replay. A store that could
// not open its history says why in Problem() and answers empty in every query; a snapshot that could
// not be written is said through the handler given to OnWriteFailed, and the store goes on.
class HistoryStore {
public:
    virtual ~HistoryStore() = default;
    // Keeps a snapshot of network as it was interpreted; returns at once, the writing goes on elsewhere.
    virtual void Record(int network, const QString& text, const QDateTime& taken) = 0;
    // The positions of one flight (a callsign and member number) in time order, oldest first.
    virtual std::vector<TrackPoint> Track(int network, const QString& callsign, const QString& member) = 0;
    // The tracks of many flights since a time, at once: keyed "callsign:member".
    virtual std::vector<std::pair<QString, std::vector<TrackPoint>>> Tracks(int network, qint64 sinceUtc) = 0;
    // The snapshots of network written so far, oldest first; and the text of one.
    virtual std::vector<StoredSnapshot> Snapshots(int network) = 0;
    virtual QString SnapshotText(qint64 id) = 0;
    // Empty while the store works; else why it does not ("the history is locked by another program").
    virtual QString Problem() const = 0;
    // failed is called with a message naming the trouble as soon as a write or a clean-up fails (a full
    // disk, a read-only file), on whichever thread writes: the caller hands it on to its own.
    virtual void OnWriteFailed(std::function<void(const QString&)> failed) { (void)failed; }
    // Waits until every snapshot handed over is written: for tests and shut-down, never the map.
    virtual void Flush() {}
};

// A track cut where the flight was not seen for more than maxGapSeconds (it went offline): each piece
// is drawn on its own.
std::vector<std::vector<TrackPoint>> SplitTrack(const std::vector<TrackPoint>& track,
                                                qint64 maxGapSeconds = 30 * 60);

} // namespace sky::history
