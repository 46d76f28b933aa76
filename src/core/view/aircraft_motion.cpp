#include "view/aircraft_motion.h"

#include <algorithm>
#include <cmath>

#include <QDateTime>
#include <QHash>

namespace sky::view {

geo::LatLon Advanced(float lat, float lon, float trackDeg, double distanceNm) {
    const double d = distanceNm / double(geo::kEarthRadiusNm);
    const double phi = lat * geo::DegToRad, lambda = lon * geo::DegToRad, theta = trackDeg * geo::DegToRad;
    const double sinPhi2 = std::sin(phi) * std::cos(d) + std::cos(phi) * std::sin(d) * std::cos(theta);
    const double phi2 = std::asin(std::clamp(sinPhi2, -1.0, 1.0));
    const double lambda2 = lambda + std::atan2(std::sin(theta) * std::sin(d) * std::cos(phi),
                                               std::cos(d) - std::sin(phi) * sinPhi2);
    double lon2 = lambda2 / geo::DegToRad;
    lon2 = std::fmod(lon2 + 540.0, 360.0) - 180.0;
    return {float(phi2 / geo::DegToRad), float(lon2)};
}

qint64 ReportTimeMs(const QString& updateStamp, qint64 receivedMs, qint64 maxAgeMs) {
    const QDateTime read = QDateTime::fromString(updateStamp, u"yyyyMMddHHmmss");
    if (!read.isValid())
        return receivedMs;
    const qint64 ms = QDateTime(read.date(), read.time(), Qt::UTC).toMSecsSinceEpoch();
    return ms > receivedMs || ms < receivedMs - maxAgeMs ? receivedMs : ms;
}

qint64 PilotReportMs(const network::PilotRecord& pilot, qint64 feedReportMs, qint64 maxAgeMs) {
    return pilot.ReportedAt.isEmpty() ? feedReportMs : ReportTimeMs(pilot.ReportedAt, feedReportMs, maxAgeMs);
}

void AircraftMotion::Reported(const network::NetworkData& data, qint64 reportMs, qint64 nowMs,
                              int intervalS) {
    QHash<QString, geo::LatLon> drawnBefore;
    for (size_t slot = 1; slot < m_planes.size() && slot < m_drawn.size(); ++slot)
        drawnBefore.insert(m_planes[slot].Callsign, m_drawn[slot]);
    m_planes.assign(size_t(data.PilotCount) + 1, Plane{});
    m_fastestKt = 0;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& p = data.Pilots[size_t(slot)];
        Plane& plane = m_planes[size_t(slot)];
        plane = {p.Callsign,
                 {p.Latitude, p.Longitude},
                 float(p.Heading),
                 p.GroundSpeed,
                 {},
                 false,
                 PilotReportMs(p, reportMs, qint64(intervalS) * 2000)};
        if (p.GroundSpeed > kMovingKt)
            m_fastestKt = std::max(m_fastestKt, p.GroundSpeed);
        const auto before = drawnBefore.constFind(p.Callsign);
        if (before != drawnBefore.constEnd()) {
            plane.From = *before;
            plane.Glides = true;
        }
    }
    m_reportMs = reportMs;
    m_glideFromMs = nowMs;
    m_maxAdvanceMs = qint64(intervalS) * 2000;
    m_drawn.assign(m_planes.size(), geo::LatLon{});
}

bool AircraftMotion::Step(qint64 nowMs) {
    const double glide = std::clamp(double(nowMs - m_glideFromMs) / double(kGlideMs), 0.0, 1.0);
    bool advancing = false, gliding = false;
    for (size_t slot = 1; slot < m_planes.size(); ++slot) {
        const Plane& plane = m_planes[slot];
        geo::LatLon at = plane.Reported;
        if (plane.SpeedKt > kMovingKt) {
            const qint64 flownMs = std::clamp<qint64>(nowMs - plane.ReportMs, 0, m_maxAdvanceMs);
            at = Advanced(at.Lat, at.Lon, plane.TrackDeg, plane.SpeedKt * double(flownMs) / 3'600'000.0);
            advancing = true;
        }
        if (plane.Glides && glide < 1.0) {
            // The shorter way round in longitude.
            const double dLon = std::remainder(double(at.Lon) - plane.From.Lon, 360.0);
            at = {float(plane.From.Lat + (at.Lat - plane.From.Lat) * glide),
                  float(std::remainder(plane.From.Lon + dLon * glide, 360.0))};
            gliding = true;
        }
        m_drawn[slot] = at;
    }
    return gliding || (advancing && nowMs - m_reportMs < m_maxAdvanceMs);
}

void AircraftMotion::Clear() {
    m_planes.clear();
    m_drawn.clear();
}

} // namespace sky::view
