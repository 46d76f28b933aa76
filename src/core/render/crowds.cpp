#include "render/crowds.h"

#include <cmath>

#include <QHash>
#include <QSet>

#include "app/friends.h"
#include "geo/sphere_geometry.h"
#include "render/aircraft_layer.h"
#include "render/traffic_scene.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

struct Member {
    int Slot = 0;
    geo::Vec3 At;
};

// The departure and destination airports of a network's flight plans, found by place.
class AirportsInUse {
public:
    struct Airport {
        QString Code;
        float Lat = 0.0f, Lon = 0.0f;
    };

    explicit AirportsInUse(const network::NetworkData& data) {
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            Add(p.DepAirport, p.DepLatitude, p.DepLongitude);
            Add(p.DestAirport, p.DestLatitude, p.DestLongitude);
        }
    }
    // The airport nearest a place within radiusNm, or -1.
    int Nearest(float lat, float lon, float radiusNm) const {
        int found = -1;
        float best = radiusNm;
        const auto [row, column] = Cell(lat, lon);
        for (int r = row - 1; r <= row + 1; ++r)
            for (int c = column - 1; c <= column + 1; ++c)
                for (int index : m_cells.value(Key(r, c))) {
                    const Airport& a = m_airports[size_t(index)];
                    const float d = geo::Distance(lat, lon, a.Lat, a.Lon);
                    if (d < best) {
                        best = d;
                        found = index;
                    }
                }
        return found;
    }
    const Airport& At(int index) const { return m_airports[size_t(index)]; }

private:
    // Cells of a fifth of a degree: an airport within a few miles lies in a neighbouring one.
    static std::pair<int, int> Cell(float lat, float lon) {
        return {int(std::floor(lat * 5.0f)), int(std::floor(lon * 5.0f))};
    }
    static qint64 Key(int row, int column) { return qint64(row) * 4096 + column; }
    void Add(const QString& code, float lat, float lon) {
        if (code.isEmpty() || (lat == 0.0f && lon == 0.0f) || m_codes.contains(code))
            return;
        m_codes.insert(code);
        const auto [row, column] = Cell(lat, lon);
        m_cells[Key(row, column)].push_back(int(m_airports.size()));
        m_airports.push_back({code, lat, lon});
    }

    std::vector<Airport> m_airports;
    QSet<QString> m_codes;
    QHash<qint64, std::vector<int>> m_cells;
};

// True when two of the members stand closer than minimum (globe units).
bool AnyTwoCloser(const std::vector<Member>& members, double minimum) {
    const double squared = minimum * minimum;
    for (size_t i = 0; i < members.size(); ++i)
        for (size_t j = i + 1; j < members.size(); ++j) {
            const geo::Vec3 d = members[i].At - members[j].At;
            if (d.Dot(d) < squared)
                return true;
        }
    return false;
}

} // namespace

CrowdPlan PlanCrowds(const TrafficInputs& in, const std::vector<int>& networks) {
    CrowdPlan plan;
    // Close in, where parked aircraft get their labels, each can be seen and clicked on its own even
    // where symbols still overlap: an airport's apron is only a few symbols wide at the closest zoom.
    if (!in.Labels || in.ViewZ >= kGroundLabelZoom)
        return plan;
    const std::optional<network::ClientRef>& selected = in.Labels->Selected;
    // Two symbols overlap when their centres are closer than a symbol's length.
    const double overlap = 2.0 * SymbolSize(in.ViewZ);
    for (int n : networks) {
        const network::NetworkData& data = in.Tables[n];
        auto& grouped = plan.Grouped[size_t(n)];
        grouped.assign(size_t(data.PilotCount) + 1, false);
        const AirportsInUse airports(data);
        // Airport -> the aircraft parked there, in table order.
        QHash<int, std::vector<Member>> parked;
        std::vector<int> order;
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            if (p.GroundSpeed >= kGroundSpeedKts || !Shows(in, p) || in.FriendList.Contains(p.VID) ||
                (selected && *selected == network::ClientRef{n, true, slot}))
                continue;
            const int airport = airports.Nearest(p.Latitude, p.Longitude, kCrowdRadiusNm);
            if (airport < 0)
                continue;
            if (!parked.contains(airport))
                order.push_back(airport);
            parked[airport].push_back({slot, geo::OnGlobe(p.Latitude, p.Longitude)});
        }
        for (int airport : order) {
            const std::vector<Member>& members = parked[airport];
            if (members.size() < 2 || !AnyTwoCloser(members, overlap))
                continue;
            const AirportsInUse::Airport& a = airports.At(airport);
            Crowd crowd{n, a.Code, a.Lat, a.Lon};
            for (const Member& m : members) {
                grouped[size_t(m.Slot)] = true;
                const network::PilotRecord& p = data.Pilots[size_t(m.Slot)];
                crowd.Count += 1;
                crowd.Departing += p.DepAirport == a.Code ? 1 : 0;
                crowd.Arrived += p.DepAirport != a.Code && p.DestAirport == a.Code ? 1 : 0;
            }
            plan.Crowds.push_back(crowd);
        }
    }
    return plan;
}

QStringList CrowdCard(const Crowd& crowd) {
    return {u"%1 on the ground"_s.arg(crowd.Count),
            u"%1 departing, %2 arrived"_s.arg(crowd.Departing).arg(crowd.Arrived)};
}

} // namespace sky::render
