#pragma once

#include <vector>

#include <QString>

#include "geo/geodesy.h"
#include "network/client_records.h"

namespace sky::view {

// Aircraft faster than this move between reports; slower ones (and those on the ground) stay put.
inline constexpr float kMovingKt = 40.0f;
// A drawn position glides to the next report within this time.
inline constexpr qint64 kGlideMs = 1000;

// Where an aircraft at (lat, lon) is after flying distanceNm along the great circle of trackDeg.
geo::LatLon Advanced(float lat, float lon, float trackDeg, double distanceNm);

// When the positions of a feed were reported: its stamp (yyyymmddhhmmss, UTC), unless that is after
// receivedMs or more than maxAgeMs before it (a clock apart, an old file): then receivedMs.
qint64 ReportTimeMs(const QString& updateStamp, qint64 receivedMs, qint64 maxAgeMs);

// When a pilot reported the position the feed gives: its own report time where the feed has one, within
// maxAgeMs before the feed's report time; else the feed's.
qint64 PilotReportMs(const network::PilotRecord& pilot, qint64 feedReportMs, qint64 maxAgeMs);

// The drawn positions of one network's aircraft between live updates: each faster than 40 kt advances
// along its heading at its ground speed from its report (PilotReportMs), for at most two update intervals; at
// a new report each glides from where it was drawn to its new place within a second. Times in milliseconds.
class AircraftMotion {
public:
    // New data at nowMs, reported at reportMs, updates intervalS apart.
    void Reported(const network::NetworkData& data, qint64 reportMs, qint64 nowMs, int intervalS);
    // The positions at nowMs into Drawn(); true while anything still moves after nowMs.
    bool Step(qint64 nowMs);
    // One position per pilot slot (index 0 unused); empty before the first report.
    const std::vector<geo::LatLon>& Drawn() const { return m_drawn; }
    // True while the drawn positions glide to the last report.
    bool Gliding(qint64 nowMs) const { return nowMs - m_glideFromMs < kGlideMs; }
    float FastestKt() const { return m_fastestKt; } // of the aircraft that move
    void Clear();

private:
    struct Plane {
        QString Callsign;
        geo::LatLon Reported;
        float TrackDeg = 0;
        float SpeedKt = 0;
        geo::LatLon From; // where it was drawn when the report came
        bool Glides = false;
        qint64 ReportMs = 0; // when its position was reported
    };
    std::vector<Plane> m_planes; // by slot, index 0 unused
    std::vector<geo::LatLon> m_drawn;
    qint64 m_reportMs = 0;
    qint64 m_glideFromMs = 0;
    qint64 m_maxAdvanceMs = 0;
    float m_fastestKt = 0;
};

} // namespace sky::view
