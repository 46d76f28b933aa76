#include "stats/demo_day.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QDateTime>

#include "geo/geodesy.h"
#include "network/classification.h"
#include "network/client_records.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::stats {
namespace {

constexpr qint64 kMinute = 60;
constexpr qint64 kLongest = 4 * 3600;
constexpr qint64 kAtGate = 10 * kMinute, kTaxi = 5 * kMinute, kParked = 5 * kMinute;

// A number from 0 to 1 that depends only on seed and k (splitmix64).
double Unit(quint32 seed, qint64 k) {
    quint64 z = (quint64(seed) << 32) ^ quint64(k) ^ 0x9E3779B97F4A7C15ull;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    return double(z >> 11) / double(1ull << 53);
}

quint32 Seed(const QString& text) {
    quint32 hash = 2166136261u; // FNV-1a
    for (QChar c : text)
        hash = (hash ^ c.unicode()) * 16777619u;
    return hash;
}

qint64 FloorDiv(qint64 a, qint64 b) {
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

// The point a fraction of the way along the great circle from one place to another.
void Between(double lat1, double lon1, double lat2, double lon2, double fraction, double& lat, double& lon) {
    constexpr double rad = std::numbers::pi / 180.0;
    const double a[3] = {std::cos(lat1 * rad) * std::cos(lon1 * rad),
                         std::cos(lat1 * rad) * std::sin(lon1 * rad), std::sin(lat1 * rad)};
    const double b[3] = {std::cos(lat2 * rad) * std::cos(lon2 * rad),
                         std::cos(lat2 * rad) * std::sin(lon2 * rad), std::sin(lat2 * rad)};
    const double angle = std::acos(std::clamp(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], -1.0, 1.0));
    double p[3];
    for (int i = 0; i < 3; ++i)
        p[i] = angle < 1e-9 ? a[i]
                            : (std::sin((1 - fraction) * angle) * a[i] + std::sin(fraction * angle) * b[i]) /
                                  std::sin(angle);
    lat = std::atan2(p[2], std::hypot(p[0], p[1])) / rad;
    lon = std::atan2(p[1], p[0]) / rad;
}

std::int32_t Micro(double degrees) {
    return std::int32_t(std::lround(degrees * 1e6));
}

} // namespace

double DemoDay::Activity(qint64 utc) {
    const double hours = double(((utc % 86400) + 86400) % 86400) / 3600.0;
    return 0.55 + 0.45 * std::cos(2.0 * std::numbers::pi * (hours - 18.0) / 24.0);
}

DemoDay::DemoDay(int network, const QString& feedText, const ReferenceData& reference)
    : m_network(network), m_feed(history::Split(network, feedText)) {
    for (size_t i = 0; i < m_feed.Positions.size(); ++i) {
        const history::ClientPosition& p = m_feed.Positions[i];
        Client c;
        c.Index = int(i);
        c.Seed = Seed(p.Callsign + u':' + p.Member);
        if (p.Pilot) {
            network::PilotRecord pilot;
            network::ParsePilot(network, m_feed.StaticLines[qsizetype(i)], reference, pilot);
            const bool known = (pilot.DepLatitude != 0 || pilot.DepLongitude != 0) &&
                               (pilot.DestLatitude != 0 || pilot.DestLongitude != 0);
            const double distanceNm = known ? geo::Distance(pilot.DepLatitude, pilot.DepLongitude,
                                                            pilot.DestLatitude, pilot.DestLongitude)
                                            : 0.0;
            if (known && distanceNm >= 50.0) {
                c.Flies = true;
                c.DepLat = pilot.DepLatitude, c.DepLon = pilot.DepLongitude;
                c.DestLat = pilot.DestLatitude, c.DestLon = pilot.DestLongitude;
                const double planned = network::PlannedAltitudeFt(pilot.PlannedAltitude);
                c.CruiseFt = planned > 0 ? int(std::clamp(planned, 5000.0, 41000.0)) : 35000;
                c.CruiseKt = c.CruiseFt >= 20000 ? 450 : 250;
                // Climb and descent take ten minutes more than the distance at cruising speed. Few
                // people fly longer than four hours in one go: a longer flight is flown faster.
                const qint64 airborne =
                    std::min(qint64(distanceNm / c.CruiseKt * 3600.0), kLongest) + 10 * kMinute;
                c.LegSeconds = kAtGate + kTaxi + airborne + kTaxi + kParked;
                c.BreakSeconds = qint64(40 + 120 * Unit(c.Seed, -1)) * kMinute;
                QStringList fields = m_feed.StaticLines[qsizetype(i)].split(u':');
                if (fields.size() > 13)
                    std::swap(fields[11], fields[13]);
                c.ReturnLine = fields.join(u':');
            }
        }
        if (!c.Flies) { // a station, or a pilot going nowhere known: online for blocks of one to three hours
            c.LegSeconds = qint64(60 + 120 * Unit(c.Seed, -1)) * kMinute;
            c.BreakSeconds = 0;
        }
        c.PhaseSeconds = qint64(Unit(c.Seed, -2) * double(c.LegSeconds + c.BreakSeconds));
        m_clients.push_back(c);
    }
}

bool DemoDay::Place(const Client& c, qint64 utc, history::ClientPosition& p, bool& returning) const {
    const qint64 cycle = c.LegSeconds + c.BreakSeconds;
    const qint64 leg = FloorDiv(utc - c.PhaseSeconds, cycle);
    const qint64 into = utc - c.PhaseSeconds - leg * cycle;
    const double activity = Activity(utc - into);
    if (into >= c.LegSeconds || Unit(c.Seed, leg) >= activity * activity)
        return false;
    p = m_feed.Positions[size_t(c.Index)];
    returning = c.Flies && (leg & 1) != 0;
    if (!c.Flies)
        return true;
    const double fromLat = returning ? c.DestLat : c.DepLat, fromLon = returning ? c.DestLon : c.DepLon;
    const double toLat = returning ? c.DepLat : c.DestLat, toLon = returning ? c.DepLon : c.DestLon;
    const qint64 airborne = c.LegSeconds - kAtGate - 2 * kTaxi - kParked;
    const qint64 flown = into - kAtGate - kTaxi;
    double lat = flown <= 0 ? fromLat : toLat, lon = flown <= 0 ? fromLon : toLon;
    p.AltitudeFt = 0;
    p.SpeedKt = 0;
    if (flown > -kTaxi && flown <= 0) {
        p.SpeedKt = 15; // taxiing out
    } else if (flown > 0 && flown < airborne) {
        const double fraction = double(flown) / double(airborne);
        Between(fromLat, fromLon, toLat, toLon, fraction, lat, lon);
        const double totalNm = geo::Distance(float(fromLat), float(fromLon), float(toLat), float(toLon));
        const double climbFt = double(flown) / kMinute * 2000.0;            // 2000 ft a minute
        const double descentFt = (1.0 - fraction) * totalNm * 1000.0 / 3.0; // 3 nm a 1000 ft
        p.AltitudeFt = int(std::min({double(c.CruiseFt), climbFt, descentFt}));
        p.SpeedKt = 160 + (c.CruiseKt - 160) * p.AltitudeFt / c.CruiseFt;
    } else if (flown >= airborne && flown < airborne + kTaxi) {
        p.SpeedKt = 15; // taxiing in
    }
    p.LatMicro = Micro(lat);
    p.LonMicro = Micro(lon);
    p.Heading = (geo::Course(float(lat), float(lon), float(toLat), float(toLon)) + 360) % 360;
    return true;
}

QString DemoDay::At(qint64 utc) const {
    history::SplitSnapshot out;
    qsizetype clientLine = -1, countLine = -1;
    size_t client = 0;
    for (const QString& line : m_feed.Frame) {
        if (line != history::kClientMark) {
            if (line.startsWith(u"UPDATE"))
                clientLine = out.Frame.size();
            if (line.startsWith(u"CONNECTED CLIENTS"))
                countLine = out.Frame.size();
            out.Frame.append(line);
            continue;
        }
        const Client& c = m_clients[client++];
        history::ClientPosition p;
        bool returning = false;
        if (!Place(c, utc, p, returning))
            continue;
        out.Frame.append(history::kClientMark);
        out.StaticLines.append(returning ? c.ReturnLine : m_feed.StaticLines[qsizetype(c.Index)]);
        out.Positions.push_back(p);
    }
    if (clientLine >= 0)
        out.Frame[clientLine] =
            u"UPDATE = "_s + QDateTime::fromSecsSinceEpoch(utc, Qt::UTC).toString(u"yyyyMMddHHmmss"_s);
    if (countLine >= 0)
        out.Frame[countLine] = u"CONNECTED CLIENTS = "_s + QString::number(out.Positions.size());
    return history::Join(m_network, out);
}

} // namespace sky::stats
